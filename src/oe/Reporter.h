// Reporter.h: how code that drives the mail client speaks to the user, and lets the window live meanwhile.
#pragma once
#include "text/Text.h"

enum class Record { no, yes };               // yes: also in the progress list and in log.txt
enum class BoxIcon { information, warning }; // warning: the exclamation mark

struct Reporter {
    virtual ~Reporter() = default;
    // The one reporting routine. Always on the vacuum-tube display; never fails.
    virtual void LogLine(const Text& message, Record record) = 0;
    // On the vacuum-tube display only, not a message of the log.
    virtual void ShowText(const Text& text) = 0;
    // A message box with the program's title; returns when it has been closed.
    virtual void ShowBox(BoxIcon icon, const Text& words) = 0;
    // One that closes itself after a minute.
    virtual void ShowBriefBox(BoxIcon icon, const Text& words) = 0;
    // Lets the user interface handle what is pending. Stop buttons and closing arrive here.
    virtual void ProcessEvents() = 0;
};
