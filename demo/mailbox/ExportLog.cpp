// ExportLog.cpp: reads the lines of an export's beginning and end.
#include "demo/mailbox/ExportLog.h"

#include "demo/mailbox/Names.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::size_t kStampLength = 20; // "03/04/2007 10:15:00 "
constexpr std::size_t kNameLimit = 128;  // of a folder's name as the program reads it

std::string_view TakeLogLine(std::string_view& rest)
{
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line.size() < kStampLength ? std::string_view() : line.substr(kStampLength);
}

std::string_view WithoutHyphens(std::string_view name)
{
    return name.substr(std::min(name.find_first_not_of('-'), name.size()));
}

// A character that the code page lacks may have become any other.
bool IsNameInLog(std::u16string_view folder, std::string_view logged)
{
    folder = folder.substr(0, kNameLimit);
    if (WithoutHyphens(NameToUtf8(folder)) == logged) return true;
    while (folder.starts_with(u'-')) folder.remove_prefix(1);
    return std::equal(folder.begin(), folder.end(), logged.begin(), logged.end(),
                      [](char16_t unit, char byte) {
                          const int expected = Cp1252Byte(unit);
                          return expected < 0 || static_cast<char>(expected) == byte;
                      });
}

} // namespace

std::vector<ExportRecord> ReadExportLog(std::string_view log)
{
    std::vector<ExportRecord> records;
    ExportRecord record{};
    while (!log.empty()) {
        const std::string line(TakeLogLine(log));
        int first = 0, last = 0, length = 0, passed = 0, failed = 0, skipped = 0;
        const auto whole = [&] { return static_cast<std::size_t>(length) == line.size(); };
        if (line.starts_with("Folder ")) {
            record = {std::string(WithoutHyphens(std::string_view(line).substr(7))), 0, 0, 0, 0};
        } else if (std::sscanf(line.c_str(), "-- Exporting %d to %d messages.%n", &first, &last, &length) ==
                       2 &&
                   whole()) {
            record.messages = static_cast<std::size_t>(last + 1);
        } else if (std::sscanf(line.c_str(), "%d passed, %d failed, %d skipped%n", &passed, &failed, &skipped,
                               &length) == 3 &&
                   whole()) {
            record.passed = static_cast<std::size_t>(passed);
            record.failed = static_cast<std::size_t>(failed);
            record.skipped = static_cast<std::size_t>(skipped);
            records.push_back(record);
            record = {};
        }
    }
    return records;
}

std::string IgnoredFolder(std::string_view log)
{
    constexpr std::string_view kIgnoring = "Ignoring all folders after: ";
    std::string ignored;
    while (!log.empty()) {
        const std::string_view line = TakeLogLine(log);
        if (line == "Exporting Outlook Express folders") ignored.clear();
        if (line.starts_with(kIgnoring)) ignored = line.substr(kIgnoring.size());
    }
    return ignored;
}

std::size_t SkippedForGood(const std::vector<ExportRecord>& log, std::u16string_view folder,
                           std::size_t messages)
{
    std::size_t allowed = 0, savedBefore = 0;
    for (const ExportRecord& record : log) {
        if (record.messages != messages || !IsNameInLog(folder, record.folder)) continue;
        if (record.skipped > savedBefore) allowed = std::max(allowed, record.skipped - savedBefore);
        savedBefore += record.passed;
    }
    return allowed;
}
