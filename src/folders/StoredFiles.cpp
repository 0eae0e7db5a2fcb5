#include "folders/StoredFiles.h"

#include "folders/StoreFolders.h"

Text ListStoredFiles(FolderRun& run, std::vector<Text>& names)
{
    const FileError error = ListEmlFiles(run.files, run.exportFolder, names);
    if (error == FileError::none || error == FileError::notFound) return {};
    return u"The saved files of this folder could not be listed (" + Describe(error) + u"): " +
           run.exportFolder;
}

StoredFiles CountStoredFiles(FolderRun& run)
{
    const Text store = run.view.Options().storeFolder;
    StoredFiles stored;
    std::vector<Text> names;
    for (std::size_t i = 0; i < run.nodes.size(); ++i) {
        if (run.nodes[i].level <= 1) continue; // the root is no mail folder
        const Text directory = ExportFolderOf(store, run.storeDirectories[i]);
        (void)ListEmlFiles(run.files, directory, names); // none of one that cannot be read
        stored.files += names.size();
        stored.folders += !names.empty();
    }
    return stored;
}
