// ShownEmail.h: how the client's list would show a message file, to be compared with what it shows.
// Cannot fail: what its header does not tell is not certain.
#pragma once
#include "platform/CodePage.h"
#include "text/Text.h"

#include <cstdint>
#include <optional>
#include <vector>

// A cell holds 127 characters; what is shorter by less than an address may lose in the reading is whole.
inline constexpr std::size_t kMayBeCut = 110;

// How a field of a message would stand in the list, in each of the ways that clients show it.
struct ShownText {
    std::vector<Text> forms;
    bool isCertain = true; // false: the list may show something else
    // Alike is what reads alike, however it was sent.
    bool operator==(const ShownText& other) const
    {
        return forms.front() == other.forms.front() && isCertain == other.isCertain;
    }
};

// What the list would show of a message file.
struct ShownEmail {
    ShownText subject, from, to;
    std::optional<std::int64_t> sent;   // seconds since the beginning of 1970, in Universal Time
    std::vector<std::int64_t> received; // any of them; empty: not known
    bool operator==(const ShownEmail&) const = default;
};
ShownEmail ShownOf(std::string_view message, CodePage& codePage);

// Texts of list and file in the form in which they are compared: blanks do not count, and the en dash, which
// lists show as a control character, is itself.
Text ComparedText(TextView shown);
Text ComparedList(const std::vector<Text>& addresses);
