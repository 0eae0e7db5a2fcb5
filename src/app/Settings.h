// Settings.h: what the program remembers between runs: the keys of settings.ini in the program's folder.
// Fails by: nothing. A missing file or key means its default, a failed write is not reported.
#pragma once
#include "app/ControlIds.h"
#include "folders/RunView.h"
#include "oe/OeClient.h"
#include "platform/Files.h"
#include "platform/ProfileFile.h"

#include <span>

// A new record holds what the window shows before any file was read.
struct Settings {
    Text store; // the store folder; empty: the folder lists keep their place
    RunOptions options;
    OeSettings client;
    Text treeSeparator = u" - ";       // between a node's name and its status
    ClientWords words = kEnglishWords; // what the client's windows and columns are called
    bool databaseInStore = false;      // saved.mdb stands in the store folder, not in the program's
};

// A setting is a member of one of three records.
template <class T>
auto& Member(auto& settings, T Settings::*member)
{
    return settings.*member;
}
template <class T>
auto& Member(auto& settings, T RunOptions::*member)
{
    return settings.options.*member;
}
template <class T>
auto& Member(auto& settings, T OeSettings::*member)
{
    return settings.client.*member;
}

// What an empty value of the file does, which stands for a missing key, too.
enum class WhenEmpty { isRead, keepsDefault };

// A new setting is a member of its record and a row.
struct SettingRow {
    const char16_t* section;
    const char16_t* key;
    void (*read)(Settings& settings, const Text& stored);
    Text (*write)(const Settings& settings); // of a check box "0" or "1"
    WhenEmpty whenEmpty;
    ControlId control; // a check box or a text that shows it
};
std::span<const SettingRow> SettingRows(); // in the order in which they are written

// Without the file, all defaults.
Settings LoadSettings(ProfileFile& profile, Files& files, const Text& path);
void SaveSettings(const Settings& settings, ProfileFile& profile, const Text& path);
