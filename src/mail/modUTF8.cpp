#include "mail/modUTF8.h"

#include <algorithm>

std::string TextToBytes(TextView text, CodePage& codePage, BytesIn wanted)
{
    return wanted == BytesIn::utf8 ? ToUtf8(text) : codePage.ToAnsi(text);
}

Text Utf8ToText(TextView text, CodePage& codePage, BytesIn taken)
{
    const std::string bytes = TextToBytes(text, codePage);
    // Kept: a NUL ends the result, as the list shows it.
    const std::string_view whole = std::string_view(bytes).substr(0, bytes.find('\0'));
    return taken == BytesIn::utf8 ? codePage.FromUtf8Bytes(whole) : codePage.FromAnsi(whole);
}

bool IsUtf8Text(TextView text, CodePage& codePage)
{
    const std::string bytes = TextToBytes(text, codePage);
    const auto isMultiByte = [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; };
    // What comes back from the conversion is always valid, so it equals only what was valid before.
    return std::any_of(bytes.begin(), bytes.end(), isMultiByte) && ToUtf8(FromUtf8(bytes)) == bytes;
}
