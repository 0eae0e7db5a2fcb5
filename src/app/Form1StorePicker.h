// Form1StorePicker.h: the lists of drives, folders and saved files, in which the store folder is chosen.
#pragma once
#include "app/DirectoryList.h"
#include "controls/OrbLabel.h"
#include "platform/Files.h"

#include <windows.h>

class Form1StorePicker {
public:
    explicit Form1StorePicker(Files& files) : files_(files) {}
    // label says "Store folder: " and the path, path the path alone.
    void Attach(OrbLabel& label, OrbLabel& path, HWND drives, HWND folders, HWND savedFiles);

    // The drive and folder lists go there; false and no change when it is no directory.
    bool SetFolder(const Text& path);
    const Text& Folder() const { return folder_; } // the store folder, in the form of NormalDirectoryPath

    // What the user did in the lists. An empty floppy drive and the like change nothing.
    void DriveChosen();
    void FolderOpened();
    void ShowSavedFiles(const Text& directory); // in the file list

private:
    Files& files_;
    OrbLabel* label_ = nullptr;
    OrbLabel* path_ = nullptr;
    HWND drives_ = nullptr, folders_ = nullptr, savedFiles_ = nullptr;
    Text folder_;
    std::vector<DirectoryLine> lines_;
};
