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
bool IsOfClient(OeClient& client, WindowHandle window);       // of the process of client.handles.mainWindow
Text GetWindowCaption(Desktop& desktop, WindowHandle window); // at most 255 characters

bool IsOeRunning(Desktop& desktop, WindowHandle& mainWindow);
// Fills client.handles and says on the display what was found.
void FindOeHandles(OeClient& client);
// The same when the list is being made anew: it is another window then, for which it waits up to ten seconds.
// One that did not come in that time is looked for without a wait.
void FindListAgain(OeClient& client);
// For a client that shows no message list.
void SayNoMessageList(Reporter& reporter, Record record);

enum class DialogButton : std::int32_t { ok = 1, cancel = 2, no = 7 }; // control ids, as Windows has them
// The folder tree's control below client.handles.mainWindow: by captions, or in the pane that holds a tree.
WindowHandle FindFolderTree(OeClient& client);
// That the client seems to speak another language than the captions: an extra would have helped.
void NoteOtherLanguage(OeClient& client);
// The client's own "Save Message As", as another program may have a dialog of that name: by its caption, or
// by its owner, its class and its parts. 0 in any language also when two look like one.
WindowHandle FindSaveDialog(OeClient& client);
// Of that dialog, no deeper: by a part of its caption, or in any language by its id.
WindowHandle FindButtonOf(OeClient& client, WindowHandle dialog, TextView caption, DialogButton id);
