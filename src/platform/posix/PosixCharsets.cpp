#include "platform/Charsets.h"

#include <iconv.h>

namespace {

// UTF-16 of the conversion's result, whose bad bytes become U+FFFD one by one.
Text Converted(iconv_t conversion, std::string bytes)
{
    Text text;
    char* from = bytes.data();
    std::size_t left = bytes.size();
    char16_t units[256];
    while (left > 0) {
        char* to = reinterpret_cast<char*>(units);
        std::size_t room = sizeof units;
        const std::size_t before = left;
        (void)::iconv(conversion, &from, &left, &to, &room);
        text.append(units, (sizeof units - room) / sizeof units[0]);
        if (room < sizeof units || left < before) continue;
        text += u'\uFFFD';
        ++from;
        --left;
    }
    return text;
}

} // namespace

std::optional<Text> TextInSystemCharset(const KnownCharset& charset, std::string_view bytes)
{
    const iconv_t conversion = ::iconv_open("UTF-16LE", charset.iconv);
    if (conversion == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
    Text text = Converted(conversion, std::string(bytes));
    ::iconv_close(conversion);
    return text;
}
