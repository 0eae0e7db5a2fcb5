// Options.h: the command line of the stand-in client: what it shows and how it misbehaves.
#pragma once
#include <string>
#include <vector>

struct Options {
    std::wstring mail;   // mail directory or pack
    std::wstring select; // the folder shown first, "Projects/Alpha"; empty: Inbox, or the first with messages

    bool noDialog = false;       // Save As does nothing
    bool noCombo = false;        // the dialog has no file-name box
    bool noEdit = false;         // the file-name box cannot be typed into
    bool noColumns = false;      // the message list has no columns
    bool oneColumn = false;      // only "Subject"
    bool noList = false;         // the message view is empty
    bool noTree = false;         // the folder pane is empty
    bool saveNothing = false;    // "Save" closes the dialog and writes no file
    bool carelessDialog = false; // the caption is there before the controls and until the window has gone
    bool ignoreDownKey = false;  // the Down key does not move the selection
    int slow = 0;                // milliseconds until the dialog opens, and from "Save" to the file
    int closeAfter = 0;          // the client closes itself after so many saves; 0: never
    int hangAfter = 0;           // the client stops answering after so many saves; 0: never
    std::vector<std::wstring> columnTitles; // for From, Subject, Received, Sent, To; empty: these
};

extern const wchar_t kUsage[];

// arguments without the program's name. Values follow "=" or come as the next argument. Answers what is
// wrong, empty when nothing is.
std::wstring ParseOptions(const std::vector<std::wstring>& arguments, Options& options);
