// DotFont.h: characters as 5 by 7 dots.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

constexpr int kGlyphWidth = 5, kGlyphHeight = 7;

// Rows from the top; bit 4 is the leftmost dot.
using Glyph = std::array<std::uint8_t, kGlyphHeight>;

// ASCII and the accented letters of Latin-1 and Latin Extended-A have dots of their own; a control character
// is a blank, and all the rest an empty box.
Glyph GlyphOf(char16_t character);

// The same text in characters that the font has, where there is a common way to write it: "..." for an
// ellipsis, straight quotes for typographic ones. A surrogate pair becomes one character.
std::u16string Displayable(std::u16string_view text);
