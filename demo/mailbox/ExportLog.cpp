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

ClosingLines ReadClosingLines(std::string_view log)
{
    ClosingLines closing;
    ClosingLine current;
    bool handled = false, all = false; // since the last closing line
    const auto begin = [&](bool overAllFolders) {
        closing.missing += handled ? 1 : 0;
        handled = false;
        all = overAllFolders;
    };
    while (!log.empty()) {
        const std::string line(TakeLogLine(log));
        std::size_t counts[4] = {};
        int length = 0, rest = 0;
        if (line.starts_with("Started ") || line == "Checking Outlook Express folders") begin(false);
        if (line == "Exporting Outlook Express folders") begin(true);
        if (line.starts_with("Folder ")) current.folder = WithoutHyphens(std::string_view(line).substr(7));
        (void)std::sscanf(line.c_str(), "-- Exporting %zu to", &current.first);
        if (std::sscanf(line.c_str(), "%zu passed, %zu failed, %zu skipped", &counts[0], &counts[1],
                        &counts[2]) == 3)
            handled = handled || counts[0] + counts[1] + counts[2] > 0;
        if (std::sscanf(line.c_str(), "%zu of %zu e-mail(s) handled in this run are saved; %zu are not.%n",
                        &counts[0], &counts[1], &counts[2], &length) != 3 ||
            length == 0)
            continue;
        const std::string behind = line.substr(static_cast<std::size_t>(length));
        counts[3] = 0;
        const bool whole = behind.empty() || (std::sscanf(behind.c_str(), " %zu more were not looked at.%n",
                                                          &counts[3], &rest) == 1 &&
                                              static_cast<std::size_t>(rest) == behind.size());
        if (!whole) continue;
        closing.lines.push_back({all ? std::string() : current.folder, counts[0], counts[1], counts[2],
                                 counts[3], all ? 0 : current.first});
        current = {};
        handled = all = false;
    }
    begin(false);
    return closing;
}

std::vector<std::string> HoldClosingLinesAgainst(const ClosingLines& closing, const std::u16string* folder,
                                                 std::size_t messages, std::size_t stored)
{
    std::vector<std::string> problems;
    if (closing.missing > 0)
        problems.push_back(std::to_string(closing.missing) + " export(s) have no closing line");
    for (const ClosingLine& line : closing.lines)
        if (line.saved + line.unsaved != line.handled)
            problems.push_back("a closing line does not add up: " + std::to_string(line.saved) +
                               " saved and " + std::to_string(line.unsaved) + " not of " +
                               std::to_string(line.handled));
    if (closing.lines.empty()) return problems;
    const ClosingLine& last = closing.lines.back();
    const bool same =
        folder ? !last.folder.empty() && IsNameInLog(*folder, last.folder) : last.folder.empty();
    if ((same || !folder) && last.saved > stored)
        problems.push_back("the closing line tells of " + std::to_string(last.saved) + " saved, but only " +
                           std::to_string(stored) + " are");
    const std::size_t told = last.unsaved + last.notLookedAt;
    if (same && messages - stored > told + last.first)
        problems.push_back("the closing line tells of " + std::to_string(last.unsaved) + " not saved and " +
                           std::to_string(last.notLookedAt) + " not looked at from row " +
                           std::to_string(last.first) + " on, but " + std::to_string(messages - stored) +
                           " are not in the store");
    return problems;
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
