#include "app/Form1.h"

#include "app/Form1Images.h"
#include "app/Version.h"
#include "controls/OrbPalette.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

constexpr wchar_t kFormClass[] = L"Form1";
constexpr DWORD kFormStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
const Text kSeparatorLine(61, u'-');

const Text kImportant =
    u"Please be aware that the exporting of emails from Outlook Express relies on\r\n"
    u"automating Outlook Express, which cannot be a background task. Therefore,\r\n"
    u"during the email export process you must not move the mouse or press any keys.\r\n"
    u"\r\n"
    u"If you plan on exporting many emails, you may wish to leave this software running and\r\n"
    u"do something else; like have a cup of coffee or read a newspaper...";

Text FolderOfProgram()
{
    Text path(MAX_PATH, u'\0');
    DWORD length = GetModuleFileNameW(nullptr, WideBuffer(path), static_cast<DWORD>(path.size()));
    while (length == path.size()) { // longer than most programs' paths
        path.resize(path.size() * 2);
        length = GetModuleFileNameW(nullptr, WideBuffer(path), static_cast<DWORD>(path.size()));
    }
    path.resize(length);
    path.resize(path.rfind(u'\\') + 1);
    return path;
}

Text TextOfWindow(HWND window)
{
    Text text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(window, WideBuffer(text), static_cast<int>(text.size()))));
    return text;
}

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

const wchar_t* ProgramTitle()
{
    return L"" QUILLBOX_TITLE;
}

Text ProgramVersion()
{
    return FromAscii(QUILLBOX_VERSION);
}

Form1::Form1(Surroundings& outside)
    : outside_(outside),
      store_(outside.files),
      results_(outside.locale),
      log_(outside.files, outside.clock, outside.codePage, *this)
{
}

bool Form1::Create(HINSTANCE instance)
{
    InitCommonControls();
    splash_.Show(instance, ProgramTitle(), L"Version " + std::wstring(Wide(ProgramVersion())));
    WNDCLASSW description = {};
    description.lpfnWndProc = WndProc;
    description.hInstance = instance;
    description.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kFormClass;
    RegisterClassW(&description);
    window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kFormClass, ProgramTitle(), kFormStyle, CW_USEDEFAULT,
                              CW_USEDEFAULT, 100, 100, nullptr, nullptr, instance, this);
    if (!window_) return false;
    controls_.Create(window_);
    store_.Attach(controls_.lblStoreFolder, controls_.lblStorePath, controls_.Drive1, controls_.Dir1,
                  controls_.fileCheck);
    results_.Attach(controls_.lvResults);
    SendMessageW(controls_.txtSummary, EM_LIMITTEXT, 0, 0); // as much as the system can hold
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
    const SIZE size = WindowSize(WishedClient(controls_.Units()));
    const RECT work = WorkArea();
    RECT place = {};
    GetWindowRect(window_, &place);
    SetWindowPos(window_, nullptr, std::clamp(place.left, work.left, work.right - size.cx),
                 std::clamp(place.top, work.top, work.bottom - size.cy), size.cx, size.cy,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form1::StartUp()
{
    const Text caption =
        FromWide(ProgramTitle()) + u" v" + ProgramVersion() + u" - " + FromAscii(QUILLBOX_PUBLISHER);
    SetWindowTextW(window_, Wide(caption));
    SetUpPaths();
    store_.SetFolder(state_.programFolder);
    controls_.FitToFrames();
    LoadSettings(state_.settings, outside_.profile, outside_.files, state_.settingsPath);
    ShowSettings();
    UpdateCommands();
    ShowWindow(window_, SW_SHOWDEFAULT);
    UpdateWindow(window_);
    SetFocus(controls_.cmdSync.Window());
    Run([this] {
        log_.SetPath(state_.logPath);
        CreateEngines(); // the commands need them, whatever comes of the database
        OpenDatabase();
        ProcessEvents();                                           // a click on the splash window
        SendMessageW(controls_.cboComparison, CB_SETCURSEL, 1, 0); // "Database (medium speed)"
        ImgLstTree_ = MakeTreeImages(GetSystemMetrics(SM_CXSMICON));
        SendMessageW(controls_.tvOETree, TVM_SETIMAGELIST, TVSIL_NORMAL,
                     reinterpret_cast<LPARAM>(ImgLstTree_));
        BoxWithTitle(L"IMPORTANT! Please Read", BoxIcon::information, kImportant);
        LogLine(kSeparatorLine, Record::yes);
        LogLine(u"Started " + FromWide(ProgramTitle()) + u" - " + ProgramVersion(), Record::yes);
        for (const Text& note : state_.saved.notes) LogLine(note, Record::yes);
        WarnIfFolderIsReadOnly();
        if (!closeAsked_) cmdSync();
    });
}

void Form1::SetUpPaths()
{
    state_.programFolder = FolderOfProgram();
    state_.databasePath = state_.programFolder + u"saved.mdb";
    state_.settingsPath = state_.programFolder + u"settings.ini";
    state_.logPath = state_.programFolder + u"log.txt";
}

void Form1::OpenDatabase()
{
    const Text reasons =
        OpenSavedEmails(state_.saved, outside_.files, state_.databasePath, outside_.databaseMakers);
    if (state_.saved.IsWritable()) return;
    if (state_.saved.IsOpen())
        return ShowBox(
            BoxIcon::warning,
            u"The database of saved emails can be read but not written, so exporting stays off:\r\n" +
                state_.databasePath + u"\r\n\r\n" + state_.saved.whyReadOnly);
    ShowBox(BoxIcon::warning, u"The database of saved emails cannot be opened, so exporting stays off:\r\n" +
                                  state_.databasePath + u"\r\n\r\n" + reasons);
}

void Form1::CreateEngines()
{
    state_.crc.emplace(outside_.codePage);
    state_.client.emplace(outside_.desktop, RemoteMemory(outside_.processApi), outside_.files,
                          outside_.codePage, outside_.locale, outside_.clock, *state_.crc, *this,
                          state_.oeSettings, state_.flags);
    state_.run.emplace(*state_.client, state_.saved, *this, outside_.files, outside_.clock, outside_.codePage,
                       outside_.locale);
}

// A log.txt that alone is read-only is the user's choice and no matter for a message.
void Form1::WarnIfFolderIsReadOnly()
{
    const Text probe = state_.programFolder + u"settings.tmp";
    FileError error = FileError::none;
    if (outside_.files.Open(probe, OpenMode::createNew, error)) {
        (void)outside_.files.Delete(probe);
    } else if (error != FileError::exists) {
        LogLine(u"The program's folder cannot be written: settings and log are not kept.", Record::yes);
    }
}

void Form1::ShowSettings()
{
    const Settings& settings = state_.settings;
    const auto tick = [](HWND box, int state) {
        SendMessageW(box, BM_SETCHECK, static_cast<WPARAM>(state), 0);
    };
    state_.oeSettings = {settings.settleTime, settings.applyDst, settings.timeOffset};
    store_.TakeFromSettings(settings.store);
    tick(controls_.chkIDonly, settings.idOnly);
    tick(controls_.chkSendKeys, settings.sendKeys);
    tick(controls_.chkSkipFiles, settings.skipFiles);
    tick(controls_.chkJumpRemain, settings.jumpRemain);
    SetWindowTextW(controls_.txtIgnore, Wide(settings.firstFolderToIgnore));
}

void Form1::ReadCheckBoxesAndLists()
{
    Settings& settings = state_.settings;
    const auto ticked = [](HWND box) { return static_cast<int>(SendMessageW(box, BM_GETCHECK, 0, 0)); };
    settings.store = store_.ToRemember();
    settings.idOnly = ticked(controls_.chkIDonly);
    settings.sendKeys = ticked(controls_.chkSendKeys);
    settings.skipFiles = ticked(controls_.chkSkipFiles);
    settings.jumpRemain = ticked(controls_.chkJumpRemain);
    settings.firstFolderToIgnore = TextOfWindow(controls_.txtIgnore);
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
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0) {
        const int count = static_cast<int>(controls_.fraTabs.size());
        const int step = GetKeyState(VK_SHIFT) < 0 ? count - 1 : 1;
        ShowTab(static_cast<Tab>((controls_.nTab.Selected() + step) % count));
        return;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && message.hwnd == controls_.txtSummary) {
        // A box of several lines would keep it.
        SetFocus(GetNextDlgTabItem(window_, message.hwnd, GetKeyState(VK_SHIFT) < 0));
        return;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN && message.hwnd == controls_.Dir1) {
        OnCommand(idDir, LBN_DBLCLK);
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
        OnNotify(*reinterpret_cast<NMHDR*>(lParam));
        return 0;
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wParam) != controls_.lvResults &&
            !IsChild(controls_.lvResults, reinterpret_cast<HWND>(wParam))) // its headers
            break;
        if (!running_) results_.ShowMenu(window_, lParam);
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
        if (wParam != SIZE_MINIMIZED && controls_.nTab.Window()) controls_.Arrange();
        return 0;
    case WM_NEXTDLGCTL: { // how a label's mnemonic gets to the control behind it
        const HWND control = LOWORD(lParam) ? reinterpret_cast<HWND>(wParam)
                                            : GetNextDlgTabItem(window_, GetFocus(), wParam != 0);
        if (control) SetFocus(control);
        return 0;
    }
    case WM_GETMINMAXINFO: {
        const SIZE smallest = WindowSize(SmallestClient(controls_.Units()));
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
        return 0;
    }
    case WM_SETTINGCHANGE:
        if (wParam == SPI_SETNONCLIENTMETRICS) {
            controls_.TakeFonts(window_);
            controls_.Arrange();
        }
        [[fallthrough]];
    case WM_SYSCOLORCHANGE:
        PassOnNewColours(window_, message, wParam, lParam);
        break;
    case WM_TIMER:
        if (wParam == kBoxTimer) CloseOwnBox();
        return 0;
    case WM_CLOSE:
        AskToClose();
        return 0;
    case WM_QUERYENDSESSION:
        return TRUE; // closing is never refused
    case WM_ENDSESSION:
        if (wParam) { // the process may be ended as soon as this returns
            WriteLastRecords();
            AskToClose();
        }
        return 0;
    case WM_DESTROY:
        SendMessageW(controls_.tvOETree, TVM_SETIMAGELIST, TVSIL_NORMAL, 0);
        ImageList_Destroy(ImgLstTree_);
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

// The button that has the keyboard, else the main one of the page, unless the control wants Enter for itself.
bool Form1::PressByEnter(MSG& message)
{
    const LRESULT wishes =
        SendMessageW(message.hwnd, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&message));
    if (wishes & DLGC_WANTALLKEYS) return false;
    if (wishes & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) {
        SendMessageW(message.hwnd, BM_CLICK, 0, 0);
    } else if (message.hwnd != controls_.txtIgnore && // who ends an entry there wants no export yet
               controls_.nTab.Selected() == static_cast<int>(Tab::actions)) {
        const bool synchronised = IsWindowVisible(controls_.cmdExport.Window());
        const OrbSimpleButton& main = synchronised ? controls_.cmdExport : controls_.cmdSync;
        if (IsWindowEnabled(main.Window())) SendMessageW(main.Window(), BM_CLICK, 0, 0);
    }
    return true;
}

void Form1::MoveFocus(HWND control)
{
    lastFocus_ = control;
    if (!control || GetActiveWindow() != window_) return;
    const bool isShown = IsChild(window_, control) && IsWindowVisible(control);
    SetFocus(isShown ? control : controls_.nTab.Window());
}

void Form1::AskToClose()
{
    closeAsked_ = true;
    if (!running_) {
        Close();
        return;
    }
    state_.flags.stopAfterEmail = true;
    state_.flags.stopAfterFolder = true;
    state_.flags.stopRequested = true;
    state_.flags.closing = true;
    CloseOwnBox(); // the run may be waiting for it
}

void Form1::WriteLastRecords()
{
    if (lastRecordsWritten_) return;
    lastRecordsWritten_ = true;
    LogLine(u"Closing " + FromWide(ProgramTitle()), Record::yes);
    ReadCheckBoxesAndLists();
    SaveSettings(state_.settings, outside_.profile, state_.settingsPath);
}

void Form1::Close()
{
    if (!window_) return;
    WriteLastRecords();
    state_.run.reset();
    state_.client.reset();
    state_.crc.reset();
    CloseSavedEmails(state_.saved);
    DestroyWindow(window_);
}
