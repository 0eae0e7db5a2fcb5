#include "controls/SimpleProgress.h"

#include <string>
#include <utility>

namespace {

std::wstring Wide(const std::string& ascii)
{
    return std::wstring(ascii.begin(), ascii.end());
}

class ProgressDrawing : public Drawing {
public:
    ProgressDrawing(std::shared_ptr<SimpleProgressModel> model, PaletteSource palette)
        : Drawing(palette), model_(std::move(model))
    {
    }

private:
    void Paint(const Canvas& canvas) override;

    std::shared_ptr<SimpleProgressModel> model_;
};

void ProgressDrawing::Paint(const Canvas& canvas)
{
    COLORREF fill = model_->FillColour(), ground = model_->BackColour();
    // Legible on both grounds: the caption has the colour of the bar beside it, and of the ground upon it.
    COLORREF beside = fill, upon = ground;
    if (canvas.palette.isSystem) {
        fill = GetSysColor(COLOR_HIGHLIGHT);
        upon = GetSysColor(COLOR_HIGHLIGHTTEXT);
        ground = GetSysColor(COLOR_WINDOW);
        beside = GetSysColor(COLOR_WINDOWTEXT);
    }
    FillWith(canvas.dc, canvas.area, ground);
    const std::wstring caption = Wide(model_->Caption());
    SIZE extent = {};
    GetTextExtentPoint32W(canvas.dc, caption.c_str(), static_cast<int>(caption.size()), &extent);
    const int left = CentredAt(canvas.area.right, extent.cx);
    const int top = CentredAt(canvas.area.bottom, extent.cy);
    const auto draw = [&](COLORREF colour, const RECT& clip) {
        SetTextColor(canvas.dc, colour);
        ExtTextOutW(canvas.dc, left, top, ETO_CLIPPED, &clip, caption.c_str(),
                    static_cast<UINT>(caption.size()), nullptr);
    };
    draw(beside, canvas.area);
    const BarRectangle bar = model_->Fill(canvas.area.right, canvas.area.bottom);
    if (bar.IsEmpty()) return;
    const RECT filled = {bar.left, bar.top, bar.right, bar.bottom};
    FillWith(canvas.dc, filled, fill);
    draw(upon, filled);
}

} // namespace

SimpleProgress::SimpleProgress() : model_(std::make_shared<SimpleProgressModel>([this] { Redraw(); })) {}

void SimpleProgress::Create(HWND parent, int id, const RECT& place, PaletteSource palette)
{
    CreateDrawn(L"STATIC", L"", WS_VISIBLE | SS_OWNERDRAW, WS_EX_STATICEDGE, parent, id, place,
                std::make_unique<ProgressDrawing>(model_, palette));
    Redraw();
}

void SimpleProgress::Redraw()
{
    SetText(Wide(model_->Caption()).c_str());
}
