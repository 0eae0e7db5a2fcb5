// Addresses.cpp: takes address lists apart.
#include "demo/client/Addresses.h"

#include "demo/mailbox/Headers.h"

namespace {

struct Address {
    std::string name;    // outside the brackets: quotes and their escapes removed, comments kept
    std::string bare;    // the same without comments
    std::string address; // inside the brackets
    std::string group;   // "Team:" before the group's first member
    bool bracketed = false;

    // "Jo (Sales) <jo@example.com>" keeps its comment; "jo@example.com (Jo)" is shown by its address.
    std::string_view Shown() const
    {
        const std::string_view outside = TrimBlanks(bracketed ? name : bare);
        if (!outside.empty()) return outside;
        const std::string_view inside = TrimBlanks(address);
        return inside.empty() ? TrimBlanks(group) : inside;
    }
};

// Length of the encoded word at the start of text; 0 when there is none. What it holds is no syntax.
std::size_t EncodedWordLength(std::string_view text)
{
    if (!text.starts_with("=?")) return 0;
    std::size_t at = 1;
    for (int marks = 0; marks < 2 && at != std::string_view::npos; ++marks) at = text.find('?', at + 1);
    const std::size_t end = at == std::string_view::npos ? at : text.find("?=", at + 1);
    return end == std::string_view::npos ? 0 : end + 2;
}

// Takes one address and the "," or ";" behind it off rest.
Address TakeAddress(std::string_view& rest)
{
    Address found;
    bool quoted = false, inBrackets = false;
    int comments = 0;
    const auto put = [&](std::string_view text) {
        if (inBrackets)
            found.address += text;
        else
            found.name += text;
        if (!inBrackets && comments == 0) found.bare += text;
    };
    while (!rest.empty()) {
        const std::size_t word = EncodedWordLength(rest);
        const bool escaped = rest[0] == '\\' && rest.size() > 1 && (quoted || comments > 0);
        const std::string_view token = escaped ? rest.substr(1, 1) : rest.substr(0, word ? word : 1);
        rest.remove_prefix(token.size() + (escaped ? 1 : 0));
        const char c = escaped || word ? 'a' : token[0];
        if (c == '"' && comments == 0)
            quoted = !quoted;
        else if (quoted)
            put(token);
        else if (c == '(' && !inBrackets)
            ++comments, put(token);
        else if (c == ')' && comments > 0)
            put(token), --comments;
        else if (comments > 0)
            put(token);
        else if (c == '<')
            found.bracketed = inBrackets = true;
        else if (c == '>')
            inBrackets = false;
        else if (!inBrackets && (c == ',' || c == ';'))
            break;
        else if (!inBrackets && c == ':' && found.bare.find('@') == std::string::npos) {
            found.group = found.name + ":";
            found.name.clear();
            found.bare.clear();
        } else
            put(token);
    }
    return found;
}

} // namespace

std::wstring DisplayNames(std::string_view value, RawCharset raw)
{
    std::wstring names;
    while (!value.empty()) {
        const Address address = TakeAddress(value);
        if (address.Shown().empty()) continue;
        if (!names.empty()) names += L"; ";
        names += DecodeHeader(address.Shown(), raw);
    }
    return names;
}
