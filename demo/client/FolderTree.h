// FolderTree.h: the pane with the folder tree: "Outlook Express", "Local Folders", and the mailbox's folders.
#pragma once
#include "demo/client/Languages.h"
#include "demo/mailbox/Mailbox.h"

#include <windows.h>

// Makes the chain of windows below the main window down to the tree, which is left out with withTree false,
// and answers the pane. The tree's notifications reach the main window.
HWND CreateFolderPane(HWND mainWindow, const MailFolder& root, const Language& language, bool withTree);

HWND TreeOf(HWND pane); // null without a tree

// Selects a folder; null is the item above "Local Folders". The notification follows before it returns.
void SelectFolder(HWND pane, const MailFolder* folder);

// The folder of a TVN_SELCHANGED notification; null for the item above "Local Folders".
const MailFolder* FolderOfNotification(const NMHDR* notification);
