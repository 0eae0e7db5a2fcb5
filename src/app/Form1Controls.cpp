#include "app/Form1Controls.h"

#include <commctrl.h>

namespace {

constexpr wchar_t kFrameClass[] = L"Form1Frame";
constexpr RECT kLater = {0, 0, 10, 10}; // until the layout gives it its place

constexpr const wchar_t* kTabCaptions = L"Actions,Store,Progress,Summary";
constexpr const wchar_t* kResultColumns[] = {L"Folder", L"ID", L"Subject", L"Date", L"CRC"};
constexpr int kResultWidths[] = {86, 34, 146, 74, 46}; // dialog units
constexpr int kDisplayWidening = 120;                  // percent of the user's font

// A frame hands on what its controls report. The summary, which cannot be typed into, has the lists' colours.
LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND || message == WM_NOTIFY || message == WM_CONTEXTMENU)
        return SendMessageW(GetAncestor(frame, GA_ROOT), message, wParam, lParam);
    if (message == WM_CTLCOLORSTATIC && GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) == idSummary) {
        const HDC dc = reinterpret_cast<HDC>(wParam);
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    }
    const OrbPalette palette = CurrentPalette();
    LRESULT answer = 0;
    if (!AnswerForGround(frame, message, wParam, palette.page, answer))
        return DefWindowProcW(frame, message, wParam, lParam);
    if (message == WM_ERASEBKGND && GetDlgCtrlID(frame) == idStats) { // it stands alone, within a line
        RECT area = {};
        GetClientRect(frame, &area);
        const HDC dc = reinterpret_cast<HDC>(wParam);
        SetDCBrushColor(dc, palette.border);
        FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
    return answer;
}

void RegisterFrame()
{
    WNDCLASSW description = {};
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = FrameProc;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kFrameClass;
    RegisterClassW(&description);
}

void Show(HWND window, bool shown)
{
    ShowWindow(window, shown ? SW_SHOW : SW_HIDE);
}

BOOL CALLBACK SetFont(HWND child, LPARAM font)
{
    SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    return TRUE;
}

HWND Make(HWND parent, int id, const wchar_t* windowClass, const wchar_t* text, DWORD style,
          DWORD extendedStyle = 0)
{
    return CreateWindowExW(extendedStyle, windowClass, text, WS_CHILD | WS_CLIPSIBLINGS | style, kLater.left,
                           kLater.top, kLater.right, kLater.bottom, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                           nullptr);
}

HWND MakeCheckBox(HWND parent, int id, const wchar_t* caption)
{
    return Make(parent, id, L"BUTTON", caption, WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX);
}

void MakeLabel(OrbLabel& label, HWND parent, int id, const wchar_t* caption,
               OrbLabel::Kind kind = OrbLabel::Kind::plain)
{
    label.Create(parent, id, caption, kLater, kind);
    label.Show(true);
}

// Names the control that is created next, and carries its mnemonic.
void MakeName(OrbLabel& label, HWND parent, const wchar_t* caption)
{
    MakeLabel(label, parent, idLabel, caption, OrbLabel::Kind::mnemonic);
}

} // namespace

// Controls are created in the order in which the Tab key visits them; the frames come before the tab strip
// because the earlier of two overlapping windows lies on top.
void Form1Controls::Create(HWND form)
{
    RegisterFrame();
    OrbVac.Create(form, idOrbVac, kLater);
    MakeName(lblTree, form, L"Outlook Express folders t&ree:");
    tvOETree =
        Make(form, idTree, WC_TREEVIEWW, L"",
             WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
             WS_EX_CLIENTEDGE);
    MakeStatistics(form);
    cmdStopAfterEmail.Create(form, idStopAfterEmail, L"Stop After This E&mail", kLater);
    cmdStopAfterFolder.Create(form, idStopAfterFolder, L"Stop After This Fo&lder", kLater);
    MakeLabel(lblSelFolder, form, idLabel, L"Outlook Express folder");
    MakeLabel(lblOEFolder, form, idOEFolder, L"");
    cmdOpenFolder.Create(form, idOpenFolder, L"O&pen folder", kLater);
    cmdOpenFolder.Show(true);

    for (HWND& frame : fraTabs)
        frame = Make(form, idLabel, kFrameClass, L"", WS_CLIPCHILDREN, WS_EX_CONTROLPARENT);
    MakeActions(fraTabs[0]);
    MakeStore(fraTabs[1]);
    MakeLists(fraTabs[2], fraTabs[3]);
    TakeFonts(form);
    nTab.Create(form, idTab, kTabCaptions, kLater, font_);

    lstTree = Make(form, idTreeList, L"LISTBOX", L"", LBS_NOINTEGRALHEIGHT);
    lstLines = Make(form, idLines, L"LISTBOX", L"", LBS_NOINTEGRALHEIGHT);
    MakeToolTips(form);
}

void Form1Controls::MakeActions(HWND frame)
{
    const auto step = [this, frame](std::size_t index, const wchar_t* caption) {
        MakeLabel(lblSteps[index], frame, idStep, caption);
    };
    step(0, L"1  Synchronise");
    cmdSync.Create(frame, idSync, L"&Sync with OE", kLater);
    cmdSync.Show(true);
    MakeLabel(capSync, frame, idLabel, L"<--- To start exporting, please synchronise first");
    cmdGetID.Create(frame, idGetID, L"&Get ID of selected email", kLater);
    step(1, L"2  Store");
    cmdChooseStore.Create(frame, idChooseStore, L"Ch&oose store folder...", kLater);
    cmdChooseStore.Show(true);
    MakeLabel(lblStorePath, frame, idStorePath, L"");
    step(2, L"3  Check");
    cmdCheckFolder.Create(frame, idCheckFolder, L"&Check folder", kLater);
    cmdCheckAllFolders.Create(frame, idCheckAllFolders, L"Check &all folders", kLater);
    MakeName(lblComparison, frame, L"Comparison &type:");
    cboComparison =
        Make(frame, idComparison, L"COMBOBOX", L"", WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST);
    for (const wchar_t* type : {L"Simple (fast)", L"Database (medium speed)", L"File (slow)"})
        SendMessageW(cboComparison, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(type));
    EnableWindow(cboComparison, FALSE);
    step(3, L"4  Export");
    cmdExport.Create(frame, idExport, L"&Export emails in selected folder", kLater,
                     OrbSimpleButton::Look::primary);
    cmdSaveAll.Create(frame, idSaveAll, L"Export emails in all &folders", kLater);
    chkJumpRemain = MakeCheckBox(frame, idJumpRemain, L"&Jump to remaining");
    chkSkipFiles = MakeCheckBox(frame, idSkipFiles, L"S&kip identical filenames");
    MakeName(lblIgnore, frame, L"First folder to &ignore");
    txtIgnore = Make(frame, idIgnore, L"EDIT", L"Deleted Items", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL,
                     WS_EX_CLIENTEDGE);
    cmdUseSelection.Create(frame, idUseSelection, L"&Use tree selection", kLater);
    cmdUseSelection.Show(true);
}

void Form1Controls::MakeStore(HWND frame)
{
    constexpr DWORD kList = WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;
    MakeLabel(lblStoreFolder, frame, idStoreFolder, L"");
    MakeName(lblDrive, frame, L"Dri&ve:");
    Drive1 = Make(frame, idDrive, L"COMBOBOX", L"", WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST);
    cmdNewFolder.Create(frame, idNewFolder, L"Ne&w folder...", kLater);
    cmdNewFolder.Show(true);
    MakeName(lblDir, frame, L"&Folder:");
    Dir1 = Make(frame, idDir, L"LISTBOX", L"", kList, WS_EX_CLIENTEDGE);
    MakeName(lblFiles, frame, L"Saved &emails:");
    fileCheck = Make(frame, idFileCheck, L"LISTBOX", L"", kList, WS_EX_CLIENTEDGE);
    chkIDonly = MakeCheckBox(frame, idIDonly, L"&Name files by ID only");
    chkSendKeys = MakeCheckBox(frame, idSendKeys, L"Use Sen&dkeys");
}

void Form1Controls::MakeLists(HWND progressFrame, HWND summaryFrame)
{
    constexpr DWORD kSwitch = WS_VISIBLE | BS_AUTORADIOBUTTON;
    optLog = Make(progressFrame, idShowLog, L"BUTTON", L"L&og", kSwitch | WS_TABSTOP | WS_GROUP);
    optResults = Make(progressFrame, idShowResults, L"BUTTON", L"Res&ults", kSwitch);
    MakeLabel(lblList, progressFrame, idLabel, L"");
    lstProgress =
        Make(progressFrame, idProgressList, L"LISTBOX", L"",
             WS_VISIBLE | WS_TABSTOP | WS_GROUP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
             WS_EX_CLIENTEDGE);
    Make(progressFrame, idLabel, L"STATIC", L"Results", 0); // unseen, it names the table to screen readers
    lvResults = Make(progressFrame, idResults, WC_LISTVIEWW, L"", WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS,
                     WS_EX_CLIENTEDGE);
    SendMessageW(lvResults, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    ShowResults(false);
    Make(summaryFrame, idLabel, L"STATIC", L"Summary", 0); // unseen, it names the box to screen readers
    txtSummary = Make(summaryFrame, idSummary, L"EDIT", L"",
                      WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY,
                      WS_EX_CLIENTEDGE);
}

void Form1Controls::MakeStatistics(HWND form)
{
    fraStats = Make(form, idStats, kFrameClass, L"", WS_CLIPCHILDREN);
    const auto line = [this](const wchar_t* caption, OrbLabel& value) {
        StatisticLabels labels = {{}, &value};
        MakeLabel(labels.name, fraStats, idLabel, caption);
        MakeLabel(value, fraStats, idLabel, L"");
        return labels;
    };
    const auto bar = [this](SimpleProgress& progress, int id) {
        progress.Create(fraStats, id, kLater);
        progress.Properties().SetPercentage(0);
    };
    MakeLabel(lblCurrentFolder, fraStats, idStep, L"Current folder");
    bar(sProg, idProg);
    currentStatistics = {line(L"Count", lblCount), line(L"Rate", lblPerSecond), line(L"Time left", lblTime),
                         line(L"Emails left", lblLeft)};
    MakeLabel(lblAllFolders, fraStats, idStep, L"All folders");
    bar(spMain, idMainProg);
    totalStatistics = {line(L"Total emails to be saved", lblTotalCount),
                       line(L"Total Emails left", lblTotalLeft), line(L"Time left", lblTotalTime)};
}

void Form1Controls::TakeFonts(HWND form)
{
    DeleteFonts();
    LOGFONTW description = MessageFont();
    font_ = CreateFontIndirectW(&description);
    description.lfWeight = FW_BOLD;
    boldFont_ = CreateFontIndirectW(&description);
    description.lfHeight = MulDiv(description.lfHeight, kDisplayWidening, 100);
    displayFont_ = CreateFontIndirectW(&description);
    units_ = UnitsOf(font_);
    EnumChildWindows(form, SetFont, reinterpret_cast<LPARAM>(font_));
    for (const OrbLabel& label : lblSteps) SetFont(label.Window(), reinterpret_cast<LPARAM>(boldFont_));
    for (const OrbLabel& label : {lblCurrentFolder, lblAllFolders})
        SetFont(label.Window(), reinterpret_cast<LPARAM>(boldFont_));
    SetFont(OrbVac.Window(), reinterpret_cast<LPARAM>(displayFont_));
    for (SimpleProgress* progress : {&sProg, &spMain}) {
        progress->Properties().SetBorderWidth(static_cast<std::int16_t>(units_.Down(1)));
        progress->Properties().SetFillColour(LightPalette().accent);
    }
}

void Form1Controls::Arrange() const
{
    ::Arrange(*this, units_, arrangement_);
}

void Form1Controls::FitToFrames()
{
    ShowFrame(0);
    for (int i = 0; i < 5; ++i) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.pszText = const_cast<wchar_t*>(kResultColumns[i]);
        column.cx = units_.Across(kResultWidths[i]);
        column.iSubItem = i;
        SendMessageW(lvResults, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
}

void Form1Controls::ShowFrame(int index)
{
    const HWND focus = GetFocus();
    for (int i = 0; i < static_cast<int>(fraTabs.size()); ++i) {
        const HWND frame = fraTabs[static_cast<std::size_t>(i)];
        if (i != index && IsChild(frame, focus))
            SetFocus(nTab.Window()); // hidden, it would keep the keyboard
        Show(frame, i == index);
        if (i == index) UpdateWindow(frame);
    }
}

void Form1Controls::ShowResults(bool shown)
{
    Show(shown ? lstProgress : lvResults, false);
    Show(shown ? lvResults : lstProgress, true);
    SendMessageW(optLog, BM_SETCHECK, shown ? BST_UNCHECKED : BST_CHECKED, 0);
    SendMessageW(optResults, BM_SETCHECK, shown ? BST_CHECKED : BST_UNCHECKED, 0);
    lblList.SetCaption(shown ? L"Emails that the checks found not saved:" : L"What the program has done:");
}

void Form1Controls::EnterBusyLayout()
{
    for (OrbLabel* label : {&lblCount, &lblPerSecond, &lblLeft, &lblTotalCount, &lblTotalLeft})
        label->SetCaption(L"-");
    for (OrbLabel* label : {&lblTime, &lblTotalTime}) label->SetCaption(L"-:-:-");
    sProg.Properties().SetPercentage(0);
    spMain.Properties().SetPercentage(0);
    arrangement_ = Arrangement::busy;
    lblTree.Show(false);
    Show(tvOETree, false);
    Arrange();
    Show(fraStats, true);
    UpdateWindow(GetParent(fraStats));
}

void Form1Controls::LeaveBusyLayout()
{
    if (arrangement_ == Arrangement::idle) return;
    arrangement_ = Arrangement::idle;
    Show(fraStats, false);
    Arrange();
    lblTree.Show(true);
    Show(tvOETree, true);
}

void Form1Controls::DeleteFonts()
{
    for (HFONT* font : {&font_, &boldFont_, &displayFont_}) {
        DeleteObject(*font);
        *font = nullptr;
    }
}
