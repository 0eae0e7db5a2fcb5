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

    // In the middle of the screen and drawn at once. The keyboard stays where it is. A click closes it.
    void Show(HINSTANCE instance, const std::wstring& name, const std::wstring& version);
    void Close();
    HWND Window() const { return window_; } // null: not shown

private:
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Paint() const;

    HWND window_ = nullptr;
    HINSTANCE instance_ = nullptr;
    std::wstring name_, version_;
};
