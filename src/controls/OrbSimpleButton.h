// OrbSimpleButton.h: a flat push button with a caption, an enabled state and a click, which its parent
// receives as WM_COMMAND. A real button underneath: Tab, Space, Enter and its mnemonic work.
#pragma once
#include "controls/DrawnControl.h"

class OrbSimpleButton : public DrawnControl {
public:
    using DrawnControl::DrawnControl;
    enum class Look { plain, primary }; // primary: for the main action of a page
    // Created hidden.
    void Create(HWND parent, int id, const wchar_t* caption, const RECT& place, Look look = Look::plain,
                PaletteSource palette = CurrentPalette);
};
