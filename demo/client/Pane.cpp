// Pane.cpp: the holding windows.
#include "demo/client/Pane.h"

#include <array>

namespace {

constexpr int kHeadingHeight = 20;

int HeadingOf(HWND pane)
{
    return static_cast<int>(GetWindowLongPtrW(pane, GWLP_USERDATA));
}

void Paint(HWND pane)
{
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(pane, &paint);
    std::array<wchar_t, 64> caption{};
    GetWindowTextW(pane, caption.data(), static_cast<int>(caption.size()));
    RECT place;
    GetClientRect(pane, &place);
    place.bottom = HeadingOf(pane);
    FillRect(dc, &place, GetSysColorBrush(COLOR_BTNFACE));
    place.left += 6;
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, caption.data(), -1, &place, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    EndPaint(pane, &paint);
}

LRESULT CALLBACK PaneProc(HWND pane, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND child = GetWindow(pane, GW_CHILD);
    switch (message) {
    case WM_SIZE:
        if (child)
            MoveWindow(child, 0, HeadingOf(pane), LOWORD(lParam), HIWORD(lParam) - HeadingOf(pane), TRUE);
        return 0;
    case WM_PAINT:
        Paint(pane);
        return 0;
    case WM_SETFOCUS:
        if (child) SetFocus(child);
        return 0;
    case WM_NOTIFY:
        return SendMessageW(GetParent(pane), message, wParam, lParam);
    }
    return DefWindowProcW(pane, message, wParam, lParam);
}

} // namespace

HWND CreatePane(HWND parent, const wchar_t* windowClass, const wchar_t* caption, PaneHeading heading)
{
    WNDCLASSEXW pane{};
    pane.cbSize = sizeof pane;
    pane.lpfnWndProc = PaneProc;
    pane.hInstance = GetModuleHandleW(nullptr);
    pane.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    pane.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    pane.lpszClassName = windowClass;
    (void)RegisterClassExW(&pane); // registered already the second time
    const HWND window = CreateWindowExW(0, windowClass, caption, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0,
                                        0, 0, 0, parent, nullptr, pane.hInstance, nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, heading == PaneHeading::caption ? kHeadingHeight : 0);
    return window;
}
