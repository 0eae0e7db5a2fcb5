// OrbButtonTest.cpp: buttons and tabs: what they look like in each state, and what they report.
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"

#include "ControlsBench.h"
#include "Picture.h"
#include "SystemColours.h"

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
    const struct {
        const char* state;
        std::function<void()> enter, leave;
    } states[] = {
        {"normal", [] {}, [] {}},
        {"hot", [&] { SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5)); },
         [&] { SendMessageW(window, WM_MOUSELEAVE, 0, 0); }},
        {"pressed", [&] { SendMessageW(window, BM_SETSTATE, TRUE, 0); },
         [&] { SendMessageW(window, BM_SETSTATE, FALSE, 0); }},
        {"disabled", [&] { button.Enable(false); }, [&] { button.Enable(true); }},
        {"default", [&] { SendMessageW(window, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE); },
         [&] { SendMessageW(window, BM_SETSTYLE, BS_PUSHBUTTON, TRUE); }},
        {"focused", [&] { SetFocus(window); }, [&] { SetFocus(parent); }},
        {"renamed", [&] { SetWindowTextW(window, L"&Stop"); }, [&] { SetWindowTextW(window, L"&Sync"); }},
    };
    const Picture normal(window);
    std::vector<Picture> seen;
    for (const auto& state : states) {
        ValidateRect(window, nullptr);
        state.enter();
        EXPECT_TRUE(seen.empty() || GetUpdateRect(window, nullptr, FALSE) ||
                    std::string_view(state.state) == "pressed") // drawn at once
            << state.state << " is not drawn anew";
        seen.emplace_back(window);
        for (std::size_t i = 0; i + 1 < seen.size(); ++i)
            EXPECT_FALSE(seen[i] == seen.back()) << states[i].state << " and " << state.state;
        state.leave();
        EXPECT_TRUE(Picture(window) == normal) << "after " << state.state;
    }
    SetFocus(window);
    const Picture focused(window);
    hiddenCues = UISF_HIDEFOCUS;
    EXPECT_FALSE(Picture(window) == focused) << "the dotted line goes when the user wants no cues";
}

TEST_F(OrbButtonTest, EachWayToPressItIsOneClick)
{
    const HWND window = button.Window();
    const LPARAM inside = MAKELPARAM(5, 5);
    const struct {
        const char* way;
        int clicks;
        std::function<void()> press;
    } ways[] = {
        {"BM_CLICK", 1, [&] { SendMessageW(window, BM_CLICK, 0, 0); }},
        {"Space", 1,
         [&] {
             SetFocus(window);
             Key(window, WM_KEYDOWN, VK_SPACE);
             Key(window, WM_KEYUP, VK_SPACE);
         }},
        {"its mnemonic, from another control", 1,
         [&] {
             SetFocus(other.Window());
             Key(other.Window(), WM_SYSCHAR, L's', 1 << 29);
         }},
        {"Enter", 1,
         [&] {
             SetFocus(other.Window());
             Key(other.Window(), WM_KEYDOWN, VK_TAB); // back to the first
             EXPECT_EQ(GetFocus(), window);
             EXPECT_TRUE(SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON);
             EXPECT_TRUE(SendMessageW(other.Window(), WM_GETDLGCODE, 0, 0) & DLGC_UNDEFPUSHBUTTON);
             Key(window, WM_KEYDOWN, VK_RETURN);
         }},
        {"two quick clicks of the mouse", 2,
         [&] {
             SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, inside);
             SendMessageW(window, WM_LBUTTONUP, 0, inside);
             SendMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, inside);
             SendMessageW(window, WM_LBUTTONUP, 0, inside);
         }},
        {"pressed, and let go elsewhere", 0,
         [&] {
             SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, inside);
             SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(500, 500));
         }},
        {"disabled", 0,
         [&] {
             button.Enable(false);
             Key(other.Window(), WM_SYSCHAR, L's', 1 << 29);
         }},
    };
    for (const auto& way : ways) {
        clicks = otherNotices = 0;
        way.press();
        EXPECT_EQ(clicks, way.clicks) << way.way;
        EXPECT_EQ(otherNotices, 0) << way.way;
    }
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
    OrbTab tab;
};

TEST_F(OrbTabTest, IsBuiltFromCaptions)
{
    ASSERT_EQ(SendMessageW(tab.Window(), TCM_GETITEMCOUNT, 0, 0), 3);
    wchar_t caption[50] = {};
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = caption;
    item.cchTextMax = 50;
    SendMessageW(tab.Window(), TCM_GETITEMW, 1, reinterpret_cast<LPARAM>(&item));
    EXPECT_STREQ(caption, L"Store");
    EXPECT_EQ(tab.Selected(), 0);
    tab.Select(2);
    EXPECT_EQ(tab.Selected(), 2);
    EXPECT_EQ(tabChanges, 0) << "it was not the user's choice";
    EXPECT_GE(tab.Inside().top, Place(0).bottom);
}

TEST_F(OrbTabTest, MarksTheSelectedTabAndTheOneUnderTheMouse)
{
    const OrbPalette colours = LightPalette();
    const auto accented = [&](const Picture& strip, int index) {
        return strip.Has(colours.accent, Place(index));
    };
    const Picture first(tab.Window());
    EXPECT_TRUE(accented(first, 0));
    EXPECT_FALSE(accented(first, 1) || first.Has(colours.hot));
    SendMessageW(tab.Window(), WM_MOUSEMOVE, 0, MAKELPARAM(Place(1).left + 5, Place(1).top + 5));
    const Picture hot(tab.Window());
    EXPECT_TRUE(hot.Has(colours.hot, Place(1)));
    EXPECT_FALSE(hot.Has(colours.hot, Place(2)));
    SendMessageW(tab.Window(), WM_MOUSELEAVE, 0, 0);
    EXPECT_TRUE(Picture(tab.Window()) == first);
    tab.Select(1);
    const Picture second(tab.Window());
    EXPECT_TRUE(accented(second, 1));
    EXPECT_FALSE(accented(second, 0));
    SetFocus(tab.Window());
    EXPECT_FALSE(Picture(tab.Window()) == second) << "the keyboard is shown";
}

TEST_F(OrbTabTest, ArrowKeysAndMouseNotifyOnce)
{
    SetFocus(tab.Window());
    Key(tab.Window(), WM_KEYDOWN, VK_RIGHT);
    EXPECT_EQ(tab.Selected(), 1);
    EXPECT_EQ(tabChanges, 1);
    Key(tab.Window(), WM_KEYDOWN, VK_LEFT);
    EXPECT_EQ(tab.Selected(), 0);
    EXPECT_EQ(tabChanges, 2);
    const LPARAM point = MAKELPARAM(Place(2).left + 5, Place(2).top + 5);
    SendMessageW(tab.Window(), WM_LBUTTONDOWN, MK_LBUTTON, point);
    SendMessageW(tab.Window(), WM_LBUTTONUP, 0, point);
    EXPECT_EQ(tab.Selected(), 2);
    EXPECT_EQ(tabChanges, 3);
}

TEST_F(ControlsBench, HighContrastUsesTheSystemsColours)
{
    const SystemColours theUsers;
    OrbSimpleButton button;
    button.Create(parent, 1, L"&Export", {0, 0, 100, 26}, OrbSimpleButton::Look::primary, SystemPalette);
    const Picture key(button.Window());
    EXPECT_EQ(key.At(10, 5), GetSysColor(COLOR_BTNFACE));
    EXPECT_TRUE(key.Has(GetSysColor(COLOR_BTNTEXT)));

    OrbTab tab;
    tab.Create(parent, 2, L"One,Two", {0, 30, 200, 90}, static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)),
               SystemPalette);
    const Picture strip(tab.Window());
    EXPECT_EQ(strip.At(100, 50), GetSysColor(COLOR_BTNFACE));
    EXPECT_TRUE(strip.Has(GetSysColor(COLOR_HIGHLIGHT)));
    EXPECT_TRUE(strip.Has(GetSysColor(COLOR_WINDOWFRAME)));

    SimpleProgress bar;
    bar.Create(parent, 3, {0, 100, 202, 162}, SystemPalette);
    const Picture progress(bar.Window());
    EXPECT_EQ(progress.At(20, 16), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(progress.At(150, 16), GetSysColor(COLOR_WINDOW));
    EXPECT_TRUE(progress.Has(GetSysColor(COLOR_HIGHLIGHTTEXT)));
    EXPECT_TRUE(progress.Has(GetSysColor(COLOR_WINDOWTEXT)));

    OrbVacuum display;
    display.Create(parent, 4, {0, 170, 302, 200}, SystemPalette);
    display.ShowText(L"W");
    const Picture glass(display.Window());
    EXPECT_TRUE(glass.Has(GetSysColor(COLOR_WINDOWTEXT)));
    for (int y = 0; y < glass.Height(); ++y)
        for (int x = 0; x < glass.Width(); ++x)
            ASSERT_TRUE(glass.At(x, y) == GetSysColor(COLOR_WINDOW) ||
                        glass.At(x, y) == GetSysColor(COLOR_WINDOWTEXT))
                << x << "," << y;

    for (const HWND control : {button.Window(), tab.Window(), bar.Window(), display.Window()}) {
        ShowWindow(control, SW_SHOW);
        UpdateWindow(control);
        ASSERT_FALSE(GetUpdateRect(control, nullptr, FALSE));
    }
    PassOnNewColours(parent, WM_SYSCOLORCHANGE, 0, 0);
    for (const HWND control : {button.Window(), tab.Window(), bar.Window(), display.Window()})
        EXPECT_TRUE(GetUpdateRect(control, nullptr, FALSE)) << "new colours show at once";
}

TEST_F(ControlsBench, DarkWindowsTakeTheSystemsColours)
{
    const struct {
        COLORREF window;
        bool isSystem;
    } cases[] = {
        {RGB(255, 255, 255), false}, {RGB(255, 255, 180), false}, {RGB(212, 208, 200), false},
        {RGB(0, 0, 0), true},        {RGB(0, 0, 255), true},      {RGB(45, 50, 54), true},
    };
    for (const auto& c : cases) {
        const SystemColours theUsers(c.window);
        EXPECT_EQ(CurrentPalette().isSystem, c.isSystem) << std::hex << c.window;
    }
    EXPECT_FALSE(CurrentPalette().isSystem);
}

} // namespace
