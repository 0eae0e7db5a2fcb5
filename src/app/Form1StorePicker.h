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

    // The drive and folder lists go there; false and no change when it is no directory or no full path.
    bool SetFolder(const Text& path);
    const Text& Folder() const { return folder_; } // the store folder, in the form of NormalDirectoryPath

    // The folder that the settings name (empty: none). When it cannot be used, the one of the moment stands
    // in for it; it stays the wish of the settings until the user chooses one.
    void TakeFromSettings(const Text& path);
    // As the settings spell it; empty when nothing stands in for it.
    const Text& Missing() const { return missing_; }
    // Whether the store folder is the one that was wished for, or one that the user has accepted. A folder
    // that was missing and is there by now is gone to.
    bool IsSettled();
    void AcceptStandIn() { accepted_ = true; } // the user goes on with the folder that stands in
    const Text& ToRemember() const { return missing_.empty() ? folder_ : missing_; } // in the settings

    // What the user did in the lists. An empty floppy drive and the like change nothing.
    void DriveChosen();
    void FolderOpened();
    // Goes to a folder of this name in the store folder, made when there is none. False: it could not be
    // made.
    bool MakeFolder(const Text& name);
    // What the lists show is what the computer has now: drives, folders, and a folder that was missing.
    void Refresh();
    void ShowSavedFiles(const Text& directory); // in the file list

private:
    void ListDrives();
    void ShowDrive();
    // Below folder_; the line of this path is marked, if there is one. A copy: it may be of a line that goes.
    void ListFolders(Text selected);
    void Choose(const Text& path);          // as the user: nothing is missed any more

    Files& files_;
    OrbLabel* label_ = nullptr;
    OrbLabel* path_ = nullptr;
    HWND drives_ = nullptr, folders_ = nullptr, savedFiles_ = nullptr;
    DWORD presentDrives_ = 0; // those in the list, as GetLogicalDrives counts them
    Text folder_;
    Text missing_;
    bool accepted_ = false;
    std::vector<DirectoryLine> lines_;
};
