// WindowDiscovery.h: finds windows by fragments of class name and caption, and the mail client's by theirs.
// Fragments match anywhere and in any letter case; an empty one matches everything. The first match in the
// system's order wins. "Not found" is 0.
#pragma once
#include "oe/OeClient.h"

inline constexpr TextView kDialogClass = u"#32770"; // of every dialog and message box

WindowHandle FindTopWindow(Desktop& desktop, TextView className);
WindowHandle FindTopWindowEx(Desktop& desktop, TextView caption, TextView className); // caption first
// Direct children only. With parent 0 top-level windows are searched instead, which finds none of the
// classes that are sought below a window.
WindowHandle FindChildWindow(Desktop& desktop, WindowHandle parent, TextView className);
WindowHandle FindChildWindowEx(Desktop& desktop, WindowHandle parent, TextView caption, TextView className);
// FindTopWindowEx among the windows of the client's process alone.
WindowHandle FindTopWindowOf(OeClient& client, TextView caption, TextView className);
bool IsOfClient(OeClient& client, WindowHandle window); // of the process of client.handles.mainWindow
// FindTopWindowOf, tries + 1 times at the most, 100 ms apart.
WindowHandle WaitForTopWindow(OeClient& client, TextView caption, TextView className, int tries);
Text GetWindowCaption(Desktop& desktop, WindowHandle window); // at most 255 characters

bool IsOeRunning(Desktop& desktop, WindowHandle& mainWindow);
// Fills client.handles and says on the display what was found.
void FindOeHandles(OeClient& client);
// For a client that shows no message list.
void SayNoMessageList(Reporter& reporter, Record record);
// The folder tree's control below client.handles.mainWindow, found by the client's words.
WindowHandle FindFolderTree(OeClient& client);
