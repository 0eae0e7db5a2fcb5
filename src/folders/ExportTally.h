// ExportTally.h: what came of the e-mails of an export command: why some were skipped, and the line that
// closes it. Where two answers are possible it counts too few as saved, never too many.
#pragma once
#include "folders/FolderRun.h"

#include <map>
#include <set>

enum class SkipReason { recorded, lookAlike, nameTaken, unread };

// One folder's part of an export.
struct FolderTally {
    std::map<std::pair<std::int32_t, Text>, bool> emails{}; // by row and CRC: whether it is saved
    std::map<Text, std::int32_t> firstRows{};               // of each CRC: the row that it was met in first
    std::map<SkipReason, std::int32_t> skipped{};
    std::int32_t firstLookAlike = -1; // row of the e-mail that the first look-alike looks like
    std::int32_t firstRow = 0;        // that the export began with
    std::int32_t rows = 0;            // in the list, as it was counted last
};

void NoteHandled(FolderTally& tally, std::int32_t row, const Text& crc, bool saved);
void NoteSkipped(FolderTally& tally, SkipReason reason);
// An e-mail of which there is a record already: from another run, or of one of this run that looks the same.
void NoteRecorded(FolderTally& tally, std::int32_t row, const Text& crc);

// One line for each reason; and what a folder without any file suggests.
void LogSkipReasons(FolderRun& run, const FolderTally& tally);
// For checks: how many of these CRCs are not the first of their kind.
void LogLookAlikes(FolderRun& run, std::int32_t count, std::int32_t firstRow);

// Rows from the first one on to the list's end that no e-mail was read from.
std::int32_t NotReached(const FolderTally& tally);

// Adds the folder to run.exported: of e-mails that look alike no more are saved than the folder has records,
// and of the folder no more than its directory has files. wholeList: rows before the first one count as well.
enum class Extent { fromFirstRow, wholeList };
void AddToTotals(FolderRun& run, const FolderTally& tally, Extent extent);

// In log, display and summary; nothing when there was nothing to do.
void SayClosingLine(FolderRun& run);
