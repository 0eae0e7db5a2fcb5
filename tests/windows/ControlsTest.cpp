// ControlsTest.cpp: the controls as windows: their texts, their notices and what they draw.
#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"
#include "demo/driver/ProgramDriver.h"

#include "ControlsBench.h"
#include "Picture.h"

namespace {

constexpr COLORREF kBlue = RGB(0, 0, 255), kWhite = RGB(255, 255, 255);

using ControlsTest = ControlsBench;

TEST_F(ControlsTest, ProgressBarDrawsItsShareAndIsItsText)
{
    SimpleProgress bar;
    bar.Create(parent, 1, {0, 0, 302, 62}); // 300 by 60 inside its edge
    EXPECT_EQ(TextOf(bar.Window()), L"50%");
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
    EXPECT_EQ(TextOf(bar.Window()), L"100%");
    bar.Properties().SetFillColour(RGB(0, 128, 0));
    EXPECT_EQ(Picture(bar.Window()).At(284, 16), RGB(0, 128, 0));
    bar.Properties().SetPercentage(-5);
    EXPECT_EQ(Picture(bar.Window()).At(15, 16), kWhite);
}

TEST_F(ControlsTest, DisplayShowsOneTextInPlaceOfTheLast)
{
    OrbVacuum display;
    display.Create(parent, 1, {0, 0, 300, 30});
    const Picture dark(display.Window());
    display.ShowText(L"R&D: first");
    const Picture first(display.Window());
    EXPECT_FALSE(first == dark);
    display.ShowText(L"WWWW");
    EXPECT_EQ(TextOf(display.Window()), L"WWWW");
    const Picture second(display.Window());
    EXPECT_FALSE(second == dark || second == first);
    SetWindowTextW(display.Window(), L"R&D: first"); // as any program may
    EXPECT_TRUE(Picture(display.Window()) == first);
    display.ShowText(L"");
    EXPECT_TRUE(Picture(display.Window()) == dark);
}

TEST_F(ControlsTest, LabelKeepsToItsGroundAndShowsItsText)
{
    OrbLabel label;
    label.Create(parent, 8, L"R&D", {0, 30, 90, 45});
    EXPECT_TRUE(GetWindowLongW(label.Window(), GWL_STYLE) & SS_NOPREFIX) << "folder names may hold an &";
    const Picture first(label.Window());
    EXPECT_TRUE(first.Has(LightPalette().page));
    label.SetCaption(L"A & B");
    EXPECT_EQ(TextOf(label.Window()), L"A & B");
    EXPECT_FALSE(Picture(label.Window()) == first);
    label.SetCaption(L"");
    const Picture empty(label.Window());
    for (int x = 0; x < empty.Width(); ++x) EXPECT_EQ(empty.At(x, 7), LightPalette().page);
    SendMessageW(label.Window(), WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
    EXPECT_EQ(otherNotices, 1) << "STN_DBLCLK";
}

} // namespace
