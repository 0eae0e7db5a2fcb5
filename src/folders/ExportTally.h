// ExportTally.h: what came of the e-mails of an export command: why some were skipped, and the line that
// closes it. Where two answers are possible it counts too few as saved, never too many.
#pragma once
#include "folders/FolderRun.h"

#include <map>
#include <optional>

enum class SkipReason { recorded, metAgain, nameTaken, unread };

// One folder's part of an export.
struct FolderTally {
    std::map<std::pair<std::int32_t, Text>, bool> emails{}; // by row and CRC: whether it is saved
    std::map<Text, std::int32_t> firstRows{};               // of each CRC: the row that it was met in first
    std::map<SkipReason, std::int32_t> skipped{};
    std::vector<Text> metAgain{}; // CRCs of the e-mails skipped for that reason
    std::int32_t firstRow = 0;    // that the export began with
    std::int32_t rowsAtStart = 0; // in the list
    std::int32_t rows = 0;        // as it was counted last
    std::int32_t lastRow = -1;    // that was handled last
    bool savesLookAlikes = false; // each of those that look the same has a record of its own
    bool hasMoved = false;        // the rows were not met one after the other
    std::optional<std::vector<Text>>
        listAtEnd{}; // the CRC of each row, empty where unread; if it was read again
};

// Each row and CRC counts once.
void NoteHandled(FolderTally& tally, std::int32_t row, const Text& crc, bool saved);
void NoteSkipped(FolderTally& tally, SkipReason reason);
// An e-mail of which there is a record already: from another run, or of one that was met in this.
void NoteRecorded(FolderTally& tally, std::int32_t row, const Text& crc);
// One that looks like another, whose record may be the other's.
void NoteInDoubt(FolderTally& tally, std::int32_t row, const Text& crc);

// Whether only reading the list once more tells what was missed.
bool NeedsListAtEnd(const FolderTally& tally, std::int32_t passed);

// Whether the handled e-mails stand in the list in the order of their rows, as after new mail, but not in a
// list that was sorted anew. Of those that look the same nothing can be said. crcs: by row, empty where
// unread.
bool IsInOrder(const FolderTally& tally, const std::vector<Text>& crcs);
// The rows that were not handled, of listAtEnd: from the first row on, or of the whole list when that row is
// another e-mail's by now. None when the list was not read again.
std::vector<std::int32_t> MissedRows(const FolderTally& tally);

// One line for each reason; and what a folder without any file suggests.
void LogSkipReasons(FolderRun& run, const FolderTally& tally);
// How many e-mails of a list are not the first of their kind, if any are. crcs: by row, empty where unread.
void LogLookAlikes(FolderRun& run, const std::vector<TextView>& crcs);

// Rows of the list that no e-mail was read from: of the whole list, or from the first row on.
enum class Extent { fromFirstRow, wholeList };
std::int32_t NotLookedAt(const FolderTally& tally, Extent extent);

// Adds the folder to run.exported: of e-mails that look alike no more are saved than the folder has records,
// and of the folder no more than its directory has files.
void AddToTotals(FolderRun& run, const FolderTally& tally, Extent extent);

// In log, display and summary; nothing when there was nothing to do.
void SayClosingLine(FolderRun& run);
