#include "tools/inspect/Json.h"

#include <charconv>
#include <cmath>
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

std::string JsonNumber(double number)
{
    if (!std::isfinite(number)) return "null";
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
    return std::string(buffer, end);
}

void JsonObject::AddRaw(std::string_view key, std::string_view json)
{
    if (!members_.empty()) members_ += ", ";
    members_.append("\"").append(key).append("\": ").append(json);
}

void JsonObject::Print() const
{
    std::fputc('{', stdout);
    std::fwrite(members_.data(), 1, members_.size(), stdout);
    std::fputs("}\n", stdout);
}
