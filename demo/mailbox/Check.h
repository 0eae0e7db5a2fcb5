// Check.h: compares an exported store folder, and the records about it, with the mailbox it came from.
#pragma once
#include "demo/mailbox/Claims.h"
#include "demo/mailbox/ExportLog.h"
#include "demo/mailbox/Mailbox.h"
#include "demo/mailbox/Records.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

struct CheckInput {
    std::filesystem::path store;
    std::vector<ExportRecord> log;
    std::optional<SavedRecords> records; // nothing: they are not looked at
    Rows rows = Rows::stay;
    // A folder's full name ("Local Folders\\Archive", letter case does not count); it and all behind it are
    // left out with a note, as they were left out of the export. Empty: none.
    std::string ignored;
};

struct CheckResult {
    std::size_t messages = 0, exported = 0;
    std::vector<std::string> problems; // in UTF-8
    std::vector<std::string> notes;    // what a person may want to look at
};

// Checks the folder at path (FindFolder) alone, or every folder, in its directory below store/Local Folders.
// A message is exported when a file that claims to be it (Rows) has its bytes. Problems are a message that is
// neither exported nor reported as skipped; a file that claims none, or holds another than it claims; a file
// without a record and a record without a file. Throws MailboxError when there is no such folder or a file
// cannot be read.
CheckResult CheckFolder(const MailFolder& root, std::u16string_view path, const CheckInput& input);
CheckResult CheckAll(const MailFolder& root, const CheckInput& input);
