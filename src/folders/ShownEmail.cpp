#include "folders/ShownEmail.h"

#include "mail/AddressList.h"
#include "mail/MessageDates.h"
#include "mail/ReadableText.h"
#include "oe/MessageDetails.h"

#include <algorithm>

namespace {

constexpr char16_t kParting = u'\n'; // between the addresses of a list, none of which holds it

// The header as clients join its lines that drop the tab by which one is continued. (Others put a blank.)
std::string WithoutTabs(std::string_view message)
{
    std::string header;
    for (std::size_t at = 0; at < message.size();) {
        const std::string_view line = TakeLine(message, at);
        if (line.empty()) break;
        const bool continues = line.front() == '\t' && !header.empty();
        if (continues) header.pop_back();
        header.append(line.substr(continues ? 1 : 0)).append("\n");
    }
    return header;
}

// The values that a field may have, and the character set of what it holds beside encoded words.
struct Field {
    std::vector<std::string_view> values;
    std::string_view charset;
};

// Not what was sent in a character set that is not known here, or in none.
bool IsCertain(std::string_view value, TextView readable)
{
    const bool isPlain = std::all_of(value.begin(), value.end(), [](char byte) { return byte >= ' '; });
    return isPlain && readable.find(u"=?") == TextView::npos;
}

// What the cell is compared by. A list may show what the code page lacks, or "?" in its place.
void AddForms(ShownText& shown, const Text& cell, Text (*read)(const Text& cell, CodePage& codePage),
              CodePage& codePage)
{
    for (const Text& form : {read(cell, codePage), read(codePage.FromAnsi(codePage.ToAnsi(cell)), codePage)})
        if (std::find(shown.forms.begin(), shown.forms.end(), form) == shown.forms.end())
            shown.forms.push_back(form);
}

ShownText ShownSubject(const Field& field, CodePage& codePage)
{
    ShownText shown;
    for (const std::string_view value : field.values) {
        const Text readable = ReadableText(value, field.charset, codePage);
        const auto read = [](const Text& cell, CodePage& page) {
            return ComparedText(SubjectIn(cell, page));
        };
        AddForms(shown, readable, read, codePage);
        // A client without the character set shows it as it was sent.
        if (value.find("=?") != value.npos) AddForms(shown, FromUtf8(value), read, codePage);
        shown.isCertain = shown.isCertain && IsCertain(value, readable);
    }
    return shown;
}

// By their names, which may stand in comments, if clients see them there. How else comments and groups are
// shown is not known.
ShownText ShownAddresses(const Field& field, CodePage& codePage)
{
    ShownText shown;
    for (const std::string_view value : field.values) {
        Text cell, bare;
        for (const MailAddress& address : ReadAddresses(value)) {
            if (!cell.empty()) cell += u"; ", bare += u"; ";
            const std::string& name = address.name.empty() ? address.address : address.name;
            cell += ReadableText(name, field.charset, codePage);
            bare += ReadableText(address.address, field.charset, codePage);
        }
        const auto read = [](const Text& text, CodePage&) { return ComparedList(AddressesIn(text)); };
        AddForms(shown, cell, read, codePage);
        const bool hasOnlyComments = value.find('(') != value.npos && value.find('<') == value.npos;
        if (hasOnlyComments) AddForms(shown, bare, read, codePage);
        // Where nobody is named the client may.
        shown.isCertain = shown.isCertain && IsCertain(value, cell) && !cell.empty() &&
                          value.find_first_of("(:") == value.npos;
    }
    return shown;
}

} // namespace

Text ComparedText(TextView shown)
{
    Text out;
    for (const char16_t unit : shown) {
        const bool isBlank = unit != u'\x16' && unit != kParting && (unit <= u' ' || unit == u'\xA0');
        if (isBlank && (out.empty() || out.back() == u' ')) continue;
        out += isBlank ? u' ' : unit == u'\x16' ? u'\u2013' : unit;
    }
    return Text(TrimSpaces(out));
}

Text ComparedList(const std::vector<Text>& addresses)
{
    Text out;
    for (const Text& address : addresses) {
        if (!out.empty()) out += kParting;
        out += address;
    }
    return ComparedText(out);
}

ShownEmail ShownOf(std::string_view message, CodePage& codePage)
{
    const MessageFields fields = ReadMessageFields(message);
    const MessageFields joined = ReadMessageFields(WithoutTabs(message));
    const std::string charset = FieldParameter(FieldValue(fields, "content-type"), "charset");
    const auto field = [&](std::string_view name) {
        Field found{{FieldValue(fields, name)}, charset};
        if (FieldValue(joined, name) != found.values[0]) found.values.push_back(FieldValue(joined, name));
        return found;
    };
    ShownEmail shown;
    shown.subject = ShownSubject(field("subject"), codePage);
    shown.from = ShownAddresses(field("from"), codePage);
    shown.to = ShownAddresses(field("to"), codePage);
    shown.sent = ReadMessageDate(FieldValue(fields, "date"));
    std::string_view hop = FieldValue(fields, "received"); // the topmost: the last one
    const std::size_t semicolon = hop.rfind(';');          // one too many is seen in real mail
    if (semicolon == hop.npos) hop = {};
    for (const std::string_view date :
         {hop.substr(std::min(semicolon + 1, hop.size())), FieldValue(fields, "delivery-date")})
        if (const auto moment = ReadMessageDate(date); moment && shown.received != std::vector{*moment})
            shown.received.push_back(*moment);
    return shown;
}
