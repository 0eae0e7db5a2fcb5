// Check.h: compares an exported store folder with the mailbox it came from, byte for byte.
#pragma once
#include "demo/mailbox/ExportLog.h"
#include "demo/mailbox/Mailbox.h"

#include <filesystem>
#include <string>
#include <vector>

struct CheckResult {
    std::size_t messages = 0, exported = 0;
    std::vector<std::string> problems; // a message that is neither stored nor reported as skipped, in UTF-8
    std::vector<std::string> notes;    // what a person may want to look at
};

// Checks the folder at path (FindFolder) alone, or every folder. A message is exported when the folder's
// directory below store/Local Folders has a file "<row>_....eml" or "<row>.eml" (the row in at least four
// digits, perhaps with a letter behind) with the same bytes. Throws MailboxError when there is no such folder
// or a file cannot be read.
CheckResult CheckFolder(const MailFolder& root, std::u16string_view path, const std::filesystem::path& store,
                        const std::vector<ExportRecord>& log);
// ignored: a folder's full name ("Local Folders\\Archive", letter case does not count); it and all behind it
// are left out with a note, as they were left out of the export. Empty: none.
CheckResult CheckAll(const MailFolder& root, const std::filesystem::path& store,
                     const std::vector<ExportRecord>& log, const std::string& ignored = {});
