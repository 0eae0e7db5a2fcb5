// AllFolders.h: checks every folder of the client, or exports those that a check found to need it.
#pragma once
#include "folders/FolderRun.h"

enum class AllFoldersMode { check, exportEmails };

// Works out run.folderCount, by which a check's bar is drawn: the folders before the first to ignore.
void CountFoldersToCheck(FolderRun& run);

// From the first line of lstTree to the first folder to ignore, or to the last; system folders are passed
// over. A check appends what needs exporting to run.exportList and leaves its totals in run.runTotalToSave
// and run.checkSummary. An export does what that list says, and sets runCompleted however it ended.
void RunAllFolders(FolderRun& run, AllFoldersMode mode);
