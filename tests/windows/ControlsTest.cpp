// ControlsTest.cpp: the controls as windows: their texts, their notices and what they draw.
#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

namespace {

constexpr COLORREF kBlue = RGB(0, 0, 255), kWhite = RGB(255, 255, 255);

// A picture of what a window draws.
class Picture {
public:
    explicit Picture(HWND window) : dc_(CreateCompatibleDC(nullptr))
    {
        BITMAPINFO form = {};
        form.bmiHeader = {sizeof(BITMAPINFOHEADER), 400, -100, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(dc_, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
        old_ = SelectObject(dc_, bitmap_);
        SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc_), PRF_CLIENT);
    }
    ~Picture()
    {
        SelectObject(dc_, old_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    COLORREF At(int x, int y) const { return GetPixel(dc_, x, y); }
    bool Has(COLORREF colour, const RECT& area) const
    {
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                if (At(x, y) == colour) return true;
        return false;
    }

private:
    HDC dc_;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ old_ = nullptr;
};

std::wstring TextOfWindow(HWND window)
{
    wchar_t text[200] = {};
    GetWindowTextW(window, text, 200);
    return text;
}

class ControlsTest : public testing::Test {
protected:
    ControlsTest()
    {
        InitCommonControls();
        parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 420, 200, nullptr, nullptr,
                                 GetModuleHandleW(nullptr), nullptr);
    }
    ~ControlsTest() override { DestroyWindow(parent); }
    HWND parent;
};

TEST_F(ControlsTest, ProgressBarDrawsItsShareAndIsItsText)
{
    SimpleProgress bar;
    bar.Create(parent, 1, {0, 0, 302, 62}); // 300 by 60 inside its edge
    EXPECT_EQ(TextOfWindow(bar.Window()), L"50%");
    {
        const Picture fresh(bar.Window());
        EXPECT_EQ(fresh.At(14, 30), kWhite) << "margin";
        EXPECT_EQ(fresh.At(15, 30), kBlue);
        EXPECT_EQ(fresh.At(100, 44), kBlue);
        EXPECT_EQ(fresh.At(100, 45), kWhite) << "margin";
        EXPECT_EQ(fresh.At(200, 30), kWhite) << "not filled";
        // The caption stands across the bar's end: white on it, blue behind it.
        EXPECT_TRUE(fresh.Has(kWhite, {135, 20, 150, 40}));
        EXPECT_TRUE(fresh.Has(kBlue, {150, 20, 165, 40}));
    }
    bar.Properties().SetPercentage(150);
    EXPECT_EQ(TextOfWindow(bar.Window()), L"100%");
    EXPECT_EQ(Picture(bar.Window()).At(284, 16), kBlue);
    bar.Properties().SetFillColour(RGB(0, 128, 0));
    EXPECT_EQ(Picture(bar.Window()).At(284, 16), RGB(0, 128, 0));
    bar.Properties().SetPercentage(-5);
    EXPECT_EQ(TextOfWindow(bar.Window()), L"0%");
    EXPECT_EQ(Picture(bar.Window()).At(15, 16), kWhite);
}

TEST_F(ControlsTest, DisplayShowsOneTextInPlaceOfTheLast)
{
    OrbVacuum display;
    display.Create(parent, 1, {0, 0, 300, 30});
    const auto glows = [&display] {
        const Picture shown(display.Window());
        for (int y = 0; y < 28; ++y)
            for (int x = 0; x < 80; ++x)
                if (GetGValue(shown.At(x, y)) > 128) return true;
        return false;
    };
    EXPECT_FALSE(glows());
    display.ShowText(L"R&D: first");
    display.ShowText(L"WWWW");
    EXPECT_EQ(TextOfWindow(display.Window()), L"WWWW");
    EXPECT_TRUE(glows());
}

TEST_F(ControlsTest, TabStripIsBuiltFromCaptions)
{
    OrbTab tab;
    tab.Create(parent, 1, L"Actions,Store,Progress", {0, 0, 400, 180},
               static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
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
    EXPECT_GT(tab.Inside().top, 10) << "below the tabs";
}

TEST_F(ControlsTest, ButtonsAndLabelsAreStandardControls)
{
    OrbSimpleButton button;
    button.Create(parent, 7, L"&Sync", {0, 0, 90, 25});
    wchar_t name[20] = {};
    GetClassNameW(button.Window(), name, 20);
    EXPECT_STREQ(name, L"Button");
    EXPECT_EQ(TextOfWindow(button.Window()), L"&Sync");
    button.Enable(false);
    EXPECT_FALSE(IsWindowEnabled(button.Window()));

    OrbLabel label;
    label.Create(parent, 8, L"R&D", {0, 30, 90, 45});
    label.SetCaption(L"A & B");
    EXPECT_EQ(TextOfWindow(label.Window()), L"A & B");
    EXPECT_TRUE(GetWindowLongW(label.Window(), GWL_STYLE) & SS_NOPREFIX) << "folder names may hold an &";
}

} // namespace
