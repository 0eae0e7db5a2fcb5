// StoredFiles.h: the saved e-mails that lie in the store.
#pragma once
#include "folders/FolderRun.h"

// The names of those in the export folder, none where there is no such directory. Empty, or why it could not
// be read: then nothing can be said of what it holds.
Text ListStoredFiles(FolderRun& run, std::vector<Text>& names);

struct StoredFiles {
    std::size_t files = 0;   // .eml files
    std::size_t folders = 0; // mail folders whose own directory holds any
};

// Of the mail folders' own directories in the store folder, and of nothing else there.
StoredFiles CountStoredFiles(FolderRun& run);
