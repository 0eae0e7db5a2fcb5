// SystemColours.h: other colours of the system, for as long as an object lives.
#pragma once
#include <windows.h>

// The system's colours may be like the program's own: these cannot be taken for either.
class SystemColours {
public:
    explicit SystemColours(COLORREF window = RGB(0, 0, 40))
    {
        COLORREF colours[kCount];
        for (int i = 0; i < kCount; ++i) colours[i] = kIndexes[i] == COLOR_WINDOW ? window : kColours[i];
        for (int i = 0; i < kCount; ++i) before_[i] = GetSysColor(kIndexes[i]);
        SetSysColors(kCount, kIndexes, colours);
    }
    ~SystemColours() { SetSysColors(kCount, kIndexes, before_); }
    SystemColours(const SystemColours&) = delete;
    SystemColours& operator=(const SystemColours&) = delete;

private:
    static constexpr int kCount = 7;
    static constexpr int kIndexes[kCount] = {COLOR_BTNFACE,    COLOR_BTNTEXT,   COLOR_WINDOW,
                                             COLOR_WINDOWTEXT, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT,
                                             COLOR_WINDOWFRAME};
    static constexpr COLORREF kColours[kCount] = {RGB(10, 0, 60),    RGB(255, 255, 0), RGB(0, 0, 40),
                                                  RGB(0, 255, 0),    RGB(255, 0, 255), RGB(1, 2, 3),
                                                  RGB(250, 240, 230)};
    COLORREF before_[kCount] = {};
};
