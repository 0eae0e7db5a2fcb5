#include "app/Form1Controls.h"

#include <commctrl.h>

namespace {

constexpr int kClientWidth = 640, kClientHeight = 600;
constexpr int kMargin = 10;
constexpr int kWidth = kClientWidth - 2 * kMargin;
constexpr int kTreeTop = 48; // of the label; the tree stands below it
constexpr int kStatsHeight = 166;
constexpr int kStopButtonsTop = kTreeTop + kStatsHeight + 6;
constexpr int kBelow = kStopButtonsTop + 36; // the line of the selected folder, then the tab strip
constexpr wchar_t kFrameClass[] = L"Form1Frame";

constexpr const wchar_t* kTabCaptions = L"Actions,Store,Progress,Summary";
constexpr const wchar_t* kResultColumns[] = {L"Folder", L"ID", L"Subject", L"Date", L"CRC"};
constexpr int kResultWidths[] = {130, 50, 220, 110, 70};

// A frame hands on what its controls report. The summary, which cannot be typed into, is as white as the
// lists.
LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND || message == WM_NOTIFY)
        return SendMessageW(GetAncestor(frame, GA_ROOT), message, wParam, lParam);
    if (message == WM_CTLCOLORSTATIC && GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) == idSummary)
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    LRESULT answer = 0;
    if (AnswerForGround(frame, message, wParam, CurrentPalette().page, answer)) return answer;
    return DefWindowProcW(frame, message, wParam, lParam);
}

void RegisterFrame()
{
    WNDCLASSW description = {};
    description.lpfnWndProc = FrameProc;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kFrameClass;
    RegisterClassW(&description);
}

void Move(HWND window, const RECT& place)
{
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Show(HWND window, bool shown)
{
    ShowWindow(window, shown ? SW_SHOW : SW_HIDE);
}

RECT ClientArea(HWND window)
{
    RECT area = {};
    GetClientRect(window, &area);
    return area;
}

// In the parent's coordinates.
RECT PlaceOf(HWND window)
{
    RECT place = {};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

BOOL CALLBACK SetFont(HWND child, LPARAM font)
{
    SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    return TRUE;
}

HFONT MakeFont(int dpi, int points, int weight)
{
    return CreateFontW(-MulDiv(points, dpi, 72), 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS,
                       L"Tahoma");
}

} // namespace

RECT Form1Controls::At(int x, int y, int width, int height) const
{
    return {Scaled(x), Scaled(y), Scaled(x + width), Scaled(y + height)};
}

SIZE Form1Controls::ClientSize() const
{
    return {Scaled(kClientWidth), Scaled(kClientHeight)};
}

HWND Form1Controls::Make(HWND parent, int id, const wchar_t* windowClass, const wchar_t* text, DWORD style,
                         const RECT& place, DWORD extendedStyle)
{
    return CreateWindowExW(extendedStyle, windowClass, text, WS_CHILD | WS_CLIPSIBLINGS | style, place.left,
                           place.top, place.right - place.left, place.bottom - place.top, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                           nullptr);
}

HWND Form1Controls::MakeCheckBox(HWND parent, int id, const wchar_t* caption, const RECT& place)
{
    return Make(parent, id, L"BUTTON", caption, WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, place);
}

// Controls are created in the order in which the Tab key visits them; the frames come before the tab strip
// because the earlier of two overlapping windows lies on top.
void Form1Controls::Create(HWND form)
{
    const HDC screen = GetDC(nullptr);
    dpi_ = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    font_ = MakeFont(dpi_, 8, FW_NORMAL);
    displayFont_ = MakeFont(dpi_, 10, FW_BOLD);
    RegisterFrame();

    OrbVac.Create(form, idOrbVac, At(kMargin, 10, kWidth, 30));
    lblTree.Create(form, idLabel, L"Outlook Express folders t&ree:", At(kMargin, kTreeTop, 300, 15),
                   OrbLabel::Kind::mnemonic);
    lblTree.Show(true);
    tvOETree =
        Make(form, idTree, WC_TREEVIEWW, L"",
             WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
             At(kMargin, kTreeTop + 18, kWidth, kBelow - kTreeTop - 28), WS_EX_CLIENTEDGE);
    MakeStatistics(form);
    cmdStopAfterEmail.Create(form, idStopAfterEmail, L"Stop After This E&mail",
                             At(kMargin, kStopButtonsTop, 190, 26));
    cmdStopAfterFolder.Create(form, idStopAfterFolder, L"Stop After This Fo&lder",
                              At(kMargin + 200, kStopButtonsTop, 190, 26));
    lblSelFolder.Create(form, idLabel, L"Outlook Express folder", At(kMargin, kBelow, 125, 15));
    lblSelFolder.Show(true);
    lblOEFolder.Create(form, idOEFolder, L"", At(kMargin + 130, kBelow, kWidth - 130, 15));
    lblOEFolder.Show(true);

    for (HWND& frame : fraTabs) {
        frame = Make(form, idLabel, kFrameClass, L"", WS_CLIPCHILDREN, At(kMargin, kBelow + 24, kWidth, 300),
                     WS_EX_CONTROLPARENT);
    }
    MakeActions(fraTabs[0]);
    MakeStore(fraTabs[1]);
    MakeLists(fraTabs[2], fraTabs[3]);
    nTab.Create(form, idTab, kTabCaptions,
                At(kMargin, kBelow + 24, kWidth, kClientHeight - kMargin - kBelow - 24), font_);

    lstTree = Make(form, idTreeList, L"LISTBOX", L"", LBS_NOINTEGRALHEIGHT, At(0, 0, 10, 10));
    lstLines = Make(form, idLines, L"LISTBOX", L"", LBS_NOINTEGRALHEIGHT, At(0, 0, 10, 10));

    EnumChildWindows(form, SetFont, reinterpret_cast<LPARAM>(font_));
    SendMessageW(OrbVac.Window(), WM_SETFONT, reinterpret_cast<WPARAM>(displayFont_), FALSE);
    MakeToolTips(form);
}

void Form1Controls::MakeActions(HWND frame)
{
    constexpr int kLeft = 12, kSecond = 214, kThird = 416, kButton = 190, kButtonHeight = 26;
    cmdSync.Create(frame, idSync, L"&Sync with OE", At(kLeft, 12, kButton, kButtonHeight));
    cmdSync.Show(true);
    capSync.Create(frame, idLabel, L"<--- To start exporting, please synchronise first",
                   At(kSecond, 18, 390, 15));
    capSync.Show(true);
    cmdGetID.Create(frame, idGetID, L"&Get ID of selected email", At(kLeft, 50, kButton, kButtonHeight));
    cmdCheckFolder.Create(frame, idCheckFolder, L"&Check folder", At(kLeft, 88, kButton, kButtonHeight));
    cmdCheckAllFolders.Create(frame, idCheckAllFolders, L"Check &all folders",
                              At(kSecond, 88, kButton, kButtonHeight));
    lblComparison.Create(frame, idLabel, L"Comparison &type:", At(kThird, 74, 180, 15),
                         OrbLabel::Kind::mnemonic);
    lblComparison.Show(true);
    cboComparison = Make(frame, idComparison, L"COMBOBOX", L"",
                         WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, At(kThird, 91, 180, 200));
    for (const wchar_t* type : {L"Simple (fast)", L"Database (medium speed)", L"File (slow)"})
        SendMessageW(cboComparison, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(type));
    EnableWindow(cboComparison, FALSE);
    cmdExport.Create(frame, idExport, L"&Export emails in selected folder",
                     At(kLeft, 126, kButton, kButtonHeight));
    cmdSaveAll.Create(frame, idSaveAll, L"Export emails in all &folders",
                      At(kSecond, 126, kButton, kButtonHeight));
    chkJumpRemain = MakeCheckBox(frame, idJumpRemain, L"&Jump to remaining", At(kLeft, 168, kButton, 18));
    chkSkipFiles =
        MakeCheckBox(frame, idSkipFiles, L"S&kip identical filenames", At(kSecond, 168, kButton, 18));
    lblIgnore.Create(frame, idLabel, L"First folder to &ignore", At(kLeft, 206, 125, 15),
                     OrbLabel::Kind::mnemonic);
    lblIgnore.Show(true);
    txtIgnore = Make(frame, idIgnore, L"EDIT", L"Deleted Items", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL,
                     At(kLeft + 130, 202, kSecond + kButton - kLeft - 130, 21), WS_EX_CLIENTEDGE);
    cmdUseSelection.Create(frame, idUseSelection, L"&Use tree selection",
                           At(kThird, 200, 180, kButtonHeight));
    cmdUseSelection.Show(true);
}

void Form1Controls::MakeStore(HWND frame)
{
    constexpr DWORD kList = WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;
    lblStoreFolder.Create(frame, idStoreFolder, L"", At(12, 10, 580, 15));
    lblStoreFolder.Show(true);
    Drive1 = Make(frame, idDrive, L"COMBOBOX", L"", WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST,
                  At(12, 30, 300, 200));
    Dir1 = Make(frame, idDir, L"LISTBOX", L"", kList, At(12, 58, 300, 114), WS_EX_CLIENTEDGE);
    fileCheck = Make(frame, idFileCheck, L"LISTBOX", L"", kList, At(12, 178, 300, 60), WS_EX_CLIENTEDGE);
    chkIDonly = MakeCheckBox(frame, idIDonly, L"&Name files by ID only", At(12, 246, 190, 18));
    chkSendKeys = MakeCheckBox(frame, idSendKeys, L"Use Sen&dkeys", At(214, 246, 190, 18));
}

void Form1Controls::MakeLists(HWND progressFrame, HWND summaryFrame)
{
    lstProgress = Make(progressFrame, idProgressList, L"LISTBOX", L"",
                       WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                       At(0, 0, 300, 200), WS_EX_CLIENTEDGE);
    lvResults = Make(progressFrame, idResults, WC_LISTVIEWW, L"", WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS,
                     At(0, 0, 300, 200), WS_EX_CLIENTEDGE);
    SendMessageW(lvResults, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    txtSummary = Make(summaryFrame, idSummary, L"EDIT", L"",
                      WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY,
                      At(0, 0, 300, 200), WS_EX_CLIENTEDGE);
}

void Form1Controls::MakeStatistics(HWND form)
{
    constexpr int kName = 12, kValue = 150, kSecondName = 330, kSecondValue = 440;
    fraStats = Make(form, idLabel, kFrameClass, L"", WS_CLIPCHILDREN,
                    At(kMargin, kTreeTop, kWidth, kStatsHeight), WS_EX_STATICEDGE);
    const auto name = [this](int x, int y, const wchar_t* caption) {
        OrbLabel label;
        label.Create(fraStats, idLabel, caption, At(x, y, (x == kName ? kValue : kSecondValue) - x - 5, 15));
        label.Show(true);
    };
    const auto value = [this](OrbLabel& label, int x, int y) {
        label.Create(fraStats, idLabel, L"", At(x, y, 160, 15));
        label.Show(true);
    };
    const auto bar = [this](SimpleProgress& progress, int id, int y) {
        progress.Create(fraStats, id, At(kValue, y, kWidth - kValue - 14, 24));
        progress.Properties().Load({{"BorderWidth", Scaled(2)}, {"Percentage", 0}});
    };
    name(kName, 13, L"Current folder");
    bar(sProg, idProg, 8);
    name(kName, 40, L"Count");
    value(lblCount, kValue, 40);
    name(kSecondName, 40, L"Rate");
    value(lblPerSecond, kSecondValue, 40);
    name(kName, 60, L"Time left");
    value(lblTime, kValue, 60);
    name(kSecondName, 60, L"Emails left");
    value(lblLeft, kSecondValue, 60);
    name(kName, 93, L"All folders");
    bar(spMain, idMainProg, 88);
    name(kName, 120, L"Total emails to be saved");
    value(lblTotalCount, kValue, 120);
    name(kSecondName, 120, L"Total Emails left");
    value(lblTotalLeft, kSecondValue, 120);
    name(kName, 140, L"Time left");
    value(lblTotalTime, kValue, 140);
}

void Form1Controls::MakeToolTips(HWND form)
{
    const HWND tips = CreateWindowExW(
        WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, GetModuleHandleW(nullptr), nullptr);
    const struct {
        HWND control;
        const wchar_t* words;
    } kTips[] = {
        {cmdSync.Window(), L"Synchronise with Outlook Express"},
        {capSync.Window(), L"You must synchronise with Outlook Express before exporting any emails"},
        {cmdGetID.Window(), L"Get the message ID of the email selected in Outlook Express"},
        {cmdCheckFolder.Window(), L"Check current Outlook Express folder"},
        {cmdCheckAllFolders.Window(), L"Check all Outlook Express folders"},
        {cmdExport.Window(), L"Export current Outlook Express folder"},
        {cmdSaveAll.Window(), L"Export all Outlook Express folders"},
        {cmdStopAfterEmail.Window(), L"Stop exporting after current email"},
        {cmdStopAfterFolder.Window(), L"Stop exporting after current folder"},
        {chkJumpRemain, L"Jump to the first email to be exported"},
        {chkSkipFiles, L"Skip identical filenames when exporting"},
        {chkSendKeys, L"Use sendkeys for exporting emails"},
        {cmdUseSelection.Window(), L"Use the selected folder from the tree above"},
        {lblLeft.Window(), L"Emails left to save in current folder"},
        {lblTotalLeft.Window(), L"Emails left to save"},
    };
    for (const auto& tip : kTips) {
        TTTOOLINFOW tool = {};
        tool.cbSize = TTTOOLINFOW_V2_SIZE; // the size that every version of the control takes
        tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        tool.hwnd = form;
        tool.uId = reinterpret_cast<UINT_PTR>(tip.control);
        tool.lpszText = const_cast<wchar_t*>(tip.words);
        SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

void Form1Controls::FitToFrames()
{
    for (const HWND frame : fraTabs) Move(frame, nTab.Inside());
    const RECT area = ClientArea(fraTabs[0]);
    Move(lstProgress, area);
    Move(lvResults, area);
    Move(txtSummary, area);
    for (const HWND list : {Drive1, Dir1, fileCheck}) {
        RECT place = PlaceOf(list);
        place.right = area.right - place.left;
        if (list == Drive1) place.bottom = place.top + Scaled(200); // a combo box counts its open list
        Move(list, place);
    }
    ShowFrame(0);
    for (int i = 0; i < 5; ++i) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.pszText = const_cast<wchar_t*>(kResultColumns[i]);
        column.cx = Scaled(kResultWidths[i]);
        column.iSubItem = i;
        SendMessageW(lvResults, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
}

void Form1Controls::ShowFrame(int index)
{
    for (const HWND frame : fraTabs) Show(frame, false);
    if (index >= 0 && index < static_cast<int>(fraTabs.size())) {
        Show(fraTabs[static_cast<std::size_t>(index)], true);
        UpdateWindow(fraTabs[static_cast<std::size_t>(index)]);
    }
}

void Form1Controls::EnterBusyLayout()
{
    for (OrbLabel* label : {&lblCount, &lblPerSecond, &lblLeft, &lblTotalCount, &lblTotalLeft})
        label->SetCaption(L"-");
    for (OrbLabel* label : {&lblTime, &lblTotalTime}) label->SetCaption(L"-:-:-");
    sProg.Properties().SetPercentage(0);
    spMain.Properties().SetPercentage(0);
    lblTree.Show(false);
    Show(tvOETree, false);
    Show(fraStats, true);
    UpdateWindow(GetParent(fraStats));
}

void Form1Controls::LeaveBusyLayout()
{
    Show(fraStats, false);
    lblTree.Show(true);
    Show(tvOETree, true);
}

void Form1Controls::DeleteFonts()
{
    DeleteObject(font_);
    DeleteObject(displayFont_);
}
