// OrbVacuum.h: the Orb Vacuum Tube Display: characters of glowing dots on dark glass. Shows one message at a
// time, which is also its window text; one that is too long rolls by itself, and again after a click.
#pragma once
#include "controls/DrawnControl.h"

class OrbVacuum : public DrawnControl {
public:
    using DrawnControl::DrawnControl;
    // Created visible. How many lines it has follows from its size.
    void Create(HWND parent, int id, const RECT& place, PaletteSource palette = CurrentPalette);
    void ShowText(const wchar_t* text) { SetText(text); } // in place of the one before
};
