#include "folders/AllFolders.h"

#include "folders/Comparison.h"
#include "folders/ExportFolder.h"
#include "folders/ExportStatistics.h"
#include "folders/ExportTally.h"
#include "folders/StoredFiles.h"
#include "oe/Conversation.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"

#include <algorithm>

namespace {

struct CheckTotals {
    std::int32_t foldersSaved = 0, foldersNotSaved = 0, foldersEmpty = 0;
    std::int32_t emailsSaved = 0;
};

// Whether the run was asked to end before the next folder; the request is cleared then.
bool IsStopped(FolderRun& run)
{
    RunFlags& flags = run.Flags();
    if (!flags.stopAfterFolder) return false;
    LogStopAfterFolder(run);
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
    run.Log(u"-> " + run.currentFolder);
    const Text& name = run.nodes[static_cast<std::size_t>(run.selectedFolder)].name;
    if (!ChangeFolder(run.client, run.selectedFolder, name)) return false;
    FindOeHandles(run.client);
    return true;
}

bool StopForSilentClient(FolderRun& run)
{
    ReportSilentClient(run.client);
    run.Flags().stopAfterFolder = true;
    return false;
}

// Nothing is known of the folder then.
bool NoCount(FolderRun& run)
{
    if (SayNoResult(run) == NoResult::clientSilent) run.Flags().stopAfterFolder = true;
    return false;
}

void NoteToExport(FolderRun& run, CheckTotals& totals, std::int32_t emails, std::int32_t firstUnsaved)
{
    // Kept: of several checks in the list, the folder's first record counts.
    run.exportList.try_emplace(run.currentFolder, firstUnsaved);
    run.runTotalToSave += emails;
    ++totals.foldersNotSaved;
}

void NothingStored(FolderRun& run, CheckTotals& totals, std::int32_t count)
{
    if (count < 1) {
        run.Log(run.currentFolder + u" - empty.");
        ++totals.foldersEmpty;
        return;
    }
    SummariseNothingStored(run, count);
    NoteToExport(run, totals, count, 0);
    run.Log(run.currentFolder + u" - has all " + DecimalText(count) + u" emails to be exported.");
    run.view.MarkFolderNode(u"0/" + DecimalText(count), u"red");
}

void NoteResult(FolderRun& run, CheckTotals& totals, const ComparisonResult& result)
{
    const std::int32_t count = result.total;
    run.checkedCounts[run.currentFolder] = count;
    const std::int32_t difference = count - result.saved;
    totals.emailsSaved += result.saved;
    Text image;
    if (difference > 0) {
        SummariseNotSaved(run, difference);
        NoteToExport(run, totals, difference, result.firstUnsaved);
        run.Log(run.currentFolder + u" - has " + DecimalText(difference) + u" emails not saved");
        image = u"yellow";
    } else {
        ++totals.foldersSaved;
        if (difference == 0)
            image = u"green";
        else
            run.Log(run.currentFolder + u" - has " + DecimalText(-difference) + u" too many emails saved");
    }
    run.view.MarkFolderNode(DecimalText(result.saved) + u'/' + DecimalText(count), image);
}

// Whether the folder was checked to its end.
bool CheckOne(FolderRun& run, CheckTotals& totals)
{
    run.view.SelectFolderNode(run.selectedFolder); // the one that is marked
    run.view.MarkFolderNode(u"", u"envelope");
    if (!ShowInClient(run)) return false;
    if (!run.client.handles.listViewFound) return StopForSilentClient(run);
    std::vector<Text> emlFiles;
    if (const Text reason = ListStoredFiles(run, emlFiles); !reason.empty()) {
        run.Log(reason);
        return false;
    }
    const std::optional<std::int32_t> answer = CountEmails(run);
    if (!answer) return NoCount(run);
    const std::int32_t count = *answer;
    run.checkedCounts[run.currentFolder] = count;
    if (emlFiles.empty()) {
        NothingStored(run, totals, count);
        return true;
    }
    if (count < 1) {
        run.Log(u"No emails in folder.");
        ++totals.foldersEmpty;
        return true;
    }
    const std::optional<ComparisonResult> result = CompareFolder(run, count, emlFiles);
    if (!result) return NoCount(run);
    NoteResult(run, totals, *result);
    return true;
}

// Whether the folder's e-mails were counted.
bool ExportOne(FolderRun& run, std::int32_t firstUnsaved)
{
    if (!ShowInClient(run)) return false;
    run.Log(u"Exporting emails from " + run.currentFolder);
    if (run.view.Options().jumpRemain && firstUnsaved >= 0)
        SelectListItem(run.client, firstUnsaved, OtherItems::clear);
    return ExportFolder(run, true);
}

// A mail folder that a run is about: no root, no system folder.
bool IsPassedOver(FolderRun& run, std::size_t line)
{
    if (run.client.lstTree[line].level == 0) return true;
    const Text bounded = u'|' + run.folderPaths[line] + u'|';
    return FindNoCase(run.view.Options().systemFolders, bounded) != Text::npos;
}

// From the line that a run did not come to: what an export leaves there is what its check found, and what a
// check leaves is not known at all.
void CountUnvisited(FolderRun& run, AllFoldersMode mode, int line, const Text& ignoreName)
{
    for (auto i = static_cast<std::size_t>(line); i < run.client.lstTree.size(); ++i) {
        if (IsIgnored(run.folderPaths[i], ignoreName) && run.client.lstTree[i].level > 0) return;
        if (IsPassedOver(run, i)) continue;
        if (mode == AllFoldersMode::check)
            ++run.uncheckedFolders;
        else if (run.exportList.count(run.folderPaths[i]) != 0)
            run.exported.notLookedAt += run.checkedCounts[run.folderPaths[i]];
    }
}

void WalkFolders(FolderRun& run, AllFoldersMode mode, const Text& ignoreName, CheckTotals& totals)
{
    const auto last = static_cast<int>(run.client.lstTree.size()) - 1;
    for (int line = 0; line <= last; ++line) {
        if (IsStopped(run)) return CountUnvisited(run, mode, line, ignoreName);
        if (mode == AllFoldersMode::check && run.folderCount > 0)
            run.view.ShowPercentage(Bar::allFolders, Percentage(line, run.folderCount));
        if (run.client.lstTree[static_cast<std::size_t>(line)].level == 0) continue; // no mail folder
        run.selectedFolder = line;
        run.view.SelectFolderLine(line);
        UseSelectedFolder(run);
        if (IsIgnored(run.currentFolder, ignoreName)) {
            run.Log(u"Ignoring all folders after: " + ignoreName);
            return;
        }
        if (IsPassedOver(run, static_cast<std::size_t>(line))) continue;
        if (mode == AllFoldersMode::check)
            run.uncheckedFolders += CheckOne(run, totals) ? 0 : 1;
        else if (const auto record = run.exportList.find(run.currentFolder);
                 record != run.exportList.end() && !ExportOne(run, record->second))
            run.exported.notLookedAt += run.checkedCounts[run.currentFolder];
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
    run.Log(DecimalText(totals.foldersSaved) + u" folder(s) saved, " + DecimalText(totals.foldersNotSaved) +
            u" folder(s) not saved, " + DecimalText(totals.foldersEmpty) + u" empty folder(s).");
    run.Log(run.checkSummary);
    run.Log(DecimalText(totals.emailsSaved) + u" email(s) already saved.");
    if (const Text unchecked = NotCheckedText(run); !unchecked.empty()) {
        run.Log(unchecked);
        run.view.AppendSummary(unchecked);
    }
    SayMissedExtras(run);
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
        run.Log(u"Checking Outlook Express folders");
        run.uncheckedFolders = 0;
        run.runTotalToSave = 0;
    } else {
        run.Log(u"Exporting Outlook Express folders");
        run.exported = {};
        run.unmadeFolders.clear();
        run.view.ShowStatistic(Statistic::totalCount, DecimalText(run.runTotalToSave));
    }
    CheckTotals totals;
    try {
        // A client that was lost in the check is not asked again.
        if (run.Flags().clientLost)
            CountUnvisited(run, mode, 0, ignoreName);
        else
            WalkFolders(run, mode, ignoreName, totals);
    } catch (const DatabaseError& error) {
        ReportDatabaseError(run.view, error);
        CountUnvisited(run, mode, run.selectedFolder, ignoreName);
    }
    SweepRemoteMemory(run.client.memory);
    if (mode == AllFoldersMode::check) {
        SayTotals(run, totals);
        return;
    }
    if (!run.unmadeFolders.empty() && IsStoreThere(run)) // without it the run has ended with a box of its own
        run.view.ShowBox(BoxIcon::warning, DecimalText(static_cast<std::int32_t>(run.unmadeFolders.size())) +
                                               u" export folder(s) could not be made; the log names them.");
    SayClosingLine(run);
    // Kept: after a stop, too, so that the closing box follows it.
    run.Flags().runCompleted = true;
    run.view.ShowPercentage(Bar::allFolders, 100);
}
