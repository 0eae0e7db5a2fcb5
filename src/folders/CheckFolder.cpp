#include "folders/CheckFolder.h"

#include "folders/Comparison.h"
#include "folders/StoredFiles.h"
#include "oe/Conversation.h"
#include "oe/WindowDiscovery.h"

#include <algorithm>

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

std::optional<std::int32_t> CheckShownFolder(FolderRun& run)
{
    FindOeHandles(run.client);
    if (!run.client.handles.listViewFound) {
        ReportSilentClient(run.client);
        return std::nullopt;
    }
    UseSelectedFolder(run);
    run.view.SelectFolderNode(run.selectedFolder); // the one that is marked
    if (run.view.Options().storeFolder.empty()) return std::nullopt;
    std::vector<Text> emlFiles;
    if (const Text reason = ListStoredFiles(run, emlFiles); !reason.empty()) {
        run.view.MarkFolderNode(u"", u"envelope"); // an earlier verdict holds no more
        LogAndShow(run, BoxIcon::warning, reason);
        return std::nullopt;
    }
    const std::optional<std::int32_t> answer = CountEmails(run);
    if (!answer) {
        (void)SayNoResult(run);
        return std::nullopt;
    }
    const std::int32_t total = *answer;
    if (!run.files.DirectoryExists(run.exportFolder)) {
        NothingStored(run, total, u"Folder has not been stored.");
        return total;
    }

    run.view.MarkFolderNode(u"", u"envelope");
    if (emlFiles.empty()) {
        if (total > 0)
            NothingStored(run, total, u"No emails for this folder have been stored.");
        else
            LogAndShow(run, BoxIcon::information, u"No emails exist in this folder to be exported.",
                       u"\r\n" + run.exportFolder);
        return total;
    }
    const std::optional<ComparisonResult> result = CompareFolder(run, total, emlFiles);
    SayMissedExtras(run);
    if (!result) {
        (void)SayNoResult(run);
        return std::nullopt;
    }
    SayVerdict(run, *result);
    return std::max(result->unsaved, 0);
}

} // namespace

std::optional<std::int32_t> CheckFolder(FolderRun& run)
{
    WindowHandle mainWindow = 0;
    if (!run.client.lstTree.empty() && !IsOeRunning(run.client.desktop, mainWindow)) {
        ReportSilentClient(run.client);
        return std::nullopt;
    }
    if (!SelectShownFolder(run)) return std::nullopt;
    std::optional<std::int32_t> unsaved;
    try {
        unsaved = CheckShownFolder(run);
    } catch (const DatabaseError& error) {
        ReportDatabaseError(run.view, error);
    }
    run.view.ShowPercentage(Bar::currentFolder, 0);
    SweepRemoteMemory(run.client.memory);
    return unsaved;
}
