// words.cpp: encoded words, base64 and UTF-8 in any header value.
#include "mail/EncodedWords.h"
#include "mail/modUTF8.h"
#include "platform/posix/CodePage1252.h"
#include "tests/fuzz/Require.h"
#include "text/Numbers.h"

#include <optional>

namespace {

std::optional<Text> Shown(TextView value, CodePage& codePage)
{
    try {
        return DecodeHeaderText(value, false, codePage);
    } catch (const ValueFault& fault) {
        Require(fault.Kind() == Fault::overflow, "only base64 can fail, by Overflow");
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CodePage1252 codePage;
    const Text value = codePage.FromAnsi(BytesOf(data, size));
    Text joined;
    bool words = false;
    for (const HeaderSegment& segment : SplitEncodedWords(value)) {
        joined += segment.text;
        words = words || segment.isWord;
        const bool delimited = segment.text.starts_with(u"=?") && segment.text.ends_with(u"?=");
        Require(!segment.isWord || (delimited && CountOf(segment.text, u"?") >= 4), "the form of a word");
    }
    Require(joined == value, "segments are the value");

    if (const std::optional<Text> shown = Shown(value, codePage)) {
        // A single blank comes between words and may vanish; otherwise plain text is left alone.
        if (!words && value != u" ")
            Require(value.find(u"=?") != Text::npos || *shown == CollapseSpaces(value), "plain text");
        Require(shown->size() <= value.size(), "nothing known decodes to more than it is coded in");
    }
    if (IsUtf8Text(value, codePage))
        Require(TextToBytes(Utf8ToText(value, codePage), codePage, BytesIn::utf8) ==
                    std::string(BytesOf(data, size).substr(0, BytesOf(data, size).find('\0'))),
                "valid UTF-8 comes back");
    return 0;
}
