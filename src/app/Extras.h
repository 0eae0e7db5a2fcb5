// Extras.h: what a user may choose beyond the fixed rules: the keys of section "Extras" of settings.ini.
// Without the section the program keeps to the rules. Fails by: nothing. A value that cannot be is handed
// back, and the rule holds.
#pragma once
#include "app/Settings.h"

#include <optional>

// A new extra is a member of its record, a row, and a row of the guide's list.
struct ExtraRow {
    const char16_t* key;
    int least, most;          // 0 and 1: a switch
    int normal;               // what the rules say
    const char16_t* sentence; // what it does, for the dialog and the guide
    int (*get)(const Settings& settings);
    void (*set)(Settings& settings, int value);

    bool IsSwitch() const { return least == 0 && most == 1; }
};
std::span<const ExtraRow> ExtraRows(); // in the order in which they are shown and written

// Nothing for a text that the row does not take.
std::optional<int> ExtraValueOf(const ExtraRow& row, const Text& text);

struct RefusedExtra { // a value of the file that its row does not take
    const ExtraRow& row;
    Text stored;
};

// Without the file or a key, what the rules say.
std::vector<RefusedExtra> LoadExtras(Settings& settings, ProfileFile& profile, Files& files,
                                     const Text& path);
// False when one could not be written.
bool SaveExtras(const Settings& settings, ProfileFile& profile, const Text& path);
