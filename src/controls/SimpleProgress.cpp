#include "controls/SimpleProgress.h"

#include <string>

namespace {

std::wstring Wide(const std::string& ascii)
{
    return std::wstring(ascii.begin(), ascii.end());
}

} // namespace

void SimpleProgress::Create(HWND parent, int id, const RECT& place)
{
    CreateDrawn(L"SimpleProgress", parent, id, place);
    Redraw();
}

void SimpleProgress::Redraw()
{
    SetText(Wide(model_.Caption()).c_str());
}

void SimpleProgress::Paint(HDC dc, const RECT& area) const
{
    FillWith(dc, area, model_.BackColour());
    const std::wstring caption = Wide(model_.Caption());
    SIZE extent = {};
    GetTextExtentPoint32W(dc, caption.c_str(), static_cast<int>(caption.size()), &extent);
    const int left = CentredAt(area.right, extent.cx);
    const int top = CentredAt(area.bottom, extent.cy);
    const auto draw = [&](COLORREF colour, const RECT& clip) {
        SetTextColor(dc, colour);
        ExtTextOutW(dc, left, top, ETO_CLIPPED, &clip, caption.c_str(), static_cast<UINT>(caption.size()),
                    nullptr);
    };
    // Legible on both grounds: the whole caption in the colour of the bar, then, on the bar, in the other.
    draw(model_.FillColour(), area);
    const BarRectangle bar = model_.Fill(area.right, area.bottom);
    if (bar.IsEmpty()) return;
    const RECT filled = {bar.left, bar.top, bar.right, bar.bottom};
    FillWith(dc, filled, model_.FillColour());
    draw(model_.BackColour(), filled);
}
