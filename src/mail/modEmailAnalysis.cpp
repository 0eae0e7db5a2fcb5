#include "mail/modEmailAnalysis.h"

#include "mail/Addresses.h"
#include "mail/EncodedWords.h"
#include "mail/HeaderDates.h"
#include "text/Numbers.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

// Header names, line ends and the attachment mark are ASCII, whose letters no other byte folds onto.
constexpr std::array<char, 256> MakeLowerCase()
{
    std::array<char, 256> lower{};
    for (std::size_t i = 0; i < lower.size(); ++i)
        lower[i] = static_cast<char>(i >= 'A' && i <= 'Z' ? i + 32 : i);
    return lower;
}

constexpr std::string_view kEnDash = "\x96"; // in the ANSI code pages of Windows but the East Asian ones

constexpr std::array<char, 256> kLowerCase = MakeLowerCase();

char Lower(char byte)
{
    return kLowerCase[static_cast<unsigned char>(byte)];
}

bool StartsWithName(std::string_view line, std::string_view name)
{
    return line.size() >= name.size() && std::equal(name.begin(), name.end(), line.begin(),
                                                    [](char a, char b) { return Lower(a) == Lower(b); });
}

std::string_view TrimmedBytes(std::string_view bytes)
{
    const std::size_t first = bytes.find_first_not_of(' ');
    if (first == bytes.npos) return {};
    return bytes.substr(first, bytes.find_last_not_of(' ') - first + 1);
}

// replacement is no longer than sought.
void ReplaceInPlace(std::string& text, std::string_view sought, std::string_view replacement)
{
    std::size_t found = text.find(sought);
    if (found == text.npos) return;
    std::size_t out = found;
    for (;;) {
        out += replacement.copy(&text[out], replacement.size());
        const std::size_t start = found + sought.size();
        found = text.find(sought, start);
        const std::size_t end = std::min(found, text.size());
        std::char_traits<char>::move(&text[out], &text[start], end - start);
        out += end - start;
        if (found == text.npos) break;
    }
    text.resize(out);
}

// What the header block of a file says, in the order of the queries of ReadHeaders. A value stays bytes
// until its turn comes: it may be as large as the file, and its text takes twice as much.
struct Headers {
    std::string deliveryDate, from, to, bcc, cc, subject, date, received;
};

Headers ReadHeaders(std::string_view block)
{
    HeaderQuery queries[] = {{"Delivery-date:"}, {"From:"},          {"To:"}, {"Bcc:"}, {"Cc:"}, {"Subject:"},
                             {"Date:"},          {"Received:", true}};
    CollectHeaders(block, queries);
    const auto value = [&queries](std::size_t i) { return std::move(queries[i].value); };
    return {value(0), value(1), value(2), value(3), value(4), value(5), value(6), value(7)};
}

// The file's bytes are gone when it is done.
FileError ReadFile(const Text& path, Files& files, Headers& headers, bool& hasAttachment)
{
    std::string message;
    const FileError error = files.ReadWhole(path, message);
    if (error != FileError::none) return error;
    hasAttachment = HasAttachmentMark(message);
    KeepHeaderBlock(message);
    headers = ReadHeaders(message);
    return FileError::none;
}

// Turns the bytes into text and lets go of them.
Text TakeText(std::string& bytes, CodePage& codePage)
{
    const std::string taken = std::move(bytes);
    return codePage.FromAnsi(taken);
}

void FillAddresses(Text value, Text& shown, Text& key, CodePage& codePage)
{
    shown = DecodeHeaderText(value, false, codePage);
    Text decoded = DecodeHeaderText(value, true, codePage);
    Text().swap(value); // gives the memory back, as an assignment would not
    key = DetagAddressList(std::move(decoded), false);
}

void FillSubject(TextView value, Text& shown, Text& key, CodePage& codePage)
{
    shown = DecodeHeaderText(value, false, codePage);
    key = DecodeHeaderText(value, true, codePage);
    // Kept: the list shows the en dash as the control character 22, and the key must match the list.
    // Not in the code pages that have none, where the byte alone becomes a question mark.
    const Text enDash = codePage.FromAnsi(kEnDash);
    if (enDash.size() == 1 && codePage.ToAnsi(enDash) == kEnDash)
        std::replace(key.begin(), key.end(), enDash[0], u'\x16');
}

void FillSummary(EmlSummary& summary, Headers& headers, const EmlContext& context)
{
    CodePage& codePage = context.codePage;
    summary.DeliveryDate = HeaderDateOf(TakeText(headers.deliveryDate, codePage), context.locale);
    FillAddresses(TakeText(headers.from, codePage), summary.From, summary.FromKey, codePage);
    FillAddresses(TakeText(headers.to, codePage), summary.To, summary.ToKey, codePage);
    summary.Bcc = TakeText(headers.bcc, codePage);
    summary.Cc = TakeText(headers.cc, codePage);
    FillSubject(TakeText(headers.subject, codePage), summary.Subject, summary.SubjectKey, codePage);
    summary.SentDate = HeaderDateOf(TakeText(headers.date, codePage), context.locale);
    const Text received = TakeText(headers.received, codePage);
    summary.ReceivedDate = HeaderDateOf(Text(TrimSpaces(FieldOf(received, u";", 2))), context.locale);
    summary.DeliveryDateText = FormatListDate(summary.DeliveryDate, false);
    summary.SentDateText = FormatListDate(summary.SentDate, false);
    summary.ReceivedDateText = FormatListDate(summary.ReceivedDate, false);
}

// Of the file's name in its path.
std::size_t NameStart(TextView path)
{
    const char16_t separator = path.find(u'\\') != TextView::npos ? u'\\' : u'/';
    return path.rfind(separator) + 1; // npos + 1 is 0
}

} // namespace

Text ReadEmlSummary(const Text& path, const EmlContext& context, EmlSummary& summary)
{
    summary = {};
    if (FileExtension(path) != u"eml") return {};
    try {
        EmlSummary read;
        Headers headers;
        const FileError error = ReadFile(path, context.files, headers, read.HasAttachment);
        if (error != FileError::none) return Describe(error);
        read.FileName = FileNameOf(path);
        read.FolderPath = FolderOf(path, context.firstFolder);
        FillSummary(read, headers, context);
        summary = std::move(read);
        return {};
    } catch (const ValueFault& fault) {
        return fault.Words();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) { // more characters than a text can have
    }
    return Describe(FileError::outOfMemory);
}

Text FileExtension(TextView path)
{
    const TextView name = path.substr(NameStart(path));
    return FoldCase(name.substr(name.rfind(u'.') + 1)); // npos + 1 is 0: the whole name
}

Text FileNameOf(TextView path)
{
    return Text(path.substr(NameStart(path)));
}

Text FolderOf(TextView path, TextView firstFolder)
{
    const std::size_t start = FindNoCase(path, firstFolder);
    if (start != TextView::npos) path.remove_prefix(start);
    const std::size_t name = NameStart(path);
    return Text(path.substr(0, name - std::min<std::size_t>(name, 1)));
}

void CollectHeaders(std::string_view block, std::span<HeaderQuery> queries)
{
    for (std::size_t start = 0; start < block.size();) {
        const std::size_t end = std::min(block.find("\r\n", start), block.size());
        const std::string_view line = block.substr(start, end - start);
        start = end + 2;
        if (line.empty()) continue;
        const char first = Lower(line[0]); // tells most lines from all that is sought
        for (HeaderQuery& query : queries) {
            if (first != Lower(query.name[0]) || query.closed || !StartsWithName(line, query.name)) continue;
            query.closed = query.firstOnly;
            const std::string_view value = TrimmedBytes(line.substr(query.name.size()));
            if (!value.empty()) query.value.append(query.value.empty() ? "" : "; ").append(value);
        }
    }
}

std::string HeaderValue(std::string_view block, std::string_view name, bool firstOnly)
{
    HeaderQuery query{name, firstOnly};
    CollectHeaders(block, {&query, 1});
    return query.value;
}

void KeepHeaderBlock(std::string& message)
{
    // Kept: the block ends with the CR of its last line, which stays in that header's value.
    const std::size_t blank = message.find("\r\n\r\n");
    if (blank != message.npos) message.resize(blank + 1);
    ReplaceInPlace(message, "\r\n\t", ""); // Kept: joined without a space
    ReplaceInPlace(message, "\r\n ", " ");
    for (std::size_t tab = message.find('\t'); tab != message.npos; tab = message.find('\t', tab))
        message[tab] = ' ';
    CollapseSpacesIn(message);
}

bool HasAttachmentMark(std::string_view message)
{
    // Up to its semicolon, which in most messages is the rarest of its characters.
    static constexpr std::string_view kMark = "content-disposition: attachment", kRest = ";\r\n";
    for (std::size_t at = message.find(';'); at != message.npos; at = message.find(';', at + 1)) {
        if (at >= kMark.size() && message.substr(at, kRest.size()) == kRest &&
            StartsWithName(message.substr(at - kMark.size()), kMark))
            return true;
    }
    return false;
}
