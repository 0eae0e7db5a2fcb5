// FolderTree.cpp: builds the folder pane.
#include "demo/client/FolderTree.h"

#include "demo/client/Pane.h"

#include <commctrl.h>
#include <shellapi.h>

namespace {

constexpr wchar_t kTopName[] = L"Outlook Express";

HTREEITEM AddItem(HWND tree, HTREEITEM parent, const std::wstring& name, const MailFolder* folder,
                  bool hasChildren)
{
    std::wstring text = name;
    TVINSERTSTRUCTW insert{};
    insert.hParent = parent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_CHILDREN | TVIF_STATE | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insert.item.pszText = text.data();
    insert.item.lParam = reinterpret_cast<LPARAM>(folder);
    insert.item.cChildren = hasChildren ? 1 : 0;
    insert.item.state = insert.item.stateMask = TVIS_EXPANDED;
    SHFILEINFOW icon{};
    SHGetFileInfoW(L"folder", FILE_ATTRIBUTE_DIRECTORY, &icon, sizeof icon,
                   SHGFI_USEFILEATTRIBUTES | SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
    insert.item.iImage = insert.item.iSelectedImage = icon.iIcon;
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

void AddFolder(HWND tree, HTREEITEM parent, const MailFolder& folder)
{
    const std::wstring name(folder.name.begin(), folder.name.end());
    const HTREEITEM item = AddItem(tree, parent, name, &folder, !folder.folders.empty());
    for (const MailFolder& child : folder.folders) AddFolder(tree, item, child);
}

HWND CreateTree(HWND host, const MailFolder& root, const Language& language)
{
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                        TVS_SHOWSELALWAYS;
    const HWND tree = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, language.folderList, style, 0, 0, 0, 0,
                                      host, nullptr, nullptr, nullptr);
    SHFILEINFOW icons{};
    const DWORD_PTR list = SHGetFileInfoW(L"folder", FILE_ATTRIBUTE_DIRECTORY, &icons, sizeof icons,
                                          SHGFI_USEFILEATTRIBUTES | SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
    SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL, static_cast<LPARAM>(list));
    const HTREEITEM top = AddItem(tree, TVI_ROOT, kTopName, nullptr, true);
    AddFolder(tree, top, root);
    return tree;
}

HTREEITEM FindItem(HWND tree, HTREEITEM item, const MailFolder* folder)
{
    for (; item; item = TreeView_GetNextSibling(tree, item)) {
        TVITEMW content{};
        content.mask = TVIF_PARAM;
        content.hItem = item;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&content));
        if (reinterpret_cast<const MailFolder*>(content.lParam) == folder) return item;
        if (const HTREEITEM found = FindItem(tree, TreeView_GetChild(tree, item), folder)) return found;
    }
    return nullptr;
}

} // namespace

HWND CreateFolderPane(HWND mainWindow, const MailFolder& root, const Language& language, bool withTree)
{
    const HWND pane = CreatePane(mainWindow, L"Outlook Express Navigation Pane", L"", PaneHeading::none);
    const HWND frame =
        CreatePane(pane, L"Outlook Express Pane Frame", language.folders, PaneHeading::caption);
    const HWND host = CreatePane(frame, L"ThorTreeViewWndClass", L"", PaneHeading::none);
    if (withTree) CreateTree(host, root, language);
    return pane;
}

HWND TreeOf(HWND pane)
{
    HWND window = pane;
    for (int level = 0; level < 3 && window; ++level) window = GetWindow(window, GW_CHILD);
    return window;
}

void SelectFolder(HWND pane, const MailFolder* folder)
{
    const HWND tree = TreeOf(pane);
    if (!tree) return;
    if (const HTREEITEM item = FindItem(tree, TreeView_GetRoot(tree), folder))
        TreeView_SelectItem(tree, item);
}

const MailFolder* FolderOfNotification(const NMHDR* notification)
{
    return reinterpret_cast<const MailFolder*>(
        reinterpret_cast<const NMTREEVIEWW*>(notification)->itemNew.lParam);
}
