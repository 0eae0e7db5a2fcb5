#include "folders/ExportFolder.h"

#include "folders/ExportStatistics.h"
#include "folders/StoreFolders.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/SaveDialog.h"
#include "oe/WindowDiscovery.h"

namespace {

constexpr std::int32_t kSweepEvery = 64; // e-mails
constexpr std::int32_t kDownKey = 40;

struct Outcome {
    std::int32_t passed = 0, failed = 0, skipped = 0;
};

void Log(FolderRun& run, const Text& message)
{
    run.view.LogLine(message, Record::yes);
}

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
    Log(run, u"Terminated unexpectedly");
    Log(run, u"OE has closed unexpectedly");
    run.Flags().runCompleted = false;
    return false;
}

SaveResult SaveAndRecord(FolderRun& run, const EmailEntry& entry, const Text& subject)
{
    const RunOptions options = run.view.Options();
    SaveRequest request{subject,        entry.row,         run.exportFolder,
                        options.idOnly, options.skipFiles, options.sendKeys};
    const SaveResult result = SaveCurrentEmail(run.client, request);
    if (result == SaveResult::saved) {
        ++run.runTotalSaved;
        AddSavedEmail(run.saved, run.currentFolder, entry);
    }
    return result;
}

// The e-mail that is selected in the client. It is named after the row it was read from, which is not the
// loop's number when the client did not follow the Down key.
void ExportSelected(FolderRun& run, Outcome& outcome)
{
    const MessageDetails details = GetMessageDetails(run.client);
    if (!run.client.detailsFound) {
        Log(run, u"An e-mail could not be read from the message list and was not exported.");
        ++outcome.skipped;
        return;
    }
    const Text subject = SubjectOf(run.client, details);
    Log(run, u"- Exporting " + subject);
    const EmailEntry entry = BuildEmailEntry(run.client, details);
    if (IsSaved(run.saved, entry.Crc, run.currentFolder)) {
        ++outcome.skipped;
        return;
    }
    switch (SaveAndRecord(run, entry, subject)) {
    case SaveResult::saved:
        ++outcome.passed;
        break;
    case SaveResult::failed:
        ++outcome.failed;
        break;
    case SaveResult::skipped:
        ++outcome.skipped;
        break;
    }
}

void ExportEmails(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    const std::int32_t last = statistics.count - 1;
    for (std::int32_t id = run.client.currentEmailId; id <= last; ++id) {
        if (IsStopped(run, partOfAllFolders)) return;
        ++statistics.processed;
        statistics.Show(run.view, id, run.client.clock.LocalNow());
        if (partOfAllFolders) statistics.ShowTotals(run.view, run.runTotalSaved, run.runTotalToSave);
        if (!IsClientThere(run)) return;
        ExportSelected(run, outcome);
        SendKey(run.client, run.client.handles.listView, kDownKey, WithCharacter::no);
        if (statistics.processed % kSweepEvery == 0) SweepRemoteMemory(run.client.memory);
        run.view.ProcessEvents();
    }
}

void ExportList(FolderRun& run, bool partOfAllFolders, ExportStatistics& statistics, Outcome& outcome)
{
    run.view.ShowTab(Tab::progress);
    statistics.count = ListItemCount(run.client);
    if (statistics.count == 0) {
        run.view.ShowBox(BoxIcon::information, u"No emails to export.");
        return;
    }
    (void)GetMessageDetails(run.client); // for the row to begin with
    Log(run, u"-- Exporting " + DecimalText(run.client.currentEmailId) + u" to " +
                 DecimalText(statistics.count - 1) + u" messages.");
    ExportEmails(run, partOfAllFolders, statistics, outcome);
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

} // namespace

void ExportFolder(FolderRun& run, bool partOfAllFolders)
{
    if (!SelectShownFolder(run)) {
        run.Flags().runCompleted = false;
        return;
    }
    UseSelectedFolder(run);
    if (const Text reason = WhyNoExportFolder(run); !reason.empty()) {
        Log(run, reason + run.exportFolder);
        run.view.ShowBox(BoxIcon::warning, reason + run.exportFolder);
        run.Flags().runCompleted = false;
        return;
    }
    FindOeHandles(run.client);
    Log(run, u"Folder " + run.nodes[static_cast<std::size_t>(run.selectedFolder)].name);

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
        Log(run, u"Database error: " + error.Words());
        run.view.ShowBox(BoxIcon::warning, u"Database error: " + error.Words());
    }
    Log(run, DecimalText(outcome.passed) + u" passed, " + DecimalText(outcome.failed) + u" failed, " +
                 DecimalText(outcome.skipped) + u" skipped");
    Log(run, u"Export complete");
    run.view.ShowPercentage(Bar::currentFolder, 0);
    if (!partOfAllFolders) run.view.ShowStopButtons(StopButtons::hidden);
    SweepRemoteMemory(run.client.memory);
}
