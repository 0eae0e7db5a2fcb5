// What the window shows of a run.
#include "app/Form1.h"
#include "app/Form1Images.h"
#include "app/QuietList.h"
#include "folders/FolderPaths.h"
#include "platform/win32/WideText.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr DWORD kShowEvery = 100;    // milliseconds
constexpr DWORD kKeysUpLimit = 2000; // milliseconds
constexpr UINT kBoxMilliseconds = 60'000;
constexpr DWORD kKeysUpPoll = 20; // milliseconds

// Whoever has scrolled a list back reads there, and new lines leave it alone.
bool ShowsEnd(HWND list)
{
    RECT area = {}, last = {};
    GetClientRect(list, &area);
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    if (count <= 0) return true;
    SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(count - 1), reinterpret_cast<LPARAM>(&last));
    const LONG line = last.bottom - last.top; // it may be cut by the list's edge
    return last.top < area.bottom || last.top < line;
}

} // namespace

void Form1::ShowText(const Text& text)
{
    controls_.OrbVac.ShowText(Wide(text));
}

// A line at a time, lists would spend most of a run on redrawing themselves.
void Form1::AddProgress(const Text& text)
{
    newProgress_.push_back(text);
    if (!running_) ShowAdded();
}

void Form1::ShowAdded()
{
    lastShown_ = GetTickCount();
    results_.ShowAdded();
    if (!newProgress_.empty()) AppendProgress();
}

void Form1::AppendProgress()
{
    const HWND list = controls_.lstProgress;
    const QuietList quiet(list);
    const bool followed = ShowsEnd(list);
    const HDC dc = GetDC(list);
    const HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
    LRESULT last = -1;
    for (const Text& text : newProgress_) {
        last = SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text)));
        SIZE extent = {};
        GetTextExtentPoint32W(dc, Wide(text), static_cast<int>(text.size()), &extent);
        widestProgress_ = std::max(widestProgress_, static_cast<int>(extent.cx));
    }
    SelectObject(dc, oldFont);
    ReleaseDC(list, dc);
    newProgress_.clear();
    SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widestProgress_ + 8), 0);
    if (last >= 0 && followed) SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(last), 0);
}

void Form1::WaitForKeysUp()
{
    const auto held = [](int key) { return GetAsyncKeyState(key) < 0; };
    const DWORD start = GetTickCount();
    while (!closeAsked_ && (held(VK_RETURN) || held(VK_SPACE)) && GetTickCount() - start < kKeysUpLimit) {
        ProcessEvents();
        Sleep(kKeysUpPoll);
    }
    ProcessEvents(); // what the key has sent until now is not the box's
}

void Form1::BoxWithTitle(const wchar_t* title, BoxIcon icon, const Text& words)
{
    splash_.Release(window_);
    WaitForKeysUp();
    if (closeAsked_) return; // nobody is there to press OK
    ShowAdded();
    const UINT picture = icon == BoxIcon::warning ? MB_ICONEXCLAMATION : MB_ICONINFORMATION;
    MessageBoxW(window_, Wide(words), title, MB_OK | picture);
}

void Form1::CloseOwnBox()
{
    const HWND box = GetLastActivePopup(window_);
    if (box && box != window_) PostMessageW(box, WM_CLOSE, 0, 0);
}

void Form1::ShowBox(BoxIcon icon, const Text& words)
{
    BoxWithTitle(ProgramTitle(), icon, words);
}

void Form1::ShowBriefBox(BoxIcon icon, const Text& words)
{
    SetTimer(window_, kBoxTimer, kBoxMilliseconds, nullptr);
    ShowBox(icon, words);
    KillTimer(window_, kBoxTimer);
}

void Form1::ProcessEvents()
{
    if (GetTickCount() - lastShown_ >= kShowEvery) ShowAdded();
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) { // for the outermost loop
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        Dispatch(message);
    }
}

RunOptions Form1::Options()
{
    ReadCheckBoxesAndLists();
    const Settings& settings = state_.settings;
    RunOptions options;
    options.idOnly = settings.idOnly != 0;
    options.sendKeys = settings.sendKeys != 0;
    options.skipFiles = settings.skipFiles != 0;
    options.jumpRemain = settings.jumpRemain != 0;
    options.firstFolderToIgnore = settings.firstFolderToIgnore;
    options.systemFolders = settings.systemFolders;
    options.firstFolder = settings.firstFolder;
    options.storeFolder = store_.Folder();
    const LRESULT type = SendMessageW(controls_.cboComparison, CB_GETCURSEL, 0, 0);
    if (type >= 0 && type <= 2) options.comparison = static_cast<ComparisonType>(type);
    return options;
}

void Form1::ShowStatistic(Statistic which, const Text& text)
{
    const auto label = [this, which]() -> OrbLabel& {
        switch (which) {
        case Statistic::count:
            return controls_.lblCount;
        case Statistic::perSecond:
            return controls_.lblPerSecond;
        case Statistic::time:
            return controls_.lblTime;
        case Statistic::left:
            return controls_.lblLeft;
        case Statistic::totalCount:
            return controls_.lblTotalCount;
        case Statistic::totalLeft:
            return controls_.lblTotalLeft;
        case Statistic::totalTime:
            break;
        }
        return controls_.lblTotalTime;
    };
    label().SetCaption(Wide(text));
}

void Form1::ShowPercentage(Bar bar, int percent)
{
    SimpleProgress& progress = bar == Bar::allFolders ? controls_.spMain : controls_.sProg;
    progress.Properties().SetPercentage(percent);
}

void Form1::ShowTab(Tab tab)
{
    controls_.nTab.Select(static_cast<int>(tab));
    RefreshStore();
    controls_.ShowFrame(static_cast<int>(tab));
}

// Drives and folders come and go while the lists are not looked at.
void Form1::RefreshStore()
{
    if (!running_ && controls_.nTab.Selected() == static_cast<int>(Tab::store)) store_.Refresh();
}

void Form1::ShowStopButtons(StopButtons state)
{
    controls_.cmdStopAfterEmail.Show(state == StopButtons::shown);
    controls_.cmdStopAfterFolder.Show(state == StopButtons::shown);
}

void Form1::ShowCurrentFolder(const Text& fullName)
{
    controls_.lblOEFolder.SetCaption(Wide(fullName));
}

void Form1::ClearProgress()
{
    newProgress_.clear();
    SendMessageW(controls_.lstProgress, LB_RESETCONTENT, 0, 0);
    SendMessageW(controls_.lstProgress, LB_SETHORIZONTALEXTENT, 0, 0);
    widestProgress_ = 0;
    controls_.ShowResults(false);
}

void Form1::SetSummary(const Text& text)
{
    SetWindowTextW(controls_.txtSummary, Wide(text));
}

void Form1::AppendSummary(const Text& line)
{
    const HWND box = controls_.txtSummary;
    const int length = GetWindowTextLengthW(box);
    const Text added = length > 0 ? u"\r\n" + line : line;
    SendMessageW(box, EM_SETSEL, static_cast<WPARAM>(length), length);
    SendMessageW(box, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(Wide(added)));
}

void Form1::ShowFolderTree(const std::vector<FolderNode>& nodes)
{
    const HWND tree = controls_.tvOETree;
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    SendMessageW(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    folderNodes_.clear();
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
        const LRESULT added = SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&node));
        lastOfLevel.resize(level - 1);
        lastOfLevel.push_back(reinterpret_cast<HTREEITEM>(added));
        folderNodes_.push_back(lastOfLevel.back());
        if (level > 1) SendMessageW(tree, TVM_ENSUREVISIBLE, 0, added);
    }
    // Making the last folder visible has scrolled the first away.
    SendMessageW(tree, TVM_ENSUREVISIBLE, 0, SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(tree, nullptr, TRUE);
}

HTREEITEM Form1::SelectedNode() const
{
    return reinterpret_cast<HTREEITEM>(SendMessageW(controls_.tvOETree, TVM_GETNEXTITEM, TVGN_CARET, 0));
}

void Form1::SelectFolderNode(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= folderNodes_.size()) return;
    SendMessageW(controls_.tvOETree, TVM_SELECTITEM, TVGN_CARET,
                 reinterpret_cast<LPARAM>(folderNodes_[static_cast<std::size_t>(index)]));
}

void Form1::MarkFolderNode(const Text& status, const Text& image)
{
    const HWND tree = controls_.tvOETree;
    wchar_t text[512] = {};
    TVITEMW node = {};
    node.mask = TVIF_TEXT;
    node.hItem = SelectedNode();
    node.pszText = text;
    node.cchTextMax = static_cast<int>(std::size(text));
    if (!node.hItem || !SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&node))) return;
    const Text marked = MarkedNodeText(FromWide(node.pszText), state_.settings.treeSeparator, status);
    node.pszText = const_cast<wchar_t*>(Wide(marked));
    if (!image.empty()) {
        node.mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        node.iImage = node.iSelectedImage = TreeImage(image);
    }
    SendMessageW(tree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&node));
}

void Form1::ShowFolderLists(const std::vector<Text>& lines, const std::vector<Text>& paths)
{
    const auto fill = [](HWND list, const std::vector<Text>& texts) {
        SendMessageW(list, LB_RESETCONTENT, 0, 0);
        for (const Text& text : texts)
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text)));
    };
    fill(controls_.lstTree, lines);
    // One line for each of lstTree: the spare path at the end is no folder's.
    fill(controls_.lstLines,
         {paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), paths.size()))});
}

void Form1::SelectFolderLine(int index)
{
    SendMessageW(controls_.lstTree, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

void Form1::UnlockCommands()
{
    controls_.capSync.Show(false);
    for (OrbSimpleButton* button : {&controls_.cmdExport, &controls_.cmdGetID, &controls_.cmdCheckFolder,
                                    &controls_.cmdCheckAllFolders, &controls_.cmdSaveAll})
        button->Show(true);
    UpdateCommands();
}
