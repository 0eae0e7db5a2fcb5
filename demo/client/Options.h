// Options.h: the command line of the stand-in client: what it shows and how it misbehaves.
#pragma once
#include "demo/client/Languages.h"
#include "demo/client/Mishaps.h"

#include <string>
#include <vector>

struct Options {
    std::wstring mail; // mail directory or pack
    const Language* language = &Languages().front();
    std::wstring select; // the folder shown first, "Projects/Alpha"; empty: Inbox, or the first with messages

    bool noCombo = false;        // the dialog has no file-name box
    bool noEdit = false;         // the file-name box cannot be typed into
    bool noColumns = false;      // the message list has no columns
    bool oneColumn = false;      // only "Subject"
    bool noList = false;         // the message view is empty
    bool noTree = false;         // the folder pane is empty
    bool carelessDialog = false; // the caption is there before the controls and until the window has gone
    bool systemDialog = false;   // the system's own Save dialog, with its boxes, in place of the drawn one
    bool takeAtCommand = false;  // a dialog that comes late holds what was selected when the command came
    int keepList = -1;           // milliseconds that the list of the folder before stays behind the caption;
                                 // its window is the next folder's, too. Below 0: each has a list of its own
    int fill = 0;                // milliseconds until all rows of a folder are in the list
    int holdBack = 0;            // first messages of each folder that are not in the list until they arrive
    std::vector<int> dialogDelays; // milliseconds from the command to the dialog, one for each in turn, then
                                   // again from the first; empty: at once
    std::vector<std::wstring> columnTitles; // for From, Subject, Received, Sent, To; empty: the language's
    std::vector<Mishap> mishaps;            // --at
};

extern const wchar_t kUsage[];

// arguments without the program's name. Values follow "=" or come as the next argument. Answers what is
// wrong, empty when nothing is. Switches that are a short form of others:
//   --slow=MS         --dialog-delays=MS --at=save:0:late:MS
//   --close-after=N   --at=saved:N:close        --hang-after=N     --at=saved:N:silent
//   --no-dialog       --at=command:0:lose       --save-nothing     --at=save:0:no-file
//   --ignore-down-key --at=down:0:lose
std::wstring ParseOptions(const std::vector<std::wstring>& arguments, Options& options);
