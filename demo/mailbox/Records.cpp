// Records.cpp: reads JSON lines of texts and numbers.
#include "demo/mailbox/Records.h"

#include "demo/mailbox/Mailbox.h"
#include "demo/mailbox/Names.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace {

struct JsonLine {
    std::string_view rest;

    [[noreturn]] static void Fail() { throw MailboxError("a record is no JSON object of texts"); }

    char Take()
    {
        if (rest.empty()) Fail();
        const char c = rest.front();
        rest.remove_prefix(1);
        return c;
    }

    void Skip(char wanted)
    {
        while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
        if (Take() != wanted) Fail();
    }

    bool Ends(char end)
    {
        while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
        return !rest.empty() && rest.front() == end;
    }

    char16_t Escaped()
    {
        unsigned unit = 0;
        if (rest.size() < 4 || std::from_chars(rest.data(), rest.data() + 4, unit, 16).ptr != rest.data() + 4)
            Fail();
        rest.remove_prefix(4);
        return static_cast<char16_t>(unit);
    }

    std::u16string Text()
    {
        std::u16string text;
        std::string bytes; // not yet decoded
        const auto decode = [&] { text += NameFromUtf8(std::exchange(bytes, {})); };
        Skip('"');
        for (char c = Take(); c != '"'; c = Take()) {
            if (c != '\\') {
                bytes += c;
            } else if (rest.starts_with('u')) {
                decode();
                rest.remove_prefix(1);
                text += Escaped();
            } else {
                bytes += Take(); // a quote or a backslash
            }
        }
        decode();
        return text;
    }

    std::u16string Value()
    {
        if (Ends('"')) return Text();
        rest.remove_prefix(std::min(rest.find_first_of(",}"), rest.size())); // a number, or null
        return {};
    }
};

} // namespace

SavedRecords ReadRecords(std::string_view jsonLines)
{
    SavedRecords records;
    while (!jsonLines.empty()) {
        JsonLine line{jsonLines.substr(0, jsonLines.find('\n'))};
        jsonLines.remove_prefix(std::min(line.rest.size() + 1, jsonLines.size()));
        std::u16string folder, subject;
        line.Skip('{');
        while (!line.Ends('}')) {
            const std::u16string key = line.Text();
            line.Skip(':');
            const std::u16string value = line.Value();
            if (key == u"efolder") folder = value;
            if (key == u"esubject") subject = value;
            if (!line.Ends('}')) line.Skip(',');
        }
        records[FoldAscii(folder)].push_back(subject);
    }
    return records;
}

std::size_t CountRecords(const SavedRecords& records)
{
    std::size_t count = 0;
    for (const auto& folder : records) count += folder.second.size();
    return count;
}
