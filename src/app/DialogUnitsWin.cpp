#include "app/DialogUnitsWin.h"

// As Windows XP knows it, which refuses the longer one of later systems; these take both.
static_assert(sizeof(NONCLIENTMETRICSW) == 500);

LOGFONTW MessageFont()
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
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
