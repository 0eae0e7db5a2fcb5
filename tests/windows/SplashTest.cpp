// SplashTest.cpp: the splash window shows itself beside the first box, and goes.
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

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
    EXPECT_TRUE(Eventually([&] { return !splash(); }, kPatience));
    EXPECT_GE(GetTickCount() - start, 1500u);
    EXPECT_TRUE(IsWindow(box));
    EXPECT_TRUE(program.Close());
}

} // namespace
