// ExportFolder.h: exports the folder that the client shows, one e-mail at a time.
#pragma once
#include "folders/FolderRun.h"

// From the e-mail selected in the client to the last: each that the database does not know is saved through
// the client's dialog and recorded at once. Reports through the log, the statistics and the run's flags:
// runCompleted stays as it was when the last e-mail was reached, and is cleared by whatever ended it earlier.
// As a part of a run over all folders it exports run.selectedFolder, or nothing when the client shows
// another. Whether the folder's e-mails were counted: they are part of run.exported then.
bool ExportFolder(FolderRun& run, bool partOfAllFolders);
