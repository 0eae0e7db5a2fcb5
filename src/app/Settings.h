// Settings.h: what the program remembers between runs: twelve keys of settings.ini in the program's folder.
// Fails by: nothing. A missing file or key means its default, a failed write is not reported.
#pragma once
#include "platform/Files.h"
#include "platform/ProfileFile.h"

#include <cstdint>

// A new record holds what the window shows before any file was read.
struct Settings {
    Text store; // the store folder; empty: the folder lists keep their place
    // Check boxes, as Windows counts them: 0 clear, 1 ticked.
    int idOnly = 0;
    int sendKeys = 0;
    int skipFiles = 0;
    int jumpRemain = 0;
    Text firstFolderToIgnore = u"Deleted Items";
    Text systemFolders =
        u"|local folders|";              // full names that an all-folders run passes over, each between "|"
    Text firstFolder = u"Local Folders"; // what the mail client calls the root of its folders
    Text treeSeparator = u" - ";         // between a node's name and its status
    float settleTime = 0;                // seconds to wait after a change of folder
    std::int16_t applyDst = 0;           // 1: list dates lose an hour while daylight saving is in force
    float timeOffset = 0;                // months added to list dates when above 0
};

// Overwrites every key when the file exists, and leaves the record alone when it does not; then empty
// "System Folders", "First folder" and "Tree Separator" take their defaults.
void LoadSettings(Settings& settings, ProfileFile& profile, Files& files, const Text& path);
void SaveSettings(const Settings& settings, ProfileFile& profile, const Text& path);
