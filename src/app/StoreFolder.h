// StoreFolder.h: the store folder, below which the e-mails are exported, and the one that the settings name
// as long as it is missing.
#pragma once
#include "app/ProgramWindow.h"
#include "platform/Files.h"

class StoreFolder {
public:
    StoreFolder(Files& files, ProgramWindow& window) : files_(files), window_(window) {}

    const Text& Path() const { return path_; } // in the form of NormalDirectoryPath
    // False and no change when it is no directory or no full path; otherwise the window shows it.
    bool GoTo(const Text& path);
    void Choose(const Text& path); // as the user: nothing is missed any more
    // Goes to a folder of this name in the present one, made when there is none. False: it could not be made.
    bool Make(const Text& name);

    // The folder that the settings name (empty: none). When it cannot be used, the one of the moment stands
    // in for it; it stays the wish of the settings until the user chooses one.
    void TakeFromSettings(const Text& path);
    // As the settings spell it; empty when nothing stands in for it.
    const Text& Missing() const { return missing_; }
    // Whether this is the folder that was wished for, or one that the user has accepted. A folder that was
    // missing and is there by now is gone to.
    bool IsSettled();
    void AcceptStandIn() { accepted_ = true; } // the user goes on with the folder that stands in
    const Text& ToRemember() const { return missing_.empty() ? path_ : missing_; } // in the settings

private:
    Files& files_;
    ProgramWindow& window_;
    Text path_;
    Text missing_;
    bool accepted_ = false;
};
