// SplashWin.h: the window that shows the program's name and version while the program starts.
// Fails by: nothing shown, when Windows refuses the window.
#pragma once
#include <windows.h>

#include <string>

class Splash {
public:
    Splash() = default;
    ~Splash() { Close(); }
    Splash(const Splash&) = delete;
    Splash& operator=(const Splash&) = delete;

    // In the upper part of the screen, where the boxes of the start-up leave it free, and drawn at once. The
    // keyboard stays where it is. A click closes it.
    void Show(HINSTANCE instance, const std::wstring& name, const std::wstring& version);
    // The start-up is over, and nobody waits: once it has been there long enough to be read it goes by
    // itself, behind whatever box the main window shows.
    void Release(HWND mainWindow);
    void Close();
    HWND Window() const { return window_; } // null: not shown

private:
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Paint() const;

    HWND window_ = nullptr;
    DWORD shownAt_ = 0; // GetTickCount
    HINSTANCE instance_ = nullptr;
    std::wstring name_, version_;
};
