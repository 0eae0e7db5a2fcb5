#include "app/DialogUnitsWin.h"

LOGFONTW MessageFont()
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics; // as Windows XP knows it; later ones take that too
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return metrics.lfMessageFont;
}

DialogUnits UnitsOf(HFONT font)
{
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ oldFont = SelectObject(dc, font);
    SIZE letters = {};
    GetTextExtentPoint32W(dc, L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", 52, &letters);
    SelectObject(dc, oldFont);
    ReleaseDC(nullptr, dc);
    return {static_cast<int>(letters.cx), static_cast<int>(letters.cy)};
}
