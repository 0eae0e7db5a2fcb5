// Names.h: names of folders and files as UTF-16, the same on every system. Nothing here can fail.
#pragma once
#include <string>
#include <string_view>

// A file name's bytes as text: UTF-8 when they are valid UTF-8, else Windows-1252, byte by byte.
std::u16string NameFromBytes(std::string_view bytes);
std::u16string NameFromUtf8(std::string_view bytes); // bad bytes become U+FFFD
std::string NameToUtf8(std::u16string_view name);    // lone surrogates become U+FFFD

// The order of everything in a mailbox: by UTF-16 unit with ASCII capitals taken as small letters; names
// that differ in nothing else by plain unit. No locale takes part.
bool NameLess(std::u16string_view a, std::u16string_view b);

std::u16string FoldAscii(std::u16string_view name); // ASCII capitals to small letters

// The code page 1252 byte of a character, or -1 when it has none.
int Cp1252Byte(char16_t unit);

// The name of a folder's directory in an export: what Windows or its ANSI code page cannot hold becomes "_".
std::u16string DirectoryNameOf(std::u16string_view folder);
