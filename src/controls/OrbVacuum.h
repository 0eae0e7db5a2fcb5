// OrbVacuum.h: the Orb Vacuum Tube Display: one glowing line of text, which is also its window text.
#pragma once
#include "controls/DrawnControl.h"

class OrbVacuum : public DrawnControl {
public:
    void Create(HWND parent, int id, const RECT& place) { CreateDrawn(L"OrbVacuum", parent, id, place); }
    void ShowText(const wchar_t* text) { SetText(text); } // in place of the one before

private:
    void Paint(HDC dc, const RECT& area) const override;
};
