// Picture.h: a picture of what a window draws, pixel by pixel.
#pragma once
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <vector>

class Picture {
public:
    explicit Picture(HWND window)
    {
        RECT area = {};
        GetClientRect(window, &area);
        width_ = area.right;
        BITMAPINFO form = {};
        form.bmiHeader = {sizeof(BITMAPINFOHEADER), width_, -area.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        const HDC dc = CreateCompatibleDC(nullptr);
        const HBITMAP bitmap = CreateDIBSection(dc, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
        const HGDIOBJ old = SelectObject(dc, bitmap);
        SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
        GdiFlush();
        const auto* first = static_cast<const std::uint32_t*>(bits);
        pixels_.assign(first, first + static_cast<std::ptrdiff_t>(width_) * area.bottom);
        for (std::uint32_t& pixel : pixels_) pixel &= 0xFFFFFF;
        SelectObject(dc, old);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }

    bool operator==(const Picture&) const = default;
    COLORREF At(int x, int y) const
    {
        const std::uint32_t pixel = pixels_[static_cast<std::size_t>(y * width_ + x)];
        return RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
    }
    bool Has(COLORREF colour) const { return Has(colour, {0, 0, width_, Height()}); }
    bool Has(COLORREF colour, const RECT& area) const
    {
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                if (At(x, y) == colour) return true;
        return false;
    }
    int Width() const { return width_; }
    int Height() const { return width_ > 0 ? static_cast<int>(pixels_.size()) / width_ : 0; }

private:
    int width_ = 0;
    std::vector<std::uint32_t> pixels_;
};
