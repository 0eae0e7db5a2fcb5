// SplashTest.cpp: the splash window shows itself beside the first box, takes nothing away, and goes.
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

TEST(SplashTest, StaysToBeReadOrUntilAClickAndHoldsNothingUp)
{
    for (const bool clicked : {false, true}) {
        ProgramUnderTest program;
        const DWORD start = GetTickCount();
        ASSERT_TRUE(program.Start());
        const auto splash = [&] { return FindProgramWindow(program.Process().Id(), L"QuillboxSplash"); };
        const HWND box = program.WaitForBox(L"IMPORTANT! Please Read"), shown = splash();
        const bool inTime = GetTickCount() - start < 1000; // else it may have gone by itself
        if (inTime) {
            ASSERT_TRUE(shown) << "the box did not wait for it";
            for (HWND above = shown; above != box; above = GetWindow(above, GW_HWNDPREV))
                ASSERT_TRUE(above) << "it stands in front of the box";
            const RECT place = PlaceOf(shown), boxPlace = PlaceOf(box);
            RECT both = {};
            EXPECT_FALSE(IntersectRect(&both, &place, &boxPlace)) << "it could not be seen";
            if (clicked) SendMessageW(shown, WM_LBUTTONDOWN, MK_LBUTTON, 0);
            EXPECT_TRUE(IsWindow(shown) == FALSE || !clicked) << "a click ends it";
        }
        EXPECT_TRUE(Eventually([&] { return GetParent(program.Focus()) == box; }, kPatience))
            << "the keyboard";
        EXPECT_TRUE(Eventually([&] { return !splash(); }, kPatience));
        EXPECT_TRUE(clicked || GetTickCount() - start >= 1500);
        EXPECT_TRUE(IsWindow(box));
        EXPECT_TRUE(program.Close());
    }
}

} // namespace
