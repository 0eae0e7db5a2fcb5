// Mbox.h: the e-mails of a store as mbox files, one a folder, which other mail programs import. Of the
// family's dialects it is mboxrd: each line of an e-mail that begins with "From ", with any number of ">"
// before it, gets one ">" more, so that taking one away gives the e-mail back. Line ends become LF. Fails by:
// MboxResult; an e-mail that cannot be read is left out and named.
#pragma once
#include "archive/Store.h"

struct MboxResult {
    std::size_t folders = 0, emails = 0; // written
    std::vector<Text> leftOut;           // a sentence each, with the path
    Text failure;                        // why nothing or no more could be written; else empty
    bool stopped = false;
};

// "Local Folders\Inbox" becomes Local Folders/Inbox.mbox in the target, which must be an empty directory or
// none; the store's own e-mails store.mbox. Folders without e-mails get no file.
MboxResult WriteMboxes(Files& files, const Text& store, const Text& target, const GoOn& goOn);

// Adds an e-mail to the bytes of an mbox file: the line that parts it from those before, its lines, an empty
// one.
void AppendToMbox(std::string& mbox, std::string_view message);
