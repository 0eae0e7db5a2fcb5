#include "app/ActivityLog.h"

#include "text/DayCount.h"

#include <exception>

void ActivityLog::LogLine(const Text& message, Record record) noexcept
{
    try {
        if (path_.empty()) return;
        view_.ShowText(message);
        if (record == Record::no) return;
        view_.AddProgress(message);
        const Text line = FormatDate(clock_.LocalNow(), kSecondFormat) + u" " + message + u"\r\n";
        (void)files_.Append(path_, codePage_.ToAnsi(line)); // the message is on the screen by now
    } catch (const std::exception&) {
        // Out of memory, or a clock out of range: a message is lost, the run goes on.
    }
}
