// WinOeBench.h: the record of the mail client on the real windows, memory and files of this machine.
#pragma once
#include "oe/OeClient.h"
#include "platform/System.h"
#include "platform/win32/WinDesktop.h"
#include "platform/win32/WinProcessApi.h"
#include "tests/support/RecordingView.h"

struct WinOeBench {
    SystemCodePage codePage;
    SystemFiles files;
    SystemLocale locale;
    SystemClock clock;
    WinDesktop desktop{codePage};
    WinProcessApi processApi;
    clsCRC crc{codePage};
    RecordingView view;
    OeSettings settings;
    RunFlags flags;
    OeClient client{desktop, RemoteMemory(processApi), files, codePage, locale, clock, crc, view, settings,
                    flags};
};
