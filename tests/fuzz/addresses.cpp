// addresses.cpp: address lists of any text, against the plain way of finding their separators.
#include "mail/Addresses.h"
#include "platform/posix/CodePage1252.h"
#include "tests/fuzz/Require.h"

#include <algorithm>

namespace {

// The separator as the rule says it: quotes counted anew for every candidate.
Text PlainSeparator(TextView value)
{
    Text text = ReplaceAll(ReplaceAll(value, u"\\'", u"\x01"), u"\\\"", u"\x02");
    text = ReplaceAll(ReplaceAll(text, u"\\<", u"\x03"), u"\\>", u"\x04");
    text = ReplaceAll(ReplaceAll(ReplaceAll(text, u"\r\n", u" "), u"\r", u" "), u"\n", u" ");
    const std::size_t single = text.find(u'\''), twofold = text.find(u'"');
    const Text quote = single != Text::npos && (twofold == Text::npos || single < twofold) ? u"'" : u"\"";
    Text separator, quoted;
    for (const Text& candidate : {Text(u","), Text(u"; ")}) {
        for (std::size_t at = text.find(candidate); at != Text::npos; at = text.find(candidate, at + 1)) {
            const bool odd =
                CountOf(text.substr(0, at), quote) % 2 == 1 && CountOf(text.substr(at), quote) % 2 == 1;
            (odd ? quoted : separator) = candidate;
        }
    }
    return separator.empty() ? quoted : separator;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CodePage1252 codePage;
    const Text value = codePage.FromAnsi(BytesOf(data, size));
    if (size <= 4096) Require(AddressSeparator(value) == PlainSeparator(value), "the separator");
    const Text names = DetagAddressList(value, false);
    Require(names.find(u'\r') == Text::npos && names.find(u'\n') == Text::npos, "no line breaks are left");
    Require(std::none_of(names.begin(), names.end(), [](char16_t unit) { return unit >= 1 && unit <= 6; }),
            "no placeholder is left");
    Require(names.size() <= 3 * value.size(), "nothing grows but by its escapes");

    const Text bare = BareAddressOf(value);
    if (value.find(u'@') != Text::npos)
        Require(bare.find_first_of(u"\" ,;'") == Text::npos && bare.find(u'@') != Text::npos, "one address");
    else
        Require(bare == TrimSpaces(bare), "a trimmed name");
    return 0;
}
