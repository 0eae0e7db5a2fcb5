// Store.h: what lies in a store folder, whoever put it there: its directories with their e-mail files.
// Fails by: FileError for each directory that cannot be read.
#pragma once
#include "platform/Files.h"

#include <functional>

struct StoreDirectory {
    Text path;                            // full
    Text folder;                          // below the store, parted by "\"; empty for the store itself
    std::vector<DirectoryEntry> emails{}; // what IsEmlName takes; of any kind but directories
    FileError error = FileError::none;    // then nothing is known of what it holds
    bool isLink = false;                  // not followed: it may lead out of the store, or back into it
};

struct Store {
    Text path;
    std::vector<StoreDirectory> directories; // each before those in it, in the order of their names
    std::size_t emails = 0;
};

// The store itself comes first; a link as the store is followed.
Store ReadStore(Files& files, const Text& path);

// Whether to go on; told how many of the e-mails are done.
using GoOn = std::function<bool(std::size_t done, std::size_t all)>;

Text PathOf(const StoreDirectory& directory, TextView name);
Text ShownFolder(const Text& folder); // as a message names it: the store itself has a name, too
