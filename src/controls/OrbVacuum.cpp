#include "controls/OrbVacuum.h"

#include "controls/DotDisplay.h"

#include <iterator>
#include <vector>

namespace {

constexpr UINT_PTR kRollTimer = 1;

// Colours of the glass from dark to bright, by brightness; between them they blend.
constexpr struct {
    int brightness;
    COLORREF colour;
} kGlow[] = {
    {0, RGB(6, 17, 20)},      {22, RGB(15, 38, 42)},     {120, RGB(8, 104, 98)},
    {200, RGB(78, 240, 208)}, {256, RGB(196, 255, 242)},
};

class VacuumDrawing : public Drawing {
public:
    using Drawing::Drawing;

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    void Paint(const Canvas& canvas) override;
    void SetTimerForRoll() const;
    void FillColours(const OrbPalette& palette, RGBQUAD (&table)[256]) const;

    DotDisplay display_;
    SIZE size_ = {}; // for which the display is laid out, with this pitch
    int pitch_ = 0;
};

LRESULT VacuumDrawing::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SETTEXT: {
        const LRESULT answer = Standard(message, wParam, lParam);
        const std::wstring text = Text();
        display_.SetText(std::u16string(text.begin(), text.end()));
        SetTimerForRoll();
        return answer;
    }
    case WM_TIMER:
        if (wParam != kRollTimer) break;
        display_.Step();
        SetTimerForRoll();
        Redraw();
        return 0;
    case WM_LBUTTONDOWN:
        display_.Restart();
        SetTimerForRoll();
        Redraw();
        break;
    }
    return Standard(message, wParam, lParam);
}

void VacuumDrawing::SetTimerForRoll() const
{
    if (const int delay = display_.Delay())
        SetTimer(Window(), kRollTimer, static_cast<UINT>(delay), nullptr);
    else
        KillTimer(Window(), kRollTimer);
}

void VacuumDrawing::FillColours(const OrbPalette& palette, RGBQUAD (&table)[256]) const
{
    std::size_t step = 0;
    for (int i = 0; i < 256; ++i) {
        if (i >= kGlow[step + 1].brightness) ++step;
        const auto& low = kGlow[step];
        const auto& high = kGlow[step + 1];
        const auto blend = [&](int from, int to) {
            return static_cast<BYTE>(from +
                                     (to - from) * (i - low.brightness) / (high.brightness - low.brightness));
        };
        table[i] = {blend(GetBValue(low.colour), GetBValue(high.colour)),
                    blend(GetGValue(low.colour), GetGValue(high.colour)),
                    blend(GetRValue(low.colour), GetRValue(high.colour)), 0};
        if (palette.isSystem) {
            const COLORREF plain = GetSysColor(i >= DotGlow::kLit ? COLOR_WINDOWTEXT : COLOR_WINDOW);
            table[i] = {GetBValue(plain), GetGValue(plain), GetRValue(plain), 0};
        }
    }
}

void VacuumDrawing::Paint(const Canvas& canvas)
{
    const int width = canvas.area.right, height = canvas.area.bottom;
    if (width <= 0 || height <= 0) return;
    const int pitch = BestPitch(width, height, canvas.Scaled(4));
    if (size_.cx != width || size_.cy != height || pitch_ != pitch) {
        size_ = {width, height};
        pitch_ = pitch;
        display_.Resize((width - pitch) / pitch, (height - pitch / 2) / pitch);
        SetTimerForRoll();
    }
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[256];
    } form = {};
    const int stride = (width + 3) / 4 * 4; // rows of a picture are whole double words
    form.header = {sizeof form.header, width, -height, 1, 8, BI_RGB, 0, 0, 0, 256, 0};
    FillColours(canvas.palette, form.colours);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
    DotGlow(pitch).Render(display_, width, height, stride, pixels.data());
    SetDIBitsToDevice(canvas.dc, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(height), 0, 0, 0,
                      static_cast<UINT>(height), pixels.data(), reinterpret_cast<BITMAPINFO*>(&form),
                      DIB_RGB_COLORS);
}

} // namespace

void OrbVacuum::Create(HWND parent, int id, const RECT& place, PaletteSource palette)
{
    CreateDrawn(L"STATIC", L"", WS_VISIBLE | SS_OWNERDRAW | SS_NOPREFIX | SS_NOTIFY, WS_EX_STATICEDGE, parent,
                id, place, std::make_unique<VacuumDrawing>(palette));
}
