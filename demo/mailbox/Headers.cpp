// Headers.cpp: finds and unfolds header fields.
#include "demo/mailbox/Headers.h"

#include <algorithm>

namespace {

char Fold(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Takes the next line, without its end, off rest.
std::string_view TakeLine(std::string_view& rest)
{
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

} // namespace

bool EqualNoCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Fold(x) == Fold(y); });
}

std::string_view TrimBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string_view HeaderBlock(std::string_view message)
{
    std::string_view rest = message;
    while (!rest.empty()) {
        const std::size_t start = message.size() - rest.size();
        if (TakeLine(rest).empty()) return message.substr(0, start);
    }
    return message;
}

std::string HeaderValue(std::string_view headers, std::string_view name)
{
    while (!headers.empty()) {
        const std::string_view line = TakeLine(headers);
        const std::size_t colon = line.find(':');
        if (line.starts_with(' ') || line.starts_with('\t')) continue; // of another field
        if (colon == std::string_view::npos || !EqualNoCase(TrimBlanks(line.substr(0, colon)), name))
            continue;
        std::string value(line.substr(colon + 1));
        while (headers.starts_with(' ') || headers.starts_with('\t')) {
            std::string_view more = TakeLine(headers);
            if (more.front() == '\t') more.remove_prefix(1);
            value += more;
        }
        return std::string(TrimBlanks(value));
    }
    return {};
}

std::string Parameter(std::string_view value, std::string_view name)
{
    for (std::size_t at = value.find(';'); at != std::string_view::npos; at = value.find(';', at + 1)) {
        const std::string_view part = value.substr(at + 1, value.find(';', at + 1) - at - 1);
        const std::size_t equals = part.find('=');
        if (equals == std::string_view::npos || !EqualNoCase(TrimBlanks(part.substr(0, equals)), name))
            continue;
        std::string_view found = TrimBlanks(part.substr(equals + 1));
        if (found.starts_with('"')) found = found.substr(1, found.find('"', 1) - 1);
        return std::string(found);
    }
    return {};
}
