// WinCodePage.h: conversions by the system, in the ANSI code page that it reports (GetACP). No flags are
// set, so Windows puts look-alikes for what the page lacks and decides what becomes of bad bytes.
#pragma once
#include "platform/CodePage.h"

struct WinCodePage final : CodePage {
    std::string ToAnsi(TextView text) override;
    Text FromAnsi(std::string_view bytes) override;
    Text FromUtf8Bytes(std::string_view bytes) override;
};
