// ControlsBench.h: a window for controls under test; it counts what they report.
#pragma once
#include "controls/OrbPalette.h"

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

class ControlsBench : public testing::Test {
protected:
    ControlsBench()
    {
        InitCommonControls();
        WNDCLASSW description = {};
        description.lpfnWndProc = WndProc;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"ControlsBench";
        RegisterClassW(&description);
        parent = CreateWindowExW(0, L"ControlsBench", L"", WS_POPUP | WS_VISIBLE, 0, 0, 640, 300, nullptr,
                                 nullptr, description.hInstance, this);
    }
    ~ControlsBench() override { DestroyWindow(parent); }

    // As the message loop of a window with controls handles a key.
    void Key(HWND control, UINT message, WPARAM key, LPARAM flags = 0)
    {
        MSG pressed = {control, message, key, flags, 0, {}};
        if (!IsDialogMessageW(parent, &pressed)) DispatchMessageW(&pressed);
    }

    HWND parent = nullptr;
    int clicks = 0;       // WM_COMMAND with BN_CLICKED
    int otherNotices = 0; // and with any other code
    int tabChanges = 0;   // WM_NOTIFY with TCN_SELCHANGE

private:
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* self = reinterpret_cast<ControlsBench*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_NCCREATE)
            SetWindowLongPtrW(
                window, GWLP_USERDATA,
                reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
        if (self && message == WM_COMMAND)
            ++(HIWORD(wParam) == BN_CLICKED ? self->clicks : self->otherNotices);
        if (self && message == WM_NOTIFY &&
            reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(TCN_SELCHANGE))
            ++self->tabChanges;
        LRESULT answer = 0;
        if (AnswerForGround(window, message, wParam, LightPalette().page, answer)) return answer;
        return DefWindowProcW(window, message, wParam, lParam);
    }
};
