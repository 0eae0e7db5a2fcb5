#include "platform/posix/CodePage1252.h"

#include <algorithm>
#include <array>

namespace {

// Bytes 80 to 9F; all others have the number of their character.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
constexpr unsigned kFirstHigh = 0x80, kBehindHigh = 0xA0;

bool IsAscii(char16_t unit)
{
    return unit < kFirstHigh;
}

char ByteOf(char16_t unit)
{
    if (unit < kFirstHigh || (unit >= kBehindHigh && unit < 0x100)) return static_cast<char>(unit);
    const auto at = std::find(kHigh.begin(), kHigh.end(), unit);
    return at == kHigh.end() ? '?' : static_cast<char>(kFirstHigh + (at - kHigh.begin()));
}

} // namespace

std::string CodePage1252::ToAnsi(TextView text)
{
    std::string bytes(text.begin(), text.end()); // right for ASCII, which most of it is
    for (auto unit = std::find_if_not(text.begin(), text.end(), IsAscii); unit != text.end();
         unit = std::find_if_not(unit + 1, text.end(), IsAscii))
        bytes[static_cast<std::size_t>(unit - text.begin())] = ByteOf(*unit);
    return bytes;
}

Text CodePage1252::FromAnsi(std::string_view bytes)
{
    Text text(bytes.size(), u'\0');
    unsigned bits = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text[i] = byte;
        bits |= byte;
    }
    if (bits < kFirstHigh) return text; // as most are
    for (char16_t& unit : text)
        if (unit >= kFirstHigh && unit < kBehindHigh) unit = kHigh[unit - kFirstHigh];
    return text;
}

Text CodePage1252::FromUtf8Bytes(std::string_view bytes)
{
    return FromUtf8(bytes);
}
