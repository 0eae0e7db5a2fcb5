#include "folders/ExportFolder.h"

#include "folders/ExportStatistics.h"
#include "folders/ExportTally.h"
#include "folders/LookAlikes.h"
#include "folders/SavedFile.h"
#include "folders/StoreFolders.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/SaveDialog.h"
#include "oe/WindowDiscovery.h"
#include "store/SavedMaintenance.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::int32_t kDownKey = 40;
constexpr int kAttempts = 3;    // at an e-mail over which the client fell silent
constexpr int kBlockedMax = 10; // e-mails in a row for which a box of the client stood in the way

struct Outcome {
    std::int32_t passed = 0, failed = 0, skipped = 0;
    FolderTally tally{};
    AlikeList alike{};
    std::vector<Text> missingColumns{}; // as they were said last
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
    WindowHandle mainWindow = run.client.handles.mainWindow;
    // Another one may have taken its place. To list all windows takes longer than to ask for the known one.
    if (run.client.desktop.IsThere(mainWindow) || IsOeRunning(run.client.desktop, mainWindow)) return true;
    run.Log(u"Terminated unexpectedly");
    run.Log(u"OE has closed unexpectedly");
    run.Flags().runCompleted = false;
    return false;
}

// By the user's choice.
bool IsVerified(FolderRun& run, const EmailEntry& entry)
{
    const Text& path = run.client.saveDialog.savedPath;
    const Text reason = WhyNotVerified(run, entry, path);
    if (!reason.empty()) run.Log(u"Not taken for saved, as " + reason + u": " + path);
    return reason.empty();
}

SaveResult SaveAndRecord(FolderRun& run, const EmailEntry& entry, const Text& subject, FolderTally& tally)
{
    const RunOptions options = run.view.Options();
    const EmailFile file{subject, entry.row, run.exportFolder, options.idOnly};
    const SaveRequest request{file,      options.skipFiles,  options.sendKeys,
                              entry.Crc, run.selectedFolder, options.lookAlikes};
    SaveResult result = SaveCurrentEmail(run.client, request);
    if (result == SaveResult::untried) return result;
    NoteHandled(tally, entry.row, entry.Crc, false);
    if (result == SaveResult::saved && !IsThatEmail(run, entry)) result = SaveResult::failed;
    if (result == SaveResult::saved && options.verifySaved && !IsVerified(run, entry))
        result = SaveResult::failed;
    if (result == SaveResult::saved) {
        ++run.runTotalSaved;
        AddSavedEmail(run.saved, run.currentFolder, entry);
        NoteHandled(tally, entry.row, entry.Crc, true);
        if (options.fileDate) DateSavedFile(run, entry, run.client.saveDialog.savedPath);
    }
    return result;
}

// Whether the e-mail is passed over as recorded.
bool IsRecorded(FolderRun& run, const EmailEntry& entry, Outcome& outcome)
{
    FolderTally& tally = outcome.tally;
    if (!tally.savesLookAlikes) {
        if (!IsSaved(run.saved, entry.Crc, run.currentFolder)) return false;
        NoteRecorded(tally, entry.row, entry.Crc);
        return true;
    }
    switch (FindOwnRecord(run, outcome.alike, tally, entry)) {
    case OwnRecord::none:
        return false;
    case OwnRecord::there:
        NoteRecorded(tally, entry.row, entry.Crc);
        return true;
    case OwnRecord::inDoubt:
        break;
    }
    NoteInDoubt(tally, entry.row, entry.Crc);
    return true;
}

// The e-mail that is selected in the client. It is named after the row it was read from, which is not the
// loop's number when the client did not follow the Down key. False when nothing has come of it yet.
bool ExportSelected(FolderRun& run, Outcome& outcome)
{
    FolderTally& tally = outcome.tally;
    FindListAgain(run.client);
    const MessageDetails details = GetMessageDetails(run.client);
    if (!run.client.detailsFound) {
        if (run.client.silent || run.Flags().closing) return false;
        run.Log(u"An e-mail could not be read from the message list and was not exported.");
        ++outcome.skipped;
        NoteSkipped(tally, SkipReason::unread);
        return true;
    }
    if (std::vector<Text> missing = MissingColumns(run.client); missing != outcome.missingColumns) {
        outcome.missingColumns = std::move(missing);
        LogMissingColumns(run);
    }
    const Text subject = SubjectOf(run.client, details);
    run.Log(u"- Exporting " + subject);
    const EmailEntry entry = BuildEmailEntry(run.client, details);
    if (IsRecorded(run, entry, outcome)) {
        ++outcome.skipped;
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

enum class Attempt { done, stopped, clientLost };

// A client that falls silent over an e-mail and comes back is asked for it again.
Attempt ExportPatiently(FolderRun& run, Outcome& outcome)
{
    for (int attempt = 0; !ExportSelected(run, outcome); ++attempt) {
        if (run.Flags().stopAfterEmail && !run.client.silent) return Attempt::stopped;
        if (attempt == kAttempts || !AwaitClient(run.client)) return Attempt::clientLost;
    }
    // A box of its own stands in the way of everything.
    return run.client.saveDialog.blocked < kBlockedMax ? Attempt::done : Attempt::clientLost;
}

void EndForSilentClient(FolderRun& run, bool partOfAllFolders)
{
    ReportSilentClient(run.client);
    if (partOfAllFolders) run.Flags().stopAfterFolder = true;
}

void EndWithoutCount(FolderRun& run, bool partOfAllFolders)
{
    run.Flags().runCompleted = false;
    if (SayNoResult(run) == NoResult::clientSilent && partOfAllFolders) run.Flags().stopAfterFolder = true;
}

// The row that the loop has come to. False when that ends the export.
bool ExportRow(FolderRun& run, std::int32_t id, bool partOfAllFolders, ExportStatistics& statistics,
               Outcome& outcome)
{
    if (IsStopped(run, partOfAllFolders)) return false;
    ++statistics.processed;
    statistics.Show(run.view, id, run.clock.LocalNow());
    if (partOfAllFolders) statistics.ShowTotals(run.view, run.runTotalSaved, run.runTotalToSave);
    if (!IsClientThere(run)) return false;
    const Attempt attempt = ExportPatiently(run, outcome);
    if (attempt == Attempt::clientLost) EndForSilentClient(run, partOfAllFolders);
    if (attempt == Attempt::stopped) (void)IsStopped(run, partOfAllFolders);
    return attempt == Attempt::done;
}

void EndRow(FolderRun& run, const ExportStatistics& statistics)
{
    SweepNowAndThen(run.client.memory, statistics.processed);
    run.view.ProcessEvents();
}

LoopEnd ExportEmails(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    const std::int32_t last = statistics.count - 1;
    for (std::int32_t id = run.client.currentEmailId; id <= last; ++id) {
        if (!ExportRow(run, id, partOfAllFolders, statistics, outcome)) return LoopEnd::early;
        SendKey(run.client, run.client.handles.listView, kDownKey, WithCharacter::no);
        if (id < last && run.view.Options().selectRows) {
            if (ListItemCount(run.client).value_or(statistics.count) <= id + 1) break; // rows have gone
            if (SelectOnly(run.client, id + 1)) outcome.tally.hasMoved = true;
        }
        EndRow(run, statistics);
    }
    return LoopEnd::atLast;
}

enum class ListRead { done, failed, stopped };

// A stop that was asked for on the last e-mail has come true by now, and keeps nobody from looking whether
// that was the last: it is for what comes behind. Whoever does not want to wait asks once more.
ListRead ReadListAgain(FolderRun& run)
{
    RunFlags& flags = run.Flags();
    const bool isOver = flags.stopRequested && !flags.closing && std::exchange(flags.stopAfterEmail, false);
    if (isOver) run.view.ShowStopButtons(StopButtons::shown);
    run.view.ShowText(u"Looking for e-mails that were missed...");
    const bool isRead = ReadFolderEntries(
        run.client, [&run](int percent) { run.view.ShowPercentage(Bar::currentFolder, percent); });
    const bool isAsked = flags.stopAfterEmail && !run.client.silent;
    flags.stopAfterEmail = flags.stopAfterEmail || isOver;
    return isAsked ? ListRead::stopped : isRead ? ListRead::done : ListRead::failed;
}

// The list may have grown since the loop's last row was counted, been sorted anew, or led the Down key
// elsewhere. One that changes under the reading is read once more. early: the client fell silent over it, or
// the user did not wait for it.
LoopEnd LookAgain(FolderRun& run, bool partOfAllFolders, Outcome& outcome)
{
    FolderTally& tally = outcome.tally;
    tally.listAtEnd.reset();
    for (int looks = 2; looks > 0 && !tally.listAtEnd; --looks) {
        const std::optional<std::int32_t> count = CountEmails(run);
        if (!count) break; // silence, or another folder's list, which tells nothing of this one
        tally.rows = *count;
        if (!NeedsListAtEnd(tally, outcome.passed)) break;
        const ListRead end = ReadListAgain(run);
        if (end == ListRead::stopped && IsStopped(run, partOfAllFolders)) return LoopEnd::early;
        const bool isWhole = run.client.folderEntries.size() == static_cast<std::size_t>(*count);
        const std::optional<std::int32_t> after = CountEmails(run);
        if (end == ListRead::done && isWhole && after == count) tally.listAtEnd = CrcsByRow(run.client);
        tally.rows = after.value_or(*count);
    }
    if (run.client.silent) EndForSilentClient(run, partOfAllFolders);
    return run.client.silent ? LoopEnd::early : LoopEnd::atLast;
}

// By the user's choice the export goes back to what the loop has missed, as often as that helps.
LoopEnd ExportMissed(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    std::size_t before = std::numeric_limits<std::size_t>::max();
    for (;;) {
        if (LookAgain(run, partOfAllFolders, outcome) == LoopEnd::early) return LoopEnd::early;
        const std::vector<std::int32_t> rows = MissedRows(outcome.tally);
        if (rows.empty() || rows.size() >= before) return LoopEnd::atLast;
        before = rows.size();
        statistics.count = std::max(statistics.count, rows.back() + 1);
        for (const std::int32_t row : rows) {
            (void)SelectOnly(run.client, row);
            if (!ExportRow(run, row, partOfAllFolders, statistics, outcome)) return LoopEnd::early;
            EndRow(run, statistics);
        }
    }
}

void SayMissed(FolderRun& run, bool partOfAllFolders, const Outcome& outcome)
{
    const FolderTally& tally = outcome.tally;
    const std::int32_t missed = NotLookedAt(tally, Extent::fromFirstRow);
    const bool isUnknown = !tally.listAtEnd && NeedsListAtEnd(tally, outcome.passed);
    if (missed > 0)
        run.Log(DecimalText(missed) + u" e-mail(s) were not reached.");
    else if (isUnknown)
        run.Log(u"The message list could not be read once more, so that e-mails may have been missed.");
    if (missed == 0 && isUnknown && partOfAllFolders) ++run.uncheckedFolders;
    if ((missed > 0 || isUnknown) && !partOfAllFolders) run.Flags().runCompleted = false;
}

// Nothing to export: said, and not left standing in a run that nobody watches.
void SayEmpty(FolderRun& run, bool partOfAllFolders)
{
    const Text words = u"No emails to export.";
    if (!partOfAllFolders) return run.view.ShowBox(BoxIcon::information, words);
    run.Log(words);
    run.view.ShowBriefBox(BoxIcon::information, words);
}

// Whether the e-mails were counted.
bool ExportList(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    run.view.ShowTab(Tab::progress);
    const std::optional<std::int32_t> count = CountEmails(run);
    if (!count) EndWithoutCount(run, partOfAllFolders);
    if (count == 0) SayEmpty(run, partOfAllFolders);
    statistics.count = outcome.tally.rows = outcome.tally.rowsAtStart = count.value_or(0);
    if (statistics.count == 0) return count.has_value();
    (void)GetMessageDetails(run.client); // for the row to begin with
    run.Log(u"-- Exporting " + DecimalText(run.client.currentEmailId) + u" to " +
            DecimalText(statistics.count - 1) + u" messages.");
    outcome.tally.firstRow = std::max(run.client.currentEmailId, 0);
    run.client.saveDialog.blocked = 0;
    const HeldCrcs held(run.saved, run.currentFolder, [&run] { run.view.ProcessEvents(); });
    LoopEnd end = ExportEmails(run, partOfAllFolders, statistics, outcome);
    if (end == LoopEnd::atLast)
        end = run.view.Options().selectRows ? ExportMissed(run, partOfAllFolders, statistics, outcome)
                                            : LookAgain(run, partOfAllFolders, outcome);
    if (end == LoopEnd::atLast)
        SayMissed(run, partOfAllFolders, outcome);
    else if (!run.client.silent)
        outcome.tally.rows = CountEmails(run).value_or(outcome.tally.rows);
    return true;
}

// Says why the e-mails of this folder cannot be stored; empty when they can.
Text WhyNoExportFolder(FolderRun& run)
{
    if (!SurvivesAnsi(run.codePage, run.exportFolder))
        return u"The store folder's name has characters that Outlook Express's dialog cannot be told: ";
    if (!MakeFolders(run.files, run.exportFolder)) return u"The export folder could not be made: ";
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

bool ExportFolder(FolderRun& run, bool partOfAllFolders)
{
    const int wanted = run.selectedFolder;
    if (!partOfAllFolders) run.exported = {};
    if (!partOfAllFolders) run.uncheckedFolders = 0;
    if (!SelectShownFolder(run, partOfAllFolders ? Refusal::inLog : Refusal::inBox)) {
        run.Flags().runCompleted = false;
        if (partOfAllFolders && run.Flags().clientLost) run.Flags().stopAfterFolder = true;
        return false;
    }
    if (partOfAllFolders && run.selectedFolder != wanted) {
        run.Log(u"Outlook Express shows another folder meanwhile; this one was not exported.");
        return false;
    }
    UseSelectedFolder(run);
    if (const Text reason = WhyNoExportFolder(run); !reason.empty()) {
        ReportNoExportFolder(run, reason + run.exportFolder, partOfAllFolders);
        return false;
    }
    FindOeHandles(run.client);
    if (run.client.handles.oeFound && !run.client.handles.listViewFound)
        SayNoMessageList(run.view, Record::yes);
    run.Log(u"Folder " + run.nodes[static_cast<std::size_t>(run.selectedFolder)].name);

    bool isCounted = false;
    Outcome outcome;
    outcome.tally.savesLookAlikes = run.view.Options().lookAlikes;
    ExportStatistics statistics;
    statistics.startTime = run.clock.LocalNow();
    try {
        if (run.client.handles.listViewFound)
            isCounted = ExportList(run, partOfAllFolders, statistics, outcome);
        else
            run.Flags().runCompleted = false;
    } catch (const DatabaseError& error) {
        // No export without a record of it.
        isCounted = true;
        run.Flags().runCompleted = false;
        if (partOfAllFolders) run.Flags().stopAfterFolder = true;
        ReportDatabaseError(run.view, error);
    }
    LogSkipReasons(run, outcome.tally);
    run.Log(DecimalText(outcome.passed) + u" passed, " + DecimalText(outcome.failed) + u" failed, " +
            DecimalText(outcome.skipped) + u" skipped");
    run.Log(u"Export complete");
    if (isCounted)
        AddToTotals(run, outcome.tally, partOfAllFolders ? Extent::wholeList : Extent::fromFirstRow);
    if (!partOfAllFolders) SayClosingLine(run);
    run.view.ShowPercentage(Bar::currentFolder, 0);
    if (!partOfAllFolders) run.view.ShowStopButtons(StopButtons::hidden);
    SweepRemoteMemory(run.client.memory);
    return isCounted;
}
