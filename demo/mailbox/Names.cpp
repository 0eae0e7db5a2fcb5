// Names.cpp: names as UTF-16, their order, and their form in an export.
#include "demo/mailbox/Names.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

// Bytes 0x80 to 0x9F of code page 1252; 0 marks the five that stand for themselves.
constexpr std::array<char16_t, 32> kCp1252 = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                              0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                              0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                              0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char16_t FoldUnit(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + 32) : unit;
}

// Length of the valid UTF-8 sequence at the start of bytes, 0 when there is none.
std::size_t Utf8Length(std::string_view bytes, char32_t& character)
{
    const auto byteAt = [&](std::size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u;
    };
    const unsigned lead = byteAt(0);
    if (lead < 0x80) {
        character = lead;
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return 0;
    character = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) return 0;
        character = character << 6 | (byteAt(i) & 0x3F);
    }
    const bool overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return overlong || surrogate || character > 0x10FFFF ? 0 : length;
}

void Append(std::u16string& text, char32_t character)
{
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
        return;
    }
    text += static_cast<char16_t>(0xD7C0 + (character >> 10));
    text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

bool DecodeUtf8(std::string_view bytes, std::u16string& text)
{
    bool valid = true;
    for (std::size_t at = 0; at < bytes.size();) {
        char32_t character = 0;
        std::size_t length = Utf8Length(bytes.substr(at), character);
        if (length == 0) {
            valid = false;
            character = 0xFFFD;
            length = 1;
        }
        Append(text, character);
        at += length;
    }
    return valid;
}

bool IsDeviceName(std::u16string_view name)
{
    // Windows looks at the part before the first dot, trailing blanks aside.
    std::u16string stem = FoldAscii(name.substr(0, name.find(u'.')));
    while (!stem.empty() && stem.back() == u' ') stem.pop_back();
    for (const char16_t* device : {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"})
        if (stem == device) return true;
    return stem.size() == 4 && (stem.compare(0, 3, u"com") == 0 || stem.compare(0, 3, u"lpt") == 0) &&
           stem[3] >= u'1' && stem[3] <= u'9';
}

} // namespace

std::u16string NameFromUtf8(std::string_view bytes)
{
    std::u16string text;
    DecodeUtf8(bytes, text);
    return text;
}

std::u16string NameFromBytes(std::string_view bytes)
{
    std::u16string text;
    if (DecodeUtf8(bytes, text)) return text;
    text.clear();
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const bool special = byte >= 0x80 && byte < 0xA0 && kCp1252[byte - 0x80] != 0;
        text += special ? kCp1252[byte - 0x80] : char16_t(byte);
    }
    return text;
}

std::string NameToUtf8(std::u16string_view name)
{
    std::string bytes;
    for (std::size_t i = 0; i < name.size(); ++i) {
        char32_t c = name[i];
        const bool high = c >= 0xD800 && c < 0xDC00;
        if (high && i + 1 < name.size() && name[i + 1] >= 0xDC00 && name[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (name[++i] - 0xDC00u);
        else if (c >= 0xD800 && c < 0xE000)
            c = 0xFFFD;
        if (c < 0x80) {
            bytes += static_cast<char>(c);
            continue;
        }
        const int followers = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        bytes += static_cast<char>((0xF00u >> (followers + 1) & 0xFF) | c >> (6 * followers));
        for (int f = followers - 1; f >= 0; --f) bytes += static_cast<char>(0x80 | (c >> (6 * f) & 0x3F));
    }
    return bytes;
}

std::u16string FoldAscii(std::u16string_view name)
{
    std::u16string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldUnit);
    return folded;
}

bool NameLess(std::u16string_view a, std::u16string_view b)
{
    const std::u16string foldedA = FoldAscii(a), foldedB = FoldAscii(b);
    return foldedA != foldedB ? foldedA < foldedB : a < b;
}

int Cp1252Byte(char16_t unit)
{
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return unit;
    const auto found = std::find(kCp1252.begin(), kCp1252.end(), unit);
    if (found != kCp1252.end()) return 0x80 + static_cast<int>(found - kCp1252.begin());
    return unit < 0xA0 && kCp1252[unit - 0x80] == 0 ? unit : -1;
}

std::u16string DirectoryNameOf(std::u16string_view folder)
{
    std::u16string name(folder);
    for (char16_t& unit : name) {
        const bool forbidden = std::u16string_view(u"\\/:*?\"<>|").find(unit) != std::u16string_view::npos;
        if (forbidden || unit < 0x20 || Cp1252Byte(unit) < 0) unit = u'_';
    }
    for (std::size_t i = name.size(); i > 0 && (name[i - 1] == u'.' || name[i - 1] == u' '); --i)
        name[i - 1] = u'_';
    if (IsDeviceName(name)) name.insert(std::min(name.find(u'.'), name.size()), 1, u'_');
    return name;
}
