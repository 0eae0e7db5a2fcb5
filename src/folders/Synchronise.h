// Synchronise.h: the commands "Sync with OE" and "Get ID of selected email".
#pragma once
#include "folders/FolderRun.h"

// Reads the client's folder tree into lstTree, shows it, unlocks the commands and selects the folder that the
// client shows. Without a client the log says so and nothing changes.
void Synchronise(FolderRun& run);

// Shows the selected e-mail's details in the summary.
void ShowSelectedEmail(FolderRun& run);
