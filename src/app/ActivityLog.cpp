#include "app/ActivityLog.h"

#include "text/DayCount.h"

#include <algorithm>
#include <exception>

namespace {

// A subject may hold line ends, and a message is one line.
Text OneLine(TextView message)
{
    Text line = ReplaceAll(message, u"\r\n", u" ");
    std::replace_if(
        line.begin(), line.end(), [](char16_t unit) { return unit == u'\r' || unit == u'\n'; }, u' ');
    return line;
}

} // namespace

void ActivityLog::LogLine(const Text& message, Record record) noexcept
{
    try {
        if (path_.empty()) return;
        view_.ShowText(message);
        if (record == Record::no) return;
        const Text shown = OneLine(message);
        view_.AddProgress(shown);
        last_ = shown;
        const Text line = FormatDate(clock_.LocalNow(), kSecondFormat) + u" " + shown + u"\r\n";
        (void)files_.Append(path_, codePage_.ToAnsi(line)); // the message is on the screen by now
    } catch (const std::exception&) {
        // Out of memory, or a clock out of range: a message is lost, the run goes on.
    }
}

void ActivityLog::LogBox(const Text& words)
{
    if (last_.empty() || !OneLine(words).starts_with(last_)) LogLine(words, Record::yes);
}
