// Records.h: the rows of saved.mdb, as quillbox-inspect lists them.
#pragma once
#include <map>
#include <string>
#include <string_view>
#include <vector>

// Of each folder ("Local Folders\\Inbox", folded by FoldAscii) the subjects of the e-mails recorded as saved.
using SavedRecords = std::map<std::u16string, std::vector<std::u16string>>;

// One JSON object a line, with "efolder" and "esubject". Throws MailboxError for a line that is none.
SavedRecords ReadRecords(std::string_view jsonLines);
std::size_t CountRecords(const SavedRecords& records);
