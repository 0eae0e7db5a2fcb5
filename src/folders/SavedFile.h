// SavedFile.h: what is done with the file of an e-mail that the client has just saved: whether it is that
// e-mail's, and the extras "Verify Saved" and "File Date".
#pragma once
#include "folders/FolderRun.h"

// Where a dialog was late by more than a minute, and may yet have come in another's place, the file tells
// whose it is: by sender, recipients and subject, as dates differ by the zone. One that does not fit is
// removed, and the log says so: whatever e-mail it holds is not recorded by it, and is saved under its own
// name.
bool IsThatEmail(FolderRun& run, const EmailEntry& entry);

// Waits until the file is whole: not empty, and written by nobody any more. Empty when it then does not
// contradict the e-mail; otherwise, after a minute at the most, why it is not taken for saved. It contradicts
// in a subject, a sender or a date that both sides show for certain: in plain letters, with a zone.
Text WhyNotVerified(FolderRun& run, const EmailEntry& entry, const Text& path);

// Makes the e-mail's sent date the file's time of its last change. A date that is not known, or that no file
// can have, leaves it alone; the log says when it could not be set.
void DateSavedFile(FolderRun& run, const EmailEntry& entry, const Text& path);
