#include "controls/OrbSimpleButton.h"

namespace {

class ButtonDrawing : public Drawing {
public:
    ButtonDrawing(OrbSimpleButton::Look look, PaletteSource palette) : Drawing(palette), look_(look) {}

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    int HotPart(POINT) const override { return 1; }
    void Paint(const Canvas& canvas) override;
    COLORREF PaintFlat(const Canvas& canvas, bool enabled, bool held) const;
    COLORREF PaintSystem(const Canvas& canvas, bool enabled, bool held) const;

    OrbSimpleButton::Look look_;
    bool isDefault_ = false; // Enter presses it
};

LRESULT ButtonDrawing::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_GETDLGCODE: // an owner-drawn button does not say that it can be the default
        return Standard(message, wParam, lParam) | (isDefault_ ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    case BM_SETSTYLE: // this is how a dialog makes a button the default; it stays owner-drawn
        isDefault_ = (wParam & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
        return 0;
    case BM_SETSTATE: { // seen at once, even if what the click starts handles no messages
        const LRESULT answer = Standard(message, wParam, lParam);
        Redraw();
        UpdateWindow(Window());
        return answer;
    }
    case WM_LBUTTONDBLCLK: // an owner-drawn button would report a double click in place of the second click
        message = WM_LBUTTONDOWN;
        break;
    }
    return Standard(message, wParam, lParam);
}

void ButtonDrawing::Paint(const Canvas& canvas)
{
    const bool enabled = IsWindowEnabled(Window());
    const bool held = SendMessageW(Window(), BM_GETSTATE, 0, 0) & BST_PUSHED;
    FillRect(canvas.dc, &canvas.area, GroundOf(Window(), canvas.dc));
    SetBkMode(canvas.dc, TRANSPARENT);
    const bool system = canvas.palette.isSystem;
    SetTextColor(canvas.dc, system ? PaintSystem(canvas, enabled, held) : PaintFlat(canvas, enabled, held));
    RECT caption = canvas.area;
    InflateRect(&caption, -canvas.Scaled(5), -canvas.Scaled(2));
    if (system && held) OffsetRect(&caption, 1, 1);
    const UINT mnemonic = HasCues(UISF_HIDEACCEL) ? 0 : DT_HIDEPREFIX;
    const std::wstring text = Text();
    DrawTextW(canvas.dc, text.c_str(), static_cast<int>(text.size()), &caption,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | mnemonic);
    if (!ShowsFocus()) return;
    RECT focus = canvas.area;
    InflateRect(&focus, -canvas.Scaled(3), -canvas.Scaled(3));
    const bool primary = look_ == OrbSimpleButton::Look::primary;
    PaintFocus(canvas, focus, primary ? canvas.palette.onAccent : canvas.palette.accent);
}

// Both answer the colour of the caption.
COLORREF ButtonDrawing::PaintFlat(const Canvas& canvas, bool enabled, bool held) const
{
    const OrbPalette& colours = canvas.palette;
    const bool primary = look_ == OrbSimpleButton::Look::primary && enabled;
    const bool marked = enabled && (Hot() || held || isDefault_ || GetFocus() == Window());
    COLORREF face = enabled ? primary ? colours.accent : colours.face : colours.window;
    if (enabled && Hot()) face = primary ? colours.accentHot : colours.hot;
    if (held) face = primary ? colours.accentHeld : colours.held;
    const HPEN pen =
        CreatePen(PS_INSIDEFRAME, canvas.Scaled(1), marked || primary ? colours.accent : colours.border);
    SelectObject(canvas.dc, pen);
    SetDCBrushColor(canvas.dc, face);
    SelectObject(canvas.dc, GetStockObject(DC_BRUSH));
    const int round = canvas.Scaled(5);
    RoundRect(canvas.dc, 0, 0, canvas.area.right, canvas.area.bottom, round, round);
    SelectObject(canvas.dc, GetStockObject(BLACK_PEN));
    DeleteObject(pen);
    return !enabled ? colours.fadedText : primary ? colours.onAccent : colours.text;
}

COLORREF ButtonDrawing::PaintSystem(const Canvas& canvas, bool enabled, bool held) const
{
    RECT face = canvas.area;
    if (isDefault_ && enabled) {
        FillWith(canvas.dc, face, canvas.palette.border);
        InflateRect(&face, -1, -1);
    }
    const UINT state = (held ? DFCS_PUSHED : 0u) | (Hot() ? DFCS_HOT : 0u) | (enabled ? 0u : DFCS_INACTIVE);
    DrawFrameControl(canvas.dc, &face, DFC_BUTTON, DFCS_BUTTONPUSH | state);
    return enabled ? canvas.palette.text : canvas.palette.fadedText;
}

} // namespace

void OrbSimpleButton::Create(HWND parent, int id, const wchar_t* caption, const RECT& place, Look look,
                             PaletteSource palette)
{
    CreateDrawn(L"BUTTON", caption, WS_TABSTOP | BS_OWNERDRAW, 0, parent, id, place,
                std::make_unique<ButtonDrawing>(look, palette));
}
