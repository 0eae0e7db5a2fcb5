#include "mail/EncodedWords.h"

#include "mail/modUTF8.h"
#include "text/Numbers.h"

#include <array>

namespace {

constexpr std::uint8_t kNotBase64 = 64;

constexpr std::array<std::uint8_t, 256> MakeBase64Values()
{
    std::array<std::uint8_t, 256> values{};
    values.fill(kNotBase64);
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t i = 0; i < kAlphabet.size(); ++i)
        values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
    return values;
}

constexpr std::array<std::uint8_t, 256> kBase64Values = MakeBase64Values();

// The character tables: what a byte stands for, empty where a set defines nothing.
Text Latin1Chars(unsigned byte)
{
    if (byte == 127) return u"DEL"; // Kept: the list's keys spell the delete character out
    if (byte == 160) return u" ";   // Kept: a no-break space is a plain one
    if (byte < 32 || (byte >= 128 && byte < 160)) return {};
    return Text(1, static_cast<char16_t>(byte));
}

// Only where the set differs from ISO-8859-1.
Text Latin9Chars(unsigned byte)
{
    switch (byte) {
    case 0xA4:
        return u"\u20AC";
    case 0xA6:
        return u"\u0160";
    case 0xA8:
        return u"\u0161";
    case 0xB4:
        return u"\u017D";
    case 0xB8:
        return u"\u017E";
    case 0xBC:
        return u"\u0152";
    case 0xBD:
        return u"\u0153";
    case 0xBE:
        return u"\u0178";
    default:
        return {};
    }
}

// Only 0x80 to 0x9F; five of these positions are undefined and stay empty.
Text Cp1252Chars(unsigned byte)
{
    static constexpr char16_t kChars[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                            0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    if (byte < 0x80 || byte > 0x9F || kChars[byte - 0x80] == 0) return {};
    return Text(1, kChars[byte - 0x80]);
}

enum class Charset { none = 0, latin9 = 2, utf8 = 3, cp1252 = 4 };

Charset CharsetOf(TextView name)
{
    // Kept: ISO-8859-1 is read as Windows-1252, which most mail under that name really is.
    if (EqualNoCase(name, u"iso-8859-1") || EqualNoCase(name, u"windows-1252")) return Charset::cp1252;
    if (EqualNoCase(name, u"iso-8859-15")) return Charset::latin9;
    if (EqualNoCase(name, u"utf-8")) return Charset::utf8;
    return Charset::none;
}

unsigned HexDigit(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10u;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10u;
    return 16;
}

// The byte that two hexadecimal digits name; 0 for anything else, which no table defines.
unsigned HexPair(TextView pair)
{
    if (pair.size() < 2) return 0;
    const unsigned high = HexDigit(pair[0]);
    const unsigned low = HexDigit(pair[1]);
    return high > 15 || low > 15 ? 0 : high * 16 + low;
}

// Kept: also done to what came from base64, so "_" and "=" mean the same there.
void AppendUnescaped(Text& out, TextView payload, Charset charset)
{
    for (std::size_t i = 0; i < payload.size(); ++i) {
        if (payload[i] == u'_') {
            out += u' ';
        } else if (payload[i] == u'=') {
            const unsigned byte = HexPair(payload.substr(i + 1, 2));
            const Text special = charset == Charset::latin9 ? Latin9Chars(byte) : Cp1252Chars(byte);
            out += special.empty() ? Latin1Chars(byte) : special;
            i += 2;
        } else {
            out += payload[i];
        }
    }
}

void AppendPlain(HeaderTexts& out, TextView text)
{
    out.display += text;
    out.comparison += text;
}

// The parts of an encoded word: "=?charset?encoding?payload?=".
struct WordParts {
    Charset charset;
    bool base64;
    TextView payload;
};

WordParts PartsOf(TextView word)
{
    const std::size_t charsetEnd = word.find(u'?', 2);
    const std::size_t encodingEnd = word.find(u'?', charsetEnd + 1);
    const TextView encoding = word.substr(charsetEnd + 1, encodingEnd - charsetEnd - 1);
    return {CharsetOf(word.substr(2, charsetEnd - 2)), EqualNoCase(encoding, u"b"),
            word.substr(encodingEnd + 1, word.size() - encodingEnd - 3)};
}

void AppendWord(HeaderTexts& out, TextView word, CodePage& codePage)
{
    const WordParts parts = PartsOf(word);
    if (parts.charset == Charset::none) {
        AppendPlain(out, word);
        return;
    }
    if (parts.payload.empty()) return;
    Text decoded;
    TextView payload = parts.payload;
    if (parts.base64) payload = decoded = Base64Decode(payload, codePage);
    if (parts.charset == Charset::utf8) {
        // Kept: the list shows the bytes as they stand, and quoted words keep their "=" escapes.
        out.display += Utf8ToText(payload, codePage);
        out.comparison += payload;
        return;
    }
    const std::size_t start = out.display.size();
    AppendUnescaped(out.display, payload, parts.charset);
    out.comparison += u' '; // Kept: the list shows a space before each such word
    out.comparison.append(out.display, start);
}

// Where the encoded word at the start of text ends; npos when it is never closed.
std::size_t EndOfWord(TextView text)
{
    std::size_t mark = 1; // the "?" of "=?"
    for (int i = 0; i < 2; ++i) {
        mark = text.find(u'?', mark + 1);
        if (mark == TextView::npos) return mark;
    }
    // Behind the third "?": the payload may start with "=", which must not look like the end.
    const std::size_t closing = text.find(u"?=", mark + 1);
    return closing == TextView::npos ? closing : closing + 2;
}

// Takes the first segment off a text.
HeaderSegment TakeSegment(TextView& rest)
{
    std::size_t end = rest.find(u"=?");
    const bool atWord = end == 0;
    if (atWord) end = EndOfWord(rest);
    const bool isWord = atWord && end != TextView::npos; // one that is never closed is plain to the end
    const TextView text = rest.substr(0, end);
    rest.remove_prefix(text.size());
    return {text, isWord};
}

} // namespace

std::vector<HeaderSegment> SplitEncodedWords(TextView value)
{
    std::vector<HeaderSegment> segments;
    do segments.push_back(TakeSegment(value));
    while (!value.empty());
    return segments;
}

HeaderTexts DecodeHeaderTexts(TextView value, CodePage& codePage)
{
    HeaderTexts out;
    out.display.reserve(value.size());
    out.comparison.reserve(value.size());
    while (!value.empty()) { // one by one: a long value may have millions
        const HeaderSegment segment = TakeSegment(value);
        if (segment.isWord)
            AppendWord(out, segment.text, codePage);
        else if (segment.text != u" ") // the space between two encoded words
            AppendPlain(out, segment.text);
    }
    CollapseSpacesIn(out.display);
    CollapseSpacesIn(out.comparison);
    return out;
}

Text Base64Decode(TextView text, CodePage& codePage)
{
    const std::string coded = TextToBytes(text, codePage);
    const auto valueAt = [&coded](std::size_t i) {
        return unsigned(kBase64Values[static_cast<unsigned char>(coded[i])]);
    };
    std::string bytes;
    bytes.reserve(coded.size() / 4 * 3);
    for (std::size_t i = 0; i + 4 <= coded.size(); i += 4) {
        const unsigned a = valueAt(i), b = valueAt(i + 1), c = valueAt(i + 2), d = valueAt(i + 3);
        if (a == kNotBase64) throw ValueFault(Fault::overflow); // the first byte would exceed 255
        // Kept: elsewhere a wrong character counts as 64 and spoils its bits, no more.
        bytes += static_cast<char>(a << 2 | b >> 4);
        bytes += static_cast<char>((b & 15) << 4 | c >> 2);
        bytes += static_cast<char>((c & 3) << 6 | d);
    }
    // Kept: the padding counts even when it stands in an incomplete, ignored last group.
    std::size_t padding = 0;
    while (padding < 2 && padding < coded.size() && coded[coded.size() - 1 - padding] == '=') ++padding;
    bytes.resize(bytes.size() - std::min(padding, bytes.size()));
    return codePage.FromAnsi(bytes);
}

Text CleanSubject(TextView subject)
{
    return CollapseSpaces(subject);
}
