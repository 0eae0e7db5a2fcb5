// SaveDialog.h: saves the e-mail that is selected in the client through its "Save Message As" dialog, under a
// name made from its ID and subject.
#pragma once
#include "oe/OeClient.h"

enum class SaveResult : std::int16_t {
    saved = 1,    // the file was there after the Save button was pressed
    failed = 0,   // no dialog, no box for the name, or no file in time
    skipped = -1, // a file of that name existed and identical names are to be skipped
    untried = -2  // a stop came before the client was asked for anything, or it fell silent: not failed yet
};

struct SaveRequest {
    Text subject;        // as the list shows it
    std::int32_t id = 0; // row of the selected e-mail
    Text exportFolder;   // ends in a backslash and exists
    bool idOnly = false;
    bool skipFiles = false;
    bool sendKeys = false;
    Text crc{};      // of the e-mail that was read
    int folder = -1; // line of lstTree that the client must show; -1: any
};

// Every outcome but `saved` and `untried` has a line in the log. No message is ever saved under another's
// name: a dialog left over from an earlier e-mail is closed first, one that is late is waited for, up to a
// minute from its asking; with the dialog open, which nobody can select behind, the one e-mail selected must
// be the one that was read; and a path that the dialog cannot be told is a failure. A box of the client that
// comes after the click on "Save" is answered with "No", "Cancel" or "OK", its words are logged, and the
// e-mail has failed.
SaveResult SaveCurrentEmail(OeClient& client, const SaveRequest& request);

// At least four digits of the ID, then "_" and what of the subject a file name may hold, cut so that the
// whole path has at most 259 characters. Empty when not even the ID fits.
Text MakeFileName(const SaveRequest& request, CodePage& codePage);

// Keeps the letters a to z in both cases, digits and -_£%$&!#~@' ; everything else goes.
Text SanitiseFileText(TextView text);

// The path itself, or with the first free suffix before its extension. A path that grows beyond 259
// characters is cut before the suffix, but never to less than its first `fixed` characters: then empty.
Text NextFreeFileName(Files& files, const Text& path, std::size_t fixed);

// "" a b ... y aa ab ... ay ba: Kept: no suffix ends in "z", store folders hold files that were named so.
Text NextLetterSuffix(const Text& suffix);
