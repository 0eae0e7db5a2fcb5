#include "folders/FolderRun.h"

#include "folders/StoreFolders.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"

namespace {
constexpr int kCountTries = 5, kCountInterval = 200; // milliseconds, for a list that is just being filled

void LogStop(FolderRun& run, const Text& byUser)
{
    run.Log(run.Flags().stopRequested ? byUser : u"Program forced to abort.");
}

} // namespace

bool SelectShownFolder(FolderRun& run, Refusal want)
{
    WindowHandle mainWindow = 0;
    if (!IsOeRunning(run.client.desktop, mainWindow)) {
        FindOeHandles(run.client); // says so
        return false;
    }
    run.client.memory.denied = false; // it may have been started anew
    // Asked once: a folder that is not known must not be taken for the root, under whose name its e-mails
    // would be filed. And a client that was just clicked marks a folder before it shows it.
    const std::optional<int> shown = ShownFolder(run.client);
    if (shown && AwaitCaption(run.client, *shown)) {
        run.selectedFolder = *shown;
        run.view.SelectFolderLine(run.selectedFolder);
        return true;
    }
    if (run.client.silent) {
        ReportSilentClient(run.client);
        return false;
    }
    if (run.client.memory.denied)
        run.Log(
            u"Outlook Express runs with higher rights than Quillbox, or as another user: start both alike.");
    const Text words = u"Please ensure a folder has been selected in Outlook Express";
    if (want == Refusal::inLog)
        run.Log(words);
    else
        run.view.ShowBox(BoxIcon::warning, words);
    return false;
}

void LogStopAfterEmail(FolderRun& run)
{
    LogStop(run, u"User aborted on email export.");
}

void LogStopAfterFolder(FolderRun& run)
{
    LogStop(run, u"User aborted folder export.");
}

void UseSelectedFolder(FolderRun& run)
{
    const auto index = static_cast<std::size_t>(run.selectedFolder);
    run.currentFolder = run.folderPaths[index];
    run.exportFolder = ExportFolderOf(run.view.Options().storeFolder, run.storeDirectories[index]);
    run.view.ShowCurrentFolder(run.currentFolder);
}

bool IsStoreThere(FolderRun& run)
{
    return run.files.DirectoryExists(run.view.Options().storeFolder);
}

std::optional<std::int32_t> CountEmails(FolderRun& run)
{
    std::optional<std::int32_t> count;
    WaitUntil(run.client, kCountTries, kCountInterval, [&] {
        FindListAgain(run.client);
        count = ListItemCount(run.client);
        const bool isThere = run.client.silent || run.client.desktop.IsThere(run.client.handles.listView);
        return count ? *count != 0 : isThere; // one that was made anew is looked for again
    });
    // What was counted is this folder's only if the client shows it.
    return ShownFolder(run.client) == run.selectedFolder ? count : std::nullopt;
}

NoResult SayNoResult(FolderRun& run)
{
    if (run.Flags().stopAfterEmail && !run.client.silent) {
        LogStopAfterEmail(run);
        return NoResult::stopped;
    }
    WindowHandle mainWindow = 0;
    const bool isThere = !run.client.silent && IsOeRunning(run.client.desktop, mainWindow);
    if (isThere && ShownFolder(run.client) != run.selectedFolder) {
        run.Log(u"Outlook Express shows another folder meanwhile; this one has no result.");
        return NoResult::otherFolder;
    }
    ReportSilentClient(run.client);
    return NoResult::clientSilent;
}

void LogMissingColumns(FolderRun& run)
{
    OeClient& client = run.client;
    Text names;
    for (const Text& title : MissingColumns(client)) names += (names.empty() ? u"" : u", ") + title;
    if (names.empty()) return;
    run.Log(u"The message list has no column titled: " + names);
    Text shown; // in quotes, as a caption of settings.ini may stand
    std::size_t titles = 0;
    for (const ListColumn& column : client.columns) {
        if (column.title.empty()) continue;
        shown += (shown.empty() ? u"\"" : u", \"") + column.title + u'"';
        ++titles;
    }
    if (!shown.empty()) run.Log(u"Its columns are titled: " + shown);
    // With as many titles as are needed they may be there in another language.
    if (titles >= client.words.ColumnTitles().size()) NoteOtherLanguage(client);
}

Text NotSavedText(std::int32_t emails)
{
    return DecimalText(emails) + u" email(s) not saved";
}

void SummariseNotSaved(FolderRun& run, std::int32_t emails)
{
    run.view.AppendSummary(run.currentFolder + u" - " + NotSavedText(emails));
}

void SummariseNothingStored(FolderRun& run, std::int32_t emails)
{
    run.view.AppendSummary(run.currentFolder + u" - all " + DecimalText(emails) +
                           u" emails need to be exported.");
}

Text NotCheckedText(const FolderRun& run)
{
    if (run.uncheckedFolders == 0) return {};
    return DecimalText(run.uncheckedFolders) + u" folder(s) were not checked.";
}

void SayMissedExtras(FolderRun& run)
{
    for (const Text& key : run.client.missedExtras) {
        const Text line = u"The extra \"" + key + u"\" is made for what was left out here.";
        run.Log(line);
        run.view.AppendSummary(line);
    }
}

void ReportDatabaseError(Reporter& reporter, const DatabaseError& error)
{
    const Text words = u"Database error: " + error.Words();
    reporter.LogLine(words, Record::yes);
    reporter.ShowBox(BoxIcon::warning, words);
}
