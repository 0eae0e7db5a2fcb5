// OrbButtonTest.cpp: buttons and tabs: what they look like in each state, and what they report.
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"

#include "ControlsBench.h"
#include "Picture.h"
#include "SystemColours.h"

#include <algorithm>
#include <functional>

namespace {

class OrbButtonTest : public ControlsBench {
protected:
    OrbButtonTest()
    {
        button.Create(parent, 7, L"&Sync", {10, 10, 110, 36});
        button.Show(true);
        drawn = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(button.Window(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnswerCues)));
        other.Create(parent, 8, L"&Other", {10, 50, 110, 76});
        other.Show(true);
    }
    ~OrbButtonTest() override { hiddenCues = 0; }
    // Windows keeps for each window which keyboard cues it hides; Wine does not.
    static LRESULT CALLBACK AnswerCues(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_QUERYUISTATE) return hiddenCues;
        return CallWindowProcW(drawn, window, message, wParam, lParam);
    }
    static inline WNDPROC drawn = nullptr;
    static inline LRESULT hiddenCues = 0;
    OrbSimpleButton button, other;
};

TEST_F(OrbButtonTest, EveryStateLooksDifferent)
{
    const HWND window = button.Window();
    const auto send = [window](UINT message, WPARAM wParam, LPARAM lParam) {
        return [=] { SendMessageW(window, message, wParam, lParam); };
    };
    const std::tuple<std::string, std::function<void()>, std::function<void()>> states[] = {
        {"normal", [] {}, [] {}},
        {"hot", send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5)), send(WM_MOUSELEAVE, 0, 0)},
        {"pressed", send(BM_SETSTATE, TRUE, 0), send(BM_SETSTATE, FALSE, 0)},
        {"disabled", [&] { button.Enable(false); }, [&] { button.Enable(true); }},
        {"default", send(BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE), send(BM_SETSTYLE, BS_PUSHBUTTON, TRUE)},
        {"focused", [&] { SetFocus(window); }, [&] { SetFocus(parent); }},
        {"renamed", [&] { SetWindowTextW(window, L"&Stop"); }, [&] { SetWindowTextW(window, L"&Sync"); }},
    };
    const Picture normal(window);
    std::vector<Picture> seen;
    for (const auto& [state, enter, leave] : states) {
        ValidateRect(window, nullptr);
        enter();
        EXPECT_TRUE(seen.empty() || GetUpdateRect(window, nullptr, FALSE) || state == "pressed") // at once
            << state << " is not drawn anew";
        const Picture picture(window);
        EXPECT_EQ(std::count(seen.begin(), seen.end(), picture), 0) << state << " looks like another";
        seen.push_back(picture);
        leave();
        EXPECT_TRUE(Picture(window) == normal) << "after " << state;
    }
    SetFocus(window);
    const Picture focused(window);
    hiddenCues = UISF_HIDEFOCUS;
    EXPECT_FALSE(Picture(window) == focused) << "the line goes when the user wants no cues";
}

TEST_F(OrbButtonTest, EachWayToPressItIsOneClick)
{
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
    EXPECT_EQ(GetFocus(), window);
    EXPECT_TRUE(SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON);
    EXPECT_TRUE(SendMessageW(neighbour, WM_GETDLGCODE, 0, 0) & DLGC_UNDEFPUSHBUTTON);
    button.Enable(false);
    mnemonic();
    EXPECT_EQ(clicks, 1) << "disabled";
    wchar_t name[20] = {};
    GetClassNameW(window, name, 20);
    EXPECT_STREQ(name, L"Button") << "as drivers and screen readers look for it";
}

class OrbTabTest : public ControlsBench {
protected:
    OrbTabTest()
    {
        tab.Create(parent, 1, L"Actions,Store,Progress", {0, 0, 400, 180},
                   static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
    }
    RECT Place(int index) const
    {
        RECT place = {};
        SendMessageW(tab.Window(), TCM_GETITEMRECT, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(&place));
        return place;
    }
    LPARAM Point(int index) const { return MAKELPARAM(Place(index).left + 5, Place(index).top + 5); }
    OrbTab tab;
};

TEST_F(OrbTabTest, IsBuiltFromCaptionsAndTellsTheUsersChoiceAlone)
{
    ASSERT_EQ(SendMessageW(tab.Window(), TCM_GETITEMCOUNT, 0, 0), 3);
    wchar_t caption[50] = {};
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = caption;
    item.cchTextMax = 50;
    SendMessageW(tab.Window(), TCM_GETITEMW, 1, reinterpret_cast<LPARAM>(&item));
    EXPECT_STREQ(caption, L"Store");
    EXPECT_GE(tab.Inside().top, Place(0).bottom);
    EXPECT_EQ(tab.Selected(), 0);
    SetFocus(tab.Window());
    Key(tab.Window(), WM_KEYDOWN, VK_RIGHT);
    EXPECT_EQ(tab.Selected(), 1);
    EXPECT_EQ(tabChanges, 1);
    SendMessageW(tab.Window(), WM_LBUTTONDOWN, MK_LBUTTON, Point(2));
    SendMessageW(tab.Window(), WM_LBUTTONUP, 0, Point(2));
    EXPECT_EQ(tab.Selected(), 2);
    tab.Select(0);
    EXPECT_EQ(tab.Selected(), 0);
    EXPECT_EQ(tabChanges, 2);
}

TEST_F(OrbTabTest, MarksTheSelectedTabAndTheOneUnderTheMouse)
{
    const auto has = [&](COLORREF colour, int index) {
        return Picture(tab.Window()).Has(colour, Place(index));
    };
    const COLORREF selected = LightPalette().accent, hot = LightPalette().hot;
    EXPECT_TRUE(has(selected, 0) && !has(selected, 1) && !has(hot, 1));
    SendMessageW(tab.Window(), WM_MOUSEMOVE, 0, Point(1));
    EXPECT_TRUE(has(hot, 1) && !has(hot, 2));
    SendMessageW(tab.Window(), WM_MOUSELEAVE, 0, 0);
    EXPECT_FALSE(has(hot, 1));
    tab.Select(1);
    EXPECT_TRUE(has(selected, 1) && !has(selected, 0));
    const Picture second(tab.Window());
    SetFocus(tab.Window());
    EXPECT_FALSE(Picture(tab.Window()) == second) << "the keyboard is shown";
}

TEST_F(ControlsBench, HighContrastUsesTheSystemsColours)
{
    const SystemColours theUsers;
    OrbSimpleButton button;
    button.Create(parent, 1, L"&Export", {0, 0, 100, 26}, OrbSimpleButton::Look::primary, SystemPalette);
    OrbTab tab;
    tab.Create(parent, 2, L"One,Two", {0, 30, 200, 90}, static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)),
               SystemPalette);
    SimpleProgress bar;
    bar.Create(parent, 3, {0, 100, 202, 162}, SystemPalette);
    OrbVacuum display;
    display.Create(parent, 4, {0, 170, 302, 200}, SystemPalette);
    display.ShowText(L"W");
    // colours: that of the ground first
    const std::tuple<const char*, HWND, POINT, std::vector<int>> cases[] = {
        {"button", button.Window(), {10, 5}, {COLOR_BTNFACE, COLOR_BTNTEXT}},
        {"tabs", tab.Window(), {100, 50}, {COLOR_BTNFACE, COLOR_HIGHLIGHT, COLOR_WINDOWFRAME}},
        {"bar",
         bar.Window(),
         {150, 16},
         {COLOR_WINDOW, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT, COLOR_WINDOWTEXT}},
        {"display", display.Window(), {1, 1}, {COLOR_WINDOW, COLOR_WINDOWTEXT}},
    };
    for (const auto& [name, control, ground, colours] : cases) {
        const Picture drawn(control);
        EXPECT_EQ(drawn.At(ground.x, ground.y), GetSysColor(colours[0])) << name;
        for (const int colour : colours) EXPECT_TRUE(drawn.Has(GetSysColor(colour))) << name << " " << colour;
        EXPECT_FALSE(drawn.Has(LightPalette().accent) || drawn.Has(LightPalette().border)) << name;
        ShowWindow(control, SW_SHOW);
        UpdateWindow(control);
        ASSERT_FALSE(GetUpdateRect(control, nullptr, FALSE)) << name;
    }
    const Picture glass(display.Window());
    for (int x = 0; x < glass.Width(); ++x) { // nothing glows: through the middle of the W
        const COLORREF colour = glass.At(x, glass.Height() / 2);
        EXPECT_TRUE(colour == GetSysColor(COLOR_WINDOW) || colour == GetSysColor(COLOR_WINDOWTEXT)) << x;
    }
    PassOnNewColours(parent, WM_SYSCOLORCHANGE, 0, 0);
    for (const auto& [name, control, ground, colours] : cases)
        EXPECT_TRUE(GetUpdateRect(control, nullptr, FALSE)) << name << ": new colours show at once";
}

TEST(OrbPaletteTest, DarkWindowsTakeTheSystemsColours)
{
    const auto takesThem = [](COLORREF window) {
        const SystemColours theUsers(window);
        return CurrentPalette().isSystem;
    };
    for (const COLORREF light : {RGB(255, 255, 255), RGB(255, 255, 180), RGB(212, 208, 200)})
        EXPECT_FALSE(takesThem(light)) << std::hex << light;
    for (const COLORREF dark : {RGB(0, 0, 0), RGB(0, 0, 255), RGB(45, 50, 54)})
        EXPECT_TRUE(takesThem(dark)) << std::hex << dark;
    EXPECT_FALSE(CurrentPalette().isSystem);
}

} // namespace
