// Form1Layout.h: where each control of the main window stands, at any size of the window and of the user's
// font.
#pragma once
#include <windows.h>

class Form1Controls;

// Lengths of the layout are dialog units: quarters of the font's average width across, eighths of its height
// down. So all of it grows with the font, and with the font all of it grows with the screen's dpi.
struct DialogUnits {
    int width = 0;  // pixels of the 52 Latin letters
    int height = 0; // pixels of a line

    int Across(int units) const { return MulDiv(units, width, 4 * 52); }
    int Down(int units) const { return MulDiv(units, height, 8); }
};

DialogUnits UnitsOf(HFONT font);

// busy: fraStats and the stop buttons stand in the place of the folder tree, the tab strip below them.
enum class Arrangement { idle, busy };

// Sizes of the form's client area: below the smallest the lower controls would stand outside.
SIZE SmallestClient(const DialogUnits& units);
SIZE WishedClient(const DialogUnits& units);

void Arrange(const Form1Controls& controls, const DialogUnits& units, Arrangement arrangement);
