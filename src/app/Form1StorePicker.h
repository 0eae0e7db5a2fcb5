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
    void Attach(HWND label, HWND path, HWND drives, HWND folders, HWND savedFiles);

    void Show(const Text& folder); // the store folder, in the form of NormalDirectoryPath
    // What the user has chosen in the lists; empty: nothing.
    Text ChosenDrive() const; // its root
    Text ChosenFolder() const;
    void ShowDrive(); // that of the store folder, also when the one chosen is empty
    // What the lists show is what the computer has now. A store folder that was taken away stays in them, for
    // when it is back.
    void Refresh();

private:
    void ListDrives();
    void ShowSavedFiles();
    // Below folder_; the line of this path is marked, if there is one. A copy: it may be of a line that goes.
    void ListFolders(Text selected);

    Files& files_;
    OrbLabel label_, path_;
    HWND drives_ = nullptr, folders_ = nullptr, savedFiles_ = nullptr;
    DWORD presentDrives_ = 0; // those in the list, as GetLogicalDrives counts them
    Text folder_;
    std::vector<DirectoryLine> lines_;
};
