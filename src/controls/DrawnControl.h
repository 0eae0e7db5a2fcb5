// DrawnControl.h: a standard Windows control of which only the looks are ours, so that keyboard, tool tips
// and screen readers meet what they know; and the one mechanism that draws it, off-screen and in one copy.
#pragma once
#include "controls/OrbPalette.h"

#include <windows.h>

#include <memory>
#include <string>

// What is drawn on, while it is drawn. The control's font is selected, and text has no ground of its own.
struct Canvas {
    HDC dc;
    RECT area; // the client area; every pixel of it is to be drawn
    const OrbPalette& palette;
    int textHeight; // pixels

    // Pixels that look like so many at 96 dpi: they grow with the control's font. At least 1.
    int Scaled(int pixels) const;
};

// How a control looks. Belongs to the window and goes with it.
class Drawing {
public:
    explicit Drawing(PaletteSource palette) : palette_(palette) {}
    virtual ~Drawing() = default;
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    static void Attach(HWND window, std::unique_ptr<Drawing> drawing);

protected:
    virtual void Paint(const Canvas& canvas) = 0;
    // What the control does otherwise than its kind, which answers the rest.
    virtual LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Standard(UINT message, WPARAM wParam, LPARAM lParam);
    // The part that lights up under the mouse, from 1 on; 0 for none.
    virtual int HotPart(POINT) const { return 0; }

    HWND Window() const { return window_; }
    int Hot() const { return hot_; } // the part under the mouse now
    std::wstring Text() const;
    bool HasCues(UINT hidden) const; // of UISF_HIDEFOCUS, UISF_HIDEACCEL: false while the user wants none
    // The keyboard is here: a line of this colour just inside, or the system's dots.
    static void PaintFocus(const Canvas& canvas, const RECT& area, COLORREF colour);
    bool ShowsFocus() const { return GetFocus() == window_ && HasCues(UISF_HIDEFOCUS); }
    OrbPalette Palette() const { return palette_(); }
    HFONT Font() const;
    void Redraw() const { InvalidateRect(window_, nullptr, FALSE); }

private:
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void FollowMouse(int part);
    void PaintEdge() const;
    void PaintOffScreen();
    void PaintOn(HDC dc);

    PaletteSource palette_;
    HWND window_ = nullptr;
    WNDPROC standard_ = nullptr;
    int hot_ = 0;
};

// The program's hold on a drawn control. Copies mean the same window.
class DrawnControl {
public:
    DrawnControl() = default;
    explicit DrawnControl(HWND window) : window_(window) {} // one that is there already
    HWND Window() const { return window_; }
    void Enable(bool enabled) { EnableWindow(window_, enabled); }
    void Show(bool shown) { ShowWindow(window_, shown ? SW_SHOW : SW_HIDE); }

protected:
    void CreateDrawn(const wchar_t* standardClass, const wchar_t* text, DWORD style, DWORD extendedStyle,
                     HWND parent, int id, const RECT& place, std::unique_ptr<Drawing> drawing);
    void SetText(const wchar_t* text); // visible at once, also while nobody handles messages

private:
    HWND window_ = nullptr;
};
