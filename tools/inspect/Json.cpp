#include "tools/inspect/Json.h"

#include <charconv>
#include <cmath>
#include <cstdio>

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
