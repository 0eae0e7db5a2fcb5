#include "archive/Wholeness.h"

#include <algorithm>

namespace {

// One of these has every e-mail, draft and news article that a client has stored.
bool IsOfAnEmail(const MessageField& field)
{
    constexpr std::string_view kNames[] = {"from", "to",         "subject",      "date",       "received",
                                           "cc",   "message-id", "mime-version", "newsgroups", "return-path"};
    return std::find(std::begin(kNames), std::end(kNames), field.name) != std::end(kNames);
}

// Whether a line of the text begins so.
bool HasLine(std::string_view text, std::string_view beginning)
{
    for (std::size_t at = text.find(beginning); at != text.npos; at = text.find(beginning, at + 1))
        if (at == 0 || text[at - 1] == '\n' || text[at - 1] == '\r') return true;
    return false;
}

// What a crash of the system leaves of bytes that had not reached the disk.
bool EndsInZeros(std::string_view message)
{
    constexpr std::size_t kSector = 512;
    return message.size() >= kSector && message.find_last_not_of('\0') + kSector < message.size();
}

} // namespace

Wholeness WholenessOf(std::string_view message, const MessageFields& fields, Text& why)
{
    if (message.empty()) return Wholeness::empty;
    if (std::none_of(fields.fields.begin(), fields.fields.end(), IsOfAnEmail)) return Wholeness::noHeaders;
    if (EndsInZeros(message))
        why = u"its end is nothing but zeros";
    else if (!fields.ended)
        why = u"it ends within its header";
    else if (const std::string_view type = FieldValue(fields, "content-type");
             BeginsWithNoCase(type, "multipart/")) {
        const std::string boundary = FieldParameter(type, "boundary");
        if (!boundary.empty() && !HasLine(message.substr(fields.bodyAt), "--" + boundary + "--"))
            why = u"its last part has no end";
    }
    return why.empty() ? Wholeness::whole : Wholeness::cutShort;
}
