// HeaderText.h: header bytes as text: character sets and encoded words (RFC 2047).
#pragma once
#include <string>
#include <string_view>

// How bytes that no encoded word declares are read: the message's declared character set when it is known and
// fits, else UTF-8 when the bytes are valid UTF-8, else Windows-1252.
struct RawCharset {
    unsigned codePage = 0; // 0: none declared, or unknown
};

unsigned CodePageOf(std::string_view charset); // any name that Windows knows; 0: unknown

// Never fails: an encoded word in an unknown character set stays as it is, control characters become blanks.
std::wstring DecodeHeader(std::string_view value, RawCharset raw);
