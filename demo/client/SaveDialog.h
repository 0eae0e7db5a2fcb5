// SaveDialog.h: the "Save Message As" dialog: a drawn one, or the system's own.
#pragma once
#include "demo/client/Options.h"

#include <functional>
#include <string>
#include <string_view>

#include <windows.h>

// How an event is to be handled, see Mishaps.h.
struct Handling {
    bool lost = false, twice = false;
    bool noFile = false, late = false, empty = false; // of Event::save
    bool replaceFile = false;                         // of Event::save: its box was answered with "Yes"
    int milliseconds = 0;                             // of late and empty
};

struct DialogRequest {
    std::string_view message;   // the bytes to write
    std::wstring suggestedName; // shown in the file-name box at first
    std::function<Handling(Event, HWND dialog)> occur;
};

struct SaveAnswer {
    bool accepted = false;
    std::wstring writeLater;  // the path to write to; empty: there is nothing left to do
    int milliseconds = 0;     // until then
    bool replaceFile = false; // what is there then may be overwritten
};

// Runs the dialog. Of the drawn one, "Save" with the name of an existing file, or with a path that cannot be
// written, leaves it open; the system's asks or says why in a box. A file is replaced only after a "Yes".
SaveAnswer RunSaveDialog(HWND owner, const Options& options, const DialogRequest& request);

// False, and no new file left behind, when it cannot be written whole, or is there and is not to be replaced.
bool WriteMessageFile(const std::wstring& path, std::string_view bytes, bool replaceFile);
