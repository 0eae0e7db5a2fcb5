#include "text/Text.h"

#include <algorithm>

Text FromAscii(std::string_view ascii)
{
    return Text(ascii.begin(), ascii.end());
}

Text DecimalText(std::int64_t number)
{
    return FromAscii(std::to_string(number));
}

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, char32_t code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// The bytes that may follow a lead byte (Unicode table 3-7): how many, and the range of the first of them.
struct Utf8Lead {
    int following;
    unsigned char low, high;
};

Utf8Lead LeadOf(unsigned char byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 0x80, 0x8F};
    return {-1, 0, 0};
}

} // namespace

std::string ToUtf8(TextView text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            AppendUtf8(out, 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (char32_t(text[i + 1]) - 0xDC00));
            ++i;
        } else {
            AppendUtf8(out, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
        }
    }
    return out;
}

Text FromUtf8(std::string_view bytes)
{
    Text out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[i++]);
        if (byte < 0x80) {
            out += byte;
            continue;
        }
        const Utf8Lead lead = LeadOf(byte);
        char32_t code = lead.following == 1 ? byte & 0x1F : lead.following == 2 ? byte & 0x0F : byte & 0x07;
        int missing = lead.following;
        for (unsigned char low = lead.low, high = lead.high; missing > 0 && i < bytes.size();
             low = 0x80, high = 0xBF) {
            const auto next = static_cast<unsigned char>(bytes[i]);
            if (next < low || next > high) break;
            code = (code << 6) | (next & 0x3F);
            ++i;
            --missing;
        }
        if (missing != 0) {
            out += kReplacement;
        } else if (code < 0x10000) {
            out += static_cast<char16_t>(code);
        } else {
            out += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::size_t CountOf(TextView text, TextView delimiter)
{
    if (delimiter.empty()) return 0;
    std::size_t count = 0;
    for (std::size_t at = text.find(delimiter); at != TextView::npos;
         at = text.find(delimiter, at + delimiter.size()))
        ++count;
    return count;
}

TextView FieldOf(TextView text, TextView delimiter, std::size_t index)
{
    if (index == 0) return {};
    if (delimiter.empty()) return index == 1 ? text : TextView{};
    std::size_t start = 0;
    for (; index > 1; --index) {
        const std::size_t at = text.find(delimiter, start);
        if (at == TextView::npos) return {};
        start = at + delimiter.size();
    }
    return text.substr(start, text.find(delimiter, start) - start);
}

Text CollapseSpaces(TextView text)
{
    Text out(text);
    CollapseSpacesIn(out);
    return out;
}

TextView CutAtNul(TextView text)
{
    return text.substr(0, text.find(u'\0'));
}

TextView TrimSpaces(TextView text)
{
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == TextView::npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

Text ReplaceAll(TextView text, TextView sought, TextView replacement)
{
    Text out;
    out.reserve(text.size());
    std::size_t start = 0;
    if (!sought.empty()) {
        for (std::size_t at = text.find(sought); at != TextView::npos; at = text.find(sought, start)) {
            out.append(text, start, at - start).append(replacement);
            start = at + sought.size();
        }
    }
    return out.append(text, start);
}

std::vector<Text> SplitAt(TextView text, TextView delimiter)
{
    std::vector<Text> fields;
    std::size_t start = 0;
    if (!delimiter.empty()) {
        for (std::size_t at = text.find(delimiter); at != TextView::npos; at = text.find(delimiter, start)) {
            fields.emplace_back(text.substr(start, at - start));
            start = at + delimiter.size();
        }
    }
    fields.emplace_back(text.substr(start));
    return fields;
}

char16_t FoldBeyondAscii(char16_t unit)
{
    const auto shifted = [unit](int by) { return static_cast<char16_t>(unit + by); };
    if (unit >= 0xC0 && unit <= 0xDE) return unit == 0xD7 ? unit : shifted(32);
    if (unit >= 0x100 && unit <= 0x17F) {
        if (unit == 0x130 || unit == 0x131 || unit == 0x138 || unit == 0x149 || unit == 0x17F) return unit;
        if (unit == 0x178) return 0xFF; // Y with diaeresis: its small letter is in Latin-1
        // Pairs begin at an even number but for two stretches, where they begin at an odd one.
        const bool oddPairs = (unit >= 0x139 && unit <= 0x148) || unit >= 0x179;
        return (unit % 2 != 0) == oddPairs ? shifted(1) : unit;
    }
    if (unit >= 0x391 && unit <= 0x3AB && unit != 0x3A2) return shifted(32);
    if (unit == 0x386) return 0x3AC;
    if (unit >= 0x388 && unit <= 0x38A) return shifted(37);
    if (unit == 0x38C) return 0x3CC;
    if (unit == 0x38E || unit == 0x38F) return shifted(63);
    if (unit >= 0x400 && unit <= 0x40F) return shifted(80);
    if (unit >= 0x410 && unit <= 0x42F) return shifted(32);
    if (unit == 0x490) return 0x491;
    return unit;
}

Text FoldCase(TextView text)
{
    Text folded(text);
    for (char16_t& unit : folded) unit = FoldCase(unit);
    return folded;
}

namespace {

bool SameNoCase(char16_t a, char16_t b)
{
    return a == b || FoldCase(a) == FoldCase(b);
}

} // namespace

bool EqualNoCase(TextView a, TextView b)
{
    if (a.size() != b.size()) return false;
    if (!a.empty() && !SameNoCase(a[0], b[0])) return false; // most that differ
    const auto bytes = [](TextView text) {                   // compared many at a time
        return std::string_view(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
    };
    return bytes(a) == bytes(b) || std::equal(a.begin(), a.end(), b.begin(), SameNoCase);
}

std::size_t FindNoCase(TextView text, TextView sought, std::size_t from)
{
    if (from > text.size()) return TextView::npos;
    if (sought.empty()) return from;
    const char16_t first = FoldCase(sought[0]);
    for (; text.size() - from >= sought.size(); ++from)
        if (FoldCase(text[from]) == first && EqualNoCase(text.substr(from, sought.size()), sought))
            return from;
    return TextView::npos;
}
