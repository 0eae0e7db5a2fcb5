// StoreFolders.h: the directories below the store folder that hold the exported e-mails of each mail folder.
// A mail folder's name may hold what no Windows directory can be called; nothing is ever written outside the
// store folder, and no two mail folders share a directory.
#pragma once
#include "folders/RunView.h"
#include "platform/CodePage.h"
#include "platform/Files.h"

// One path relative to the store folder for each node, without separators at the ends. The root is part of
// no other folder's path. Of siblings that would meet in one directory (without regard to case), one whose
// name needed no change keeps it, else the first; the others get "_2", "_3" and so on behind.
std::vector<Text> StoreDirectories(const std::vector<FolderNode>& nodes, CodePage& codePage);

// storeFolder + "\" + directory + "\".
Text ExportFolderOf(const Text& storeFolder, const Text& directory);

// Makes each missing level of a path ending in "\"; false when one could not be made.
bool MakeFolders(Files& files, const Text& path);
