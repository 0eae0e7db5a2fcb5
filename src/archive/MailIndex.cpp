#include "archive/MailIndex.h"

#include "mail/AddressList.h"
#include "mail/MessageDates.h"
#include "mail/ReadableText.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <stdexcept>

namespace {

// All fields of the name: some programs write one for each address.
std::string AddressesIn(const MessageFields& fields, std::string_view name)
{
    std::string joined;
    for (const MessageField& field : fields.fields)
        if (field.name == name && !field.value.empty()) joined += (joined.empty() ? "" : ", ") + field.value;
    return joined;
}

// "Ann <ann@x.example>; bob@x.example"
Text ReadableAddresses(const std::vector<MailAddress>& addresses, std::string_view charset,
                       CodePage& codePage)
{
    Text text;
    for (const MailAddress& each : addresses) {
        if (!text.empty()) text += u"; ";
        const Text name = ReadableText(each.name, charset, codePage);
        const Text address = ReadableText(each.address, charset, codePage);
        text += name.empty() ? address : address.empty() ? name : name + u" <" + address + u">";
    }
    return text;
}

void Fill(IndexedEmail& email, std::string_view message, CodePage& codePage)
{
    const MessageFields fields = ReadMessageFields(message);
    const std::string charset = FieldParameter(FieldValue(fields, "content-type"), "charset");
    const auto from = ReadAddresses(FieldValue(fields, "from"));
    const auto to = ReadAddresses(AddressesIn(fields, "to")), cc = ReadAddresses(AddressesIn(fields, "cc"));
    email.size = message.size();
    email.date = DateOfMessage(fields);
    email.from = ReadableAddresses(from, charset, codePage);
    email.to = ReadableAddresses(to, charset, codePage);
    email.cc = ReadableAddresses(cc, charset, codePage);
    email.subject = ReadableText(FieldValue(fields, "subject"), charset, codePage);
    email.messageId = ReadableText(FieldValue(fields, "message-id"), charset, codePage);
    email.toCount = to.size();
    email.ccCount = cc.size();
    email.bccCount = ReadAddresses(AddressesIn(fields, "bcc")).size();
    email.attachment = HasAttachment(message, fields);
}

// False: it could not be read.
bool ReadEmail(Files& files, CodePage& codePage, const Text& path, IndexedEmail& email)
{
    try {
        std::string bytes;
        if (files.ReadWhole(path, bytes) != FileError::none) return false;
        Fill(email, bytes, codePage);
        return true;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) { // more characters than a text can have
    }
    return false;
}

// RFC 4180, section 2, rules 5 to 7.
std::string Cell(const Text& text)
{
    const std::string cell = ToUtf8(text);
    if (cell.find_first_of("\",\r\n") == cell.npos) return cell;
    std::string quoted = "\"";
    for (const char byte : cell) quoted.append(byte == '"' ? 2 : 1, byte);
    return quoted + '"';
}

bool IsMarked(Files& files, const Text& path, std::string_view mark)
{
    constexpr std::size_t kHead = 1000; // bytes that hold the mark
    std::string bytes;
    return files.ReadWhole(path, bytes) == FileError::none && bytes.substr(0, kHead).find(mark) != bytes.npos;
}

std::string IsoDate(std::int64_t seconds)
{
    const DateFields at = FieldsOfMoment(seconds);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", at.year, at.month, at.day, at.hour,
                  at.minute, at.second);
    return text;
}

} // namespace

MailIndex ReadMailIndex(Files& files, CodePage& codePage, const Text& store, const GoOn& goOn)
{
    MailIndex index{ReadStore(files, store), {}, {}};
    for (std::size_t i = 0; i < index.store.directories.size(); ++i) {
        const StoreDirectory& directory = index.store.directories[i];
        if (directory.isLink || directory.error != FileError::none) index.unread.push_back(directory.path);
        for (const DirectoryEntry& file : directory.emails) {
            index.stopped = !goOn(index.emails.size(), index.store.emails);
            if (index.stopped) return index;
            IndexedEmail& email = index.emails.emplace_back();
            email.directory = i;
            email.file = file.name;
            email.size = file.size;
            const Text path = PathOf(directory, file.name);
            if (file.kind == EntryKind::file && ReadEmail(files, codePage, path, email)) continue;
            email.subject = file.name;
            index.unread.push_back(path);
        }
    }
    return index;
}

FileError WriteCsv(Files& files, const MailIndex& index, const Text& path)
{
    constexpr std::string_view kTitles =
        "Folder,File,Date,From,To,Cc,Subject,Size,Attachment,Message-ID,To count,Cc count,Bcc count\r\n";
    ReplacingFile file(files, path, kTitles);
    file.Write("\xEF\xBB\xBF");
    file.Write(kTitles);
    for (const IndexedEmail& email : index.emails) {
        std::string line = Cell(index.store.directories[email.directory].folder);
        const auto add = [&line](const std::string& cell) { line += "," + cell; };
        add(Cell(email.file));
        add(email.date ? IsoDate(*email.date) : "");
        for (const Text* text : {&email.from, &email.to, &email.cc, &email.subject}) add(Cell(*text));
        add(std::to_string(email.size));
        add(email.attachment ? "yes" : "no");
        add(Cell(email.messageId));
        for (const std::size_t count : {email.toCount, email.ccCount, email.bccCount})
            add(std::to_string(count));
        file.Write(line + "\r\n");
    }
    return file.Finish();
}

ReplacingFile::ReplacingFile(Files& files, const Text& path, std::string_view mark)
    : files_(files), path_(path), mark_(mark)
{
    Text beside;
    file_ = OpenBeside(files, path, beside, error_);
    if (file_) beside_ = beside;
}

ReplacingFile::~ReplacingFile()
{
    file_.reset();
    if (!beside_.empty()) (void)files_.Delete(beside_);
}

void ReplacingFile::Write(std::string_view bytes)
{
    constexpr std::size_t kEnough = 1 << 20;
    piece_ += bytes;
    if (piece_.size() >= kEnough) WritePiece();
}

void ReplacingFile::WritePiece()
{
    if (error_ == FileError::none) error_ = file_->WriteAt(file_->Size(), piece_.data(), piece_.size());
    piece_.clear();
}

FileError ReplacingFile::Finish()
{
    WritePiece();
    if (error_ == FileError::none) error_ = file_->Flush();
    file_.reset();
    const bool isThere = files_.FileExists(path_);
    if (error_ == FileError::none && isThere && !IsMarked(files_, path_, mark_)) error_ = FileError::exists;
    if (error_ != FileError::none) return error_;
    error_ = isThere ? files_.Replace(beside_, path_) : files_.Rename(beside_, path_);
    if (error_ == FileError::none) beside_.clear(); // it has the other name now
    return error_;
}
