// MailIndex.h: what an index of a store tells of each e-mail, and the index as a table for spreadsheets.
// Fails by: MailIndex::unread; of such a file it knows name and size.
#pragma once
#include "archive/Store.h"
#include "platform/CodePage.h"

#include <optional>

struct IndexedEmail {
    std::size_t directory = 0;        // of the store's
    Text file;                        // name
    std::uint64_t size = 0;           // bytes
    std::optional<std::int64_t> date; // seconds since 1970, Universal Time
    Text from, to, cc, subject, messageId;
    std::size_t toCount = 0, ccCount = 0, bccCount = 0; // addresses
    bool attachment = false;
};

struct MailIndex {
    Store store;
    std::vector<IndexedEmail> emails;
    std::vector<Text> unread; // paths of the files and directories that could not be read
    bool stopped = false;
};
MailIndex ReadMailIndex(Files& files, CodePage& codePage, const Text& store, const GoOn& goOn);

// RFC 4180, in UTF-8 with a byte order mark, which spreadsheets know the encoding by; a line for each e-mail.
// Replaces as IndexPage.h. Dates are those of ISO 8601 in Universal Time.
FileError WriteCsv(Files& files, const MailIndex& index, const Text& path);

// Writes what may be large piece by piece, into a new file beside the one of that name, which is replaced at
// the end: one that has the mark near its beginning. Another one is not touched: FileError::exists.
class ReplacingFile {
public:
    ReplacingFile(Files& files, const Text& path, std::string_view mark);
    ~ReplacingFile(); // nothing is left of what did not come to its end
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;
    void Write(std::string_view bytes);
    FileError Finish();

private:
    void WritePiece();
    Files& files_;
    const Text path_;
    const std::string_view mark_;
    Text beside_; // empty until it is made
    std::unique_ptr<RandomFile> file_;
    std::string piece_;
    FileError error_ = FileError::none;
};
