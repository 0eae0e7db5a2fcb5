#include "folders/CheckFolder.h"

#include "folders/Comparison.h"
#include "oe/Conversation.h"
#include "oe/WindowDiscovery.h"

namespace {

void LogAndShow(FolderRun& run, BoxIcon icon, const Text& words, const Text& more = {})
{
    run.view.LogLine(words, Record::yes);
    run.view.ShowBox(icon, words + more);
}

void NothingStored(FolderRun& run, std::int32_t total, const Text& words)
{
    run.view.LogLine(words, Record::yes);
    if (total > 0) {
        SummariseNothingStored(run, total);
        run.view.MarkFolderNode(u"0/" + DecimalText(total), u"red");
    }
    run.view.ShowBox(BoxIcon::information, words + u"\r\n" + run.exportFolder);
}

void SayVerdict(FolderRun& run, const ComparisonResult& result)
{
    const Text& label = run.nodes[static_cast<std::size_t>(run.selectedFolder)].name;
    const Text saved = label + u" has " + DecimalText(result.saved) + u" saved email(s). ";
    const Text status = DecimalText(result.saved) + u'/' + DecimalText(result.total);
    if (result.unsaved > 0) {
        LogAndShow(run, BoxIcon::warning, saved + NotSavedText(result.unsaved) + u'.');
        SummariseNotSaved(run, result.unsaved);
        run.view.MarkFolderNode(status, result.saved < 1 ? u"red" : u"yellow");
    } else if (result.unsaved < 0) {
        LogAndShow(run, BoxIcon::warning,
                   saved + u"All emails have been saved but there are " +
                       DecimalText(-static_cast<std::int64_t>(result.unsaved)) + u" extra emails");
        run.view.MarkFolderNode(status, u"");
    } else {
        LogAndShow(run, BoxIcon::information, saved + u"All emails have been saved.");
        run.view.MarkFolderNode(status, u"green");
    }
}

void CheckShownFolder(FolderRun& run)
{
    FindOeHandles(run.client);
    if (!run.client.handles.listViewFound) return ReportSilentClient(run.client);
    UseSelectedFolder(run);
    run.view.SelectFolderNode(run.selectedFolder); // the one that is marked
    if (run.view.Options().storeFolder.empty()) return;
    const std::vector<Text> emlFiles = run.files.ListEmlFiles(run.exportFolder);
    const std::optional<std::int32_t> answer = CountEmails(run);
    if (!answer) return (void)SayNoResult(run);
    const std::int32_t total = *answer;
    if (!run.files.DirectoryExists(run.exportFolder))
        return NothingStored(run, total, u"Folder has not been stored.");

    run.view.MarkFolderNode(u"", u"envelope");
    if (emlFiles.empty() && total <= 0)
        return LogAndShow(run, BoxIcon::information, u"No emails exist in this folder to be exported.",
                          u"\r\n" + run.exportFolder);
    if (emlFiles.empty()) return NothingStored(run, total, u"No emails for this folder have been stored.");

    const std::optional<ComparisonResult> result = CompareFolder(run, total, emlFiles);
    if (result)
        SayVerdict(run, *result);
    else
        (void)SayNoResult(run);
}

} // namespace

void CheckFolder(FolderRun& run)
{
    WindowHandle mainWindow = 0;
    if (!run.client.lstTree.empty() && !IsOeRunning(run.client.desktop, mainWindow))
        return ReportSilentClient(run.client);
    if (!SelectShownFolder(run)) return;
    try {
        CheckShownFolder(run);
    } catch (const DatabaseError& error) {
        ReportDatabaseError(run.view, error);
    }
    run.view.ShowPercentage(Bar::currentFolder, 0);
    SweepRemoteMemory(run.client.memory);
}
