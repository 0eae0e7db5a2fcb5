#include "controls/OrbVacuum.h"

#include <string>

namespace {
constexpr COLORREF kGlass = RGB(8, 20, 24);
constexpr COLORREF kGlow = RGB(102, 255, 217);
constexpr int kMargin = 6;
} // namespace

void OrbVacuum::Paint(HDC dc, const RECT& area) const
{
    FillWith(dc, area, kGlass);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(Window())) + 1, L'\0');
    const int length = GetWindowTextW(Window(), text.data(), static_cast<int>(text.size()));
    SetTextColor(dc, kGlow);
    RECT line = area;
    InflateRect(&line, -kMargin, 0);
    DrawTextW(dc, text.c_str(), length, &line, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}
