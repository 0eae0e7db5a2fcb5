// ProgramUnderTest.h: quillbox.exe started in a folder of its own and driven from outside, as a user would.
#pragma once
#include "app/Form1Controls.h"

#include <windows.h>

#include <string>
#include <vector>

// The window of a process whose class and caption are these (empty: any); waits until it is there and
// visible. Null when that takes longer than the milliseconds.
HWND WaitForWindow(DWORD process, const std::wstring& windowClass, const std::wstring& caption,
                   DWORD milliseconds);
std::wstring TextOf(HWND window);
std::vector<std::wstring> LinesOf(HWND listBox);
void Press(HWND button);      // returns at once
std::wstring FolderOfTests(); // where this test program and the programs under test lie; ends in a backslash

// Ends the process at the end of the test, whatever became of it.
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
    void Start(const std::wstring& commandLine, const std::wstring& folder);
    DWORD Id() const { return information_.dwProcessId; }
    bool WaitForEnd(DWORD milliseconds); // true: ended by itself with exit code 0

private:
    PROCESS_INFORMATION information_ = {};
};

class ProgramUnderTest {
public:
    ProgramUnderTest(); // makes the folder and puts the program into it
    ~ProgramUnderTest();
    ProgramUnderTest(const ProgramUnderTest&) = delete;
    ProgramUnderTest& operator=(const ProgramUnderTest&) = delete;

    const std::wstring& Folder() const { return folder_; } // with its trailing backslash
    void Write(const std::wstring& name, const std::string& bytes) const;
    std::string Read(const std::wstring& name) const; // empty when there is no such file

    bool Start();       // until the start-up box is there
    bool PassStartUp(); // presses its OK and waits for the end of the first synchronisation
    HWND Window() const { return window_; }
    HWND Control(int id) const;
    HWND WaitForBox(const std::wstring& caption) const;
    std::wstring BoxText(HWND box) const;
    void PressOk(HWND box) const;
    bool WaitUntilIdle(DWORD milliseconds) const; // no command under way
    bool Close(); // asks the window to close; whether the program ended properly

    StartedProcess& Process() { return process_; }

private:
    std::wstring folder_;
    StartedProcess process_;
    HWND window_ = nullptr;
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
