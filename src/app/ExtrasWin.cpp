// A list that scrolls, of one line for each extra: a check box or a number, and below it the sentence.
#include "app/ExtrasWin.h"

#include "app/Extras.h"
#include "app/ExtrasIds.h"
#include "platform/win32/WideText.h"
#include "text/Numbers.h"

#include <commctrl.h>

#include <algorithm>

namespace {

// Dialog units, as in the resource.
constexpr int kWidth = 320, kMargin = 7, kButton = 14, kButtonWidth = 50;
constexpr int kHint = 14; // from its top to the list
constexpr int kTitle = 10, kField = 12;
constexpr int kIndent = 11; // of a sentence, in line with a check box's caption
constexpr int kNumberWidth = 40, kRangeWidth = 60;
constexpr int kBelowTitle = 1, kBetween = 9;
constexpr int kLine = 10; // that the scroll bar's arrows go by
constexpr int kMostDigits = 9;

struct Extent {
    int top, bottom; // in the list as it stands unscrolled
};

HFONT FontOf(HWND box)
{
    return reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0));
}

SIZE SizeOf(const RECT& place)
{
    return {place.right - place.left, place.bottom - place.top};
}

class ExtrasBox {
public:
    ExtrasBox(std::vector<Text>& values, const FindWrongExtra& findWrong)
        : values_(values), findWrong_(findWrong)
    {
    }
    ~ExtrasBox()
    {
        if (bold_) DeleteObject(bold_);
    }
    ExtrasBox(const ExtrasBox&) = delete;
    ExtrasBox& operator=(const ExtrasBox&) = delete;

    static INT_PTR CALLBACK BoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam);

private:
    static INT_PTR CALLBACK PaneProc(HWND pane, UINT message, WPARAM wParam, LPARAM lParam);

    void Create(HWND box);
    int Across(int units) const;
    int Down(int units) const;
    HWND Add(const wchar_t* windowClass, const Text& caption, DWORD style, const RECT& place, HFONT font,
             int id) const;
    int AddTitle(std::size_t row, int top, int width) const; // both answer their lower edge
    int AddSentence(const Text& words, int top, int width) const;
    void Arrange(const RECT& work, const SIZE& frame, int width, int contents) const;

    void ScrollTo(int top) const;
    void OnScroll(int code) const;
    void OnWheel(int delta) const;
    void ShowRow(std::size_t row) const; // all of it
    HWND Control(std::size_t row) const { return GetDlgItem(pane_, ID_FIRST_EXTRA + static_cast<int>(row)); }
    void OnOk();

    std::vector<Text>& values_;
    const FindWrongExtra& findWrong_;
    HWND box_ = nullptr, pane_ = nullptr;
    HFONT bold_ = nullptr;
    std::vector<Extent> rows_;
    bool asking_ = false; // findWrong_, whose box lets messages in
};

int ExtrasBox::Across(int units) const
{
    RECT place = {0, 0, units, 0};
    MapDialogRect(box_, &place);
    return place.right;
}

int ExtrasBox::Down(int units) const
{
    RECT place = {0, 0, 0, units};
    MapDialogRect(box_, &place);
    return place.bottom;
}

HWND ExtrasBox::Add(const wchar_t* windowClass, const Text& caption, DWORD style, const RECT& place,
                    HFONT font, int id = -1) const
{
    const SIZE size = SizeOf(place);
    const HWND control = CreateWindowExW(0, windowClass, Wide(caption), WS_CHILD | WS_VISIBLE | style,
                                         place.left, place.top, size.cx, size.cy, pane_,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return control;
}

int ExtrasBox::AddTitle(std::size_t row, int top, int width) const
{
    const ExtraRow& extra = ExtraRows()[row];
    const int id = ID_FIRST_EXTRA + static_cast<int>(row);
    const int left = Across(kMargin);
    if (extra.IsSwitch()) {
        const int bottom = top + Down(kTitle);
        const HWND check = Add(L"Button", extra.key, WS_TABSTOP | BS_AUTOCHECKBOX | BS_NOTIFY,
                               {left, top, width, bottom}, bold_, id);
        SendMessageW(check, BM_SETCHECK, values_[row] == u"1" ? BST_CHECKED : BST_UNCHECKED, 0);
        return bottom;
    }
    const int bottom = top + Down(kField);
    const int range = width - Across(kRangeWidth), number = range - Across(kNumberWidth);
    constexpr DWORD kInLine = SS_NOPREFIX | SS_CENTERIMAGE;
    Add(L"Static", extra.key, kInLine, {left + Across(kIndent), top, number, bottom}, bold_);
    const HWND field = Add(L"Edit", u"", WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL | ES_NUMBER,
                           {number, top, range, bottom}, FontOf(box_), id);
    SendMessageW(field, EM_LIMITTEXT, kMostDigits, 0);
    const HWND arrows = Add(UPDOWN_CLASSW, u"",
                            UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS | UDS_SETBUDDYINT, {}, nullptr);
    SendMessageW(arrows, UDM_SETBUDDY, reinterpret_cast<WPARAM>(field), 0);
    SendMessageW(arrows, UDM_SETRANGE32, static_cast<WPARAM>(extra.least), extra.most);
    SetWindowTextW(field, Wide(values_[row]));
    Add(L"Static", DecimalText(extra.least) + u" to " + DecimalText(extra.most), kInLine,
        {range + Across(kMargin), top, width, bottom}, FontOf(box_));
    return bottom;
}

int ExtrasBox::AddSentence(const Text& words, int top, int width) const
{
    RECT place = {Across(kMargin + kIndent), top, width, top};
    const HDC dc = GetDC(pane_);
    const HGDIOBJ oldFont = SelectObject(dc, FontOf(box_));
    DrawTextW(dc, Wide(words), static_cast<int>(words.size()), &place,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(dc, oldFont);
    ReleaseDC(pane_, dc);
    place.right = width; // the text may have needed less
    Add(L"Static", words, SS_NOPREFIX, place, FontOf(box_));
    return place.bottom;
}

// As wide as wished, and no larger than the screen: the list scrolls.
void ExtrasBox::Create(HWND box)
{
    box_ = box;
    SetWindowLongPtrW(box, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    LOGFONTW font = {};
    GetObjectW(FontOf(box), sizeof font, &font);
    font.lfWeight = FW_BOLD;
    bold_ = CreateFontIndirectW(&font);
    pane_ = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_EXTRAS_PANE), box, PaneProc,
                               reinterpret_cast<LPARAM>(this));
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(box, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT whole = {}, inside = {};
    GetWindowRect(box, &whole);
    GetClientRect(box, &inside);
    const SIZE frame = {SizeOf(whole).cx - inside.right, SizeOf(whole).cy - inside.bottom};

    const int width = std::min(Across(kWidth), static_cast<int>(SizeOf(monitor.rcWork).cx - frame.cx));
    const int lines = width - Across(3 * kMargin) - GetSystemMetrics(SM_CXVSCROLL);
    int top = Down(kMargin);
    for (std::size_t row = 0; row < ExtraRows().size(); ++row) {
        const int title = AddTitle(row, top, lines);
        const int bottom = AddSentence(ExtraRows()[row].sentence, title + Down(kBelowTitle), lines);
        rows_.push_back({top, bottom});
        top = bottom + Down(kBetween);
    }
    Arrange(monitor.rcWork, frame, width, rows_.back().bottom + Down(kMargin));
    SetFocus(Control(0));
}

void ExtrasBox::Arrange(const RECT& work, const SIZE& frame, int width, int contents) const
{
    const auto place = [](HWND window, int left, int top, int wide, int high) {
        SetWindowPos(window, nullptr, left, top, wide, high, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const int left = Across(kMargin), listTop = Down(kMargin + kHint), below = Down(2 * kMargin + kButton);
    const int border = 2 * GetSystemMetrics(SM_CYBORDER);
    const SIZE room = SizeOf(work);
    const int highest = static_cast<int>(room.cy - frame.cy) - listTop - below;
    const int list = std::min(contents + border, highest);
    const int whole = width + static_cast<int>(frame.cx),
              high = list + listTop + below + static_cast<int>(frame.cy);
    RECT owner = {};
    GetWindowRect(GetWindow(box_, GW_OWNER), &owner);
    const auto middle = [](LONG from, LONG to, int length) {
        return static_cast<int>(from + to - length) / 2;
    };
    place(box_, std::clamp<int>(middle(owner.left, owner.right, whole), work.left, work.right - whole),
          std::clamp<int>(middle(owner.top, owner.bottom, high), work.top, work.bottom - high), whole, high);
    place(GetDlgItem(box_, ID_EXTRAS_HINT), left, Down(kMargin), width - 2 * left, Down(kHint));
    place(pane_, left, listTop, width - 2 * left, list);
    const int buttons = listTop + list + Down(kMargin), step = Across(kButtonWidth + kMargin);
    place(GetDlgItem(box_, IDOK), width - 2 * step, buttons, Across(kButtonWidth), Down(kButton));
    place(GetDlgItem(box_, IDCANCEL), width - step, buttons, Across(kButtonWidth), Down(kButton));
    SCROLLINFO scroll = {
        sizeof scroll, SIF_RANGE | SIF_PAGE, 0, contents - 1, static_cast<UINT>(list - border), 0, 0};
    SetScrollInfo(pane_, SB_VERT, &scroll, FALSE);
}

void ExtrasBox::ScrollTo(int top) const
{
    SCROLLINFO scroll = {sizeof scroll, SIF_POS, 0, 0, 0, 0, 0};
    GetScrollInfo(pane_, SB_VERT, &scroll);
    const int before = scroll.nPos;
    scroll.nPos = top;
    const int now = SetScrollInfo(pane_, SB_VERT, &scroll, TRUE); // within the range
    ScrollWindowEx(pane_, 0, before - now, nullptr, nullptr, nullptr, nullptr,
                   SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
}

void ExtrasBox::OnScroll(int code) const
{
    SCROLLINFO scroll = {sizeof scroll, SIF_ALL, 0, 0, 0, 0, 0};
    GetScrollInfo(pane_, SB_VERT, &scroll);
    const int line = Down(kLine), page = static_cast<int>(scroll.nPage);
    switch (code) {
    case SB_LINEUP:
        return ScrollTo(scroll.nPos - line);
    case SB_LINEDOWN:
        return ScrollTo(scroll.nPos + line);
    case SB_PAGEUP:
        return ScrollTo(scroll.nPos - page);
    case SB_PAGEDOWN:
        return ScrollTo(scroll.nPos + page);
    case SB_TOP:
        return ScrollTo(scroll.nMin);
    case SB_BOTTOM:
        return ScrollTo(scroll.nMax);
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        return ScrollTo(scroll.nTrackPos);
    }
}

void ExtrasBox::OnWheel(int delta) const
{
    for (int step = 0; step < 3; ++step) OnScroll(delta < 0 ? SB_LINEDOWN : SB_LINEUP);
}

void ExtrasBox::ShowRow(std::size_t row) const
{
    if (row >= rows_.size()) return; // it is just being made
    SCROLLINFO scroll = {sizeof scroll, SIF_POS | SIF_PAGE, 0, 0, 0, 0, 0};
    GetScrollInfo(pane_, SB_VERT, &scroll);
    const int above = rows_[row].top - Down(kMargin);
    const int below = rows_[row].bottom + Down(kMargin) - static_cast<int>(scroll.nPage);
    if (scroll.nPos < below) ScrollTo(below);
    if (scroll.nPos > above) ScrollTo(above);
}

void ExtrasBox::OnOk()
{
    if (asking_) return;
    for (std::size_t row = 0; row < values_.size(); ++row) {
        wchar_t typed[kMostDigits + 1] = {};
        GetWindowTextW(Control(row), typed, kMostDigits + 1);
        const bool ticked = SendMessageW(Control(row), BM_GETCHECK, 0, 0) == BST_CHECKED;
        values_[row] = ExtraRows()[row].IsSwitch() ? Text(ticked ? u"1" : u"0") : FromWide(typed);
    }
    asking_ = true;
    const int wrong = findWrong_(values_);
    asking_ = false;
    if (wrong < 0) {
        EndDialog(box_, IDOK);
        return;
    }
    const HWND control = Control(static_cast<std::size_t>(wrong));
    SetFocus(control);
    SendMessageW(control, EM_SETSEL, 0, -1);
}

INT_PTR CALLBACK ExtrasBox::BoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<ExtrasBox*>(GetWindowLongPtrW(box, GWLP_USERDATA));
    try {
        if (message == WM_INITDIALOG) {
            reinterpret_cast<ExtrasBox*>(lParam)->Create(box);
            return FALSE; // the keyboard is where it is to be
        }
        if (!self || (message != WM_COMMAND && message != WM_MOUSEWHEEL)) return FALSE;
        if (message == WM_MOUSEWHEEL)
            self->OnWheel(static_cast<short>(HIWORD(wParam)));
        else if (LOWORD(wParam) == IDOK)
            self->OnOk();
        else if (LOWORD(wParam) == IDCANCEL)
            EndDialog(box, IDCANCEL);
    } catch (const std::exception&) { // nothing may leave a window procedure: without memory no choice
        EndDialog(box, IDCANCEL);
    }
    return TRUE;
}

INT_PTR CALLBACK ExtrasBox::PaneProc(HWND pane, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(pane, GWLP_USERDATA, lParam);
        return FALSE;
    }
    const auto* self = reinterpret_cast<ExtrasBox*>(GetWindowLongPtrW(pane, GWLP_USERDATA));
    if (!self) return FALSE;
    switch (message) {
    case WM_COMMAND:
        static_assert(BN_SETFOCUS != EN_SETFOCUS);
        if (HIWORD(wParam) == BN_SETFOCUS || HIWORD(wParam) == EN_SETFOCUS)
            self->ShowRow(static_cast<std::size_t>(LOWORD(wParam) - ID_FIRST_EXTRA));
        return TRUE;
    case WM_VSCROLL:
        if (lParam == 0) self->OnScroll(LOWORD(wParam)); // else a field's arrows
        return TRUE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
        // As a list: what is to be read stands on the ground of texts.
        SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
    }
    return FALSE;
}

} // namespace

bool AskExtras(HWND owner, std::vector<Text>& values, const FindWrongExtra& findWrong)
{
    ExtrasBox box(values, findWrong);
    return DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_EXTRAS), owner, ExtrasBox::BoxProc,
                           reinterpret_cast<LPARAM>(&box)) == IDOK;
}
