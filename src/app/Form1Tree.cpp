#include "app/Form1Tree.h"

#include "app/Form1Images.h"
#include "folders/FolderPaths.h"
#include "platform/win32/WideText.h"

#include <algorithm>
#include <iterator>

void Form1Tree::DestroyImages()
{
    SendMessageW(tree_, TVM_SETIMAGELIST, TVSIL_NORMAL, 0);
    ImageList_Destroy(ImgLstTree_);
}

void Form1Tree::Show(const std::vector<FolderNode>& nodes)
{
    SendMessageW(tree_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(tree_, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    nodes_.clear();
    if (!ImgLstTree_) {
        ImgLstTree_ = MakeTreeImages(GetSystemMetrics(SM_CXSMICON));
        SendMessageW(tree_, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(ImgLstTree_));
    }
    std::vector<HTREEITEM> lastOfLevel; // the last node added at each level, from level 1
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        // A level that has no parent hangs below the deepest there is.
        const std::size_t level =
            std::min(static_cast<std::size_t>(std::max(1, nodes[i].level)), lastOfLevel.size() + 1);
        TVINSERTSTRUCTW node = {};
        node.hParent = level == 1 ? TVI_ROOT : lastOfLevel[level - 2];
        node.hInsertAfter = TVI_LAST;
        node.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
        node.item.pszText = const_cast<wchar_t*>(Wide(nodes[i].name));
        node.item.iImage = TreeImage(level == 1 ? u"root" : level == 2 ? u"other" : u"envelope");
        node.item.iSelectedImage = node.item.iImage;
        node.item.lParam = static_cast<LPARAM>(i); // its line in lstTree
        const LRESULT added = SendMessageW(tree_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&node));
        lastOfLevel.resize(level - 1);
        lastOfLevel.push_back(reinterpret_cast<HTREEITEM>(added));
        nodes_.push_back(lastOfLevel.back());
        if (level > 1) SendMessageW(tree_, TVM_ENSUREVISIBLE, 0, added);
    }
    // Making the last folder visible has scrolled the first away.
    SendMessageW(tree_, TVM_ENSUREVISIBLE, 0, SendMessageW(tree_, TVM_GETNEXTITEM, TVGN_ROOT, 0));
    SendMessageW(tree_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(tree_, nullptr, TRUE);
}

HTREEITEM Form1Tree::SelectedNode() const
{
    return reinterpret_cast<HTREEITEM>(SendMessageW(tree_, TVM_GETNEXTITEM, TVGN_CARET, 0));
}

void Form1Tree::Select(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= nodes_.size()) return;
    SendMessageW(tree_, TVM_SELECTITEM, TVGN_CARET,
                 reinterpret_cast<LPARAM>(nodes_[static_cast<std::size_t>(index)]));
}

int Form1Tree::Selected() const
{
    TVITEMW node = {};
    node.mask = TVIF_PARAM;
    node.hItem = SelectedNode();
    if (!node.hItem || !SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&node))) return -1;
    return static_cast<int>(node.lParam);
}

void Form1Tree::Mark(const Text& status, const Text& image, const Text& separator)
{
    wchar_t text[512] = {};
    TVITEMW node = {};
    node.mask = TVIF_TEXT;
    node.hItem = SelectedNode();
    node.pszText = text;
    node.cchTextMax = static_cast<int>(std::size(text));
    if (!node.hItem || !SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&node))) return;
    const Text marked = MarkedNodeText(FromWide(node.pszText), separator, status);
    node.pszText = const_cast<wchar_t*>(Wide(marked));
    if (!image.empty()) {
        node.mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        node.iImage = node.iSelectedImage = TreeImage(image);
    }
    SendMessageW(tree_, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&node));
}

void Form1Tree::RestoreChoice()
{
    if (chosen_) SendMessageW(tree_, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(*chosen_));
    chosen_.reset();
}
