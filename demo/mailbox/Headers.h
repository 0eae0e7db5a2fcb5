// Headers.h: the header fields of a message as bytes.
#pragma once
#include <string>
#include <string_view>

// The bytes before the first empty line; the whole message when it has none. Any line ends.
std::string_view HeaderBlock(std::string_view message);

// Value of the first field of that name (letter case does not matter), unfolded and without blanks at the
// ends; empty when there is none. A line folded at a tab joins without a blank, as mail clients show it.
std::string HeaderValue(std::string_view headers, std::string_view name);

bool EqualNoCase(std::string_view a, std::string_view b); // ASCII letters only
std::string_view TrimBlanks(std::string_view text);       // spaces, tabs and line ends

// The value of a parameter of a field such as Content-Type ("charset"), without quotes; empty when missing.
std::string Parameter(std::string_view value, std::string_view name);
