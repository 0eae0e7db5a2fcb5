#include "oe/WindowDiscovery.h"

#include "oe/Conversation.h"

namespace {

constexpr int kClassBuffer = 100;
constexpr int kCaptionBuffer = 256;
constexpr int kDialogInterval = 100; // milliseconds between two searches
constexpr TextView kMainClass = u"Outlook Express Browser Class";

// The shared state of a search. Searches do not overlap, so each call has its own.
struct WindowSearch {
    Desktop& desktop;
    std::optional<TextView> caption; // nothing: the caption is not read at all
    TextView className;
    WindowHandle parent;
    WindowHandle found = 0;

    bool Matches(WindowHandle window) const
    {
        if (parent > 0 && desktop.ParentOf(window) != parent) return false;
        if (FindNoCase(desktop.ClassOf(window, kClassBuffer), className) == Text::npos) return false;
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

WindowHandle FindTopWindowOf(OeClient& client, TextView caption, TextView className)
{
    WindowHandle found = 0;
    const WindowSearch search{client.desktop, caption, className, 0};
    client.desktop.EnumTopWindows([&](WindowHandle window) {
        if (search.Matches(window) && IsOfClient(client, window)) found = window;
        return found == 0;
    });
    return found;
}

WindowHandle WaitForTopWindow(OeClient& client, TextView caption, TextView className, int tries)
{
    WindowHandle found = 0;
    WaitUntil(client, tries, kDialogInterval, [&] {
        found = FindTopWindowOf(client, caption, className);
        return found != 0;
    });
    return found;
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
    handles.messageView =
        FindChildWindow(client.desktop, handles.mainWindow, u"Outlook Express Message View");
    if (handles.messageView == 0) missing = u"Message View could not be found.";
    handles.messageList =
        FindChildWindow(client.desktop, handles.messageView, u"Outlook Express Message List");
    if (handles.messageList == 0) missing = u"Message List could not be found.";
    handles.listView = FindChildWindow(client.desktop, handles.messageList, u"ATL:SysListView32");
    handles.listViewFound = handles.listView >= 1;
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
    const WindowHandle frame =
        FindChildWindowEx(desktop, pane, client.words.folderPane, u"Outlook Express Pane Frame");
    const WindowHandle holder = FindChildWindowEx(desktop, frame, u"", u"ThorTreeViewWndClass");
    return FindChildWindowEx(desktop, holder, client.words.folderTree, u"SysTreeView32");
}
