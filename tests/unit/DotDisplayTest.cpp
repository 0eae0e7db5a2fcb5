// DotDisplayTest.cpp: the dot font, and how a display lays out, rolls and lights a message.
#include "controls/DotDisplay.h"
#include "tests/support/Case.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

using Picture = std::vector<std::string>;

Picture Dots(const DotDisplay& display)
{
    Picture rows(static_cast<std::size_t>(display.Down()));
    for (int y = 0; y < display.Down(); ++y)
        for (int x = 0; x < display.Across(); ++x)
            rows[static_cast<std::size_t>(y)] += display.IsLit(x, y) ? '#' : '.';
    return rows;
}

TEST(DotFontTest, EveryCharacterHasDotsOfItsOwn)
{
    std::set<Glyph> seen;
    const auto see = [&seen](char16_t character) {
        const Glyph glyph = GlyphOf(character);
        EXPECT_TRUE(seen.insert(glyph).second) << "looks like another: " << int{character};
        EXPECT_EQ(glyph == Glyph{}, character == u' ') << int{character};
        for (const std::uint8_t row : glyph) EXPECT_LT(row, 32) << int{character};
    };
    for (char16_t character = u' '; character <= u'~'; ++character) see(character);
    for (char16_t character = u'\u00C0'; character <= u'\u00FF'; ++character) see(character);
    for (const char16_t character : u"\u0104\u0119\u0141\u0142\u0151\u0159\u0161\u017E\u20AC\u00A3\u25A1")
        if (character) see(character);
}

TEST(DotFontTest, MarksStandOnTheirLettersAndTextsInTheMiddle)
{
    const std::tuple<const char16_t*, int, Picture> cases[] = {
        {u"A", 5, {".###.", "#...#", "#...#", "#####", "#...#", "#...#", "#...#"}},
        {u"\u00C4", 5, {".#.#.", ".....", ".###.", "#...#", "#####", "#...#", "#...#"}}, // squeezed below it
        {u"\u00EE", 5, {"..#..", ".#.#.", ".##..", "..#..", "..#..", "..#..", ".###."}}, // in the dot's place
        {u"\u00E7", 5, {".####", "#....", "#....", "#....", ".####", "..#..", ".##.."}},
        {u"\u0141", 5, {"#....", "#....", "#....", "###..", "#....", "#....", "#####"}},
        {u"IT",
         13, // two characters and a spare dot, a line and two
         {".............", "..###..#####.", "...#.....#...", "...#.....#...", "...#.....#...",
          "...#.....#...", "...#.....#...", "..###....#...", "............."}},
    };
    for (const auto& [text, across, dots] : cases) {
        DotDisplay display;
        display.Resize(across, static_cast<int>(dots.size()));
        display.SetText(text);
        EXPECT_EQ(Dots(display), dots) << dots[0];
        EXPECT_FALSE(display.IsLit(-1, 0) || display.IsLit(0, display.Down()) || display.IsLit(across, 0));
    }
}

TEST(DotFontTest, WhatItLacksIsABoxOrWrittenOtherwise)
{
    for (const char16_t character : {u'\u0416', u'\u4E2D', u'\uFFFD', u'\xD83D'})
        EXPECT_EQ(GlyphOf(character), GlyphOf(u'\u25A1')) << int{character};
    EXPECT_EQ(GlyphOf(u'\x01'), Glyph{});
    EXPECT_EQ(Displayable(u"\u201CR\u00E9sum\u00E9\u201D \u2013 50\u2030\u2026"),
              u"\"R\u00E9sum\u00E9\" - 50%o...");
    EXPECT_EQ(Displayable(u"a\U0001F600\U0001F601b"), u"a\u25A1\u25A1b") << "a pair is one character";
}

TEST(DotDisplayTest, LinesBreakWhereItReadsWell)
{
    using Lines = std::vector<std::u16string>;
    const Case<const char16_t*, Lines> cases[] = {
        {"nothing", u"", {}},
        {"fits exactly", u"abcdefghij", {u"abcdefghij"}},
        {"at blanks, which go", u"Could not  find it", {u"Could not", u"find it"}},
        {"a blank just behind the line", u"abcdefghij k", {u"abcdefghij", u"k"}},
        {"a word too long", u"abcdefghijklm", {u"abcdefghij", u"klm"}},
        {"a path", u"Local\\Inbox\\Work", {u"Local\\", u"Inbox\\Work"}},
        {"line ends", u"one\r\ntwo\nthree", {u"one", u"two", u"three"}},
        {"a blank in front of a long word", u" abcdefghijk", {u" abcdefghi", u"jk"}},
        {"nothing but blanks", u"            ", {u""}},
    };
    DotDisplay display;
    display.Resize(59, 7); // ten characters with gaps between
    for (const auto& c : cases) {
        display.SetText(c.given);
        EXPECT_EQ(display.Lines(), c.want) << c.why;
    }
    display.Resize(1, 1);
    display.SetText(u"ab");
    EXPECT_EQ(display.Lines(), (Lines{u"a", u"b"})) << "room for one, however small";
}

TEST(DotDisplayTest, LongMessageRollsToItsEndAndBack)
{
    // shown: pages between which it rolls
    const std::tuple<const char*, int, std::vector<std::u16string>> cases[] = {
        {"one line high", 7, {u"one", u"two", u"three", u"four"}},
        {"two lines high", 16, {u"one\ntwo", u"two\nthree", u"three\nfour"}},
        {"all fit", 34, {u"one\ntwo\nthree\nfour"}},
    };
    for (const auto& [why, down, shown] : cases) {
        DotDisplay display, still;
        for (DotDisplay* each : {&display, &still}) each->Resize(35, down);
        display.SetText(u"one\ntwo\nthree\nfour");
        std::size_t page = 0;
        for (int steps = 0; steps < 100; ++steps) {
            if (display.Delay() == 0 || display.Delay() >= 1000) { // time to read
                still.SetText(shown[page % shown.size()]);
                EXPECT_EQ(Dots(display), Dots(still)) << why << ", page " << page;
                ++page;
            }
            if (display.Delay() == 0) break;
            display.Step();
        }
        EXPECT_EQ(display.Delay(), 0) << why;
        // Every page once, and the first again, at which it stays.
        EXPECT_EQ(page, shown.size() == 1 ? 1 : shown.size() + 1) << why;
        display.Step();
        EXPECT_EQ(Dots(display), Dots(still)) << why;
        display.Restart();
        EXPECT_EQ(display.Delay() > 0, shown.size() > 1) << why;
        for (int i = 0; i < 12; ++i) display.Step();
        EXPECT_EQ(display.TopLine() > 0, shown.size() > 1) << why;
        display.SetText(u"a new one");
        EXPECT_EQ(display.TopLine(), 0) << why;
    }
}

TEST(DotGlowTest, LitDotsShineUnlitOnesShow)
{
    DotDisplay display;
    display.Resize(5, 7);
    display.SetText(u"I"); // lit in the third column
    constexpr int kWidth = 40, kHeight = 56, kStride = 44, kPitch = 8;
    std::vector<std::uint8_t> pixels(kStride * kHeight, 77);
    DotGlow(kPitch).Render(display, kWidth, kHeight, kStride, pixels.data());
    const auto at = [&](int x, int y) { return pixels[static_cast<std::size_t>((24 + y) * kStride + x)]; };
    const int lit = at(20, 4), halo = at(23, 4), unlit = at(4, 4), gap = at(7, 4), far = at(7, 7);
    EXPECT_GE(lit, DotGlow::kLit);
    EXPECT_TRUE(far < unlit && unlit < DotGlow::kLit) << unlit;
    EXPECT_TRUE(gap < halo && halo < DotGlow::kLit) << halo;
}

TEST(DotGlowTest, PitchFollowsTheRoom)
{
    const std::tuple<int, int, int, int> cases[] = {
        {618, 28, 4, 3},  // one line
        {618, 60, 4, 3},  // two: a line still has room for 32 characters
        {1236, 56, 8, 6}, // twice as fine a screen
        {1580, 60, 4, 4}, {618, 28, 2, 2}, {100, 30, 4, 2}, {100, 5, 4, 1}, {0, 0, 4, 1},
    };
    for (const auto& [width, height, atMost, pitch] : cases)
        EXPECT_EQ(BestPitch(width, height, atMost), pitch) << width << " by " << height;
}

} // namespace
