// LookAlikes.h: the extra "Look-alikes": of e-mails that look the same in the list, the k-th from its top has
// a record of its own when the folder has k. Fails by: DatabaseError.
#pragma once
#include "folders/ExportTally.h"
#include "store/EmailEntry.h"

// The list as it was read last in this export, for the places among e-mails that look the same.
struct AlikeList {
    std::vector<Text> crcs{}; // by row, empty where unread
};

// inDoubt: there is a record, and whether it is another one's cannot be told: the list cannot be read, or it
// has been sorted anew since the export began, so that what looks the same has changed places.
enum class OwnRecord { none, there, inDoubt };
OwnRecord FindOwnRecord(FolderRun& run, AlikeList& list, const FolderTally& tally, const EmailEntry& entry);
