// OrbPalette.h: the colours of the window and its drawn controls, in one place.
#pragma once
#include <windows.h>

struct OrbPalette {
    COLORREF window, page;                            // grounds: of the window, and of what lies on a tab
    COLORREF text, fadedText;                         // fadedText: of what is disabled
    COLORREF border;                                  // thin lines around things
    COLORREF face, hot, held;                         // of a button: at rest, under the mouse, pressed
    COLORREF accent, accentHot, accentHeld, onAccent; // what shall be seen first, and text upon it
    bool isSystem;                                    // the user's colours alone, and standard controls' look
};

using PaletteSource = OrbPalette (*)();

OrbPalette LightPalette();
OrbPalette SystemPalette();  // made of the user's system colours
OrbPalette CurrentPalette(); // SystemPalette in high contrast and where the system's windows are dark

// For the procedure of a window on which controls stand: answers WM_ERASEBKGND and the questions for the
// colours of static texts and check boxes, so that they stand on this ground. False: not one of these.
bool AnswerForGround(HWND window, UINT message, WPARAM wParam, COLORREF ground, LRESULT& answer);
// WM_SYSCOLORCHANGE and WM_SETTINGCHANGE reach main windows only: tells all controls, and draws all anew.
void PassOnNewColours(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// What the parent wants under a control; sets text and back colours too.
HBRUSH GroundOf(HWND control, HDC dc);

void FillWith(HDC dc, const RECT& area, COLORREF colour);
