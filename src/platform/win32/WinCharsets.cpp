#include "platform/Charsets.h"

#include <windows.h>

#include "platform/win32/WideText.h"

std::optional<Text> TextInCharset(std::string_view charset, std::string_view bytes)
{
    const KnownCharset* const known = FindCharset(charset);
    if (!known) return std::nullopt;
    if (known->codePage == CP_UTF8) return FromUtf8(bytes);     // old systems leave bad bytes out
    if (!IsValidCodePage(known->codePage)) return std::nullopt; // not installed
    if (bytes.empty()) return Text();
    const int count = static_cast<int>(bytes.size());
    const int units = MultiByteToWideChar(known->codePage, 0, bytes.data(), count, nullptr, 0);
    if (units <= 0) return std::nullopt;
    Text text(static_cast<std::size_t>(units), u'\0');
    (void)MultiByteToWideChar(known->codePage, 0, bytes.data(), count, WideBuffer(text), units);
    return text;
}
