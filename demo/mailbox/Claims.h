// Claims.h: holds the files of one folder's directory, and the records about them, against the messages that
// they claim to be.
#pragma once
#include "demo/mailbox/Mailbox.h"

#include <filesystem>
#include <string>
#include <vector>

// By what the name of a file tells its message: by the number in front, where rows stay; by the subject
// behind it, where they move while they are exported: then no two messages of a folder have the same subject.
enum class Rows { stay, move };

struct StoredFile {
    std::filesystem::path path;
    std::string name; // in UTF-8
    // Of "<row>_<subject>.eml" and "<row>.eml", the row in at least four digits; perhaps with letters behind.
    bool isExport = false;
    std::size_t row = 0;
    std::string subject; // with those letters
};
std::vector<StoredFile> ListStoredFiles(const std::filesystem::path& directory); // empty path: none

struct FolderClaims {
    std::vector<bool> exported;        // of each message: a file with the right name has its bytes
    std::vector<std::size_t> claimed;  // the message of each file, kNoMessage: none
    std::vector<std::string> problems; // a file that claims no message, or holds another than its name says
};
constexpr std::size_t kNoMessage = static_cast<std::size_t>(-1);

FolderClaims HoldFilesAgainst(const MailFolder& folder, const std::vector<StoredFile>& files, Rows rows);

// The files that no record tells of, and the records that have no file. Subjects are compared where they are
// plain ASCII without runs of blanks; of the others there must be equally many.
std::vector<std::string> HoldRecordsAgainst(const MailFolder& folder, const std::vector<StoredFile>& files,
                                            const FolderClaims& claims,
                                            const std::vector<std::u16string>& recordedSubjects);
