// Demonstration.cpp: the steps, and what is seen of each.
#include "demo/driver/main/Demonstration.h"

#include <commctrl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <stdexcept>

const char kSteps[] =
    "  export, export-all, check, check-all   presses the button and answers its boxes\n"
    "  compare=simple|database|file           chooses the comparison type\n"
    "  stop-email=N, stop-folder=N            the next run is stopped after N e-mails\n"
    "  tick=CAPTION                           ticks a check box; _ stands for a blank\n"
    "  restart, restart-client                closes Quillbox, or the client, and starts it\n"
    "  kill=MS, kill-client=MS                the next run's Quillbox, or the client, is ended by force so "
    "many\n"
    "                                         milliseconds behind the press; of that moment, or of that "
    "run's\n"
    "                                         end, saved.mdb and log.txt are kept as killed.mdb and "
    "killed.txt\n"
    "  top                                    selects the first message in the client\n"
    "  condense                               chooses \"Condense database\" in the menu of the results\n"
    "  measure                                tells how long log, results and summary take to be walked "
    "through\n"
    "  show                                   tells summary, tree and results; pictures them\n";

namespace {

constexpr DWORD kSyncLimit = 120000; // milliseconds for reading the folder tree
constexpr DWORD kIdleLimit = 200000; // a run that shows nothing new for that long has stopped
constexpr DWORD kCloseLimit = 30000;
constexpr std::size_t kLinesBeforePicture = 5; // e-mails that a picture of a run in progress should show

constexpr wchar_t kClientClass[] = L"Outlook Express Browser Class";
constexpr wchar_t kStartUpBox[] = L"IMPORTANT! Please Read";
constexpr wchar_t kCondensed[] = L"Removed "; // on the display, when condensing has ended
constexpr std::size_t kTimeStamp = 20;        // "dd/mm/yyyy hh:nn:ss " before each line of the log

std::wstring FolderOf(const std::wstring& path)
{
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? L".\\" : path.substr(0, end + 1);
}

bool StartsWith(std::wstring_view text, std::wstring_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

} // namespace

// A button that starts something.
struct Demonstration::Command {
    const wchar_t* step;
    const wchar_t* caption;
    const wchar_t* lastLine; // of the log; null: the run ends with a box
};

void Print(const std::wstring& line)
{
    std::string text(line.size() * 3, '\0');
    text.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), text.data(),
                            static_cast<int>(text.size()), nullptr, nullptr)));
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

Demonstration::Demonstration(const Choices& choices)
    : choices_(choices), log_(FolderOf(choices.program) + L"log.txt")
{
}

void Demonstration::StartClient()
{
    std::wstring commandLine;
    for (const std::wstring& word : choices_.client) commandLine += Quoted(word) + L" ";
    client_.Start(commandLine, L"");
    clientWindow_ = WindowOf(client_, "the mail client", kClientClass);
    if (window_) PlaceSideBySide();
}

void Demonstration::StartProgram()
{
    program_.Start(Quoted(choices_.program), FolderOf(choices_.program));
    PictureOfSplash();
    const HWND box = WindowOf(program_, "Quillbox's start-up box", kDialogClass, kStartUpBox);
    window_ = FindProgramWindow(program_.Id(), L"Form1");
    if (!window_) throw std::runtime_error("Quillbox shows no main window");
    PlaceSideBySide();
    SetWindowPos(box, nullptr, 40, 120, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    Picture(L"start");
    WaitForCommands();
    Picture(L"idle");
}

void Demonstration::WaitForCommands()
{
    const bool offered = Eventually(
        [this] {
            Attend();
            const HWND button = FindButton(window_, L"Export emails in selected folder");
            return button && IsWindowEnabled(button);
        },
        kSyncLimit);
    if (!offered) throw std::runtime_error("Quillbox does not offer the export");
}

void Demonstration::Do(const std::wstring& step)
{
    static const Command kCommands[] = {
        {L"export", L"Export emails in selected folder", L"Export complete"},
        {L"export-all", L"Export emails in all folders", nullptr},
        {L"check", L"Check folder", nullptr},
        {L"check-all", L"Check all folders", nullptr},
    };
    const std::size_t equals = step.find(L'=');
    const std::wstring name = step.substr(0, equals);
    const std::wstring value = equals == std::wstring::npos ? L"" : step.substr(equals + 1);
    const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                      [&](const Command& each) { return name == each.step; });
    if (command != std::end(kCommands)) {
        Press(*command);
    } else if (name == L"compare") {
        Choose(value);
    } else if (name == L"tick") {
        Tick(value);
    } else if (name == L"stop-email") {
        stopEmailAt_ = std::stoul(value);
    } else if (name == L"stop-folder") {
        stopFolderAt_ = std::stoul(value);
    } else if (name == L"kill" || name == L"kill-client") {
        kill_ = {name == L"kill" ? &program_ : &client_, static_cast<DWORD>(std::stoul(value))};
    } else if (name == L"top") {
        PostMessageW(FindControl(clientWindow_, L"ATL:SysListView32"), WM_KEYDOWN, VK_HOME, 0);
    } else if (name == L"condense") {
        Condense();
    } else if (name == L"restart") {
        CloseProgram();
        StartProgram();
    } else if (name == L"restart-client") {
        CloseClient();
        StartClient();
        if (program_.HasEnded()) return;
        ShowTab(Tab::actions);
        ::Press(FindButton(window_, L"Sync with OE"));
        WaitForCommands();
    } else if (name == L"measure") {
        MeasureLists();
    } else if (name == L"show") {
        ShowOutcome();
    } else {
        throw std::runtime_error("an unknown step");
    }
}

void Demonstration::Press(const Command& command)
{
    ShowTab(Tab::actions);
    const HWND button = FindButton(window_, command.caption);
    boxesAnswered_ = exporting_ = 0;
    completed_ = false;
    if (!choices_.beside.empty() && !beside_)
        beside_ = std::make_unique<StartedProcess>(choices_.beside, std::wstring());
    if (!button || !::Press(button)) throw std::runtime_error("the button of the step cannot be pressed");
    Print(L"> pressed \"" + std::wstring(command.caption) + L"\"");
    const bool killed = kill_.has_value();
    AwaitEnd([&] { return IsOver(command); });
    stopEmailAt_ = stopFolderAt_ = 0;
    if (command.lastLine && !completed_ && !killed)
        throw std::runtime_error("the export did not reach its end");
}

// Its menu is worked by the keyboard, as the table need not be shown.
void Demonstration::Condense()
{
    const HWND table = FindControl(window_, WC_LISTVIEWW, L"", Visible::no);
    PostMessageW(table, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(table), -1);
    const HWND menu = WaitForWindow(program_.Id(), L"#32768", L"", kStartLimit);
    if (!menu) throw std::runtime_error("the results show no menu");
    PostMessageW(menu, WM_CHAR, L'c', 0);
    Print(L"> chose \"Condense database\"");
    AwaitEnd([this] { return IsIdle() && DescribeScreen().find(kCondensed) != std::wstring::npos; });
}

void Demonstration::AwaitEnd(const std::function<bool()>& over)
{
    const auto began = std::chrono::steady_clock::now();
    const auto gone = [&] {
        const auto time = std::chrono::steady_clock::now() - began;
        return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
    };
    const bool toKill = kill_.has_value(), ofClient = toKill && kill_->process == &client_;
    // Without a client a run may end with no more than words on the display.
    const auto ended = [&] {
        return over() || (ofClient && IsIdle() && !FindProgramWindow(program_.Id(), kDialogClass));
    };
    DWORD lastSign = 0;
    for (commandRuns_ = true; kill_ || !ended();) {
        if (kill_ && gone() >= kill_->after) {
            kill_->process->End();
            Print(L"> killed after " + std::to_wstring(gone()) + L" ms");
            if (kill_->process == &program_) break;
            kill_.reset();
        }
        if (Attend()) lastSign = gone();
        if (gone() - lastSign > kIdleLimit) throw std::runtime_error("the run has stopped");
        Sleep(kill_ ? (std::min)(kill_->after - (std::min)(kill_->after, gone()), DWORD{20}) : 20);
    }
    Print(L"> took " + std::to_wstring(gone()) + L" ms");
    commandRuns_ = false;
    kill_.reset();
    if (ofClient) CloseProgram(); // which has the files to itself until then
    if (toKill) KeepFiles();
}

// As they are between what was killed and the next start.
void Demonstration::KeepFiles() const
{
    const std::wstring folder = FolderOf(choices_.program);
    CopyFileW((folder + L"saved.mdb").c_str(), (folder + L"killed.mdb").c_str(), FALSE);
    CopyFileW((folder + L"log.txt").c_str(), (folder + L"killed.txt").c_str(), FALSE);
}

bool Demonstration::IsOver(const Command& command) const
{
    const bool ended = boxesAnswered_ > 0 || (command.lastLine && completed_);
    return ended && IsIdle() && !FindProgramWindow(program_.Id(), kDialogClass);
}

bool Demonstration::IsIdle() const
{
    return IsWindowEnabled(FindControl(window_, L"Button", L"Sync with OE", Visible::no)) != FALSE;
}

void Demonstration::PressStopButtons()
{
    const auto press = [this](std::size_t& at, const wchar_t* caption) {
        if (at == 0 || exporting_ < at) return;
        const HWND button = FindButton(window_, caption);
        if (!button || !::Press(button)) return;
        at = 0;
        Print(L"> pressed \"" + std::wstring(caption) + L"\"");
    };
    press(stopEmailAt_, L"Stop After This Email");
    press(stopFolderAt_, L"Stop After This Folder");
}

void Demonstration::Choose(std::wstring_view comparison)
{
    constexpr const wchar_t* kTypes[] = {L"simple", L"database", L"file"};
    const auto type = std::find(std::begin(kTypes), std::end(kTypes), comparison);
    ShowTab(Tab::actions);
    const HWND choice = FindControl(window_, L"ComboBox");
    if (type == std::end(kTypes) || !choice || !IsWindowEnabled(choice))
        throw std::runtime_error("the comparison type cannot be chosen");
    SendMessageW(choice, CB_SETCURSEL, static_cast<WPARAM>(type - std::begin(kTypes)), 0);
    SendMessageW(GetParent(choice), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(choice), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(choice));
    Print(L"> comparison type: " + TextOf(choice));
}

void Demonstration::Tick(std::wstring caption)
{
    std::replace(caption.begin(), caption.end(), L'_', L' ');
    const HWND box = FindControl(window_, L"Button", caption, Visible::no);
    if (!box) throw std::runtime_error("there is no such check box");
    if (SendMessageW(box, BM_GETCHECK, 0, 0) != BST_CHECKED) SendMessageW(box, BM_CLICK, 0, 0);
}

void Demonstration::EndBeside()
{
    if (beside_ && beside_->HasEnded())
        Print(L"> the program beside had ended with code " + std::to_wstring(beside_->ExitCode()));
    beside_.reset();
}

void Demonstration::CloseProgram()
{
    PostMessageW(window_, WM_CLOSE, 0, 0);
    if (!program_.HasEnded(kCloseLimit)) throw std::runtime_error("Quillbox does not close");
    ShowLog();
    if (program_.ExitCode() != 0)
        throw std::runtime_error("Quillbox ended with code " + std::to_string(program_.ExitCode()));
}

void Demonstration::CloseClient()
{
    PostMessageW(clientWindow_, WM_CLOSE, 0, 0);
    if (!client_.HasEnded(kCloseLimit)) throw std::runtime_error("the mail client does not close");
}

void Demonstration::ShowLog()
{
    for (const std::wstring& line : log_.NewLines()) {
        Print(line);
        const std::wstring_view message = std::wstring_view(line).substr((std::min)(kTimeStamp, line.size()));
        if (StartsWith(message, L"- Exporting ")) ++exporting_;
        if (message == L"Export complete") completed_ = true;
        ++lines_;
        if (commandRuns_) PressStopButtons();
    }
}

HWND Demonstration::WindowOf(const StartedProcess& program, const std::string& what,
                             const std::wstring& windowClass, const std::wstring& caption)
{
    HWND window = nullptr;
    Eventually(
        [&] {
            window = FindProgramWindow(program.Id(), windowClass, caption);
            return window || program.HasEnded();
        },
        kStartLimit);
    if (window) return window;
    throw std::runtime_error(what + (program.HasEnded()
                                         ? " ended with code " + std::to_string(program.ExitCode())
                                         : " does not appear"));
}

// The client comes to the front at every save; beside each other, neither covers the other.
void Demonstration::PlaceSideBySide()
{
    constexpr int kGap = 60; // pixels
    RECT place = {};
    GetWindowRect(window_, &place);
    constexpr UINT kOnlyMove = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
    SetWindowPos(window_, nullptr, 0, 0, 0, 0, kOnlyMove);
    SetWindowPos(clientWindow_, nullptr, place.right - place.left + kGap, 0, 0, 0, kOnlyMove);
}

// Shows new log lines, pictures the run, answers boxes. Whether there was anything to do.
bool Demonstration::Attend()
{
    const std::size_t linesBefore = lines_;
    ShowLog();
    if (program_.HasEnded())
        throw std::runtime_error("Quillbox ended with code " + std::to_string(program_.ExitCode()));
    const HWND box = FindProgramWindow(program_.Id(), kDialogClass);
    // The box at the end of a short run is the last moment.
    if (!busyPictured_ && (exporting_ >= kLinesBeforePicture || (box && commandRuns_))) {
        busyPictured_ = true;
        RequestPicture(L"busy");
    }
    if (!box) return lines_ != linesBefore;
    Answer(box);
    return true;
}

void Demonstration::Answer(HWND box)
{
    Print(L"> box \"" + TextOf(box) + L"\": " + BoxWords(box));
    WaitForPictures();
    const bool answered = Eventually(
        [box] {
            if (IsWindow(box)) PressOk(box);
            return !IsWindow(box);
        },
        kCloseLimit);
    if (!answered) throw std::runtime_error("a box stays in spite of its OK button");
    ++boxesAnswered_;
}

void Demonstration::ShowOutcome()
{
    constexpr const wchar_t* kImages[] = {L"", L"", L"", L"green", L"yellow", L"red"};
    ShowTab(Tab::store);
    Picture(L"store");
    ShowTab(Tab::summary);
    Picture(L"summary");
    const HWND summary = FindControl(window_, L"Edit");
    Print(L"> summary:\n" + (summary ? TextOf(summary) : L""));
    ShowTab(Tab::progress);
    Picture(L"tree");
    const HWND tree = FindControl(window_, WC_TREEVIEWW);
    for (const TreeLine& line : TreeLines(tree)) {
        const auto image = static_cast<std::size_t>(line.image);
        if (image < std::size(kImages) && *kImages[image])
            Print(L"> folder " + line.text + L": " + kImages[image]);
    }
    if (const HWND list = FindControl(window_, L"ListBox")) { // a double click brings the table
        PostMessageW(list, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(20, 8));
        PostMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(20, 8));
    }
    Eventually([this] { return FindControl(window_, WC_LISTVIEWW) != nullptr; }, 2000);
    if (const HWND table = FindControl(window_, WC_LISTVIEWW))
        Print(L"> rows in the results table: " +
              std::to_wstring(SendMessageW(table, LVM_GETITEMCOUNT, 0, 0)));
    Picture(L"results");
}
