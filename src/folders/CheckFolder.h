// CheckFolder.h: tells which e-mails of the folder that the client shows are not saved yet.
#pragma once
#include "folders/FolderRun.h"

// Reports through the log, the results table, the summary, the folder's node in the tree and a message box.
// The answer: how many e-mails are not saved; nothing when there was no result.
std::optional<std::int32_t> CheckFolder(FolderRun& run);
