// OrbTab.h: a flat strip of tabs. Its parent receives the choice of the user as WM_NOTIFY with TCN_SELCHANGE.
#pragma once
#include "controls/DrawnControl.h"

class OrbTab : public DrawnControl {
public:
    using DrawnControl::DrawnControl;
    // captions: parted by commas. Created visible, the first tab selected.
    void Create(HWND parent, int id, const wchar_t* captions, const RECT& place, HFONT font,
                PaletteSource palette = CurrentPalette);
    int Selected() const;   // counted from 0
    void Select(int index); // does not notify
    // What lies below the tabs, in the parent's coordinates.
    RECT Inside() const;
};
