// OrbLabel.h: a line of text. Its parent receives a double click as WM_COMMAND with STN_DBLCLK.
#pragma once
#include <windows.h>

class OrbLabel {
public:
    // plain: "&" is a character like any other, and what is too long ends in an ellipsis. mnemonic: "&" marks
    // the key that moves on to the control behind the label.
    enum class Kind { plain, mnemonic };
    void Create(HWND parent, int id, const wchar_t* caption, const RECT& place, Kind kind = Kind::plain);
    HWND Window() const { return window_; }
    void SetCaption(const wchar_t* caption); // visible at once
    void Show(bool shown) { ShowWindow(window_, shown ? SW_SHOW : SW_HIDE); }

private:
    HWND window_ = nullptr;
};
