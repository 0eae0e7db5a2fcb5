#include "text/SortPrefix.h"

#include <algorithm>

std::uint64_t SortPrefix(TextView text)
{
    constexpr char16_t kBeyond = 0xFF; // Latin-1: the first such unit is like any other and ends the prefix
    std::uint64_t prefix = 0;          // a missing unit is less than any
    int bits = 64;
    for (const char16_t unit : text.substr(0, 8)) {
        const char16_t folded = std::min(FoldCase(unit), kBeyond);
        prefix |= std::uint64_t{folded} << (bits -= 8);
        if (folded == kBeyond) break;
    }
    return prefix;
}
