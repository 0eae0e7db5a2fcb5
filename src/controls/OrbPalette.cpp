#include "controls/OrbPalette.h"

OrbPalette LightPalette()
{
    OrbPalette palette = {};
    palette.window = RGB(240, 243, 246);
    palette.page = RGB(255, 255, 255);
    palette.text = RGB(27, 36, 44);
    palette.fadedText = RGB(145, 154, 163);
    palette.border = RGB(196, 204, 212);
    palette.face = RGB(250, 251, 252);
    palette.hot = RGB(226, 241, 245);
    palette.held = RGB(196, 225, 232);
    palette.accent = RGB(0, 104, 126);
    palette.accentHot = RGB(0, 124, 149);
    palette.accentHeld = RGB(0, 80, 98);
    palette.onAccent = RGB(255, 255, 255);
    return palette;
}

OrbPalette SystemPalette()
{
    OrbPalette palette = {};
    palette.window = palette.page = palette.face = palette.hot = palette.held = GetSysColor(COLOR_BTNFACE);
    palette.text = GetSysColor(COLOR_BTNTEXT);
    palette.fadedText = GetSysColor(COLOR_GRAYTEXT);
    palette.border = GetSysColor(COLOR_WINDOWFRAME);
    palette.accent = palette.accentHot = palette.accentHeld = GetSysColor(COLOR_HIGHLIGHT);
    palette.onAccent = GetSysColor(COLOR_HIGHLIGHTTEXT);
    palette.isSystem = true;
    return palette;
}

namespace {

// By the brightness that the eye gives each primary colour.
bool IsDark(COLORREF colour)
{
    return 299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour) < 128 * 1000;
}

} // namespace

OrbPalette CurrentPalette()
{
    // Lists and texts take the system's colours in any case: beside dark ones a light ground would glare.
    if (IsDark(GetSysColor(COLOR_WINDOW))) return SystemPalette();
    HIGHCONTRASTW contrast = {};
    contrast.cbSize = sizeof contrast;
    const bool asked = SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
                       (contrast.dwFlags & HCF_HIGHCONTRASTON);
    return asked ? SystemPalette() : LightPalette();
}

bool AnswerForGround(HWND window, UINT message, WPARAM wParam, COLORREF ground, LRESULT& answer)
{
    const HDC dc = reinterpret_cast<HDC>(wParam);
    if (message == WM_ERASEBKGND) {
        RECT area = {};
        GetClientRect(window, &area);
        FillWith(dc, area, ground);
        answer = 1;
        return true;
    }
    if (message != WM_CTLCOLORSTATIC && message != WM_CTLCOLORBTN) return false;
    SetTextColor(dc, CurrentPalette().text);
    SetBkColor(dc, ground);
    SetDCBrushColor(dc, ground);
    answer = reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
    return true;
}

void PassOnNewColours(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        SendMessageW(child, message, wParam, lParam);
        PassOnNewColours(child, message, wParam, lParam);
    }
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
}

HBRUSH GroundOf(HWND control, HDC dc)
{
    return reinterpret_cast<HBRUSH>(SendMessageW(GetParent(control), WM_CTLCOLORSTATIC,
                                                 reinterpret_cast<WPARAM>(dc),
                                                 reinterpret_cast<LPARAM>(control)));
}

void FillWith(HDC dc, const RECT& area, COLORREF colour)
{
    SetDCBrushColor(dc, colour);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}
