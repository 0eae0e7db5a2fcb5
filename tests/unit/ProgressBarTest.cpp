// ProgressBarTest.cpp: what a progress bar holds, and the rectangles that it fills.
#include "controls/SimpleProgressModel.h"

#include <gtest/gtest.h>

namespace {

// Every set, to the value that it has too, redraws and marks the change.
TEST(ProgressBarTest, BagHoldsFourKeysAndDefaultsStandForMissingOnes)
{
    int redraws = 0;
    SimpleProgressModel bar{[&redraws] { ++redraws; }};
    EXPECT_FALSE(bar.IsChanged());
    PropertyBag bag;
    bar.Save(bag);
    EXPECT_EQ(
        bag,
        (PropertyBag{
            {"Percentage", 50}, {"FillColour", 0xFF0000}, {"BackColour", 0xFFFFFF}, {"BorderWidth", 15}}));
    bar.SetPercentage(50);
    EXPECT_EQ(redraws, 1);
    EXPECT_TRUE(bar.IsChanged());
    bar.SetFillColour(0x102030);
    bar.SetBackColour(0x00FFFF);
    bar.SetBorderWidth(-2);
    EXPECT_EQ(redraws, 4);
    bag.clear();
    bar.Save(bag);
    EXPECT_FALSE(bar.IsChanged());

    SimpleProgressModel other{[] {}};
    other.Load(bag);
    PropertyBag again;
    other.Save(again);
    EXPECT_EQ(
        again,
        (PropertyBag{
            {"Percentage", 50}, {"FillColour", 0x102030}, {"BackColour", 0x00FFFF}, {"BorderWidth", -2}}));
    bar.Load({{"Percentage", 150}});
    EXPECT_EQ(redraws, 5);
    EXPECT_EQ(bar.Caption(), "100%");
    EXPECT_EQ(bar.BorderWidth(), 15);
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
