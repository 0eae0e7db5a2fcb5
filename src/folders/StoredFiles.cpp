#include "folders/StoredFiles.h"

#include "folders/StoreFolders.h"

StoredFiles CountStoredFiles(FolderRun& run)
{
    const Text store = run.view.Options().storeFolder;
    StoredFiles stored;
    for (std::size_t i = 0; i < run.nodes.size(); ++i) {
        if (run.nodes[i].level <= 1) continue; // the root is no mail folder
        const Text directory = ExportFolderOf(store, run.storeDirectories[i]);
        const std::size_t files = run.files.ListEmlFiles(directory).size();
        stored.files += files;
        stored.folders += files > 0;
    }
    return stored;
}
