// SaveDialog.h: the "Save Message As" dialog.
#pragma once
#include "demo/client/Options.h"

#include <string>
#include <string_view>

#include <windows.h>

struct SaveRequest {
    std::string_view message;   // the bytes to write
    std::wstring suggestedName; // shown in the file-name box at first
};

struct SaveAnswer {
    bool accepted = false;
    std::wstring writeLater; // with Options::slow: the path to write to; empty: there is nothing left to do
};

// Runs the dialog. "Save" with the name of an existing file, or with a path that cannot be written, leaves it
// open; so a file is never replaced.
SaveAnswer RunSaveDialog(HWND owner, const Options& options, const SaveRequest& request);

// Writes a new file; false, and no file left behind, when one is there or it cannot be written whole.
bool WriteNewFile(const std::wstring& path, std::string_view bytes);
