// ProgramUnderTest.h: quillbox.exe started in a folder of its own and driven from outside, as a user would.
#pragma once
#include "app/ControlIds.h"
#include "demo/driver/ProgramDriver.h"
#include "tests/support/ScratchDirectory.h"

#include <windows.h>

#include <string>
#include <vector>

// Milliseconds after which what must come is missing, on a machine that has much else to do.
inline constexpr DWORD kPatience = 60000;

std::vector<std::wstring> LinesOf(HWND listBox);
RECT PlaceOf(HWND window); // on the screen
bool Encloses(const RECT& outer, const RECT& inner);
std::string BytesOf(const std::filesystem::path& path); // empty when there is no such file
std::wstring FolderOfTests(); // where this test program and the programs under test lie; ends in a backslash

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
    HWND Focus() const;        // the window of the program that has the keyboard
    void Type(WORD key) const; // there, as the keyboard would; 'e' and other letters with Alt held
    HWND WaitForBox(const std::wstring& caption) const;
    void PressOk(HWND box) const;
    bool WaitUntilIdle(DWORD milliseconds) const; // no command under way
    bool Close(); // asks the window to close; whether the program ended properly

    StartedProcess& Process() { return process_; }

private:
    ScratchDirectory scratch_; // outlives the program
    std::wstring folder_ = scratch_.Path().wstring() + L"\\";
    StartedProcess process_;
    HWND window_ = nullptr;
};
