#include "oe/WindowDiscovery.h"

#include "oe/Conversation.h"

namespace {

constexpr int kClassBuffer = 100;
constexpr int kCaptionBuffer = 256;
constexpr int kListTries = 50, kListInterval = 200; // milliseconds, for a list that is made anew
constexpr TextView kMainClass = u"Outlook Express Browser Class";
constexpr TextView kPaneFrame = u"Outlook Express Pane Frame";
constexpr TextView kTreeHolder = u"ThorTreeViewWndClass", kTree = u"SysTreeView32";

// The shared state of a search. Searches do not overlap, so each call has its own.
struct WindowSearch {
    Desktop& desktop;
    std::optional<TextView> caption; // nothing: the caption is not read at all
    TextView className;
    WindowHandle parent;
    WindowHandle found = 0;

    bool Matches(WindowHandle window) const
    {
        if (FindNoCase(desktop.ClassOf(window, kClassBuffer), className) == Text::npos) return false;
        if (parent > 0 && desktop.ParentOf(window) != parent) return false;
        return !caption || FindNoCase(desktop.CaptionOf(window, kCaptionBuffer), *caption) != Text::npos;
    }
    WindowHandle Run()
    {
        const auto visit = [this](WindowHandle window) {
            if (!Matches(window)) return true;
            found = window;
            return false;
        };
        if (parent != 0)
            desktop.EnumDescendants(parent, visit);
        else
            desktop.EnumTopWindows(visit);
        return found;
    }
};

// The direct children of exactly this class.
std::vector<WindowHandle> ChildrenOf(Desktop& desktop, WindowHandle parent, TextView className)
{
    std::vector<WindowHandle> found;
    if (parent == 0) return found;
    desktop.EnumDescendants(parent, [&](WindowHandle window) {
        if (desktop.ParentOf(window) == parent &&
            EqualNoCase(desktop.ClassOf(window, kClassBuffer), className))
            found.push_back(window);
        return true;
    });
    return found;
}

WindowHandle ButtonOf(Desktop& desktop, WindowHandle dialog, DialogButton which)
{
    for (const WindowHandle button : ChildrenOf(desktop, dialog, u"Button"))
        if (desktop.ControlIdOf(button) == static_cast<std::int32_t>(which)) return button;
    return 0;
}

// A modal dialog over the main window that names a file, with a choice of types of which e-mails are the
// chosen one: a dialog for anything else must not be taken for it, as a path will be typed into it.
bool HasPartsOfSaveDialog(OeClient& client, WindowHandle window)
{
    Desktop& desktop = client.desktop;
    if (!EqualNoCase(desktop.ClassOf(window, kClassBuffer), kDialogClass)) return false;
    if (desktop.OwnerOf(window) != client.handles.mainWindow || !IsOfClient(client, window)) return false;
    if (desktop.IsEnabled(client.handles.mainWindow)) return false;
    for (const DialogButton button : {DialogButton::ok, DialogButton::cancel})
        if (ButtonOf(desktop, window, button) == 0) return false;
    if (FindChildWindow(desktop, window, u"ComboBoxEx32") == 0) return false;
    for (const WindowHandle types : ChildrenOf(desktop, window, u"ComboBox")) {
        const std::optional<Text> type = AskForText(client, types);
        if (type && FindNoCase(*type, u"*.eml") != Text::npos) return true;
    }
    return false;
}

WindowHandle FindDialogByParts(OeClient& client)
{
    WindowHandle found = 0;
    int count = 0;
    client.desktop.EnumTopWindows([&](WindowHandle window) {
        if (HasPartsOfSaveDialog(client, window)) {
            found = window;
            ++count;
        }
        return true;
    });
    return count == 1 ? found : 0;
}

// The tree in whichever pane holds one.
WindowHandle FindTreeByParts(OeClient& client, WindowHandle navigation)
{
    for (const WindowHandle frame : ChildrenOf(client.desktop, navigation, kPaneFrame)) {
        const WindowHandle holder = FindChildWindow(client.desktop, frame, kTreeHolder);
        const WindowHandle tree = holder > 0 ? FindChildWindow(client.desktop, holder, kTree) : 0;
        if (tree > 0) return tree;
    }
    return 0;
}

void FindListWindows(Desktop& desktop, OeHandles& handles)
{
    handles.messageView = FindChildWindow(desktop, handles.mainWindow, u"Outlook Express Message View");
    handles.messageList = FindChildWindow(desktop, handles.messageView, u"Outlook Express Message List");
    handles.listView = FindChildWindow(desktop, handles.messageList, u"ATL:SysListView32");
    handles.listViewFound = handles.listView >= 1;
}

} // namespace

WindowHandle FindTopWindow(Desktop& desktop, TextView className)
{
    return WindowSearch{desktop, {}, className, 0}.Run();
}

WindowHandle FindTopWindowEx(Desktop& desktop, TextView caption, TextView className)
{
    return WindowSearch{desktop, caption, className, 0}.Run();
}

WindowHandle FindChildWindow(Desktop& desktop, WindowHandle parent, TextView className)
{
    return WindowSearch{desktop, {}, className, parent}.Run();
}

WindowHandle FindChildWindowEx(Desktop& desktop, WindowHandle parent, TextView caption, TextView className)
{
    return WindowSearch{desktop, caption, className, parent}.Run();
}

bool IsOfClient(OeClient& client, WindowHandle window)
{
    ProcessApi& api = client.memory.api;
    const std::uint32_t own = api.ProcessIdOf(client.handles.mainWindow);
    return own != 0 && api.ProcessIdOf(window) == own;
}

Text GetWindowCaption(Desktop& desktop, WindowHandle window)
{
    return desktop.CaptionOf(window, kCaptionBuffer);
}

bool IsOeRunning(Desktop& desktop, WindowHandle& mainWindow)
{
    mainWindow = FindTopWindow(desktop, kMainClass);
    return mainWindow >= 1;
}

void FindOeHandles(OeClient& client)
{
    const auto show = [&client](const Text& words) { client.reporter.LogLine(words, Record::no); };
    show(u"Getting Outlook Express handles");
    OeHandles& handles = client.handles;
    Text missing; // each failure overwrites the one before: only the last is told
    handles.mainWindow = FindTopWindow(client.desktop, kMainClass);
    FindListWindows(client.desktop, handles);
    if (handles.messageView == 0) missing = u"Message View could not be found.";
    if (handles.messageList == 0) missing = u"Message List could not be found.";
    if (!handles.listViewFound) missing = u"List View could not be found.";

    handles.oeFound = handles.mainWindow > 0;
    if (!handles.oeFound) {
        show(u"Could not find Outlook Express window");
    } else if (!missing.empty()) {
        show(missing);
        SayNoMessageList(client.reporter, Record::no);
    } else {
        show(u"Outlook Express found");
    }
}

void FindListAgain(OeClient& client)
{
    OeHandles& handles = client.handles;
    if (!handles.oeFound || client.desktop.IsThere(handles.listView)) return;
    const auto isOver = [&] {
        OeHandles found = handles;
        FindListWindows(client.desktop, found);
        return found.listViewFound || client.silent || client.flags.stopAfterEmail ||
               !client.desktop.IsThere(handles.mainWindow);
    };
    WaitUntil(client, handles.listViewFound ? kListTries : 0, kListInterval, isOver);
    FindOeHandles(client);
}

void SayNoMessageList(Reporter& reporter, Record record)
{
    reporter.LogLine(u"Outlook Express found, but could not access message list.", record);
}

WindowHandle FindFolderTree(OeClient& client)
{
    if (client.handles.mainWindow < 1) return 0;
    Desktop& desktop = client.desktop;
    const WindowHandle pane =
        FindChildWindowEx(desktop, client.handles.mainWindow, u"", u"Outlook Express Navigation Pane");
    if (client.settings.anyLanguage) return FindTreeByParts(client, pane);
    const WindowHandle frame = FindChildWindowEx(desktop, pane, client.words.folderPane, kPaneFrame);
    const WindowHandle holder = FindChildWindowEx(desktop, frame, u"", kTreeHolder);
    const WindowHandle tree = FindChildWindowEx(desktop, holder, client.words.folderTree, kTree);
    if (tree == 0 && FindTreeByParts(client, pane) != 0) NoteOtherLanguage(client);
    return tree;
}

void NoteOtherLanguage(OeClient& client)
{
    NoteMissedExtra(client, u"Any Language", client.settings.anyLanguage);
}

WindowHandle FindSaveDialog(OeClient& client)
{
    if (client.settings.anyLanguage) return FindDialogByParts(client);
    WindowHandle found = 0;
    const WindowSearch ofClass{client.desktop, {}, kDialogClass, 0};
    std::set<WindowHandle>& others = client.saveDialog.others;
    ProcessApi& api = client.memory.api;
    const std::uint32_t own = api.ProcessIdOf(client.handles.mainWindow);
    if (own == 0) return 0;
    client.desktop.EnumTopWindows([&](WindowHandle window) {
        if (others.count(window)) return true;
        // Most windows are others', and their names take longer to ask for.
        if (api.ProcessIdOf(window) != own || !ofClass.Matches(window)) {
            others.insert(window);
            return true;
        }
        const Text caption = GetWindowCaption(client.desktop, window);
        if (FindNoCase(caption, client.words.saveDialog) != Text::npos) found = window;
        return found == 0;
    });
    return found;
}

WindowHandle FindButtonOf(OeClient& client, WindowHandle dialog, TextView caption, DialogButton id)
{
    if (client.settings.anyLanguage) return ButtonOf(client.desktop, dialog, id);
    return FindChildWindowEx(client.desktop, dialog, caption, u"Button");
}
