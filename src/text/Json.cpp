#include "text/Json.h"

#include <cstdio>

namespace {

std::string UnicodeEscape(char16_t unit)
{
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
    return escape;
}

bool IsSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

bool IsPair(TextView text)
{
    return text.size() >= 2 && text[0] <= 0xDBFF && text[1] >= 0xDC00 && text[1] <= 0xDFFF;
}

} // namespace

std::string JsonText(TextView text)
{
    std::string out = "\"";
    out.reserve(text.size() + 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit == u'"' || unit == u'\\') {
            out += '\\';
            out += static_cast<char>(unit);
        } else if (unit < 0x20 || unit == 0x7F) {
            out += UnicodeEscape(unit);
        } else if (unit < 0x80) {
            out += static_cast<char>(unit);
        } else if (!IsSurrogate(unit)) {
            out += ToUtf8(text.substr(i, 1));
        } else if (IsPair(text.substr(i))) {
            out += ToUtf8(text.substr(i++, 2));
        } else {
            out += UnicodeEscape(unit);
        }
    }
    return out += '"';
}
