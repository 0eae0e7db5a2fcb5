// ActivityLog.h: every message that the program gives about its work: on the display, in the progress list
// and in log.txt.
// Fails by: nothing. A log file that is locked or read-only never stops an export.
#pragma once
#include "folders/RunView.h"
#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/Files.h"

class ActivityLog {
public:
    ActivityLog(Files& files, Clock& clock, CodePage& codePage, RunView& view)
        : files_(files), clock_(clock), codePage_(codePage), view_(view)
    {
    }

    void SetPath(const Text& path) { path_ = path; }

    // Record::no goes to the display alone. While no path is set, nothing happens at all. The file is opened
    // and closed for each line, so that it is complete however the program ends.
    void LogLine(const Text& message, Record record) noexcept;
    // What a box would say, unless the last line has begun with it already.
    void LogBox(const Text& words);

private:
    Files& files_;
    Clock& clock_;
    CodePage& codePage_;
    RunView& view_;
    Text path_;
    Text last_; // line
};
