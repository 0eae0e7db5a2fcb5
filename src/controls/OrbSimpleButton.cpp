#include "controls/OrbSimpleButton.h"

void OrbSimpleButton::Create(HWND parent, int id, const wchar_t* caption, const RECT& place)
{
    window_ = CreateWindowExW(0, L"BUTTON", caption, WS_CHILD | WS_TABSTOP | WS_CLIPSIBLINGS | BS_PUSHBUTTON,
                              place.left, place.top, place.right - place.left, place.bottom - place.top,
                              parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                              GetModuleHandleW(nullptr), nullptr);
}
