#include "controls/DrawnControl.h"

#include <exception>

void DrawnControl::CreateDrawn(const wchar_t* windowClass, HWND parent, int id, const RECT& place)
{
    WNDCLASSW description = {};
    description.lpfnWndProc = WndProc;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = windowClass;
    (void)RegisterClassW(&description); // refused from the second control of a class on
    window_ =
        CreateWindowExW(WS_EX_STATICEDGE, windowClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                        place.left, place.top, place.right - place.left, place.bottom - place.top, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), description.hInstance, this);
}

void DrawnControl::SetText(const wchar_t* text)
{
    if (!window_) return;
    SetWindowTextW(window_, text);
    UpdateWindow(window_);
}

LRESULT CALLBACK DrawnControl::WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<DrawnControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCCREATE) { // the first message that carries our object
        self = static_cast<DrawnControl*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    if (!self) return DefWindowProcW(window, message, wParam, lParam);
    LRESULT answer = 0;
    switch (message) {
    case WM_ERASEBKGND:
        return 1; // Paint covers every pixel: no flicker
    case WM_PAINT:
        self->PaintOffScreen();
        return 0;
    case WM_PRINTCLIENT:
        self->PaintOn(reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_SETTEXT:
        answer = DefWindowProcW(window, message, wParam, lParam);
        break;
    case WM_SETFONT:
        self->font_ = reinterpret_cast<HFONT>(wParam);
        break;
    case WM_SIZE:
        break;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(self->font_);
    case WM_NCDESTROY:
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->window_ = nullptr;
        return DefWindowProcW(window, message, wParam, lParam);
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
    InvalidateRect(window, nullptr, FALSE); // what changes the look
    return answer;
}

void DrawnControl::PaintOffScreen() const
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

void DrawnControl::PaintOn(HDC dc) const
{
    RECT area = {};
    GetClientRect(window_, &area);
    const HGDIOBJ oldFont = SelectObject(dc, font_ ? font_ : GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    try {
        Paint(dc, area);
    } catch (const std::exception&) { // out of memory: the old picture stays
    }
    SelectObject(dc, oldFont);
}

void FillWith(HDC dc, const RECT& area, COLORREF colour)
{
    const HBRUSH brush = CreateSolidBrush(colour);
    FillRect(dc, &area, brush);
    DeleteObject(brush);
}
