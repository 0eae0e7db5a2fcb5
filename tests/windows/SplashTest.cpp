// SplashTest.cpp: the splash window shows itself, takes nothing away, and goes.
#include "app/SplashWin.h"
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

TEST(SplashTest, IsDrawnAtOnceLeavesTheKeyboardAndGoesAtAClick)
{
    const HWND before = GetActiveWindow();
    Splash splash;
    splash.Show(GetModuleHandleW(nullptr), L"Quillbox", L"Version 1.0.0");
    ASSERT_TRUE(splash.Window());
    EXPECT_TRUE(IsWindowVisible(splash.Window()));
    EXPECT_FALSE(GetUpdateRect(splash.Window(), nullptr, FALSE)) << "drawn";
    EXPECT_EQ(GetActiveWindow(), before);
    EXPECT_EQ(SendMessageW(splash.Window(), WM_MOUSEACTIVATE, 0, 0), MA_NOACTIVATE);
    SendMessageW(splash.Window(), WM_LBUTTONDOWN, 0, 0);
    EXPECT_FALSE(splash.Window());
}

TEST(SplashTest, StaysLongEnoughToBeReadAndHoldsNothingUp)
{
    ProgramUnderTest program;
    const DWORD start = GetTickCount();
    ASSERT_TRUE(program.Start());
    const DWORD took = GetTickCount() - start;
    const auto splash = [&] { return FindProgramWindow(program.Process().Id(), L"QuillboxSplash"); };
    const HWND box = program.WaitForBox(L"IMPORTANT! Please Read"), shown = splash();
    if (took < 1200) {
        ASSERT_TRUE(shown) << "the box did not wait for it";
        for (HWND above = GetWindow(shown, GW_HWNDPREV); above != box; above = GetWindow(above, GW_HWNDPREV))
            ASSERT_TRUE(above) << "it stands in front of the box";
        RECT place = {}, boxPlace = {}, both = {};
        GetWindowRect(shown, &place);
        GetWindowRect(box, &boxPlace);
        EXPECT_FALSE(IntersectRect(&both, &place, &boxPlace)) << "it could not be seen";
    }
    EXPECT_TRUE(Eventually([&] { return !splash(); }, 5000));
    EXPECT_GE(GetTickCount() - start, 1500u);
    EXPECT_TRUE(IsWindow(box));
    EXPECT_TRUE(program.Close());
}

} // namespace
