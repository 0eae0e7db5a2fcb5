// StoredFiles.h: what the store holds already when the database of saved e-mails is new.
#pragma once
#include "folders/FolderRun.h"

struct StoredFiles {
    std::size_t files = 0;   // .eml files
    std::size_t folders = 0; // mail folders whose own directory holds any
};

// Of the mail folders' own directories in the store folder, and of nothing else there.
StoredFiles CountStoredFiles(FolderRun& run);
