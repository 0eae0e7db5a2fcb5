// Matching.h: which records have a file and which files a record, as far as folder and subject tell.
#pragma once
#include "archive/Verify.h"

struct ReadEmail {
    std::size_t directory = 0; // of the store's
    Text name;                 // of the file
    Text subject;              // of its header, for readers
};

struct Matching {
    std::vector<std::size_t> recordsAlone, filesAlone; // by their places, ascending
    std::vector<std::size_t> strayDirectories;         // whose files count as none of filesAlone
};

// A record that stands twice counts once.
Matching MatchRecords(const std::vector<SavedRecord>& records, const std::vector<Text>& folders,
                      const Store& store, const std::vector<ReadEmail>& emails, CodePage& codePage);

// What directories of a mail folder and its records have in common: the name that the directory would get,
// folded, with "_" between the levels, too (a folder's own name may hold a backslash).
Text FolderKey(TextView folder, CodePage& codePage);
