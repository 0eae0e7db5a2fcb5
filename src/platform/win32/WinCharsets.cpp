#include "platform/Charsets.h"

#include <windows.h>

#include "platform/win32/WideText.h"

std::optional<Text> TextInSystemCharset(const KnownCharset& charset, std::string_view bytes)
{
    if (!IsValidCodePage(charset.codePage)) return std::nullopt; // not installed
    if (bytes.empty()) return Text();
    const int count = static_cast<int>(bytes.size());
    const int units = MultiByteToWideChar(charset.codePage, 0, bytes.data(), count, nullptr, 0);
    if (units <= 0) return std::nullopt;
    Text text(static_cast<std::size_t>(units), u'\0');
    (void)MultiByteToWideChar(charset.codePage, 0, bytes.data(), count, WideBuffer(text), units);
    return text;
}
