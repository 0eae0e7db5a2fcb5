#include "folders/Synchronise.h"

#include "folders/FolderPaths.h"
#include "folders/StoreFolders.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"

namespace {

// False when they could not all be read: with a part of its folders the others would never be exported.
bool ReadFolders(FolderRun& run)
{
    std::vector<OeFolder> before;
    before.swap(run.client.lstTree);
    if (!WalkFolderTree(run.client)) {
        run.client.lstTree.swap(before);
        return false;
    }
    run.nodes = FolderNodesOf(run.client.lstTree);
    run.folderPaths = BuildFolderPaths(run.nodes);
    run.storeDirectories = StoreDirectories(run.nodes, run.codePage);
    run.selectedFolder = -1;

    std::vector<Text> lines;
    for (const OeFolder& folder : run.client.lstTree) lines.push_back(folder.text);
    run.view.ShowFolderLists(lines, run.folderPaths);
    run.view.ShowFolderTree(run.nodes);
    return true;
}

void SelectFolderOfClient(FolderRun& run)
{
    const MessageDetails details = GetMessageDetails(run.client);
    run.view.ShowText(u"Subject: " + SubjectOf(run.client, details));
    if (run.client.lstTree.empty()) return;
    run.selectedFolder = CurrentFolderIndex(run.client);
    run.view.SelectFolderLine(run.selectedFolder);
    run.currentFolder = run.folderPaths[static_cast<std::size_t>(run.selectedFolder)];
    run.view.ShowCurrentFolder(run.currentFolder);
}

} // namespace

void Synchronise(FolderRun& run)
{
    run.view.LogLine(u"-- Syncing with OE --", Record::yes);
    FindOeHandles(run.client);
    if (!run.client.handles.oeFound) return;
    if (!ReadFolders(run)) {
        if (run.client.silent) return ReportSilentClient(run.client);
        const Text words = u"The folders of Outlook Express could not be read; press \"Sync with OE\" again.";
        run.Log(words);
        return run.view.ShowBox(BoxIcon::warning, words);
    }
    run.view.UnlockCommands();
    if (run.client.handles.listViewFound) SelectFolderOfClient(run);
    SayMissedExtras(run);
    SweepRemoteMemory(run.client.memory);
}

void ShowSelectedEmail(FolderRun& run)
{
    OeClient& client = run.client;
    FindOeHandles(client);
    if (!client.handles.listViewFound) return;
    const MessageDetails details = GetMessageDetails(client);
    if (client.silent) return ReportSilentClient(client);
    run.view.ShowText(u"Message ID: " + DecimalText(client.currentEmailId));
    const EmailEntry entry = BuildEmailEntry(client, details);
    run.view.SetSummary(u"Subject: " + entry.Subject + u"\r\nFrom: " + entry.From.front() + u"\r\nTo: " +
                        entry.To.front() + u"\r\nSent: " + run.locale.DateText(entry.Sent) + u"\r\nRec: " +
                        run.locale.DateText(entry.Received) + u"\r\nCRC: " + entry.Crc);
    SweepRemoteMemory(client.memory);
}
