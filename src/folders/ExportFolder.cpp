#include "folders/ExportFolder.h"

#include "folders/ExportStatistics.h"
#include "folders/ExportTally.h"
#include "folders/StoreFolders.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/SaveDialog.h"
#include "oe/WindowDiscovery.h"

#include <algorithm>

namespace {

constexpr std::int32_t kSweepEvery = 64; // e-mails
constexpr std::int32_t kDownKey = 40;
constexpr int kAttempts = 3;    // at an e-mail over which the client fell silent
constexpr int kBlockedMax = 10; // e-mails in a row for which a box of the client stood in the way

struct Outcome {
    std::int32_t passed = 0, failed = 0, skipped = 0;
    FolderTally tally{};
};

enum class LoopEnd { atLast, early };

// Whether the run was asked to end; the flags are cleared then, and an all-folders run is told.
bool IsStopped(FolderRun& run, bool partOfAllFolders)
{
    RunFlags& flags = run.Flags();
    if (!flags.stopAfterEmail) return false;
    LogStopAfterEmail(run);
    flags.runCompleted = flags.stopRequested = flags.stopAfterEmail = false;
    if (partOfAllFolders) flags.stopAfterFolder = true;
    return true;
}

bool IsClientThere(FolderRun& run)
{
    WindowHandle mainWindow = 0;
    if (IsOeRunning(run.client.desktop, mainWindow)) return true;
    run.Log(u"Terminated unexpectedly");
    run.Log(u"OE has closed unexpectedly");
    run.Flags().runCompleted = false;
    return false;
}

SaveResult SaveAndRecord(FolderRun& run, const EmailEntry& entry, const Text& subject, FolderTally& tally)
{
    const RunOptions options = run.view.Options();
    SaveRequest request{subject,           entry.row,        run.exportFolder, options.idOnly,
                        options.skipFiles, options.sendKeys, entry.Crc};
    const SaveResult result = SaveCurrentEmail(run.client, request);
    if (result == SaveResult::untried) return result;
    NoteHandled(tally, entry.row, entry.Crc, false);
    if (result == SaveResult::saved) {
        ++run.runTotalSaved;
        AddSavedEmail(run.saved, run.currentFolder, entry);
        NoteHandled(tally, entry.row, entry.Crc, true);
    }
    return result;
}

// The e-mail that is selected in the client. It is named after the row it was read from, which is not the
// loop's number when the client did not follow the Down key. False when nothing has come of it yet.
bool ExportSelected(FolderRun& run, Outcome& outcome)
{
    FolderTally& tally = outcome.tally;
    const MessageDetails details = GetMessageDetails(run.client);
    if (!run.client.detailsFound) {
        if (run.client.silent) return false;
        run.Log(u"An e-mail could not be read from the message list and was not exported.");
        ++outcome.skipped;
        NoteSkipped(tally, SkipReason::unread);
        return true;
    }
    const Text subject = SubjectOf(run.client, details);
    run.Log(u"- Exporting " + subject);
    const EmailEntry entry = BuildEmailEntry(run.client, details);
    if (IsSaved(run.saved, entry.Crc, run.currentFolder)) {
        ++outcome.skipped;
        NoteRecorded(tally, entry.row, entry.Crc);
        return true;
    }
    switch (SaveAndRecord(run, entry, subject, tally)) {
    case SaveResult::saved:
        ++outcome.passed;
        break;
    case SaveResult::failed:
        ++outcome.failed;
        break;
    case SaveResult::skipped:
        ++outcome.skipped;
        NoteSkipped(tally, SkipReason::nameTaken);
        break;
    case SaveResult::untried:
        return false;
    }
    return true;
}

// A client that falls silent over an e-mail and comes back is asked for it again. False: it has not come
// back, or a box of its own stands in the way of everything; the run is to end.
bool ExportPatiently(FolderRun& run, Outcome& outcome)
{
    for (int attempt = 0; !ExportSelected(run, outcome); ++attempt) {
        if (!run.client.silent) return true; // a stop came first
        if (attempt == kAttempts || !AwaitClient(run.client)) return false;
    }
    return run.client.saveDialog.blocked < kBlockedMax;
}

void EndForSilentClient(FolderRun& run, bool partOfAllFolders)
{
    ReportSilentClient(run.client);
    if (partOfAllFolders) run.Flags().stopAfterFolder = true;
}

LoopEnd ExportEmails(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    const std::int32_t last = statistics.count - 1;
    for (std::int32_t id = run.client.currentEmailId; id <= last; ++id) {
        if (IsStopped(run, partOfAllFolders)) return LoopEnd::early;
        ++statistics.processed;
        statistics.Show(run.view, id, run.client.clock.LocalNow());
        if (partOfAllFolders) statistics.ShowTotals(run.view, run.runTotalSaved, run.runTotalToSave);
        if (!IsClientThere(run)) return LoopEnd::early;
        if (!ExportPatiently(run, outcome)) {
            EndForSilentClient(run, partOfAllFolders);
            return LoopEnd::early;
        }
        SendKey(run.client, run.client.handles.listView, kDownKey, WithCharacter::no);
        if (statistics.processed % kSweepEvery == 0) SweepRemoteMemory(run.client.memory);
        run.view.ProcessEvents();
    }
    return LoopEnd::atLast;
}

// The list may have grown since the loop's last row was counted, or may have led the Down key elsewhere.
void CountAgain(FolderRun& run, LoopEnd end, bool partOfAllFolders, FolderTally& tally)
{
    if (end == LoopEnd::atLast || !run.client.silent) {
        const std::optional<std::int32_t> count = ListItemCount(run.client);
        if (!count && run.client.silent) return EndForSilentClient(run, partOfAllFolders);
        tally.rows = count.value_or(tally.rows);
    }
    const std::int32_t missed = NotReached(tally);
    if (end != LoopEnd::atLast || missed == 0) return;
    run.Log(DecimalText(missed) + u" e-mail(s) were not reached.");
    if (!partOfAllFolders) run.Flags().runCompleted = false;
}

// Nothing to export: said, and not left standing in a run that nobody watches.
void SayEmpty(FolderRun& run, bool partOfAllFolders)
{
    const Text words = u"No emails to export.";
    if (!partOfAllFolders) return run.view.ShowBox(BoxIcon::information, words);
    run.Log(words);
    run.view.ShowBriefBox(BoxIcon::information, words);
}

void ExportList(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    run.view.ShowTab(Tab::progress);
    const std::optional<std::int32_t> count = ListItemCount(run.client);
    if (!count) return EndForSilentClient(run, partOfAllFolders);
    statistics.count = *count;
    if (statistics.count == 0) return SayEmpty(run, partOfAllFolders);
    (void)GetMessageDetails(run.client); // for the row to begin with
    run.Log(u"-- Exporting " + DecimalText(run.client.currentEmailId) + u" to " +
            DecimalText(statistics.count - 1) + u" messages.");
    if (run.client.detailsFound) LogMissingColumns(run);
    outcome.tally.firstRow = std::max(run.client.currentEmailId, 0);
    outcome.tally.rows = statistics.count;
    const LoopEnd end = ExportEmails(run, partOfAllFolders, statistics, outcome);
    CountAgain(run, end, partOfAllFolders, outcome.tally);
}

// Says why the e-mails of this folder cannot be stored; empty when they can.
Text WhyNoExportFolder(FolderRun& run)
{
    CodePage& codePage = run.client.codePage;
    if (codePage.FromAnsi(codePage.ToAnsi(run.exportFolder)) != run.exportFolder)
        return u"The store folder's name has characters that Outlook Express's dialog cannot be told: ";
    if (!MakeFolders(run.client.files, run.exportFolder)) return u"The export folder could not be made: ";
    return {};
}

// In a run over all folders one box at its end tells of all of them, unless the store folder itself fails:
// then no folder of the run could be stored.
void ReportNoExportFolder(FolderRun& run, const Text& words, bool partOfAllFolders)
{
    run.Log(words);
    run.Flags().runCompleted = false;
    if (partOfAllFolders) run.unmadeFolders.push_back(run.currentFolder);
    if (partOfAllFolders && IsStoreThere(run)) return;
    if (partOfAllFolders) run.Flags().stopAfterFolder = true;
    run.view.ShowBox(BoxIcon::warning, words);
}

} // namespace

void ExportFolder(FolderRun& run, bool partOfAllFolders)
{
    if (!partOfAllFolders) run.exported = {};
    if (!SelectShownFolder(run)) {
        run.Flags().runCompleted = false;
        return;
    }
    UseSelectedFolder(run);
    if (const Text reason = WhyNoExportFolder(run); !reason.empty())
        return ReportNoExportFolder(run, reason + run.exportFolder, partOfAllFolders);
    FindOeHandles(run.client);
    run.Log(u"Folder " + run.nodes[static_cast<std::size_t>(run.selectedFolder)].name);

    Outcome outcome;
    ExportStatistics statistics;
    statistics.startTime = run.client.clock.LocalNow();
    try {
        if (run.client.handles.oeFound)
            ExportList(run, partOfAllFolders, statistics, outcome);
        else
            run.Flags().runCompleted = false;
    } catch (const DatabaseError& error) {
        // No export without a record of it.
        run.Flags().runCompleted = false;
        if (partOfAllFolders) run.Flags().stopAfterFolder = true;
        run.Log(u"Database error: " + error.Words());
        run.view.ShowBox(BoxIcon::warning, u"Database error: " + error.Words());
    }
    LogSkipReasons(run, outcome.tally);
    run.Log(DecimalText(outcome.passed) + u" passed, " + DecimalText(outcome.failed) + u" failed, " +
            DecimalText(outcome.skipped) + u" skipped");
    run.Log(u"Export complete");
    AddToTotals(run, outcome.tally, partOfAllFolders ? Extent::wholeList : Extent::fromFirstRow);
    if (!partOfAllFolders) SayClosingLine(run);
    run.view.ShowPercentage(Bar::currentFolder, 0);
    if (!partOfAllFolders) run.view.ShowStopButtons(StopButtons::hidden);
    SweepRemoteMemory(run.client.memory);
}
