// Charsets.h: texts in the character sets that messages name (IANA's names, RFC 2045).
#pragma once
#include "text/Text.h"

#include <optional>

// Nothing for a set that is not known here or not installed. Bytes that it does not define become U+FFFD, or
// what the system puts in their place. ISO-8859-1 is read as Windows-1252, as most mail under that name is.
std::optional<Text> TextInCharset(std::string_view charset, std::string_view bytes);

// A set that a system knows by number or by name.
struct KnownCharset {
    std::string_view name; // lower case
    unsigned codePage;     // of Windows
    const char* iconv;
};
const KnownCharset* FindCharset(std::string_view name); // letter case does not matter; null: none

// The system's part of the above; nothing when the set is not installed.
std::optional<Text> TextInSystemCharset(const KnownCharset& charset, std::string_view bytes);
