// ControlsTest.cpp: the controls as windows: what presses a button, the texts they show, the system's
// colours.
#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"
#include "demo/driver/ProgramDriver.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace {

// A window for controls under test; it counts what they report.
class ControlsTest : public testing::Test {
protected:
    ControlsTest()
    {
        InitCommonControls();
        WNDCLASSW description = {};
        description.lpfnWndProc = WndProc;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"ControlsTest";
        RegisterClassW(&description);
        parent = CreateWindowExW(0, L"ControlsTest", L"", WS_POPUP | WS_VISIBLE, 0, 0, 640, 300, nullptr,
                                 nullptr, description.hInstance, this);
    }
    ~ControlsTest() override { DestroyWindow(parent); }

    // As the message loop of a window with controls handles a key.
    void Key(HWND control, UINT message, WPARAM key, LPARAM flags = 0)
    {
        MSG pressed = {control, message, key, flags, 0, {}};
        if (!IsDialogMessageW(parent, &pressed)) DispatchMessageW(&pressed);
    }

    HWND parent = nullptr;
    int clicks = 0;       // WM_COMMAND with BN_CLICKED
    int otherNotices = 0; // and with any other code

private:
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* self = reinterpret_cast<ControlsTest*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_NCCREATE)
            SetWindowLongPtrW(
                window, GWLP_USERDATA,
                reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
        if (self && message == WM_COMMAND)
            ++(HIWORD(wParam) == BN_CLICKED ? self->clicks : self->otherNotices);
        LRESULT answer = 0;
        if (AnswerForGround(window, message, wParam, LightPalette().page, answer)) return answer;
        return DefWindowProcW(window, message, wParam, lParam);
    }
};

// How often a window's picture has each colour.
std::map<COLORREF, int> ColoursOf(HWND window)
{
    RECT area = {};
    GetClientRect(window, &area);
    const HDC screen = GetDC(nullptr), dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, area.right, area.bottom);
    const HGDIOBJ old = SelectObject(dc, bitmap);
    SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
    std::map<COLORREF, int> colours;
    for (int y = 0; y < area.bottom; ++y)
        for (int x = 0; x < area.right; ++x) ++colours[GetPixel(dc, x, y)];
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return colours;
}

} // namespace

TEST_F(ControlsTest, EachWayToPressAButtonIsOneClick)
{
    OrbSimpleButton button, other;
    button.Create(parent, 7, L"&Sync", {10, 10, 110, 36});
    other.Create(parent, 8, L"&Other", {10, 50, 110, 76});
    for (OrbSimpleButton* each : {&button, &other}) each->Show(true);
    const HWND window = button.Window(), neighbour = other.Window();
    const auto stroke = [&](HWND at, WPARAM key) {
        SetFocus(at);
        Key(at, WM_KEYDOWN, key);
        Key(at, WM_KEYUP, key);
    };
    const auto mnemonic = [&] {
        SetFocus(neighbour);
        Key(neighbour, WM_SYSCHAR, L's', 1 << 29);
    };
    const auto click = [&](UINT down, LPARAM up = MAKELPARAM(5, 5)) {
        SendMessageW(window, down, MK_LBUTTON, MAKELPARAM(5, 5));
        SendMessageW(window, WM_LBUTTONUP, 0, up);
    };
    const std::tuple<const char*, int, std::function<void()>> ways[] = {
        {"BM_CLICK", 1, [&] { SendMessageW(window, BM_CLICK, 0, 0); }},
        {"Space", 1, [&] { stroke(window, VK_SPACE); }},
        {"its mnemonic, from another control", 1, mnemonic},
        {"a click of the mouse", 1, [&] { click(WM_LBUTTONDOWN); }},
        {"the second of a double click", 1, [&] { click(WM_LBUTTONDBLCLK); }},
        {"pressed, and let go elsewhere", 0, [&] { click(WM_LBUTTONDOWN, MAKELPARAM(500, 500)); }},
        {"Tab, back to the first", 0, [&] { stroke(neighbour, VK_TAB); }},
        {"Enter", 1, [&] { stroke(window, VK_RETURN); }},
    };
    for (const auto& [way, wanted, press] : ways) {
        clicks = otherNotices = 0;
        press();
        EXPECT_EQ(clicks, wanted) << way;
        EXPECT_EQ(otherNotices, 0) << way;
    }
    EXPECT_TRUE(SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) << "Enter is its own";
    EXPECT_TRUE(SendMessageW(neighbour, WM_GETDLGCODE, 0, 0) & DLGC_UNDEFPUSHBUTTON);
    button.Enable(false);
    mnemonic();
    EXPECT_EQ(clicks, 1) << "disabled";
}

TEST_F(ControlsTest, ATextIsShownInPlaceOfTheLast)
{
    OrbVacuum display;
    display.Create(parent, 1, {0, 0, 300, 30});
    OrbLabel label;
    label.Create(parent, 8, L"", {0, 30, 90, 45});
    EXPECT_TRUE(GetWindowLongW(label.Window(), GWL_STYLE) & SS_NOPREFIX) << "folder names may hold an &";
    const std::pair<HWND, std::function<void(const wchar_t*)>> controls[] = {
        {display.Window(), [&](const wchar_t* text) { display.ShowText(text); }},
        {label.Window(), [&](const wchar_t* text) { label.SetCaption(text); }},
    };
    for (const auto& [window, show] : controls) {
        const auto empty = ColoursOf(window);
        show(L"R&D");
        EXPECT_EQ(TextOf(window), L"R&D");
        const auto first = ColoursOf(window);
        show(L"WWWW");
        EXPECT_TRUE(first != empty && ColoursOf(window) != first && ColoursOf(window) != empty);
        show(L"");
        EXPECT_EQ(ColoursOf(window), empty);
    }
}

TEST_F(ControlsTest, DarkWindowsTakeTheSystemsColours)
{
    // That cannot be taken for the program's own.
    constexpr std::pair<int, COLORREF> dark[] = {
        {COLOR_BTNFACE, RGB(10, 0, 60)},         {COLOR_BTNTEXT, RGB(255, 255, 0)},
        {COLOR_WINDOW, RGB(0, 0, 40)},           {COLOR_WINDOWTEXT, RGB(0, 255, 0)},
        {COLOR_HIGHLIGHT, RGB(255, 0, 255)},     {COLOR_HIGHLIGHTTEXT, RGB(1, 2, 3)},
        {COLOR_WINDOWFRAME, RGB(250, 240, 230)},
    };
    const bool before = CurrentPalette().isSystem;
    std::map<int, COLORREF> theUsers;
    for (const auto& [index, colour] : dark) {
        theUsers[index] = GetSysColor(index);
        SetSysColors(1, &index, &colour);
    }
    EXPECT_TRUE(CurrentPalette().isSystem);
    OrbSimpleButton button;
    button.Create(parent, 1, L"&Export", {0, 0, 100, 26}, OrbSimpleButton::Look::primary);
    OrbTab tab;
    tab.Create(parent, 2, L"One,Two", {0, 30, 200, 90}, static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
    SimpleProgress bar;
    bar.Create(parent, 3, {0, 100, 202, 162});
    OrbVacuum display;
    display.Create(parent, 4, {0, 170, 302, 200});
    display.ShowText(L"W");
    const std::pair<HWND, std::vector<int>> cases[] = {
        {button.Window(), {COLOR_BTNFACE, COLOR_BTNTEXT}},
        {tab.Window(), {COLOR_BTNFACE, COLOR_BTNTEXT, COLOR_HIGHLIGHT, COLOR_WINDOWFRAME}},
        {bar.Window(), {COLOR_WINDOW, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT, COLOR_WINDOWTEXT}},
        {display.Window(), {COLOR_WINDOW, COLOR_WINDOWTEXT}},
    };
    for (const auto& [control, colours] : cases) {
        const auto drawn = ColoursOf(control);
        for (const int colour : colours)
            EXPECT_TRUE(drawn.count(GetSysColor(colour))) << GetDlgCtrlID(control) << " " << colour;
        EXPECT_FALSE(drawn.count(LightPalette().accent) || drawn.count(LightPalette().border));
    }
    for (const auto& [index, colour] : theUsers) SetSysColors(1, &index, &colour);
    EXPECT_EQ(CurrentPalette().isSystem, before);
}
