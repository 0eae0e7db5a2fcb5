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

std::string_view FirstLine(std::string_view text) // with its line end
{
    const std::size_t end = text.find("\r\n");
    return text.substr(0, end == text.npos ? end : end + 2);
}

// Takes the first header off a message, with its line end: as it stands there, or joined of the lines that
// continue it. Behind the last one nothing is left: an empty line ends the headers.
std::string_view TakeHeader(std::string_view& message, std::string& joined)
{
    joined.clear();
    std::string_view line;
    for (;;) {
        line = FirstLine(message);
        message.remove_prefix(line.size());
        if (message.starts_with('\t')) { // Kept: joined without a space
            joined.append(line, 0, line.size() - 2);
            message.remove_prefix(1);
        } else if (message.starts_with(' ')) {
            joined.append(line);
        } else {
            break;
        }
    }
    if (message.starts_with("\r\n")) {
        line.remove_suffix(1); // Kept: the CR of the last header stays in its value
        message = {};
    }
    if (joined.empty()) return line;
    joined.append(line);
    ReplaceInPlace(joined, "\r\n ", " ");
    return joined;
}

// Of what stands behind the name, line end included if there is one.
std::string ValueOf(std::string_view line)
{
    std::string value(line);
    for (std::size_t tab = value.find('\t'); tab != value.npos; tab = value.find('\t', tab)) value[tab] = ' ';
    CollapseSpacesIn(value);
    if (value.ends_with("\r\n")) value.resize(value.size() - 2);
    value.resize(value.find_last_not_of(' ') + 1); // npos + 1 is 0
    value.erase(0, std::min(value.find_first_not_of(' '), value.size()));
    return value;
}

void CollectLine(std::string_view line, std::span<HeaderQuery> queries)
{
    const char first = Lower(line[0]); // tells most lines from all that is sought
    for (HeaderQuery& query : queries) {
        if (first != Lower(query.name[0]) || query.closed || !StartsWithName(line, query.name)) continue;
        query.closed = query.firstOnly;
        std::string value = ValueOf(line.substr(query.name.size()));
        if (query.value.empty())
            query.value = std::move(value);
        else if (!value.empty())
            query.value.append("; ").append(value);
    }
}

// What the headers of a file say. A value stays bytes until its turn comes: it may be as large as the file,
// and its text takes twice as much.
struct Headers {
    enum Name { deliveryDate, from, to, bcc, cc, subject, date, received }; // in the order of the queries
    HeaderQuery queries[8] = {
        {"Delivery-date:"}, {"From:"},          {"To:"}, {"Bcc:"}, {"Cc:"}, {"Subject:"},
        {"Date:"},          {"Received:", true}};

    // Cuts what stands between the first semicolons out of the value. (In no code page a semicolon is part of
    // another character.)
    void KeepSecondField(Name name)
    {
        std::string& value = queries[name].value;
        const std::size_t first = value.find(';');
        value.erase(0, first == value.npos ? first : first + 1);
        value.resize(std::min(value.find(';'), value.size()));
    }

    // Turns the value into text and lets go of it.
    Text Take(Name name, CodePage& codePage)
    {
        const std::string taken = std::move(queries[name].value);
        return codePage.FromAnsi(taken);
    }
};

// The file's bytes are gone when it is done.
FileError ReadFile(const Text& path, Files& files, Headers& headers, bool& hasAttachment)
{
    std::string message;
    const FileError error = files.ReadWhole(path, message);
    if (error != FileError::none) return error;
    hasAttachment = HasAttachmentMark(message);
    CollectHeaders(message, headers.queries);
    return FileError::none;
}

// The two forms of a value, which encoded words alone make different: what is shown, and the answer, which
// may be part of either text. The value has no runs of spaces any more.
TextView DecodeInto(Text value, Text& shown, Text& listed, CodePage& codePage)
{
    shown = std::move(value);
    if (shown.find(u"=?") == Text::npos) return shown;
    HeaderTexts decoded = DecodeHeaderTexts(shown, codePage);
    shown = std::move(decoded.display);
    return listed = std::move(decoded.comparison);
}

void FillAddresses(Text value, Text& shown, Text& key, CodePage& codePage)
{
    Text listed;
    key = DetagAddressList(DecodeInto(std::move(value), shown, listed, codePage), false);
}

void FillSubject(Text value, Text& shown, Text& key, CodePage& codePage)
{
    Text listed;
    key = DecodeInto(std::move(value), shown, listed, codePage);
    // Kept: the list shows the en dash as the control character 22, and the key must match the list.
    // Not in the code pages that have none, where the byte alone becomes a question mark.
    const Text enDash = codePage.FromAnsi(kEnDash);
    if (enDash.size() == 1 && codePage.ToAnsi(enDash) == kEnDash)
        std::replace(key.begin(), key.end(), enDash[0], u'\x16');
}

void FillSummary(EmlSummary& summary, Headers& headers, const EmlContext& context)
{
    CodePage& codePage = context.codePage;
    const auto take = [&](Headers::Name name) { return headers.Take(name, codePage); };
    summary.DeliveryDate = HeaderDateOf(take(Headers::deliveryDate), context.locale);
    FillAddresses(take(Headers::from), summary.From, summary.FromKey, codePage);
    FillAddresses(take(Headers::to), summary.To, summary.ToKey, codePage);
    summary.Bcc = take(Headers::bcc);
    summary.Cc = take(Headers::cc);
    FillSubject(take(Headers::subject), summary.Subject, summary.SubjectKey, codePage);
    summary.SentDate = HeaderDateOf(take(Headers::date), context.locale);
    headers.KeepSecondField(Headers::received);
    summary.ReceivedDate = HeaderDateOf(TrimSpaces(take(Headers::received)), context.locale);
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

TextView NameIn(TextView path)
{
    return path.substr(NameStart(path));
}

TextView ExtensionOf(TextView name)
{
    return name.substr(name.rfind(u'.') + 1); // npos + 1 is 0: the whole name
}

} // namespace

Text ReadEmlSummary(const Text& path, const EmlContext& context, EmlSummary& summary)
{
    summary = {};
    const TextView name = NameIn(path);
    if (!EqualNoCase(ExtensionOf(name), u"eml")) return {};
    try {
        Headers headers;
        const FileError error = ReadFile(path, context.files, headers, summary.HasAttachment);
        if (error != FileError::none) return Describe(error);
        summary.FileName = name;
        summary.FolderPath = FolderOf(path, context.firstFolder);
        FillSummary(summary, headers, context);
        return {};
    } catch (const ValueFault& fault) {
        summary = {};
        return fault.Words();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) { // more characters than a text can have
    }
    summary = {};
    return Describe(FileError::outOfMemory);
}

Text FileExtension(TextView path)
{
    return FoldCase(ExtensionOf(NameIn(path)));
}

Text FileNameOf(TextView path)
{
    return Text(NameIn(path));
}

Text FolderOf(TextView path, TextView firstFolder)
{
    const std::size_t start = FindNoCase(path, firstFolder);
    if (start != TextView::npos) path.remove_prefix(start);
    const std::size_t name = NameStart(path);
    return Text(path.substr(0, name - std::min<std::size_t>(name, 1)));
}

void CollectHeaders(std::string_view message, std::span<HeaderQuery> queries)
{
    std::string joined; // whose memory serves for all
    while (!message.empty()) {
        std::string_view header = TakeHeader(message, joined);
        while (!header.empty()) {
            // Joining may lay bare another line end.
            const std::string_view line = joined.empty() ? header : FirstLine(header);
            header.remove_prefix(line.size());
            CollectLine(line, queries);
        }
    }
}

std::string HeaderValue(std::string_view message, std::string_view name, bool firstOnly)
{
    HeaderQuery query{name, firstOnly};
    CollectHeaders(message, {&query, 1});
    return query.value;
}

bool HasAttachmentMark(std::string_view message)
{
    // Up to its semicolon, which in most messages is the rarest of its characters.
    static constexpr std::string_view kMark = "content-disposition: attachment", kRest = ";\r\n";
    for (std::size_t at = message.find(kRest); at != message.npos; at = message.find(kRest, at + 1))
        if (at >= kMark.size() && StartsWithName(message.substr(at - kMark.size()), kMark)) return true;
    return false;
}
