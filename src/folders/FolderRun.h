// FolderRun.h: what the folder operations work with and share.
#pragma once
#include "folders/RunView.h"
#include "oe/OeClient.h"
#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/Files.h"
#include "platform/Locale.h"
#include "store/SavedEmails.h"

#include <map>

// Of an export command, over all its folders.
struct ExportTotals {
    std::int32_t handled = 0;     // e-mails
    std::int32_t saved = 0;       // of these: now, or recorded before
    std::int32_t notLookedAt = 0; // rows of the lists beyond those
};

struct FolderRun {
    OeClient& client;
    SavedEmails& saved;
    RunView& view;
    Files& files;
    Clock& clock;
    CodePage& codePage;
    Locale& locale;

    // Parallel to client.lstTree; folderPaths has an empty one more.
    std::vector<FolderNode> nodes{};
    std::vector<Text> folderPaths{};      // full names: in the log, on the window, in the database
    std::vector<Text> storeDirectories{}; // below the store folder
    int selectedFolder = -1;              // lstTree's selected line; -1: none

    Text currentFolder{};            // full name under which saved e-mails are recorded
    Text exportFolder{};             // full path, ends in a backslash
    std::int32_t runTotalSaved = 0;  // since the export pass of an all-folders run began
    std::int32_t runTotalToSave = 0; // as its check pass found it
    std::int32_t folderCount = 0;    // folders to check, for the bar; 0: not worked out
    // What checks of all folders found to be exported: by full name the row in the client's list of the first
    // e-mail that is not saved, -1 where it is not known. Kept: only the command that checks all folders
    // empties it; an export's own check appends.
    std::map<Text, std::int32_t> exportList{};
    Text checkSummary{};                          // of the last check of all folders
    std::map<Text, std::int32_t> checkedCounts{}; // e-mails of each folder, by full name, as last checked
    ExportTotals exported{};                      // of the export command under way
    std::vector<Text> unmadeFolders{};            // export folders that it could not make
    std::int32_t uncheckedFolders = 0;            // that its check did not come to, or to the end of

    RunFlags& Flags() { return client.flags; }
    void Log(const Text& message) { view.LogLine(message, Record::yes); }
};

// Selects in lstTree the folder that the client shows. False without a client, which the log says; and, with
// a warning box (a line in the log, where nobody may be there to close it), without any folders and when the
// client shows one that is not in the list (it was restarted, say), or has only just begun to change to it.
enum class Refusal { inBox, inLog };
bool SelectShownFolder(FolderRun& run, Refusal want = Refusal::inBox);

// The log's words for a run that ends between two e-mails or two folders, by the user's wish or the program's
// own.
void LogStopAfterEmail(FolderRun& run);
void LogStopAfterFolder(FolderRun& run);

// Export folder and full name of the selected folder, the latter also on the window.
void UseSelectedFolder(FolderRun& run);

bool IsStoreThere(FolderRun& run);

// Says why there was no result: a stop, another folder that the client shows by now, or its silence.
enum class NoResult { stopped, otherFolder, clientSilent };
NoResult SayNoResult(FolderRun& run);

// E-mails of the selected folder's list; nothing when the client does not say, or shows another folder. None
// are not believed for a second: the list may just be being filled.
std::optional<std::int32_t> CountEmails(FolderRun& run);

// Names the columns that the list lacks, if it does, and those that it has.
void LogMissingColumns(FolderRun& run);

// What a check of one folder and a check of all say alike: the words for a number of e-mails, and the
// summary's line for some e-mails of the folder, or for all of them, that are not saved.
Text NotSavedText(std::int32_t emails);
void SummariseNotSaved(FolderRun& run, std::int32_t emails);
void SummariseNothingStored(FolderRun& run, std::int32_t emails);

// Of a check of all folders, whose figures are only those of the others; empty when it came to each one's
// end.
Text NotCheckedText(const FolderRun& run);

// In log and summary, before the closing line: the extras that would have done more.
void SayMissedExtras(FolderRun& run);

// In log and box.
void ReportDatabaseError(Reporter& reporter, const DatabaseError& error);
