// SaveDialog.h: saves the e-mail that is selected in the client through its "Save Message As" dialog, under a
// name made from its ID and subject (store/StoreNames.h).
#pragma once
#include "oe/OeClient.h"
#include "store/StoreNames.h"

enum class SaveResult : std::int16_t {
    saved = 1,    // the file was there after the Save button was pressed
    failed = 0,   // no dialog, no box for the name, or no file in time
    skipped = -1, // a file of that name existed and identical names are to be skipped
    untried = -2  // a stop came before the client was asked for anything, or it fell silent: not failed yet
};

// Of the selected e-mail; the export folder exists.
struct SaveRequest : EmailFile {
    bool skipFiles = false;
    bool sendKeys = false;
    Text crc{};           // of the e-mail that was read
    int folder = -1;      // line of lstTree that the client must show; -1: any
    bool sameRow = false; // another row's e-mail is another one, though it looks the same
};

// Every outcome but `saved` and `untried` has a line in the log. No message is ever saved under another's
// name: a dialog left over from an earlier e-mail is closed first, one that is late is waited for, up to a
// minute from its asking; with the dialog open, which nobody can select behind, the one e-mail selected must
// be the one that was read; and a path that the dialog cannot be told is a failure. A box of the client that
// comes after the click on "Save" is answered with "No", "Cancel" or "OK", its words are logged, and the
// e-mail has failed.
SaveResult SaveCurrentEmail(OeClient& client, const SaveRequest& request);

// The log's line for an e-mail that could not be saved.
void LogFailedEmail(Reporter& reporter, std::int32_t id, const Text& subject);
