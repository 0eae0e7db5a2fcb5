#include "controls/OrbVacuum.h"

namespace {

constexpr COLORREF kGlass = RGB(8, 20, 24);
constexpr COLORREF kGlow = RGB(102, 255, 217);

class VacuumDrawing : public Drawing {
public:
    using Drawing::Drawing;

private:
    void Paint(const Canvas& canvas) override
    {
        FillWith(canvas.dc, canvas.area, kGlass);
        SetTextColor(canvas.dc, kGlow);
        RECT line = canvas.area;
        InflateRect(&line, -canvas.Scaled(6), 0);
        const std::wstring text = Text();
        DrawTextW(canvas.dc, text.c_str(), static_cast<int>(text.size()), &line,
                  DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    }
};

} // namespace

void OrbVacuum::Create(HWND parent, int id, const RECT& place, PaletteSource palette)
{
    CreateDrawn(L"STATIC", L"", WS_VISIBLE | SS_OWNERDRAW, WS_EX_STATICEDGE, parent, id, place,
                std::make_unique<VacuumDrawing>(palette));
}
