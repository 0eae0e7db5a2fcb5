// ProgressBarTest.cpp: what a progress bar holds, and the rectangles that it fills.
#include "controls/SimpleProgressModel.h"

#include <gtest/gtest.h>

namespace {

TEST(ProgressBarTest, BagHoldsFourKeysAndDefaultsStandForMissingOnes)
{
    int redraws = 0;
    SimpleProgressModel bar{[&redraws] { ++redraws; }};
    bar.SetBorderWidth(-2);
    PropertyBag bag;
    bar.Save(bag);
    EXPECT_EQ(
        bag,
        (PropertyBag{
            {"Percentage", 50}, {"FillColour", 0xFF0000}, {"BackColour", 0xFFFFFF}, {"BorderWidth", -2}}));
    bar.Load({{"Percentage", 150}});
    EXPECT_EQ(bar.Caption(), "100%");
    EXPECT_EQ(bar.BorderWidth(), 15);
    EXPECT_EQ(redraws, 2) << "every change shows";
}

TEST(ProgressBarTest, FillFollowsSizeMarginAndPercentage)
{
    const struct {
        const char* why;
        int percentage, border, width, height;
        const char* caption;
        BarRectangle filled;
    } cases[] = {
        {"half of 270", 50, 15, 300, 60, "50%", {15, 15, 150, 45}},
        {"more than all", 100'000, 15, 300, 60, "100%", {15, 15, 285, 45}},
        {"less than nothing", -70'000, 15, 300, 60, "0%", {}},
        {"12.5 rounds to even", 50, 0, 25, 10, "50%", {0, 0, 12, 10}},
        {"13.5 rounds to even", 50, 0, 27, 10, "50%", {0, 0, 14, 10}},
        {"margins meet across", 50, 15, 29, 60, "50%", {}},
        {"margins meet down", 50, 15, 300, 30, "50%", {}},
    };
    SimpleProgressModel bar{[] {}};
    for (const auto& c : cases) {
        bar.SetPercentage(c.percentage);
        bar.SetBorderWidth(static_cast<std::int16_t>(c.border));
        const BarRectangle got = bar.Fill(c.width, c.height);
        EXPECT_TRUE(got.left == c.filled.left && got.top == c.filled.top && got.right == c.filled.right &&
                    got.bottom == c.filled.bottom)
            << c.why << ": " << got.left << "," << got.top << "," << got.right << "," << got.bottom;
        EXPECT_EQ(bar.Caption(), c.caption) << c.why;
    }
    EXPECT_EQ(CentredAt(20, 30), -5) << "a text that is wider is centred too";
}

} // namespace
