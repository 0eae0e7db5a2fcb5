// OrbSimpleButton.h: a push button with a caption, an enabled state and a click, which its parent receives
// as WM_COMMAND. A real button: Tab, Space and its mnemonic work.
#pragma once
#include <windows.h>

class OrbSimpleButton {
public:
    void Create(HWND parent, int id, const wchar_t* caption, const RECT& place);
    HWND Window() const { return window_; }
    void Enable(bool enabled) { EnableWindow(window_, enabled); }
    void Show(bool shown) { ShowWindow(window_, shown ? SW_SHOW : SW_HIDE); }

private:
    HWND window_ = nullptr;
};
