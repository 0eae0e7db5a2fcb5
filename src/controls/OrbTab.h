// OrbTab.h: a strip of tabs. Its parent receives the choice of the user as WM_NOTIFY with TCN_SELCHANGE.
#pragma once
#include <windows.h>

class OrbTab {
public:
    // captions: parted by commas.
    void Create(HWND parent, int id, const wchar_t* captions, const RECT& place, HFONT font);
    HWND Window() const { return window_; }
    int Selected() const;
    void Select(int index); // does not notify
    // What lies below the tabs, in the parent's coordinates.
    RECT Inside() const;

private:
    HWND window_ = nullptr;
};
