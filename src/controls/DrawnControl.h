// DrawnControl.h: a child window that draws itself, off-screen and in one copy, and keeps a window text and a
// font like any standard control.
#pragma once
#include <windows.h>

class DrawnControl {
public:
    virtual ~DrawnControl() = default;
    DrawnControl() = default;
    DrawnControl(const DrawnControl&) = delete;
    DrawnControl& operator=(const DrawnControl&) = delete;

    HWND Window() const { return window_; }

protected:
    // The class is registered when its first window is created.
    void CreateDrawn(const wchar_t* windowClass, HWND parent, int id, const RECT& place);
    void SetText(const wchar_t* text); // visible at once, also while nobody handles messages
    // Draws every pixel of area; the font is selected.
    virtual void Paint(HDC dc, const RECT& area) const = 0;

private:
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void PaintOffScreen() const;
    void PaintOn(HDC dc) const;

    HWND window_ = nullptr;
    HFONT font_ = nullptr; // the parent's, not owned
};

void FillWith(HDC dc, const RECT& area, COLORREF colour);
