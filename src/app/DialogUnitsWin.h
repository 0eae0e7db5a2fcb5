// DialogUnitsWin.h: the user's font for messages, and the unit of length that follows from a font.
#pragma once
#include <windows.h>

// Lengths of the layout are dialog units: quarters of the font's average width across, eighths of its height
// down. So all of it grows with the font, and with the font all of it grows with the screen's dpi.
struct DialogUnits {
    int width = 0;  // pixels of the 52 Latin letters
    int height = 0; // pixels of a line

    int Across(int units) const { return MulDiv(units, width, 4 * 52); }
    int Down(int units) const { return MulDiv(units, height, 8); }
};

LOGFONTW MessageFont(); // the user's
DialogUnits UnitsOf(HFONT font);
