// WideText.h: the program's texts as the wide characters of Windows calls, and back. Both are UTF-16.
#pragma once
#include "platform/FileNames.h"

static_assert(sizeof(wchar_t) == sizeof(char16_t));

// Ended by a NUL; valid as long as the text is.
inline const wchar_t* Wide(const Text& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

inline wchar_t* WideBuffer(Text& text)
{
    return reinterpret_cast<wchar_t*>(text.data());
}

inline Text FromWide(const wchar_t* characters, std::size_t count)
{
    return Text(reinterpret_cast<const char16_t*>(characters), count);
}

inline Text FromWide(const wchar_t* characters) // up to its NUL
{
    return Text(reinterpret_cast<const char16_t*>(characters));
}

// Empty, which no call accepts, for a text that would be cut at a NUL and so name another file, and for one
// that only some systems take, which other programs on them could not open again.
inline const wchar_t* WidePath(const Text& path)
{
    return path.size() <= kLongestPath && path.find(u'\0') == Text::npos ? Wide(path) : L"";
}
