#include "app/SplashWin.h"

#include "app/DialogUnitsWin.h"
#include "controls/OrbPalette.h"

namespace {

constexpr wchar_t kClass[] = L"QuillboxSplash";
constexpr DWORD kNoActivate = 0x08000000; // WS_EX_NOACTIVATE, which older headers lack
constexpr int kWidth = 166, kHeight = 70; // dialog units
constexpr DWORD kShortestShow = 1500;     // milliseconds
constexpr UINT_PTR kEndTimer = 1;
constexpr int kNamePercent = 260; // of the message font

// A font of the user's face, as long as this object lives.
class Face {
public:
    Face(LOGFONTW description, int percent, int weight)
    {
        description.lfHeight = MulDiv(description.lfHeight, percent, 100);
        description.lfWeight = weight;
        font_ = CreateFontIndirectW(&description);
    }
    ~Face() { DeleteObject(font_); }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;
    HFONT Font() const { return font_; }

private:
    HFONT font_;
};

} // namespace

void Splash::Show(HINSTANCE instance, const std::wstring& name, const std::wstring& version)
{
    instance_ = instance;
    name_ = name;
    version_ = version;
    WNDCLASSW description = {};
    description.lpfnWndProc = WndProc;
    description.hInstance = instance;
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kClass;
    RegisterClassW(&description);
    const Face face(MessageFont(), 100, FW_NORMAL);
    const DialogUnits units = UnitsOf(face.Font());
    const int width = units.Across(kWidth), height = units.Down(kHeight);
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    // Above the main window, which comes up meanwhile, and no button of its own in the task bar.
    CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | kNoActivate, kClass, name.c_str(), WS_POPUP,
                    (work.left + work.right - width) / 2, work.top + (work.bottom - work.top - height) / 6,
                    width, height, nullptr, nullptr, instance, this);
    if (!window_) return;
    shownAt_ = GetTickCount();
    ShowWindow(window_, SW_SHOWNOACTIVATE);
    UpdateWindow(window_);
}

void Splash::Release(HWND mainWindow)
{
    if (!window_) return;
    const DWORD shown = GetTickCount() - shownAt_;
    if (shown >= kShortestShow) return Close();
    // Owned windows stand above their owner, and a box that is shown later above this one.
    SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(mainWindow));
    SetWindowPos(window_, HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetTimer(window_, kEndTimer, kShortestShow - shown, nullptr);
}

void Splash::Close()
{
    if (window_) DestroyWindow(window_);
}

LRESULT CALLBACK Splash::WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<Splash*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_NCCREATE:
        self = static_cast<Splash*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        break;
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_LBUTTONDOWN:
    case WM_TIMER:
        DestroyWindow(window);
        return 0;
    case WM_ERASEBKGND:
        return 1; // Paint covers every pixel
    case WM_PAINT:
        if (self) self->Paint();
        return 0;
    case WM_NCDESTROY:
        if (self) self->window_ = nullptr;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void Splash::Paint() const
{
    PAINTSTRUCT paint = {};
    const HDC dc = BeginPaint(window_, &paint);
    const OrbPalette palette = CurrentPalette();
    const Face small(MessageFont(), 100, FW_NORMAL), large(MessageFont(), kNamePercent, FW_BOLD);
    const DialogUnits units = UnitsOf(small.Font());
    RECT area = {};
    GetClientRect(window_, &area);
    FillWith(dc, area, palette.accent);
    RECT page = {units.Across(1), units.Down(1), area.right - units.Across(1), area.bottom - units.Down(4)};
    FillWith(dc, page, palette.page);

    const int picture = units.Down(30);
    const int left = units.Across(14), top = (page.top + page.bottom - picture) / 2;
    if (const HANDLE icon = LoadImageW(instance_, MAKEINTRESOURCEW(1), IMAGE_ICON, picture, picture, 0)) {
        DrawIconEx(dc, left, top, static_cast<HICON>(icon), picture, picture, 0, nullptr, DI_NORMAL);
        DestroyIcon(static_cast<HICON>(icon));
    }
    SetBkMode(dc, TRANSPARENT);
    RECT text = {left + picture + units.Across(12), top - units.Down(3), page.right, page.bottom};
    const HGDIOBJ oldFont = SelectObject(dc, large.Font());
    SetTextColor(dc, palette.accent);
    text.top += DrawTextW(dc, name_.c_str(), -1, &text, DT_SINGLELINE | DT_NOPREFIX);
    SelectObject(dc, small.Font());
    SetTextColor(dc, palette.text);
    text.left += units.Across(1);
    DrawTextW(dc, version_.c_str(), -1, &text, DT_NOPREFIX);
    SelectObject(dc, oldFont);
    EndPaint(window_, &paint);
}
