#include "mail/MessageFields.h"

#include <algorithm>

namespace {

bool IsBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

// Up to the colon; empty when the line begins no field.
std::string_view NameIn(std::string_view line)
{
    const std::size_t colon = line.find(':');
    if (colon == line.npos) return {};
    const std::string_view name = WithoutBlanks(line.substr(0, colon)); // "Subject : x" is seen, too
    const auto isNameByte = [](char byte) { return byte > ' ' && byte < '\x7F'; };
    return !line.starts_with(name) || !std::all_of(name.begin(), name.end(), isNameByte) ? std::string_view()
                                                                                         : name;
}

} // namespace

char LowerLetter(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

bool BeginsWithNoCase(std::string_view text, std::string_view lowerCase)
{
    return text.size() >= lowerCase.size() &&
           std::equal(lowerCase.begin(), lowerCase.end(), text.begin(),
                      [](char lower, char byte) { return LowerLetter(byte) == lower; });
}

std::string_view WithoutBlanks(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string_view TakeLine(std::string_view text, std::size_t& start)
{
    const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    const std::string_view line = text.substr(start, end - start);
    start = end;
    if (start < text.size()) start += text.substr(start).starts_with("\r\n") ? 2 : 1;
    return line;
}

MessageFields ReadMessageFields(std::string_view message)
{
    MessageFields read;
    std::size_t at = 0;
    while (at < message.size() && !read.ended) {
        const std::string_view line = TakeLine(message, at);
        const std::string_view text = WithoutBlanks(line);
        if (line.empty()) {
            read.ended = !read.fields.empty();
        } else if (IsBlank(line.front())) {
            if (!read.fields.empty() && !text.empty()) read.fields.back().value.append(" ").append(text);
        } else if (const std::string_view name = NameIn(line); !name.empty()) {
            MessageField& field = read.fields.emplace_back();
            field.name = name;
            std::transform(name.begin(), name.end(), field.name.begin(), LowerLetter);
            field.value = WithoutBlanks(line.substr(line.find(':') + 1));
        }
    }
    read.bodyAt = read.ended ? at : message.size();
    for (MessageField& field : read.fields) field.value = std::string(WithoutBlanks(field.value));
    return read;
}

std::string_view FieldValue(const MessageFields& message, std::string_view name)
{
    for (const MessageField& field : message.fields)
        if (field.name == name) return field.value;
    return {};
}

std::string FieldParameter(std::string_view value, std::string_view name)
{
    bool quoted = false;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '"') quoted = !quoted;
        if (value[i] != ';' || quoted) continue;
        std::string_view rest = WithoutBlanks(value.substr(i + 1));
        if (!BeginsWithNoCase(rest, name)) continue;
        rest = WithoutBlanks(rest.substr(name.size()));
        if (!rest.starts_with('=')) continue;
        rest = WithoutBlanks(rest.substr(1));
        if (!rest.starts_with('"')) return std::string(rest.substr(0, rest.find_first_of("; \t")));
        std::string unquoted;
        for (std::size_t k = 1; k < rest.size() && rest[k] != '"'; ++k) {
            if (rest[k] == '\\' && k + 1 < rest.size()) ++k;
            unquoted += rest[k];
        }
        return unquoted;
    }
    return {};
}

bool HasAttachment(std::string_view message, const MessageFields& fields)
{
    constexpr std::string_view kMark = "attachment";
    if (BeginsWithNoCase(FieldValue(fields, "content-disposition"), kMark)) return true;
    // A message with parts, which have a header each. Their fields begin a line; what is quoted does not.
    if (!BeginsWithNoCase(FieldValue(fields, "content-type"), "multipart/")) return false;
    constexpr std::string_view kField = "content-disposition:";
    for (std::size_t at = message.find_first_of("\r\n", fields.bodyAt); at < message.size();
         at = message.find_first_of("\r\n", at + 1)) {
        const std::string_view line = message.substr(at + 1);
        if (BeginsWithNoCase(line, kField) &&
            BeginsWithNoCase(WithoutBlanks(line.substr(kField.size(), 80)), kMark))
            return true;
    }
    return false;
}
