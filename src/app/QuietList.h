// QuietList.h: puts off the redrawing of a list box or list view while many changes are made to it.
#pragma once
#include <windows.h>

class QuietList {
public:
    explicit QuietList(HWND list) : list_(list) { SendMessageW(list_, WM_SETREDRAW, FALSE, 0); }
    ~QuietList()
    {
        SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(list_, nullptr, TRUE);
    }
    QuietList(const QuietList&) = delete;
    QuietList& operator=(const QuietList&) = delete;

private:
    HWND list_;
};
