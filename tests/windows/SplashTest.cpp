// SplashTest.cpp: the splash window shows itself, takes nothing away, and goes.
#include "app/SplashWin.h"
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

TEST(SplashTest, IsDrawnAtOnceLeavesTheKeyboardAndGoesAtAClick)
{
    const HWND before = GetActiveWindow();
    Splash splash;
    splash.Close(); // nothing is shown yet
    splash.Show(GetModuleHandleW(nullptr), L"Quillbox", L"Version 1.0.0");
    ASSERT_TRUE(splash.Window());
    EXPECT_TRUE(IsWindowVisible(splash.Window()));
    EXPECT_FALSE(GetUpdateRect(splash.Window(), nullptr, FALSE)) << "drawn";
    EXPECT_EQ(GetActiveWindow(), before);
    EXPECT_EQ(SendMessageW(splash.Window(), WM_MOUSEACTIVATE, 0, 0), MA_NOACTIVATE);
    SendMessageW(splash.Window(), WM_LBUTTONDOWN, 0, 0);
    EXPECT_FALSE(splash.Window());
    splash.Close();
}

TEST(SplashTest, IsGoneWhenTheStartUpBoxIsThere)
{
    ProgramUnderTest program;
    ASSERT_TRUE(program.Start());
    EXPECT_FALSE(FindProgramWindow(program.Process().Id(), L"QuillboxSplash"));
}

} // namespace
