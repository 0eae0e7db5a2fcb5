// Demonstration.cpp: the steps, and what is seen of each.
#include "demo/driver/main/Demonstration.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <stdexcept>

const char kSteps[] =
    "  export, export-all, check, check-all   presses the button and answers its boxes\n"
    "  compare=simple|database|file           chooses the comparison type\n"
    "  stop-email=N, stop-folder=N            the next run is stopped after N e-mails\n"
    "  tick=CAPTION                           ticks a check box; _ stands for a blank\n"
    "  restart, restart-client                closes Quillbox, or the client, and starts it\n"
    "  show                                   tells summary, tree and results; pictures them\n";

namespace {

constexpr DWORD kStartLimit = 60000; // milliseconds until a window is there; machines under load are slow
constexpr DWORD kSyncLimit = 120000; // and for reading the folder tree
constexpr DWORD kIdleLimit = 200000; // a run that shows nothing new for that long has stopped
constexpr DWORD kCloseLimit = 30000;
constexpr DWORD kPictureLimit = 15000;
constexpr std::size_t kLinesBeforePicture = 5; // e-mails that a picture of a run in progress should show

constexpr wchar_t kSplashClass[] = L"QuillboxSplash";
constexpr wchar_t kBoxClass[] = L"#32770";
constexpr wchar_t kClientClass[] = L"Outlook Express Browser Class";
constexpr wchar_t kStartUpBox[] = L"IMPORTANT! Please Read";
constexpr std::size_t kTimeStamp = 20; // "dd/mm/yyyy hh:nn:ss " before each line of the log
enum Tabs { kActions, kStore, kProgress, kSummary };

std::wstring FolderOf(const std::wstring& path)
{
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? L".\\" : path.substr(0, end + 1);
}

bool StartsWith(std::wstring_view text, std::wstring_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

void WriteFileText(const std::wstring& path, const std::string& text)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    if (file == INVALID_HANDLE_VALUE ||
        !WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        throw std::runtime_error("the file that asks for a picture cannot be written");
    CloseHandle(file);
}

// As by a click: the program hears of the change.
void SelectTab(HWND window, int index)
{
    const HWND strip = FindControl(window, WC_TABCONTROLW);
    if (!strip) throw std::runtime_error("Quillbox shows no tabs");
    SendMessageW(strip, TCM_SETCURFOCUS, static_cast<WPARAM>(index), 0);
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
    const HWND box = WindowOf(program_, "Quillbox's start-up box", kBoxClass, kStartUpBox);
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
    } else if (name == L"restart") {
        CloseProgram();
        StartProgram();
    } else if (name == L"restart-client") {
        CloseClient();
        StartClient();
        SelectTab(window_, kActions);
        ::Press(FindButton(window_, L"Sync with OE"));
        WaitForCommands();
    } else if (name == L"show") {
        ShowOutcome();
    } else {
        throw std::runtime_error("an unknown step");
    }
}

void Demonstration::Press(const Command& command)
{
    SelectTab(window_, kActions);
    const HWND button = FindButton(window_, command.caption);
    boxesAnswered_ = exporting_ = 0;
    completed_ = false;
    if (!choices_.beside.empty() && !beside_)
        beside_ = std::make_unique<StartedProcess>(choices_.beside, std::wstring());
    if (!button || !::Press(button)) throw std::runtime_error("the button of the step cannot be pressed");
    commandRuns_ = true;
    Print(L"> pressed \"" + std::wstring(command.caption) + L"\"");
    DWORD lastSign = GetTickCount();
    while (!IsOver(command)) {
        if (Attend()) lastSign = GetTickCount();
        if (GetTickCount() - lastSign > kIdleLimit) throw std::runtime_error("the run has stopped");
        Sleep(20);
    }
    commandRuns_ = false;
    stopEmailAt_ = stopFolderAt_ = 0;
    if (command.lastLine && !completed_) throw std::runtime_error("the export did not reach its end");
}

bool Demonstration::IsOver(const Command& command) const
{
    const bool ended = boxesAnswered_ > 0 || (command.lastLine && completed_);
    const HWND sync = FindControl(window_, L"Button", L"Sync with OE", Visible::no);
    return ended && IsWindowEnabled(sync) && !FindProgramWindow(program_.Id(), kBoxClass);
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
    SelectTab(window_, kActions);
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
    const HWND box = FindProgramWindow(program_.Id(), kBoxClass);
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
    SelectTab(window_, kSummary);
    Picture(L"summary");
    const HWND summary = FindControl(window_, L"Edit");
    Print(L"> summary:\n" + (summary ? TextOf(summary) : L""));
    SelectTab(window_, kProgress);
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

void Demonstration::Picture(const std::wstring& name)
{
    RequestPicture(name);
    WaitForPictures();
}

void Demonstration::RequestPicture(const std::wstring& name)
{
    if (choices_.pictures.empty()) return;
    const HWND splash = FindProgramWindow(program_.Id(), kSplashClass);
    RECT place = {};
    GetWindowRect(name == L"splash" && splash ? splash : window_, &place);
    requested_.push_back(choices_.pictures + L"\\" + name + L".place");
    WriteFileText(requested_.back(), std::to_string(place.right - place.left) + "x" +
                                         std::to_string(place.bottom - place.top) + "+" +
                                         std::to_string(place.left) + "+" + std::to_string(place.top) + "\n");
}

void Demonstration::WaitForPictures()
{
    Sleep(requested_.empty() ? 0 : 200); // what was just shown is drawn meanwhile
    for (const std::wstring& file : requested_)
        Eventually([&] { return GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES; },
                   kPictureLimit);
    requested_.clear();
}

// It is gone in a moment, so the program is held meanwhile.
void Demonstration::PictureOfSplash()
{
    if (choices_.pictures.empty()) return;
    const auto shown = [this](const wchar_t* windowClass) {
        return FindProgramWindow(program_.Id(), windowClass);
    };
    Eventually([&] { return shown(kSplashClass) || shown(kBoxClass) || program_.HasEnded(); }, kStartLimit);
    Sleep(30); // until it is drawn
    program_.Hold();
    if (shown(kSplashClass)) Picture(L"splash");
    program_.Release();
}
