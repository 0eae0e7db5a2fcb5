#include "controls/OrbTab.h"

#include <commctrl.h>

namespace {

constexpr int kUsualFontHeight = 11; // pixels, where a font does not tell

class TabDrawing : public Drawing {
public:
    using Drawing::Drawing;

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
    void Paint(const Canvas& canvas) override;
    void PaintTab(const Canvas& canvas, int index, const RECT& tab) const;
    int HotPart(POINT point) const override;
    int Selected() const { return static_cast<int>(SendMessageW(Window(), TCM_GETCURSEL, 0, 0)); }
};

LRESULT TabDrawing::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SETFONT) { // the standard control reckons the tabs' size from font and padding
        LOGFONTW font = {};
        GetObjectW(reinterpret_cast<HFONT>(wParam), sizeof font, &font);
        const int unit = font.lfHeight < 0 ? -font.lfHeight : kUsualFontHeight;
        Standard(TCM_SETPADDING, 0, MAKELPARAM(unit, unit / 2 + 1));
    }
    return Standard(message, wParam, lParam);
}

int TabDrawing::HotPart(POINT point) const
{
    TCHITTESTINFO hit = {point, 0};
    return static_cast<int>(SendMessageW(Window(), TCM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit))) + 1;
}

void TabDrawing::Paint(const Canvas& canvas)
{
    FillRect(canvas.dc, &canvas.area, GroundOf(Window(), canvas.dc));
    SetBkMode(canvas.dc, TRANSPARENT);
    RECT page = canvas.area;
    const int count = static_cast<int>(SendMessageW(Window(), TCM_GETITEMCOUNT, 0, 0));
    RECT tab = {};
    for (int i = 0; i < count; ++i) { // several rows, when they do not fit
        if (SendMessageW(Window(), TCM_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&tab)) &&
            tab.bottom > page.top)
            page.top = tab.bottom;
    }
    FillWith(canvas.dc, page, canvas.palette.border);
    InflateRect(&page, -canvas.Scaled(1), -canvas.Scaled(1));
    FillWith(canvas.dc, page, canvas.palette.page);
    for (int i = 0; i < count; ++i) {
        if (SendMessageW(Window(), TCM_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&tab)))
            PaintTab(canvas, i, tab);
    }
}

void TabDrawing::PaintTab(const Canvas& canvas, int index, const RECT& tab) const
{
    const OrbPalette& colours = canvas.palette;
    const bool selected = index == Selected();
    const int line = canvas.Scaled(1);
    if (selected) { // one with the page, under an accent
        RECT face = {tab.left, tab.top, tab.right, tab.bottom + line};
        FillWith(canvas.dc, face, colours.border);
        face.left += line;
        face.right -= line;
        FillWith(canvas.dc, face, colours.page);
        FillWith(canvas.dc, {tab.left, tab.top, tab.right, tab.top + canvas.Scaled(3)}, colours.accent);
    } else if (Hot() == index + 1) {
        FillWith(canvas.dc, {tab.left + line, tab.top + canvas.Scaled(3), tab.right - line, tab.bottom},
                 colours.hot);
    }
    wchar_t caption[64] = {};
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = caption;
    item.cchTextMax = 64;
    SendMessageW(Window(), TCM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    SetTextColor(canvas.dc, IsWindowEnabled(Window()) ? colours.text : colours.fadedText);
    RECT words = {tab.left, tab.top + canvas.Scaled(3), tab.right, tab.bottom};
    DrawTextW(canvas.dc, caption, -1, &words, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    if (!selected || !ShowsFocus()) return;
    InflateRect(&words, -canvas.Scaled(3), -canvas.Scaled(2));
    PaintFocus(canvas, words, colours.accent);
}

} // namespace

void OrbTab::Create(HWND parent, int id, const wchar_t* captions, const RECT& place, HFONT font,
                    PaletteSource palette)
{
    CreateDrawn(WC_TABCONTROLW, L"", WS_VISIBLE | WS_TABSTOP, 0, parent, id, place,
                std::make_unique<TabDrawing>(palette));
    // Before the first tab: the font decides how high the strip is.
    SendMessageW(Window(), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    std::wstring caption;
    int count = 0;
    for (const wchar_t* at = captions;; ++at) {
        if (*at != L',' && *at != L'\0') {
            caption += *at;
            continue;
        }
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = caption.data();
        SendMessageW(Window(), TCM_INSERTITEMW, static_cast<WPARAM>(count++),
                     reinterpret_cast<LPARAM>(&item));
        caption.clear();
        if (*at == L'\0') break;
    }
}

int OrbTab::Selected() const
{
    return static_cast<int>(SendMessageW(Window(), TCM_GETCURSEL, 0, 0));
}

void OrbTab::Select(int index)
{
    SendMessageW(Window(), TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
}

RECT OrbTab::Inside() const
{
    RECT inside = {};
    GetClientRect(Window(), &inside);
    SendMessageW(Window(), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inside));
    MapWindowPoints(Window(), GetParent(Window()), reinterpret_cast<POINT*>(&inside), 2);
    return inside;
}
