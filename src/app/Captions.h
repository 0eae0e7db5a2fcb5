// Captions.h: the words of the client's language: the keys of section "Captions" of settings.ini. Without the
// section the client speaks English.
// Fails by: the answer. A value that cannot be is handed back, and the English word holds.
#pragma once
#include "oe/ClientWords.h"
#include "platform/Files.h"
#include "platform/ProfileFile.h"

#include <optional>
#include <span>
#include <vector>

// A new word is a member of ClientWords, a row, and a row of the guide's list.
struct CaptionRow {
    const char16_t* key; // the English one
    Text ClientWords::*word;
};
std::span<const CaptionRow> CaptionRows();

struct RefusedCaptions {         // values of the file that cannot be
    std::optional<Text> letters; // for the menu, that are none
    std::optional<Text> title;   // of two columns: none of the titles holds then
    bool operator==(const RefusedCaptions&) const = default;
};

// What is not there, or empty, is as in English.
inline constexpr std::size_t kColumnCaptions = 5; // of the rows, the first ones
RefusedCaptions LoadCaptions(ClientWords& words, ProfileFile& profile, Files& files, const Text& path);
// titles: of the columns, in the order of their rows. False when one could not be written.
bool SaveColumnCaptions(const std::vector<Text>& titles, ProfileFile& profile, const Text& path);
