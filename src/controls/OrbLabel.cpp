#include "controls/OrbLabel.h"

namespace {

class LabelDrawing : public Drawing {
public:
    using Drawing::Drawing;

private:
    void Paint(const Canvas& canvas) override;
};

void LabelDrawing::Paint(const Canvas& canvas)
{
    FillRect(canvas.dc, &canvas.area, GroundOf(Window(), canvas.dc)); // sets the text's colour
    SetBkMode(canvas.dc, TRANSPARENT);
    if (!IsWindowEnabled(Window())) SetTextColor(canvas.dc, canvas.palette.fadedText);
    const LONG_PTR style = GetWindowLongPtrW(Window(), GWL_STYLE);
    UINT format = DT_LEFT | DT_EXPANDTABS;
    format |= style & SS_ENDELLIPSIS ? DT_SINGLELINE | DT_END_ELLIPSIS : DT_WORDBREAK;
    if (style & SS_NOPREFIX)
        format |= DT_NOPREFIX;
    else if (!HasCues(UISF_HIDEACCEL))
        format |= DT_HIDEPREFIX;
    RECT line = canvas.area;
    const std::wstring text = Text();
    DrawTextW(canvas.dc, text.c_str(), static_cast<int>(text.size()), &line, format);
}

} // namespace

void OrbLabel::Create(HWND parent, int id, const wchar_t* caption, const RECT& place, Kind kind,
                      PaletteSource palette)
{
    // Owner-drawn: a standard label draws a new text at once and in two steps, which flickers.
    const DWORD style = kind == Kind::plain ? SS_NOPREFIX | SS_ENDELLIPSIS : 0;
    CreateDrawn(L"STATIC", caption, SS_OWNERDRAW | SS_NOTIFY | style, 0, parent, id, place,
                std::make_unique<LabelDrawing>(palette));
}

void OrbLabel::SetCaption(const wchar_t* caption)
{
    std::wstring present(static_cast<std::size_t>(GetWindowTextLengthW(Window())) + 1, L'\0');
    GetWindowTextW(Window(), present.data(), static_cast<int>(present.size()));
    if (present.c_str() != std::wstring_view(caption)) SetText(caption);
}
