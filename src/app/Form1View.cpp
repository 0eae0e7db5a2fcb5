// What the window shows of the program, and answers it.
#include "app/ColumnsWin.h"
#include "app/ExtrasWin.h"
#include "app/Form1.h"
#include "app/NewFolderWin.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

constexpr DWORD kShowEvery = 250;    // milliseconds: what changes more often nobody can read
constexpr DWORD kPaintEvery = 50;    // milliseconds, in a run
constexpr DWORD kKeysUpLimit = 2000; // milliseconds
constexpr UINT kBoxMilliseconds = 60'000;
constexpr DWORD kKeysUpPoll = 20; // milliseconds

Text TextOfWindow(HWND window)
{
    Text text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(window, WideBuffer(text), static_cast<int>(text.size()))));
    return text;
}

} // namespace

void Form1::ShowStoreFolder(const Text& folder)
{
    store_.Show(folder);
    UpdateCommands(); // the store may have a database of its own
}

void Form1::ShowText(const Text& text)
{
    display_ = text;
    if (IsIdle()) ShowAdded();
}

// A line at a time, lists would spend most of a run on redrawing themselves, and so would the figures.
void Form1::AddProgress(const Text& line)
{
    progress_.Add(line);
    if (IsIdle()) ShowAdded();
}

void Form1::ShowAdded()
{
    const DWORD start = GetTickCount();
    if (display_) OrbVacuum(controls_.At(OrbVac)).ShowText(Wide(*display_));
    display_.reset();
    for (const auto& [label, text] : captions_) controls_.SetCaption(label, text);
    captions_.clear();
    for (const auto& [bar, percent] : percentages_) {
        SimpleProgressModel& properties = controls_.Bar(bar).Properties();
        // Each set draws, and most e-mails of a long list leave the bar as it is.
        if (properties.Percentage() != percent) properties.SetPercentage(percent);
    }
    percentages_.clear();
    results_.ShowAdded();
    progress_.ShowAdded();
    lastShown_ = GetTickCount();
    showEvery_ = std::max(kShowEvery, 4 * (lastShown_ - start)); // at most a fifth of a run's time
}

void Form1::WaitForKeysUp()
{
    const auto held = [](int key) { return GetAsyncKeyState(key) < 0; };
    const DWORD start = GetTickCount();
    while (!program_.IsClosing() && (held(VK_RETURN) || held(VK_SPACE)) &&
           GetTickCount() - start < kKeysUpLimit) {
        ProcessEvents();
        Sleep(kKeysUpPoll);
    }
    ProcessEvents(); // what the key has sent until now is not the box's
}

int Form1::ShowMessage(const Text& title, UINT kind, const Text& words)
{
    if (program_.TakesBox(words)) return 0;
    splash_.Release(window_);
    WaitForKeysUp();
    if (program_.IsClosing()) return 0;
    ShowAdded();
    return MessageBoxW(GetLastActivePopup(window_), Wide(words), Wide(title), kind);
}

void Form1::ShowBox(const Text& title, BoxIcon icon, const Text& words)
{
    (void)ShowMessage(title, icon == BoxIcon::warning ? MB_ICONEXCLAMATION : MB_ICONINFORMATION, words);
}

bool Form1::Ask(const Text& words)
{
    return ShowMessage(ProgramTitle(), MB_YESNO | MB_DEFBUTTON2 | MB_ICONEXCLAMATION, words) == IDYES;
}

void Form1::ShowFirstBox(const Text& title, const Text& words)
{
    ShowBox(title, BoxIcon::information, words);
}

void Form1::CloseBox()
{
    // And what that one stands over. A box with "Yes" and "No" alone cannot be closed, only answered.
    for (HWND box = GetLastActivePopup(window_); box && box != window_; box = GetWindow(box, GW_OWNER))
        PostMessageW(box, GetDlgItem(box, IDNO) ? WM_COMMAND : WM_CLOSE, IDNO, 0);
}

void Form1::ShowBriefBox(BoxIcon icon, const Text& words)
{
    SetTimer(window_, kBoxTimer, kBoxMilliseconds, nullptr);
    ShowBox(icon, words);
    KillTimer(window_, kBoxTimer);
}

void Form1::ProcessEvents()
{
    constexpr UINT kAllButPaint = PM_QS_INPUT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE;
    const DWORD now = GetTickCount();
    if (now - lastShown_ >= showEvery_) {
        if (!DispatchWaiting(kAllButPaint)) return; // a click is meant for the row that was seen there
        ShowAdded();
    }
    // Painting all that nobody can read so quickly would take a third of a run's own time.
    const bool paints = now - lastPainted_ >= kPaintEvery;
    if (paints) lastPainted_ = now;
    DispatchWaiting(paints ? 0 : kAllButPaint);
}

bool Form1::DispatchWaiting(UINT which)
{
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | which)) {
        if (message.message == WM_QUIT) { // for the outermost loop
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        Dispatch(message);
    }
    return true;
}

void Form1::ShowStatistic(Statistic which, const Text& text)
{
    static constexpr ControlId kLabels[] = {lblCount,      lblPerSecond, lblTime,     lblLeft,
                                            lblTotalCount, lblTotalLeft, lblTotalTime}; // by Statistic
    captions_[kLabels[static_cast<int>(which)]] = text;
    if (IsIdle()) ShowAdded();
}

void Form1::ShowPercentage(Bar bar, int percent)
{
    percentages_[bar == Bar::allFolders ? spMain : sProg] = percent;
    if (IsIdle()) ShowAdded();
}

int Form1::SelectedTab() const
{
    return OrbTab(controls_.At(nTab)).Selected();
}

void Form1::ShowTab(Tab tab)
{
    OrbTab(controls_.At(nTab)).Select(static_cast<int>(tab));
    RefreshStore();
    controls_.ShowFrame(static_cast<int>(tab));
}

// Drives and folders come and go while the lists are not looked at.
void Form1::RefreshStore()
{
    if (!IsIdle() || SelectedTab() != static_cast<int>(Tab::store)) return;
    (void)program_.Store().IsSettled(); // one that was missing may be there
    store_.Refresh();
}

void Form1::ShowStopButtons(StopButtons state)
{
    for (const ControlId button : {cmdStopAfterEmail, cmdStopAfterFolder})
        ShowWindow(controls_.At(button), state == StopButtons::shown ? SW_SHOW : SW_HIDE);
}

void Form1::ShowCurrentFolder(const Text& fullName)
{
    controls_.SetCaption(lblOEFolder, fullName);
}

void Form1::ClearProgress()
{
    progress_.Clear();
    controls_.ShowResults(false);
}

void Form1::SetSummary(const Text& text)
{
    SetWindowTextW(controls_.At(txtSummary), Wide(text));
}

void Form1::AppendSummary(const Text& line)
{
    const HWND box = controls_.At(txtSummary);
    const int length = GetWindowTextLengthW(box);
    const Text added = length > 0 ? u"\r\n" + line : line;
    SendMessageW(box, EM_SETSEL, static_cast<WPARAM>(length), length);
    SendMessageW(box, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(Wide(added)));
}

void Form1::MarkFolderNode(const Text& status, const Text& image)
{
    tree_.Mark(status, image, program_.TreeSeparator());
}

void Form1::ShowFolderLists(const std::vector<Text>& lines, const std::vector<Text>& paths)
{
    const auto fill = [](HWND list, const std::vector<Text>& texts) {
        SendMessageW(list, LB_RESETCONTENT, 0, 0);
        for (const Text& text : texts)
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text)));
    };
    fill(controls_.At(lstTree), lines);
    // One line for each of lstTree: the spare path at the end is no folder's.
    fill(controls_.At(lstLines),
         {paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), paths.size()))});
}

void Form1::SelectFolderLine(int index)
{
    SendMessageW(controls_.At(lstTree), LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

void Form1::UnlockCommands()
{
    controls_.Show(Shown::untilSynchronised, false);
    controls_.Show(Shown::onceSynchronised, true);
    UpdateCommands();
}

void Form1::ShowSettings(const Settings& settings)
{
    for (const SettingRow& row : SettingRows()) {
        if (row.control == noControl) continue;
        const HWND control = controls_.At(row.control);
        const Text value = row.write(settings);
        if (RowOf(row.control).kind == Kind::textBox)
            SetWindowTextW(control, Wide(value));
        else
            SendMessageW(control, BM_SETCHECK, value == u"1" ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    SendMessageW(controls_.At(cboComparison), CB_SETCURSEL, static_cast<WPARAM>(settings.options.comparison),
                 0);
}

void Form1::ReadSettings(Settings& settings)
{
    for (const SettingRow& row : SettingRows()) {
        if (row.control == noControl) continue;
        const HWND control = controls_.At(row.control);
        const bool ticked = SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED;
        const bool isText = RowOf(row.control).kind == Kind::textBox;
        row.read(settings, isText ? TextOfWindow(control) : ticked ? u"1" : u"0");
    }
    const LRESULT type = SendMessageW(controls_.At(cboComparison), CB_GETCURSEL, 0, 0);
    if (type >= 0 && type <= 2) settings.options.comparison = static_cast<ComparisonType>(type);
}

void Form1::Appear()
{
    ShowWindow(window_, SW_SHOWDEFAULT);
    UpdateWindow(window_);
    commandFocus_ = controls_.At(cmdSync); // which is disabled until then
}

void Form1::UpdateCommands()
{
    controls_.Enable(program_);
    UpdateWindow(window_);
}

void Form1::BeginCommand()
{
    commandFocus_ = GetFocus();
    UpdateCommands();
}

void Form1::EnterBusyLayout()
{
    splash_.Release(window_); // a run that is told by the command line meets no box before
    tree_.KeepChoice();
    ShowStopButtons(StopButtons::shown);
    ShowAdded(); // or figures of before would come after it
    controls_.EnterBusyLayout();
    MoveFocus(controls_.At(cmdStopAfterEmail));
}

void Form1::EndCommand()
{
    ShowAdded();
    ShowStopButtons(StopButtons::hidden);
    controls_.LeaveBusyLayout();
    tree_.RestoreChoice();
    UpdateCommands();
    if (!program_.IsClosing()) MoveFocus(commandFocus_); // a button that is disabled loses the keyboard
}

// The keyboard goes on to the other one.
void Form1::HideStopButton(Stop which)
{
    const HWND email = controls_.At(cmdStopAfterEmail), folder = controls_.At(cmdStopAfterFolder);
    const HWND pressed = which == Stop::afterEmail ? email : folder;
    const HWND other = which == Stop::afterEmail ? folder : email;
    if (GetFocus() == pressed && IsWindowVisible(other)) SetFocus(other);
    ShowWindow(pressed, SW_HIDE);
}

bool Form1::AskExtras(std::vector<Text>& values, const FindWrongExtra& findWrong)
{
    WaitForKeysUp();
    return !program_.IsClosing() && ::AskExtras(window_, values, findWrong);
}

bool Form1::AskColumns(const std::vector<Text>& titles, std::vector<int>& chosen,
                       const AreColumnsRight& areRight)
{
    splash_.Release(window_);
    return ::AskColumns(window_, titles, chosen, areRight);
}

bool Form1::AskFolderName(const Text& where, Text& name)
{
    WaitForKeysUp();
    return !program_.IsClosing() && ::AskFolderName(window_, where, name);
}

void Form1::OpenFolder(const Text& path)
{
    // By its full path: the program's own folder may hold something else of that name. Quoted, as Explorer
    // takes a comma for the end of the path.
    wchar_t system[MAX_PATH] = {};
    GetSystemWindowsDirectoryW(system, MAX_PATH);
    const std::wstring explorer = system + std::wstring(L"\\explorer.exe");
    std::wstring command =
        L"Explorer /n,\"" + std::wstring(Wide(path.substr(0, path.find_last_not_of(u'\\') + 1))) + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(explorer.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process))
        return;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}
