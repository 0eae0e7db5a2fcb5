#include "controls/OrbLabel.h"

void OrbLabel::Create(HWND parent, int id, const wchar_t* caption, const RECT& place, Kind kind)
{
    const DWORD style = kind == Kind::plain ? SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS : SS_LEFT;
    window_ = CreateWindowExW(0, L"STATIC", caption, WS_CHILD | WS_CLIPSIBLINGS | SS_NOTIFY | style,
                              place.left, place.top, place.right - place.left, place.bottom - place.top,
                              parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                              GetModuleHandleW(nullptr), nullptr);
}

void OrbLabel::SetCaption(const wchar_t* caption)
{
    SetWindowTextW(window_, caption);
    UpdateWindow(window_);
}
