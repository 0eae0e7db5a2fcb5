// Verify.h: looks through a store for what is wrong with it: files that hold no whole e-mail, files that are
// there twice, and where files and records do not fit together. Changes nothing.
// Fails by: DatabaseError of ReadRecords; what cannot be read of the store is a finding.
#pragma once
#include "archive/Store.h"
#include "platform/CodePage.h"
#include "store/SavedEmails.h"

enum class Trouble {
    empty,          // a file of length zero
    cutShort,       // ends within its header, before its last part is closed, or in zeros
    noHeaders,      // its text has no header of an e-mail
    unreadable,     // a file, or a directory with all that is in it
    sameContent,    // as a file before it in the directory
    recordAlone,    // an e-mail is recorded, but no file seems to be its
    fileAlone,      // a file is there, but no record seems to be its
    strayDirectory, // holds e-mails, but no record is of such a folder
};

struct Finding {
    Trouble trouble;
    Text folder; // of the store's directory; of the record, when it is about one
    Text file;   // name; empty when it is about a record or a directory
    Text detail; // which other file, which reason; a record's subject
    Text crc;    // a record's; else empty
};
Text NameOf(Trouble trouble);            // one word or two, parted by a hyphen, for programs
Text SentenceOf(const Finding& finding); // for people: what is wrong, with the file or the subject

struct SavedRecord {
    Text folder, subject, crc;
};
std::vector<SavedRecord> ReadRecords(SavedEmails& saved);

struct Verification {
    std::vector<Finding> findings; // directory by directory, in the store's order
    std::size_t directories = 0, files = 0, records = 0;
    bool stopped = false; // then records were not looked at
};

// Records are matched with files by folder and subject, as far as these tell: of those that look alike there
// must be equally many. folders: full names of mail folders that have a right to a directory beside those of
// the records. Without records the files alone are looked at.
Verification VerifyStore(Files& files, CodePage& codePage, const Text& store,
                         const std::vector<SavedRecord>* records, const std::vector<Text>& folders,
                         const GoOn& goOn);
