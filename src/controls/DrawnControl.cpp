#include "controls/DrawnControl.h"

#include <algorithm>
#include <exception>

namespace {

// The text height for which the drawn controls are designed: Tahoma, 8 points, at 96 dpi.
constexpr int kDesignTextHeight = 13;

// After these a control may look different.
bool ChangesTheLook(UINT message)
{
    switch (message) {
    case WM_SETTEXT:
    case WM_SETFONT:
    case WM_SIZE:
    case WM_ENABLE:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_UPDATEUISTATE:
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
    case BM_SETSTATE:
    case BM_SETSTYLE:
        return true;
    default:
        return false;
    }
}

} // namespace

int Canvas::Scaled(int pixels) const
{
    return std::max(1, MulDiv(pixels, textHeight, kDesignTextHeight));
}

void Drawing::Attach(HWND window, std::unique_ptr<Drawing> drawing)
{
    if (!window) return;
    Drawing* self = drawing.release(); // WM_NCDESTROY takes it back
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    self->standard_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WndProc)));
}

LRESULT CALLBACK Drawing::WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<Drawing*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self) return DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        const std::unique_ptr<Drawing> last(self);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        return self->Standard(message, wParam, lParam);
    }
    try {
        return self->OnMessage(message, wParam, lParam);
    } catch (const std::exception&) { // out of memory: the old picture stays
        return 0;
    }
}

LRESULT Drawing::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_ERASEBKGND:
        return 1; // Paint covers every pixel: no flicker
    case WM_NCPAINT:
        PaintEdge();
        return 0; // there is nothing else outside of what Paint covers
    case WM_PAINT:
        PaintOffScreen();
        return 0;
    case WM_PRINTCLIENT:
        PaintOn(reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_MOUSEMOVE:
        FollowMouse(HotPart({static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))}));
        break;
    case WM_MOUSELEAVE:
        FollowMouse(0);
        break;
    }
    const HWND window = window_; // a click may close the window, and this with it
    const LRESULT answer = Handle(message, wParam, lParam);
    if (ChangesTheLook(message) && IsWindowVisible(window)) InvalidateRect(window, nullptr, FALSE);
    return answer;
}

LRESULT Drawing::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    return Standard(message, wParam, lParam);
}

LRESULT Drawing::Standard(UINT message, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcW(standard_, window_, message, wParam, lParam);
}

std::wstring Drawing::Text() const
{
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool Drawing::HasCues(UINT hidden) const
{
    return !(SendMessageW(window_, WM_QUERYUISTATE, 0, 0) & hidden);
}

HFONT Drawing::Font() const
{
    const auto font = reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0));
    return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

void Drawing::FollowMouse(int part)
{
    if (part == hot_) return;
    if (hot_ == 0) {
        TRACKMOUSEEVENT leave = {};
        leave.cbSize = sizeof leave;
        leave.dwFlags = TME_LEAVE;
        leave.hwndTrack = window_;
        TrackMouseEvent(&leave);
    }
    hot_ = part;
    Redraw();
}

// The system's sunken edge, made a flat line, where the control has one.
void Drawing::PaintEdge() const
{
    if (!(GetWindowLongPtrW(window_, GWL_EXSTYLE) & WS_EX_STATICEDGE)) return;
    RECT place = {};
    GetWindowRect(window_, &place);
    OffsetRect(&place, -place.left, -place.top);
    const HDC dc = GetWindowDC(window_);
    SetDCBrushColor(dc, Palette().border);
    FrameRect(dc, &place, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    ReleaseDC(window_, dc);
}

void Drawing::PaintFocus(const Canvas& canvas, const RECT& area, COLORREF colour)
{
    if (canvas.palette.isSystem) {
        DrawFocusRect(canvas.dc, &area);
        return;
    }
    SetDCBrushColor(canvas.dc, colour);
    RECT line = area;
    for (int i = canvas.Scaled(1); i > 0; --i) {
        FrameRect(canvas.dc, &line, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        InflateRect(&line, -1, -1);
    }
}

void Drawing::PaintOffScreen()
{
    PAINTSTRUCT paint = {};
    const HDC screen = BeginPaint(window_, &paint);
    RECT area = {};
    GetClientRect(window_, &area);
    const HDC picture = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, area.right, area.bottom);
    if (picture && bitmap) { // out of drawing memory: nothing to see, nothing lost
        const HGDIOBJ oldBitmap = SelectObject(picture, bitmap);
        PaintOn(picture);
        BitBlt(screen, 0, 0, area.right, area.bottom, picture, 0, 0, SRCCOPY);
        SelectObject(picture, oldBitmap);
    }
    DeleteObject(bitmap);
    DeleteDC(picture);
    EndPaint(window_, &paint);
}

void Drawing::PaintOn(HDC dc)
{
    const int saved = SaveDC(dc);
    SelectObject(dc, Font());
    SetBkMode(dc, TRANSPARENT);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    const OrbPalette palette = Palette();
    Canvas canvas = {dc, {}, palette, static_cast<int>(metrics.tmHeight)};
    GetClientRect(window_, &canvas.area);
    try {
        Paint(canvas);
    } catch (const std::exception&) { // out of memory: what is drawn so far is shown
    }
    RestoreDC(dc, saved);
}

void DrawnControl::CreateDrawn(const wchar_t* standardClass, const wchar_t* text, DWORD style,
                               DWORD extendedStyle, HWND parent, int id, const RECT& place,
                               std::unique_ptr<Drawing> drawing)
{
    window_ = CreateWindowExW(
        extendedStyle, standardClass, text, WS_CHILD | WS_CLIPSIBLINGS | (style & ~WS_VISIBLE), place.left,
        place.top, place.right - place.left, place.bottom - place.top, parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    Drawing::Attach(window_, std::move(drawing));
    if (style & WS_VISIBLE) ShowWindow(window_, SW_SHOW); // not before: its edge would be the system's
}

void DrawnControl::SetText(const wchar_t* text)
{
    if (!window_) return;
    SetWindowTextW(window_, text);
    UpdateWindow(window_);
}
