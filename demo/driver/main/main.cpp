// main.cpp: demo-driver.exe: starts the mail client and Quillbox, exports the folder that the client shows,
// tells what is going on, and closes both.
#include "demo/driver/ProgramDriver.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace {

constexpr char kUsage[] =
    "usage: demo-driver --program QUILLBOX.EXE [--running FILE] -- CLIENT.EXE [ARGUMENTS]\n"
    "  --running FILE   made when the export is under way: the place of the window, \"WxH+X+Y\"\n";

constexpr DWORD kStartLimit = 60000; // milliseconds until a window is there; machines under load are slow
constexpr DWORD kSyncLimit = 120000; // and for reading the folder tree
constexpr DWORD kIdleLimit = 120000; // an export without a new log line for that long has stopped
constexpr DWORD kCloseLimit = 30000;

constexpr std::size_t kLinesBeforePicture = 5; // e-mails that a picture of a run in progress should show
constexpr DWORD kPictureLimit = 15000;

constexpr wchar_t kBoxClass[] = L"#32770";
constexpr std::wstring_view kExportButton = L"Export emails in selected folder";
constexpr wchar_t kStartUpBox[] = L"IMPORTANT! Please Read";
constexpr std::size_t kTimeStamp = 20; // "dd/mm/yyyy hh:nn:ss " before each line of the log

struct Choices {
    std::wstring program, running;
    std::vector<std::wstring> client;
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

bool ReadArguments(int argc, wchar_t** argv, Choices& choices)
{
    int i = 1;
    for (; i + 1 < argc && std::wstring_view(argv[i]) != L"--"; i += 2) {
        const std::wstring_view name = argv[i];
        if (name != L"--program" && name != L"--running") return false;
        (name == L"--program" ? choices.program : choices.running) = argv[i + 1];
    }
    for (++i; i < argc; ++i) choices.client.push_back(argv[i]);
    return !choices.program.empty() && !choices.client.empty();
}

std::wstring FolderOf(const std::wstring& path)
{
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? L".\\" : path.substr(0, end + 1);
}

void WriteFileText(const std::wstring& path, const std::string& text)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    if (file == INVALID_HANDLE_VALUE ||
        !WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        throw std::runtime_error("the file that tells of the running export cannot be written");
    CloseHandle(file);
}

bool StartsWith(std::wstring_view text, std::wstring_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

// One demonstration, from the start of both programs to their end. A step that cannot be done throws.
class Demonstration {
public:
    explicit Demonstration(const Choices& choices)
        : choices_(choices), log_(FolderOf(choices.program) + L"log.txt")
    {
    }

    void StartClient()
    {
        std::wstring commandLine;
        for (const std::wstring& word : choices_.client) commandLine += Quoted(word) + L" ";
        client_.Start(commandLine, L"");
        clientWindow_ = WindowOf(client_, "the mail client", L"Outlook Express Browser Class");
    }

    void StartProgram()
    {
        program_.Start(Quoted(choices_.program), FolderOf(choices_.program));
        WindowOf(program_, "Quillbox's start-up box", kBoxClass, kStartUpBox);
        window_ = FindProgramWindow(program_.Id(), L"Form1");
        if (!window_) throw std::runtime_error("Quillbox shows no main window");
        PlaceSideBySide();
    }

    void WaitForSynchronisation()
    {
        const bool offered = Eventually(
            [this] {
                Attend();
                exportButton_ = FindButton(window_, kExportButton);
                return exportButton_ && IsWindowEnabled(exportButton_);
            },
            kSyncLimit);
        if (!offered) throw std::runtime_error("Quillbox does not offer the export");
    }

    void Export()
    {
        boxesAnswered_ = 0;
        if (!Press(exportButton_)) throw std::runtime_error("the export button cannot be pressed");
        Print(L"> pressed \"" + std::wstring(kExportButton) + L"\"");
        DWORD lastSign = GetTickCount();
        while (!IsOver()) {
            if (Attend()) lastSign = GetTickCount();
            if (GetTickCount() - lastSign > kIdleLimit) throw std::runtime_error("the export has stopped");
            Sleep(20);
        }
        if (!completed_) throw std::runtime_error("the export did not reach its end");
    }

    void CloseBoth()
    {
        PostMessageW(window_, WM_CLOSE, 0, 0);
        if (!program_.HasEnded(kCloseLimit)) throw std::runtime_error("Quillbox does not close");
        ShowLog();
        if (program_.ExitCode() != 0)
            throw std::runtime_error("Quillbox ended with code " + std::to_string(program_.ExitCode()));
        PostMessageW(clientWindow_, WM_CLOSE, 0, 0);
        if (!client_.HasEnded(kCloseLimit)) throw std::runtime_error("the mail client does not close");
    }

    void ShowLog() // what has come since the last time
    {
        for (const std::wstring& line : log_.NewLines()) {
            Print(line);
            const std::wstring_view message =
                std::wstring_view(line).substr((std::min)(kTimeStamp, line.size()));
            if (StartsWith(message, L"- Exporting ")) ++exporting_;
            if (message == L"Export complete") completed_ = true;
            lines_ += 1;
        }
    }

private:
    HWND WindowOf(const StartedProcess& program, const std::string& what, const std::wstring& windowClass,
                  const std::wstring& caption = {})
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
    void PlaceSideBySide()
    {
        RECT place = {};
        GetWindowRect(window_, &place);
        constexpr UINT kOnlyMove = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
        SetWindowPos(window_, nullptr, 0, 0, 0, 0, kOnlyMove);
        SetWindowPos(clientWindow_, nullptr, place.right - place.left, 0, 0, 0, kOnlyMove);
    }

    // Shows new log lines, tells that the run is under way, answers boxes. Whether there was anything to do.
    bool Attend()
    {
        const std::size_t linesBefore = lines_;
        ShowLog();
        if (program_.HasEnded())
            throw std::runtime_error("Quillbox ended with code " + std::to_string(program_.ExitCode()));
        if (exporting_ >= kLinesBeforePicture) TellThatItRuns();
        const HWND box = FindProgramWindow(program_.Id(), kBoxClass);
        if (!box) return lines_ != linesBefore;
        if (exportButton_ && exporting_ > 0) TellThatItRuns(); // too short a run to wait for more
        Answer(box);
        return true;
    }

    void Answer(HWND box)
    {
        Print(L"> box \"" + TextOf(box) + L"\": " + BoxWords(box));
        Eventually([this] { return PictureIsTaken(); }, kPictureLimit);
        const bool answered = Eventually(
            [box] {
                if (IsWindow(box)) PressOk(box);
                return !IsWindow(box);
            },
            kCloseLimit);
        if (!answered) throw std::runtime_error("a box stays in spite of its OK button");
        ++boxesAnswered_;
    }

    // Whoever takes the picture removes the file; the window stays as it is until then, if not for long.
    void TellThatItRuns()
    {
        if (told_ || choices_.running.empty()) return;
        told_ = true;
        RECT place = {};
        GetWindowRect(window_, &place);
        WriteFileText(choices_.running, std::to_string(place.right - place.left) + "x" +
                                            std::to_string(place.bottom - place.top) + "+" +
                                            std::to_string(place.left) + "+" + std::to_string(place.top));
    }

    bool PictureIsTaken() const
    {
        return !told_ || GetFileAttributesW(choices_.running.c_str()) == INVALID_FILE_ATTRIBUTES;
    }

    bool IsOver() const
    {
        return (completed_ || boxesAnswered_ > 0) && IsWindowEnabled(exportButton_) &&
               !FindProgramWindow(program_.Id(), kBoxClass);
    }

    const Choices& choices_;
    GrowingFile log_;
    StartedProcess client_, program_;
    HWND clientWindow_ = nullptr, window_ = nullptr, exportButton_ = nullptr;
    std::size_t lines_ = 0, exporting_ = 0; // lines of the log; those of them about one e-mail
    std::size_t boxesAnswered_ = 0;         // since the button was pressed
    bool completed_ = false, told_ = false;
};

} // namespace

int wmain(int argc, wchar_t** argv)
{
    Choices choices;
    if (!ReadArguments(argc, argv, choices)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    Demonstration demonstration(choices);
    try {
        demonstration.StartClient();
        demonstration.StartProgram();
        demonstration.WaitForSynchronisation();
        demonstration.Export();
        demonstration.CloseBoth();
        return 0;
    } catch (const std::exception& error) {
        demonstration.ShowLog();
        std::printf("demo-driver: %s\nOn the screen:\n", error.what());
        Print(DescribeScreen());
        return 1;
    }
}
