#include "mail/modEmailAnalysis.h"

#include "mail/Addresses.h"
#include "mail/EncodedWords.h"
#include "mail/HeaderDates.h"
#include "text/Numbers.h"

#include <algorithm>
#include <array>

namespace {

// Header names, line ends and the attachment mark are ASCII, whose letters no other byte folds onto.
constexpr std::array<char, 256> MakeLowerCase()
{
    std::array<char, 256> lower{};
    for (std::size_t i = 0; i < lower.size(); ++i)
        lower[i] = static_cast<char>(i >= 'A' && i <= 'Z' ? i + 32 : i);
    return lower;
}

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

// What the header block of a file says, in the order of the queries of ReadHeaders.
struct Headers {
    Text deliveryDate, from, to, bcc, cc, subject, date, received;
};

Headers ReadHeaders(std::string_view block, CodePage& codePage)
{
    HeaderQuery queries[] = {{"Delivery-date:"}, {"From:"},          {"To:"}, {"Bcc:"}, {"Cc:"}, {"Subject:"},
                             {"Date:"},          {"Received:", true}};
    CollectHeaders(block, queries);
    const auto value = [&](std::size_t i) { return codePage.FromAnsi(queries[i].value); };
    return {value(0), value(1), value(2), value(3), value(4), value(5), value(6), value(7)};
}

void FillSummary(EmlSummary& summary, Headers& headers, const EmlContext& context)
{
    CodePage& codePage = context.codePage;
    const auto addressKey = [&codePage](const Text& value) {
        return DetagAddressList(DecodeHeaderText(value, true, codePage), false);
    };
    summary.DeliveryDate = ParseHeaderDate(headers.deliveryDate, context.locale);
    summary.From = DecodeHeaderText(headers.from, false, codePage);
    summary.FromKey = addressKey(headers.from);
    summary.To = DecodeHeaderText(headers.to, false, codePage);
    summary.ToKey = addressKey(headers.to);
    summary.Bcc = headers.bcc;
    summary.Cc = headers.cc;
    summary.Subject = DecodeHeaderText(headers.subject, false, codePage);
    summary.SubjectKey = DecodeHeaderText(headers.subject, true, codePage);
    // Kept: the list shows the en dash as the control character 22, and the key must match the list.
    for (const char16_t enDash : codePage.FromAnsi("\x96"))
        std::replace(summary.SubjectKey.begin(), summary.SubjectKey.end(), enDash, u'\x16');
    summary.SentDate = ParseHeaderDate(headers.date, context.locale);
    Text lastHop(TrimSpaces(FieldOf(headers.received, u";", 2)));
    summary.ReceivedDate = ParseHeaderDate(lastHop, context.locale);
    summary.DeliveryDateText = FormatListDate(summary.DeliveryDate, false);
    summary.SentDateText = FormatListDate(summary.SentDate, false);
    summary.ReceivedDateText = FormatListDate(summary.ReceivedDate, false);
}

} // namespace

Text ReadEmlSummary(const Text& path, const EmlContext& context, EmlSummary& summary)
{
    summary = {};
    if (FileExtension(path) != u"eml") return {};
    std::string message;
    const FileError error = context.files.ReadWhole(path, message);
    if (error != FileError::none) return Describe(error);
    EmlSummary read;
    read.FileName = FileNameOf(path);
    read.FolderPath = FolderOf(path, context.firstFolder);
    read.HasAttachment = HasAttachmentMark(message);
    KeepHeaderBlock(message);
    Headers headers = ReadHeaders(message, context.codePage);
    message = std::string(); // the values may be as large as the file
    try {
        FillSummary(read, headers, context);
    } catch (const ValueFault& fault) {
        return fault.Words();
    }
    summary = std::move(read);
    return {};
}

Text FileExtension(TextView path)
{
    const Text name = FileNameOf(path);
    return FoldCase(name.substr(name.rfind(u'.') + 1)); // npos + 1 is 0: the whole name
}

Text FileNameOf(TextView path)
{
    const char16_t separator = path.find(u'\\') != TextView::npos ? u'\\' : u'/';
    return Text(path.substr(path.rfind(separator) + 1));
}

Text FolderOf(TextView path, TextView firstFolder)
{
    const std::size_t start = FindNoCase(path, firstFolder);
    if (start != TextView::npos) path.remove_prefix(start);
    const char16_t separator = path.find(u'\\') != TextView::npos ? u'\\' : u'/';
    const std::size_t last = path.rfind(separator);
    return last == TextView::npos ? Text() : Text(path.substr(0, last));
}

void CollectHeaders(std::string_view block, std::span<HeaderQuery> queries)
{
    for (std::size_t start = 0; start < block.size();) {
        const std::size_t end = std::min(block.find("\r\n", start), block.size());
        const std::string_view line = block.substr(start, end - start);
        start = end + 2;
        if (line.empty()) continue;
        for (HeaderQuery& query : queries) {
            if (query.closed || Lower(query.name[0]) != Lower(line[0]) || !StartsWithName(line, query.name))
                continue;
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
    static constexpr std::string_view kMark = "content-disposition: attachment;\r\n";
    // How far the mark may move when this byte stands under its last one. Nothing in the mark but its end is
    // a line feed, and a byte that is not in it at all moves it by its whole length.
    static constexpr auto kSkip = [] {
        std::array<std::uint8_t, 256> skip{};
        skip.fill(kMark.size());
        for (std::size_t i = 0; i + 1 < kMark.size(); ++i) {
            const auto byte = static_cast<unsigned char>(kMark[i]);
            skip[byte] = static_cast<std::uint8_t>(kMark.size() - 1 - i);
            if (byte >= 'a' && byte <= 'z') skip[byte - 32] = skip[byte];
        }
        return skip;
    }();
    for (std::size_t end = kMark.size() - 1; end < message.size();
         end += kSkip[static_cast<unsigned char>(message[end])]) {
        if (message[end] == '\n' && StartsWithName(message.substr(end + 1 - kMark.size()), kMark))
            return true;
    }
    return false;
}
