#include "mail/AddressList.h"

#include "mail/MessageFields.h"

namespace {

// One address as it is put together.
struct Parts {
    std::string words, comment, bracketed;
    bool hasBrackets = false;

    bool IsEmpty() const { return WithoutBlanks(words).empty() && comment.empty() && !hasBrackets; }
    MailAddress Address() const
    {
        const std::string outside(WithoutBlanks(words)), note(WithoutBlanks(comment));
        if (hasBrackets) return {outside.empty() ? note : outside, std::string(WithoutBlanks(bracketed))};
        if (outside.find('@') != outside.npos) return {note, outside};
        return {outside.empty() ? note : outside, {}};
    }
};

// Takes what stands up to the closing mark, which is taken too, without the backslashes of escapes.
std::string TakeUntil(std::string_view value, std::size_t& at, char opening, char closing)
{
    std::string inside;
    int depth = 1;
    for (++at; at < value.size(); ++at) {
        if (value[at] == '\\' && at + 1 < value.size()) {
            ++at;
        } else if (value[at] == closing) {
            if (--depth == 0) break;
        } else if (value[at] == opening && opening != closing) {
            ++depth;
        }
        inside += value[at];
    }
    return inside;
}

} // namespace

std::vector<MailAddress> ReadAddresses(std::string_view value)
{
    std::vector<MailAddress> addresses;
    Parts parts;
    const auto endAddress = [&] {
        if (!parts.IsEmpty()) addresses.push_back(parts.Address());
        parts = {};
    };
    for (std::size_t at = 0; at < value.size(); ++at) {
        switch (value[at]) {
        case '"':
            parts.words += TakeUntil(value, at, '"', '"');
            break;
        case '(':
            parts.comment = TakeUntil(value, at, '(', ')');
            break;
        case '<':
            parts.bracketed.clear();
            parts.hasBrackets = true;
            for (++at; at < value.size() && value[at] != '>'; ++at) {
                if (value[at] == '"')
                    parts.bracketed += '"' + TakeUntil(value, at, '"', '"') + '"';
                else
                    parts.bracketed += value[at];
            }
            break;
        case ',':
        case ';': // ends a group, or parts addresses where a program has sent it so
            endAddress();
            break;
        case ':': // behind a group's name
            parts = {};
            break;
        default:
            parts.words += value[at];
        }
    }
    endAddress();
    return addresses;
}
