#include "folders/AllFolders.h"

#include "folders/Comparison.h"
#include "folders/ExportFolder.h"
#include "folders/ExportStatistics.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"

#include <algorithm>

namespace {

struct CheckTotals {
    std::int32_t foldersSaved = 0, foldersNotSaved = 0, foldersEmpty = 0;
    std::int32_t emailsSaved = 0;
};

void Log(FolderRun& run, const Text& message)
{
    run.view.LogLine(message, Record::yes);
}

// Whether the run was asked to end before the next folder; the request is cleared then.
bool IsStopped(FolderRun& run)
{
    RunFlags& flags = run.Flags();
    if (!flags.stopAfterFolder) return false;
    Log(run, flags.stopRequested ? u"User aborted folder export." : u"Program forced to abort.");
    flags.stopAfterFolder = false;
    flags.stopRequested = flags.stopRequested &&
                          flags.stopAfterEmail; // it is the user, too, who ends the export behind this check
    return true;
}

bool IsIgnored(const Text& fullName, const Text& ignoreName)
{
    return !ignoreName.empty() && EqualNoCase(fullName, ignoreName);
}

// The list that is then on the screen is the folder's.
bool ShowInClient(FolderRun& run)
{
    Log(run, u"-> " + run.currentFolder);
    const Text& name = run.nodes[static_cast<std::size_t>(run.selectedFolder)].name;
    if (!ChangeFolder(run.client, run.selectedFolder, name)) return false;
    FindOeHandles(run.client);
    return true;
}

void StopForSilentClient(FolderRun& run)
{
    const Text words = u"Outlook Express has stopped responding - please restart Outlook Express.";
    Log(run, words);
    run.view.ShowBox(BoxIcon::warning, words);
    run.Flags().stopAfterFolder = true;
}

void NoteToExport(FolderRun& run, CheckTotals& totals, std::int32_t emails, std::int32_t firstUnsaved)
{
    run.exportList.push_back({run.currentFolder, firstUnsaved});
    run.runTotalToSave += emails;
    ++totals.foldersNotSaved;
}

void NothingStored(FolderRun& run, CheckTotals& totals, std::int32_t count)
{
    if (count < 1) {
        Log(run, run.currentFolder + u" - empty.");
        ++totals.foldersEmpty;
        return;
    }
    run.view.AppendSummary(run.currentFolder + u" - all " + DecimalText(count) +
                           u" emails need to be exported.");
    NoteToExport(run, totals, count, 0);
    Log(run, run.currentFolder + u" - has all " + DecimalText(count) + u" emails to be exported.");
    run.view.MarkFolderNode(u"0/" + DecimalText(count), u"red");
}

void NoteResult(FolderRun& run, CheckTotals& totals, std::int32_t count, const ComparisonResult& result)
{
    const std::int32_t difference = count - result.saved;
    totals.emailsSaved += result.saved;
    Text image;
    if (difference > 0) {
        const Text number = DecimalText(difference);
        run.view.AppendSummary(run.currentFolder + u" - " + number + u" email(s) not saved");
        NoteToExport(run, totals, difference, result.firstUnsaved);
        Log(run, run.currentFolder + u" - has " + number + u" emails not saved");
        image = u"yellow";
    } else {
        ++totals.foldersSaved;
        if (difference == 0)
            image = u"green";
        else
            Log(run, run.currentFolder + u" - has " + DecimalText(-difference) + u" too many emails saved");
    }
    run.view.MarkFolderNode(DecimalText(result.saved) + u'/' + DecimalText(count), image);
}

void CheckOne(FolderRun& run, CheckTotals& totals)
{
    run.view.SelectFolderNode(run.selectedFolder); // the one that is marked
    run.view.MarkFolderNode(u"", u"envelope");
    if (!ShowInClient(run)) return;
    if (!run.client.handles.listViewFound) return StopForSilentClient(run);
    const std::int32_t count = ListItemCount(run.client);
    const std::vector<Text> emlFiles = run.client.files.ListEmlFiles(run.exportFolder);
    if (emlFiles.empty()) return NothingStored(run, totals, count);
    if (count < 1) {
        Log(run, u"No emails in folder.");
        ++totals.foldersEmpty;
        return;
    }
    const std::optional<ComparisonResult> result = CompareFolder(run, count, emlFiles);
    if (result)
        NoteResult(run, totals, count, *result);
    else if (run.Flags().stopAfterEmail)
        LogStopAfterEmail(run);
    else
        StopForSilentClient(run);
}

void ExportOne(FolderRun& run)
{
    // Kept: of several checks in the list, the first record of the folder counts.
    const auto found =
        std::find_if(run.exportList.begin(), run.exportList.end(),
                     [&run](const FolderToExport& each) { return each.fullName == run.currentFolder; });
    if (found == run.exportList.end() || !ShowInClient(run)) return;
    Log(run, u"Exporting emails from " + run.currentFolder);
    if (run.view.Options().jumpRemain && found->firstUnsaved >= 0)
        SelectListItem(run.client, found->firstUnsaved, OtherItems::clear);
    ExportFolder(run, true);
}

void WalkFolders(FolderRun& run, AllFoldersMode mode, const Text& ignoreName, CheckTotals& totals)
{
    const auto last = static_cast<int>(run.client.lstTree.size()) - 1;
    for (int line = 0; line <= last; ++line) {
        if (IsStopped(run)) return;
        if (mode == AllFoldersMode::check && run.folderCount > 0)
            run.view.ShowPercentage(Bar::allFolders, Percentage(line, run.folderCount));
        if (run.client.lstTree[static_cast<std::size_t>(line)].level == 0) continue; // no mail folder
        run.selectedFolder = line;
        run.view.SelectFolderLine(line);
        UseSelectedFolder(run);
        if (IsIgnored(run.currentFolder, ignoreName)) {
            Log(run, u"Ignoring all folders after: " + ignoreName);
            return;
        }
        const Text bounded = u'|' + run.currentFolder + u'|';
        if (FindNoCase(run.view.Options().systemFolders, bounded) != Text::npos) continue;
        if (mode == AllFoldersMode::check)
            CheckOne(run, totals);
        else
            ExportOne(run);
        SweepRemoteMemory(run.client.memory);
        run.view.ProcessEvents();
        // A check has no e-mail to finish. The flag stays, so that no export follows either.
        if (mode == AllFoldersMode::check && run.Flags().stopAfterEmail) run.Flags().stopAfterFolder = true;
    }
}

void SayTotals(FolderRun& run, const CheckTotals& totals)
{
    run.view.ShowPercentage(Bar::currentFolder, 0);
    run.checkSummary = DecimalText(run.runTotalToSave) + u" email(s) to be saved.";
    run.view.AppendSummary(run.checkSummary);
    Log(run, DecimalText(totals.foldersSaved) + u" folder(s) saved, " + DecimalText(totals.foldersNotSaved) +
                 u" folder(s) not saved, " + DecimalText(totals.foldersEmpty) + u" empty folder(s).");
    Log(run, run.checkSummary);
    Log(run, DecimalText(totals.emailsSaved) + u" email(s) already saved.");
}

} // namespace

void CountFoldersToCheck(FolderRun& run)
{
    const Text ignoreName = run.view.Options().firstFolderToIgnore;
    std::int32_t counted = 0;
    for (std::size_t i = 0; i < run.nodes.size(); ++i) {
        ++counted;
        if (IsIgnored(run.folderPaths[i], ignoreName)) break;
    }
    run.folderCount = counted - 1;
}

void RunAllFolders(FolderRun& run, AllFoldersMode mode)
{
    const Text ignoreName = run.view.Options().firstFolderToIgnore;
    run.view.ShowPercentage(Bar::allFolders, 0);
    if (run.client.lstTree.empty()) return;
    run.view.ClearProgress();
    run.view.ShowTab(Tab::progress);
    if (mode == AllFoldersMode::check) {
        Log(run, u"Checking Outlook Express folders");
        run.runTotalToSave = 0;
    } else {
        Log(run, u"Exporting Outlook Express folders");
        run.view.ShowStatistic(Statistic::totalCount, DecimalText(run.runTotalToSave));
    }
    CheckTotals totals;
    try {
        WalkFolders(run, mode, ignoreName, totals);
    } catch (const DatabaseError& error) {
        Log(run, u"Database error: " + error.Words());
        run.view.ShowBox(BoxIcon::warning, u"Database error: " + error.Words());
    }
    SweepRemoteMemory(run.client.memory);
    if (mode == AllFoldersMode::check) {
        SayTotals(run, totals);
        return;
    }
    // Kept: after a stop, too, so that the closing box follows it.
    run.Flags().runCompleted = true;
    run.view.ShowPercentage(Bar::allFolders, 100);
}
