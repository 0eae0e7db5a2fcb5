// ProgramDriver.h: starts a program and works its windows as a user would: finds, reads, presses.
// Nothing here waits without a limit. Fails by: answers of false, null or empty; only Start throws.
#pragma once
#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

// A process that was started here and does not outlive this object.
class StartedProcess {
public:
    StartedProcess() = default;
    StartedProcess(const std::wstring& commandLine, const std::wstring& folder)
    {
        Start(commandLine, folder);
    }
    ~StartedProcess();
    StartedProcess(const StartedProcess&) = delete;
    StartedProcess& operator=(const StartedProcess&) = delete;

    // folder: its current folder; empty: this process's own. The program before, if any, has ended. Throws
    // std::runtime_error.
    void Start(const std::wstring& commandLine, const std::wstring& folder);
    DWORD Id() const { return process_.dwProcessId; } // 0: never started
    bool HasEnded(DWORD waitMilliseconds = 0) const;
    DWORD ExitCode() const;                          // once it has ended
    void Hold() { SuspendThread(process_.hThread); } // its first thread, and with it its windows
    void Release() { ResumeThread(process_.hThread); }
    void End(); // by force, at once; with code 0
    bool WaitForEnd(DWORD milliseconds) const { return HasEnded(milliseconds) && ExitCode() == 0; }

private:
    PROCESS_INFORMATION process_ = {};
};

// A word as a command line has to spell it.
std::wstring Quoted(const std::wstring& word);

// A visible top-level window of the process; empty texts stand for any. Null when there is none, or none
// within the time.
HWND FindProgramWindow(DWORD process, const std::wstring& windowClass, const std::wstring& caption = {});
HWND WaitForWindow(DWORD process, const std::wstring& windowClass, const std::wstring& caption,
                   DWORD milliseconds);

// A visible control at any depth, by its caption without mnemonic marks. Null when there is none.
HWND FindButton(HWND window, std::wstring_view caption);
// The first control of the class at any depth; an empty caption stands for any. Null when there is none.
enum class Visible { yes, no }; // whether it has to be
HWND FindControl(HWND window, std::wstring_view windowClass, std::wstring_view caption = {},
                 Visible visible = Visible::yes);

// The items of a tree view of another process, from the top down, with the index of their picture. Empty when
// its memory cannot be reached.
struct TreeLine {
    std::wstring text;
    int image = 0;
};
std::vector<TreeLine> TreeLines(HWND tree);

std::wstring ClassOf(HWND window);
std::wstring TextOf(HWND window); // empty when the window does not answer within 20 s

// A message box: its words, and the press of its first button. Press answers at once, as the program may be
// busy for long with what the button starts; a disabled button is not pressed, and the answer is false.
std::wstring BoxWords(HWND box);
bool Press(HWND button);
bool PressOk(HWND box);

// What a user would see: one line for each visible top-level window, and below it the texts of its controls.
std::wstring DescribeScreen();

// A text file that another process appends to, read line by line as it grows.
class GrowingFile {
public:
    // Lines that the file has already are passed over. It need not be there yet.
    explicit GrowingFile(const std::wstring& path);
    std::vector<std::wstring> NewLines(); // whole ones only, from the ANSI code page

private:
    std::string ReadFrom(LONGLONG position) const;
    std::wstring path_;
    LONGLONG position_ = 0;
};

// Polls until it is true; false after the milliseconds.
template <class Condition>
bool Eventually(Condition condition, DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > milliseconds) return false;
        Sleep(10);
    }
    return true;
}
