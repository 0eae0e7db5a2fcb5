#include "folders/ShownEmail.h"

#include "mail/AddressList.h"
#include "mail/MessageDates.h"
#include "mail/ReadableText.h"
#include "oe/MessageDetails.h"

#include <algorithm>

namespace {

constexpr char16_t kParting = u'\n'; // between the addresses of a list, none of which holds it

// A list may show what the code page lacks, or "?" in its place.
ShownText ShownIn(const Text& cell, Text (*read)(const Text& cell, CodePage& codePage), CodePage& codePage)
{
    ShownText shown;
    shown.forms = {read(cell, codePage), read(codePage.FromAnsi(codePage.ToAnsi(cell)), codePage)};
    if (shown.forms[0] == shown.forms[1]) shown.forms.pop_back();
    return shown;
}

// Not what was sent in a character set that is not known here, or in none.
bool IsCertain(std::string_view value, TextView readable)
{
    const bool ascii = std::all_of(value.begin(), value.end(), [](char byte) { return byte >= 0; });
    return ascii && readable.find(u"=?") == TextView::npos;
}

ShownText ShownSubject(std::string_view value, CodePage& codePage)
{
    const Text readable = ReadableText(value, {}, codePage);
    ShownText shown = ShownIn(
        readable, [](const Text& cell, CodePage& page) { return ComparedText(SubjectIn(cell, page)); },
        codePage);
    shown.isCertain = IsCertain(value, readable);
    return shown;
}

// By their names. How comments and groups are shown is not known.
ShownText ShownAddresses(std::string_view value, CodePage& codePage)
{
    Text cell;
    for (const MailAddress& address : ReadAddresses(value)) {
        if (!cell.empty()) cell += u"; ";
        cell += ReadableText(address.name.empty() ? address.address : address.name, {}, codePage);
    }
    ShownText shown = ShownIn(
        cell, [](const Text& text, CodePage&) { return ComparedList(AddressesIn(text)); }, codePage);
    shown.isCertain = IsCertain(value, cell) && value.find_first_of("(:") == value.npos;
    return shown;
}

// Not of the calendar's last year, whose end may be in the next one elsewhere.
std::optional<std::int64_t> DateIn(std::string_view value)
{
    constexpr std::int64_t kYear9999 = 253370764800;
    const std::optional<std::int64_t> moment = ReadMessageDate(value);
    return moment && *moment < kYear9999 ? moment : std::nullopt;
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
    ShownEmail shown;
    shown.subject = ShownSubject(FieldValue(fields, "subject"), codePage);
    shown.from = ShownAddresses(FieldValue(fields, "from"), codePage);
    shown.to = ShownAddresses(FieldValue(fields, "to"), codePage);
    shown.sent = DateIn(FieldValue(fields, "date"));
    std::string_view hop = FieldValue(fields, "received"); // the topmost: the last one
    const std::size_t semicolon = hop.rfind(';');          // one too many is seen in real mail
    if (semicolon == hop.npos) hop = {};
    for (const std::string_view date :
         {hop.substr(std::min(semicolon + 1, hop.size())), FieldValue(fields, "delivery-date")})
        if (const auto moment = DateIn(date)) shown.received.push_back(*moment);
    return shown;
}
