#include "app/Form1Progress.h"

#include "app/QuietList.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace {

// Whoever has scrolled a list back reads there, and new lines leave it alone.
bool ShowsEnd(HWND list)
{
    RECT area = {}, last = {};
    GetClientRect(list, &area);
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    if (count <= 0) return true;
    SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(count - 1), reinterpret_cast<LPARAM>(&last));
    const LONG line = last.bottom - last.top; // it may be cut by the list's edge
    return last.top < area.bottom || last.top < line;
}

} // namespace

void Form1Progress::ShowAdded()
{
    if (added_.empty()) return;
    const QuietList quiet(list_);
    const bool followed = ShowsEnd(list_);
    const HDC dc = GetDC(list_);
    const HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(list_, WM_GETFONT, 0, 0)));
    LRESULT last = -1;
    for (const Text& line : added_) {
        last = SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(line)));
        SIZE extent = {};
        GetTextExtentPoint32W(dc, Wide(line), static_cast<int>(line.size()), &extent);
        widest_ = std::max(widest_, static_cast<int>(extent.cx));
    }
    SelectObject(dc, oldFont);
    ReleaseDC(list_, dc);
    added_.clear();
    SendMessageW(list_, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest_ + 8), 0);
    if (last >= 0 && followed) SendMessageW(list_, LB_SETTOPINDEX, static_cast<WPARAM>(last), 0);
}

void Form1Progress::Clear()
{
    added_.clear();
    SendMessageW(list_, LB_RESETCONTENT, 0, 0);
    SendMessageW(list_, LB_SETHORIZONTALEXTENT, 0, 0);
    widest_ = 0;
}
