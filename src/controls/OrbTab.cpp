#include "controls/OrbTab.h"

#include <commctrl.h>

#include <string>

void OrbTab::Create(HWND parent, int id, const wchar_t* captions, const RECT& place, HFONT font)
{
    window_ = CreateWindowExW(0, WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS,
                              place.left, place.top, place.right - place.left, place.bottom - place.top,
                              parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                              GetModuleHandleW(nullptr), nullptr);
    // Before the first tab: the font decides how high the strip is.
    SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    std::wstring caption;
    int count = 0;
    for (const wchar_t* at = captions;; ++at) {
        if (*at != L',' && *at != L'\0') {
            caption += *at;
            continue;
        }
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = caption.data();
        SendMessageW(window_, TCM_INSERTITEMW, static_cast<WPARAM>(count++), reinterpret_cast<LPARAM>(&item));
        caption.clear();
        if (*at == L'\0') break;
    }
}

int OrbTab::Selected() const
{
    return static_cast<int>(SendMessageW(window_, TCM_GETCURSEL, 0, 0));
}

void OrbTab::Select(int index)
{
    SendMessageW(window_, TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
}

RECT OrbTab::Inside() const
{
    RECT inside = {};
    GetClientRect(window_, &inside);
    SendMessageW(window_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inside));
    MapWindowPoints(window_, GetParent(window_), reinterpret_cast<POINT*>(&inside), 2);
    return inside;
}
