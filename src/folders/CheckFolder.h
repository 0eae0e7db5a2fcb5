// CheckFolder.h: tells which e-mails of the folder that the client shows are not saved yet.
#pragma once
#include "folders/FolderRun.h"

// Reports through the log, the results table, the summary, the folder's node in the tree and a message box.
void CheckFolder(FolderRun& run);
