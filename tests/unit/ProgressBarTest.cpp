// ProgressBarTest.cpp: what a progress bar holds, and the rectangles that it fills.
#include "controls/SimpleProgressModel.h"

#include <gtest/gtest.h>

namespace {

class ProgressBarTest : public testing::Test {
protected:
    int redraws = 0;
    SimpleProgressModel bar{[this] { ++redraws; }};
};

TEST_F(ProgressBarTest, FreshlyPlacedIsHalfBlueOnWhite)
{
    EXPECT_EQ(bar.Caption(), "50%");
    EXPECT_EQ(bar.FillColour(), 0xFF0000u);
    EXPECT_EQ(bar.BackColour(), 0xFFFFFFu);
    EXPECT_EQ(bar.BorderWidth(), 15);
    EXPECT_FALSE(bar.IsChanged());
}

TEST_F(ProgressBarTest, PercentageIsClamped)
{
    const struct {
        int set, held;
        const char* caption;
    } cases[] = {
        {150, 100, "100%"}, {-5, 0, "0%"}, {100000, 100, "100%"}, {-70000, 0, "0%"}, {37, 37, "37%"}};
    for (const auto& c : cases) {
        bar.SetPercentage(c.set);
        EXPECT_EQ(bar.Percentage(), c.held);
        EXPECT_EQ(bar.Caption(), c.caption);
    }
}

TEST_F(ProgressBarTest, EverySetRedrawsAndMarksTheChange)
{
    bar.SetPercentage(50); // even to the value it has
    EXPECT_EQ(redraws, 1);
    EXPECT_TRUE(bar.IsChanged());
    bar.SetFillColour(1);
    bar.SetBackColour(2);
    bar.SetBorderWidth(3);
    EXPECT_EQ(redraws, 4);
}

TEST_F(ProgressBarTest, BagHoldsFourKeysAndDefaultsStandForMissingOnes)
{
    bar.SetPercentage(20);
    bar.SetFillColour(0x102030);
    bar.SetBackColour(0x00FFFF);
    bar.SetBorderWidth(-2);
    PropertyBag bag;
    bar.Save(bag);
    EXPECT_FALSE(bar.IsChanged());
    EXPECT_EQ(
        bag,
        (PropertyBag{
            {"Percentage", 20}, {"FillColour", 0x102030}, {"BackColour", 0x00FFFF}, {"BorderWidth", -2}}));

    SimpleProgressModel other{[] {}};
    other.Load(bag);
    EXPECT_EQ(other.Caption(), "20%");
    EXPECT_EQ(other.FillColour(), 0x102030u);
    EXPECT_EQ(other.BackColour(), 0x00FFFFu);
    EXPECT_EQ(other.BorderWidth(), -2);

    redraws = 0;
    bar.Load({{"Percentage", 150}});
    EXPECT_EQ(redraws, 1);
    EXPECT_EQ(bar.Percentage(), 100);
    EXPECT_EQ(bar.BorderWidth(), 15);
}

TEST_F(ProgressBarTest, FillFollowsSizeMarginAndPercentage)
{
    const struct {
        const char* why;
        int percentage, border, width, height;
        BarRectangle filled;
    } cases[] = {
        {"half of 270", 50, 15, 300, 60, {15, 15, 150, 45}},
        {"full", 100, 15, 300, 60, {15, 15, 285, 45}},
        {"nothing", 0, 15, 300, 60, {}},
        {"12.5 rounds to even", 50, 0, 25, 10, {0, 0, 12, 10}},
        {"13.5 rounds to even", 50, 0, 27, 10, {0, 0, 14, 10}},
        {"margins meet across", 50, 15, 29, 60, {}},
        {"margins meet down", 50, 15, 300, 30, {}},
    };
    for (const auto& c : cases) {
        bar.SetPercentage(c.percentage);
        bar.SetBorderWidth(static_cast<std::int16_t>(c.border));
        const BarRectangle got = bar.Fill(c.width, c.height);
        EXPECT_TRUE(got.left == c.filled.left && got.top == c.filled.top && got.right == c.filled.right &&
                    got.bottom == c.filled.bottom)
            << c.why << ": " << got.left << "," << got.top << "," << got.right << "," << got.bottom;
    }
    bar.SetBorderWidth(15);
    EXPECT_EQ(bar.InnerWidth(29), -1);
}

TEST_F(ProgressBarTest, TextIsCentredEvenWhereItIsWider)
{
    EXPECT_EQ(CentredAt(100, 40), 30);
    EXPECT_EQ(CentredAt(20, 30), -5);
}

} // namespace
