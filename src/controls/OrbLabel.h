// OrbLabel.h: a line of text. Its parent receives a double click as WM_COMMAND with STN_DBLCLK.
#pragma once
#include "controls/DrawnControl.h"

class OrbLabel : public DrawnControl {
public:
    using DrawnControl::DrawnControl;
    // plain: "&" is a character like any other, and what is too long ends in an ellipsis. mnemonic: "&" marks
    // the key that moves on to the control behind the label; the text wraps.
    enum class Kind { plain, mnemonic };
    // Created hidden.
    void Create(HWND parent, int id, const wchar_t* caption, const RECT& place, Kind kind = Kind::plain,
                PaletteSource palette = CurrentPalette);
    void SetCaption(const wchar_t* caption); // visible at once; the same again draws nothing
};
