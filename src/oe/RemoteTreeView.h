// RemoteTreeView.h: reads the client's folder tree and makes the client change to another folder.
#pragma once
#include "oe/OeClient.h"

struct TreeItemReading {
    Text text;
    bool isRead = false;
    std::int32_t children = 0; // as the client says it; the walk goes by the items themselves
};
TreeItemReading ReadTreeItem(OeClient& client, WindowHandle tree, std::int32_t item);

// Appends the first root and everything below it to client.lstTree, depth first. Without a tree: nothing.
// False when the client fell silent meanwhile or an item could not be read: folders are missing then.
bool WalkFolderTree(OeClient& client);

// Line of lstTree that the client shows; 0 also when it is none of them.
int CurrentFolderIndex(OeClient& client);
// The same, with nothing for a folder that lstTree does not know, or when the client does not say. A client
// that was started anew has other items, though they may have the same numbers.
std::optional<int> ShownFolder(OeClient& client);
// Whether the caption of the client's window names the folder. It follows the list, while the tree's mark may
// run ahead of both.
bool IsInCaption(OeClient& client, int index);
// Waits for that as long as for a change of folder, about three seconds.
bool AwaitCaption(OeClient& client, int index);

// Makes the client show the folder and waits until its list is that folder's: settle time, then up to about
// three seconds. On failure, and for a client that was started anew, the log says so, stopAfterEmail and
// stopAfterFolder are set and the answer is false: the list on the screen belongs to another folder then.
bool ChangeFolder(OeClient& client, int index, const Text& folderName);
