#include "app/Form1.h"

#include "app/Version.h"
#include "controls/OrbPalette.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

constexpr wchar_t kFormClass[] = L"Form1";
constexpr DWORD kFormStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
// A key that is held repeats itself. What its first stroke has pressed may have brought another button, which
// nobody meant to press: only in texts and lists does a key that is held go on.
bool IsRepeatedPress(const MSG& message)
{
    constexpr LPARAM kWasDown = 1 << 30;
    if (!(message.lParam & kWasDown)) return false;
    const auto wants = [&](LRESULT what) { return SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0) & what; };
    switch (message.message) {
    case WM_KEYDOWN:
        return message.wParam == VK_RETURN || (message.wParam == VK_SPACE && wants(DLGC_BUTTON));
    case WM_SYSCHAR: // with Alt: a mnemonic
        return true;
    case WM_CHAR: // elsewhere than in texts and lists it is one without Alt, too
        return !wants(DLGC_WANTCHARS);
    default:
        return false;
    }
}

} // namespace

Form1::Form1(Surroundings& outside)
    : store_(outside.files), results_(outside.locale), program_(outside, *this)
{
}

bool Form1::Create(HINSTANCE instance)
{
    InitCommonControls();
    const Text title = ProgramTitle(), version = ProgramVersion();
    splash_.Show(instance, Wide(title), L"Version " + std::wstring(Wide(version)));
    WNDCLASSW description = {};
    description.lpfnWndProc = WndProc;
    description.hInstance = instance;
    description.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kFormClass;
    RegisterClassW(&description);
    const Text caption = title + u" v" + version + u" - " + FromAscii(QUILLBOX_PUBLISHER);
    window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kFormClass, Wide(caption), kFormStyle, CW_USEDEFAULT,
                              CW_USEDEFAULT, 100, 100, nullptr, nullptr, instance, this);
    if (!window_) return false;
    controls_.Create(window_);
    store_.Attach(controls_.At(lblStoreFolder), controls_.At(lblStorePath), controls_.At(Drive1),
                  controls_.At(Dir1), controls_.At(fileCheck));
    progress_.Attach(controls_.At(lstProgress));
    results_.Attach(controls_.At(lvResults));
    tree_.Attach(controls_.At(tvOETree));
    SendMessageW(controls_.At(txtSummary), EM_LIMITTEXT, 0, 0); // as much as the system can hold
    TakeWishedSize();
    return true;
}

SIZE Form1::WindowSize(const SIZE& client) const
{
    RECT frame = {0, 0, client.cx, client.cy};
    AdjustWindowRectEx(&frame, kFormStyle, FALSE, WS_EX_CONTROLPARENT);
    const RECT work = WorkArea();
    return {std::min(frame.right - frame.left, work.right - work.left),
            std::min(frame.bottom - frame.top, work.bottom - work.top)};
}

RECT Form1::WorkArea() const
{
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window_, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

// Where Windows has put the window, or as near as it still fits the screen.
void Form1::TakeWishedSize()
{
    const SIZE size = WindowSize(controls_.WishedClient());
    const RECT work = WorkArea();
    RECT place = {};
    GetWindowRect(window_, &place);
    SetWindowPos(window_, nullptr, std::clamp(place.left, work.left, work.right - size.cx),
                 std::clamp(place.top, work.top, work.bottom - size.cy), size.cx, size.cy,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form1::HandleMessages()
{
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) Dispatch(message);
}

// Ctrl+Tab turns the tabs, Enter opens the folder that is marked; the rest of moving about is the system's.
void Form1::Dispatch(MSG& message)
{
    if (IsRepeatedPress(message)) return;
    if (window_) controls_.TellToolTips(window_, message);
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0) {
        const int count = static_cast<int>(std::size(fraTabs));
        const int step = GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1;
        ShowTab(static_cast<Tab>((SelectedTab() + step) % count));
        return;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB &&
        message.hwnd == controls_.At(txtSummary)) {
        // A box of several lines would keep it.
        SetFocus(GetNextDlgTabItem(window_, message.hwnd, GetKeyState(VK_SHIFT) < 0));
        return;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN && message.hwnd == controls_.At(Dir1)) {
        OnCommand(Dir1, LBN_DBLCLK);
        return;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN && IsChild(window_, message.hwnd) &&
        PressByEnter(message))
        return;
    if (window_ && IsDialogMessageW(window_, &message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

LRESULT CALLBACK Form1::WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<Form1*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCCREATE) { // the first message that carries our object
        self = static_cast<Form1*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    if (!self) return DefWindowProcW(window, message, wParam, lParam);
    try {
        return self->Handle(message, wParam, lParam);
    } catch (const std::exception& error) { // nothing may leave a window procedure
        self->LogLine(u"Error: " + FromUtf8(error.what()), Record::yes);
        return 0;
    }
}

LRESULT Form1::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_NOTIFY:
        if (Form1Controls::AnswerToolTip(*reinterpret_cast<NMHDR*>(lParam))) return 0;
        return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wParam) != controls_.At(lvResults) &&
            !IsChild(controls_.At(lvResults), reinterpret_cast<HWND>(wParam))) // its headers
            break;
        if (IsIdle()) results_.ShowMenu(window_, lParam);
        return 0;
    case WM_ACTIVATE: // the keyboard comes back to where it was
        if (LOWORD(wParam) == WA_INACTIVE)
            lastFocus_ = GetFocus();
        else {
            RefreshStore();
            MoveFocus(lastFocus_);
        }
        return 0;
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED && controls_.At(nTab) &&
            lParam != arrangedSize_) { // shown again, it is the same
            arrangedSize_ = lParam;
            controls_.Arrange();
        }
        return 0;
    case WM_NEXTDLGCTL: { // how a label's mnemonic gets to the control behind it
        const HWND control = LOWORD(lParam) ? reinterpret_cast<HWND>(wParam)
                                            : GetNextDlgTabItem(window_, GetFocus(), wParam != 0);
        if (control) SetFocus(control);
        return 0;
    }
    case WM_GETMINMAXINFO: {
        const SIZE smallest = WindowSize(controls_.SmallestClient());
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
        return 0;
    }
    case WM_SETTINGCHANGE:
        if (wParam == SPI_SETNONCLIENTMETRICS) {
            controls_.TakeFonts();
            controls_.Arrange();
        }
        [[fallthrough]];
    case WM_SYSCOLORCHANGE:
        PassOnNewColours(window_, message, wParam, lParam);
        break;
    case WM_TIMER:
        if (wParam == kBoxTimer) CloseBox();
        return 0;
    case WM_CLOSE:
        program_.AskToClose();
        return 0;
    case WM_QUERYENDSESSION:
        return TRUE; // closing is never refused
    case WM_ENDSESSION:
        if (wParam) program_.EndSession(); // the process may be ended as soon as this returns
        return 0;
    case WM_DESTROY:
        tree_.DestroyImages();
        PostQuitMessage(0);
        return 0;
    case WM_NCDESTROY:
        SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
        controls_.DeleteFonts();
        window_ = nullptr;
        return 0;
    }
    LRESULT answer = 0;
    if (AnswerForGround(window_, message, wParam, CurrentPalette().window, answer)) return answer;
    return DefWindowProcW(window_, message, wParam, lParam);
}

void Form1::OnCommand(int id, int code)
{
    if (const ControlRow* row = FindRow(id); row && row->command && code == BN_CLICKED) {
        if (program_.IsEnabled(row->needs)) (program_.*row->command)();
        return;
    }
    if ((id == optLog || id == optResults) && code == BN_CLICKED)
        return controls_.ShowResults(id == optResults);
    if (id == lstProgress && code == LBN_DBLCLK) return controls_.ShowResults(true);
    if (!IsIdle()) return; // only the stop buttons, the tabs, the lists and closing work
    switch (id) {
    case lblOEFolder:
        if (code == STN_DBLCLK) (void)program_.OpenExportFolder();
        break;
    case Drive1:
        if (code == CBN_DROPDOWN) RefreshStore();
        if (code == CBN_SELCHANGE) {
            program_.Store().Choose(store_.ChosenDrive());
            store_.ShowDrive();
        }
        break;
    case Dir1:
        if (code == LBN_DBLCLK) program_.Store().Choose(store_.ChosenFolder());
        break;
    case mnTickSel:
    case mnUntickSel:
        results_.TickRows(RowChoice::selected, id == mnTickSel);
        break;
    case mnMarkSaved:
        program_.mnMarkSaved();
        break;
    case mnForget:
        program_.mnForget();
        break;
    case mnCondenseDB:
        program_.mnCondenseDB();
        break;
    case IDCANCEL: // Esc
        if (GetFocus() == controls_.At(lvResults)) {
            controls_.ShowResults(false);
            SetFocus(controls_.At(lstProgress));
        }
        break;
    }
}

LRESULT Form1::OnNotify(NMHDR& notice)
{
    if (notice.idFrom == lvResults) {
        if (notice.code != LVN_COLUMNCLICK) return results_.Answer(notice);
        if (IsIdle()) results_.SortBy(reinterpret_cast<const NMLISTVIEW&>(notice).iSubItem);
    }
    if (notice.idFrom == nTab && notice.code == static_cast<UINT>(TCN_SELCHANGE))
        ShowTab(static_cast<Tab>(SelectedTab()));
    return 0;
}

// The button that has the keyboard, else the main one of the page, unless the control wants Enter for itself.
bool Form1::PressByEnter(MSG& message)
{
    const LRESULT wishes =
        SendMessageW(message.hwnd, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&message));
    if (wishes & DLGC_WANTALLKEYS) return false;
    if (wishes & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) {
        SendMessageW(message.hwnd, BM_CLICK, 0, 0);
    } else if (message.hwnd != controls_.At(txtIgnore) && // who ends an entry there wants no export yet
               SelectedTab() == static_cast<int>(Tab::actions)) {
        const bool synchronised = IsWindowVisible(controls_.At(cmdExport));
        const HWND main = controls_.At(synchronised ? cmdExport : cmdSync);
        if (IsWindowEnabled(main)) SendMessageW(main, BM_CLICK, 0, 0);
    }
    return true;
}

void Form1::MoveFocus(HWND control)
{
    lastFocus_ = control;
    if (!control || GetActiveWindow() != window_) return;
    const bool isShown = IsChild(window_, control) && IsWindowVisible(control);
    SetFocus(isShown ? control : controls_.At(nTab));
}
