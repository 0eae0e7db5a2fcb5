#include "app/Form1Controls.h"

#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "platform/win32/WideText.h"

#include <commctrl.h>

namespace {

constexpr wchar_t kFrameClass[] = L"Form1Frame";
// Until the layout gives it its place: as wide as the tabs need, or the strip makes arrows to scroll them.
constexpr RECT kLater = {0, 0, 1000, 100};

constexpr int kResultWidths[] = {86, 34, 146, 74, 46}; // dialog units, of the columns of lvResults
constexpr int kDisplayWidening = 120;                  // percent of the user's font

// A frame hands on what its controls report. The summary, which cannot be typed into, has the lists' colours.
LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND || message == WM_NOTIFY || message == WM_CONTEXTMENU)
        return SendMessageW(GetAncestor(frame, GA_ROOT), message, wParam, lParam);
    if (message == WM_CTLCOLORSTATIC && GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) == txtSummary) {
        const HDC dc = reinterpret_cast<HDC>(wParam);
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    }
    const OrbPalette palette = CurrentPalette();
    LRESULT answer = 0;
    if (!AnswerForGround(frame, message, wParam, palette.page, answer))
        return DefWindowProcW(frame, message, wParam, lParam);
    if (message == WM_ERASEBKGND && GetDlgCtrlID(frame) == fraStats) { // it stands alone, within a line
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

// The kinds that the system draws.
struct StandardControl {
    const wchar_t* windowClass;
    DWORD style;
    DWORD extendedStyle = 0;
};

StandardControl StandardOf(Kind kind)
{
    constexpr DWORD kList = WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;
    switch (kind) {
    case Kind::frame:
        return {kFrameClass, WS_CLIPCHILDREN};
    case Kind::page:
        return {kFrameClass, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT};
    case Kind::hiddenName:
        return {L"STATIC", 0};
    case Kind::checkBox:
        return {L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX};
    case Kind::firstChoice:
        return {L"BUTTON", WS_TABSTOP | WS_GROUP | BS_AUTORADIOBUTTON};
    case Kind::nextChoice:
        return {L"BUTTON", BS_AUTORADIOBUTTON};
    case Kind::textBox:
        return {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
    case Kind::readBox:
        return {L"EDIT", WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY,
                WS_EX_CLIENTEDGE};
    case Kind::comboBox:
        return {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST};
    case Kind::listBox:
        return {L"LISTBOX", kList, WS_EX_CLIENTEDGE};
    case Kind::logBox:
        return {L"LISTBOX", kList | WS_GROUP | WS_HSCROLL, WS_EX_CLIENTEDGE};
    case Kind::tree:
        return {WC_TREEVIEWW,
                WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                WS_EX_CLIENTEDGE};
    case Kind::table:
        return {WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE};
    default: // Kind::storedBox
        return {L"LISTBOX", LBS_NOINTEGRALHEIGHT};
    }
}

template <class Control, class... Arguments>
HWND Made(Control control, Arguments... arguments)
{
    control.Create(arguments...);
    return control.Window();
}

void AddItems(HWND comboBox, const Text& items)
{
    for (std::size_t i = 1; !items.empty() && i <= CountOf(items, u",") + 1; ++i)
        SendMessageW(comboBox, CB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(Wide(Text(FieldOf(items, u",", i)))));
}

void AddColumns(HWND table, const Text& titles, const DialogUnits& units)
{
    SendMessageW(table, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    for (int i = 0; i < static_cast<int>(std::size(kResultWidths)); ++i) {
        Text title(FieldOf(titles, u",", static_cast<std::size_t>(i) + 1));
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.pszText = WideBuffer(title);
        column.cx = units.Across(kResultWidths[i]);
        column.iSubItem = i;
        SendMessageW(table, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
}

} // namespace

// Hidden.
HWND Form1Controls::Make(const ControlRow& row, HWND parent)
{
    const Text text = row.caption;
    const wchar_t* const caption = Wide(text);
    switch (row.kind) {
    case Kind::display:
        return Made(OrbVacuum(), parent, row.id, kLater);
    case Kind::tabStrip:
        return Made(OrbTab(), parent, row.id, caption, kLater, font_);
    case Kind::label:
    case Kind::heading:
        return Made(OrbLabel(), parent, row.id, caption, kLater);
    case Kind::name:
        return Made(OrbLabel(), parent, row.id, caption, kLater, OrbLabel::Kind::mnemonic);
    case Kind::button:
        return Made(OrbSimpleButton(), parent, row.id, caption, kLater);
    case Kind::primaryButton:
        return Made(OrbSimpleButton(), parent, row.id, caption, kLater, OrbSimpleButton::Look::primary);
    case Kind::progressBar: {
        SimpleProgress& bar = Bar(row.id);
        bar.Create(parent, row.id, kLater);
        bar.Properties().SetPercentage(0);
        return bar.Window();
    }
    default:
        break;
    }
    const StandardControl standard = StandardOf(row.kind);
    const bool isList = row.kind == Kind::comboBox || row.kind == Kind::table;
    const HWND window = CreateWindowExW(
        standard.extendedStyle, standard.windowClass, isList ? L"" : caption,
        WS_CHILD | WS_CLIPSIBLINGS | standard.style, kLater.left, kLater.top, kLater.right, kLater.bottom,
        parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(row.id)), GetModuleHandleW(nullptr), nullptr);
    if (row.kind == Kind::comboBox) AddItems(window, text);
    if (row.kind == Kind::table) AddColumns(window, text, units_);
    return window;
}

void Form1Controls::Create(HWND form)
{
    RegisterFrame();
    MakeFonts(); // the tab strip needs its font at once
    for (const ControlRow& row : ControlRows()) {
        const HWND window = Make(row, row.parent == onForm ? form : At(row.parent));
        windows_[static_cast<std::size_t>(row.id - kFirstControl)] = window;
        const bool shown = row.shown == Shown::always || row.shown == Shown::whileIdle ||
                           row.shown == Shown::untilSynchronised;
        ShowWindow(window, shown ? SW_SHOW : SW_HIDE);
    }
    SetFonts();
    ShowResults(false);
    ShowFrame(0);
}

void Form1Controls::TakeFonts()
{
    DeleteFonts();
    MakeFonts();
    SetFonts();
}

void Form1Controls::MakeFonts()
{
    LOGFONTW description = MessageFont();
    font_ = CreateFontIndirectW(&description);
    description.lfWeight = FW_BOLD;
    boldFont_ = CreateFontIndirectW(&description);
    description.lfHeight = MulDiv(description.lfHeight, kDisplayWidening, 100);
    displayFont_ = CreateFontIndirectW(&description);
    units_ = UnitsOf(font_);
}

void Form1Controls::SetFonts()
{
    for (const ControlRow& row : ControlRows()) {
        const HFONT font = row.kind == Kind::heading   ? boldFont_
                           : row.kind == Kind::display ? displayFont_
                                                       : font_;
        SendMessageW(At(row.id), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }
    for (SimpleProgress& bar : bars_) {
        bar.Properties().SetBorderWidth(static_cast<std::int16_t>(units_.Down(1)));
        bar.Properties().SetFillColour(LightPalette().accent);
    }
}

void Form1Controls::ShowFrame(int index)
{
    const HWND focus = GetFocus();
    const ControlId shown = fraTabs[index];
    for (const ControlId frame : fraTabs) {
        if (frame != shown && IsChild(At(frame), focus))
            SetFocus(At(nTab)); // hidden, it would keep the keyboard
        ShowWindow(At(frame), frame == shown ? SW_SHOW : SW_HIDE);
        if (frame == shown) UpdateWindow(At(frame));
    }
}

void Form1Controls::SetCaption(ControlId label, const Text& caption)
{
    OrbLabel(At(label)).SetCaption(Wide(caption));
}

void Form1Controls::Show(Shown when, bool shown)
{
    for (const ControlRow& row : ControlRows())
        if (row.shown == when) ShowWindow(At(row.id), shown ? SW_SHOW : SW_HIDE);
}

void Form1Controls::Enable(const Program& program)
{
    for (const ControlRow& row : ControlRows())
        if (row.id != cmdSync) EnableWindow(At(row.id), program.IsEnabled(row.needs));
    // Last: whoever watches it finds the others settled.
    EnableWindow(At(cmdSync), program.IsEnabled(RowOf(cmdSync).needs));
}

void Form1Controls::ShowResults(bool shown)
{
    ShowWindow(At(shown ? lstProgress : lvResults), SW_HIDE);
    ShowWindow(At(shown ? lvResults : lstProgress), SW_SHOW);
    SendMessageW(At(optLog), BM_SETCHECK, shown ? BST_UNCHECKED : BST_CHECKED, 0);
    SendMessageW(At(optResults), BM_SETCHECK, shown ? BST_CHECKED : BST_UNCHECKED, 0);
    SetCaption(lblList, shown ? u"Emails that the checks found not saved:" : u"What the program has done:");
}

void Form1Controls::EnterBusyLayout()
{
    for (const ControlRow& row : ControlRows())
        if (row.parent == fraStats && row.kind == Kind::label) SetCaption(row.id, row.caption);
    for (SimpleProgress& bar : bars_) bar.Properties().SetPercentage(0);
    isBusy_ = true;
    Show(Shown::whileIdle, false);
    Arrange();
    Show(Shown::whileBusy, true);
    UpdateWindow(GetParent(At(fraStats)));
}

void Form1Controls::LeaveBusyLayout()
{
    if (!isBusy_) return;
    isBusy_ = false;
    Show(Shown::whileBusy, false);
    Arrange();
    Show(Shown::whileIdle, true);
}

void Form1Controls::DeleteFonts()
{
    for (HFONT* font : {&font_, &boldFont_, &displayFont_}) {
        DeleteObject(*font);
        *font = nullptr;
    }
}
