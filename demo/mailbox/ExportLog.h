// ExportLog.h: what Quillbox's log.txt tells about the exports of one folder.
#pragma once
#include <string>
#include <string_view>
#include <vector>

// One export of one folder that came to its outcome line.
struct ExportRecord {
    std::string folder;   // the folder's name, not its path, in the log's code page
    std::size_t messages; // in the folder at that time
    std::size_t passed, failed, skipped;
};

// In the order of the log. Lines that are none of these are passed over.
std::vector<ExportRecord> ReadExportLog(std::string_view log);

// How many messages of a folder the log allows to be without a file: those skipped although no earlier export
// of the log had saved them (the second of two with the same details). Messages skipped because they were
// saved before do not count: their files must be there.
std::size_t SkippedForGood(const std::vector<ExportRecord>& log, std::u16string_view folder,
                           std::size_t messages);

// What an export command says at its end about the e-mails it has handled:
// "N of M e-mail(s) handled in this run are saved; K are not. U more were not looked at."
struct ClosingLine {
    std::string folder; // exported alone, its name in the log's code page; empty: a run over all folders
    std::size_t saved = 0, handled = 0, unsaved = 0, notLookedAt = 0;
    std::size_t first = 0; // row that the export of one folder began with: of those above it nothing is said
};
struct ClosingLines {
    std::vector<ClosingLine> lines; // in the order of the log
    std::size_t missing = 0;        // commands that have handled e-mails and have none
};
ClosingLines ReadClosingLines(std::string_view log);

// What is wrong with the closing lines, beside what is on the disk now. folder: the one that was looked at,
// of which messages there are and stored are in the store; null: all of them. Only the last line can tell of
// the disk as it is.
std::vector<std::string> HoldClosingLinesAgainst(const ClosingLines& closing, const std::u16string* folder,
                                                 std::size_t messages, std::size_t stored);

// The folder before which the last run over all folders stopped because its user had named it, in the log's
// code page; empty when it went to the end.
std::string IgnoredFolder(std::string_view log);
