// OrbVacuum.h: the Orb Vacuum Tube Display: one glowing line of text, which is also its window text.
#pragma once
#include "controls/DrawnControl.h"

class OrbVacuum : public DrawnControl {
public:
    void Create(HWND parent, int id, const RECT& place, PaletteSource palette = CurrentPalette);
    void ShowText(const wchar_t* text) { SetText(text); } // in place of the one before
};
