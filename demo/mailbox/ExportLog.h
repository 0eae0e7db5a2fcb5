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

// The folder before which the last run over all folders stopped because its user had named it, in the log's
// code page; empty when it went to the end.
std::string IgnoredFolder(std::string_view log);
