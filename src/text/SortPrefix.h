// SortPrefix.h: the beginning of a text as numbers, to be compared first: texts themselves lie all over the
// memory.
#pragma once
#include "text/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>

// Prefixes that differ stand in the order of the texts, unit by unit and without regard to case. Equal ones
// say nothing: of texts in Latin-1 they are the same for eight units a number.
template <std::size_t Numbers>
std::array<std::uint64_t, Numbers> SortPrefix(TextView text)
{
    constexpr char16_t kBeyond = 0xFF; // Latin-1: the first such unit is like any other and ends the prefix
    std::array<std::uint64_t, Numbers> prefix{}; // a missing unit is less than any
    for (std::size_t number = 0; number < Numbers && 8 * number < text.size(); ++number) {
        int bits = 64;
        for (const char16_t unit : text.substr(8 * number, 8)) {
            const char16_t folded = std::min(FoldCase(unit), kBeyond);
            prefix[number] |= std::uint64_t{folded} << (bits -= 8);
            if (folded == kBeyond) return prefix;
        }
    }
    return prefix;
}
