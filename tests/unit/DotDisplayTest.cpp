// DotDisplayTest.cpp: the dot font, and how a display lays out, rolls and lights a message.
#include "controls/DotDisplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

using Picture = std::vector<std::string>;

Picture Dots(const Glyph& glyph)
{
    Picture rows;
    for (const std::uint8_t row : glyph) {
        rows.emplace_back();
        for (int x = kGlyphWidth - 1; x >= 0; --x) rows.back() += row >> x & 1 ? '#' : '.';
    }
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

TEST(DotFontTest, MarksStandOnTheirLetters)
{
    const struct {
        char16_t character;
        Picture dots;
    } cases[] = {
        {u'A', {".###.", "#...#", "#...#", "#####", "#...#", "#...#", "#...#"}},
        {u'\u00C4', {".#.#.", ".....", ".###.", "#...#", "#####", "#...#", "#...#"}}, // squeezed below it
        {u'\u00E9', {"...#.", "..#..", ".###.", "#...#", "#####", "#....", ".###."}},
        {u'\u00EE', {"..#..", ".#.#.", ".##..", "..#..", "..#..", "..#..", ".###."}}, // in the dot's place
        {u'\u00E7', {".####", "#....", "#....", "#....", ".####", "..#..", ".##.."}},
        {u'\u0141', {"#....", "#....", "#....", "###..", "#....", "#....", "#####"}},
    };
    for (const auto& c : cases) EXPECT_EQ(Dots(GlyphOf(c.character)), c.dots) << int{c.character};
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
    const struct {
        const char* why;
        const char16_t* text;
        Lines lines;
    } cases[] = {
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
        display.SetText(c.text);
        EXPECT_EQ(display.Lines(), c.lines) << c.why;
    }
    display.Resize(1, 1);
    display.SetText(u"ab");
    EXPECT_EQ(display.Lines(), (Lines{u"a", u"b"})) << "room for one, however small";
}

TEST(DotDisplayTest, LightsTheDotsOfItsCharacters)
{
    DotDisplay display;
    display.Resize(13, 9); // two characters and a spare dot, a line and two
    display.SetText(u"IT");
    const Picture expected = {".............", "..###..#####.", "...#.....#...",
                              "...#.....#...", "...#.....#...", "...#.....#...",
                              "...#.....#...", "..###....#...", "............."};
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 13; ++x)
            EXPECT_EQ(display.IsLit(x, y),
                      expected[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#')
                << x << "," << y;
    EXPECT_FALSE(display.IsLit(-1, 0) || display.IsLit(0, 9) || display.IsLit(13, 0));
}

std::vector<bool> AllDots(const DotDisplay& display)
{
    std::vector<bool> dots;
    for (int y = 0; y < display.Down(); ++y)
        for (int x = 0; x < display.Across(); ++x) dots.push_back(display.IsLit(x, y));
    return dots;
}

TEST(DotDisplayTest, LongMessageRollsToItsEndAndBack)
{
    const struct {
        const char* why;
        int down;
        std::vector<std::u16string> shown; // pages between which it rolls
    } cases[] = {
        {"one line high", 7, {u"one", u"two", u"three", u"four"}},
        {"two lines high", 16, {u"one\ntwo", u"two\nthree", u"three\nfour"}},
        {"all fit", 34, {u"one\ntwo\nthree\nfour"}},
    };
    for (const auto& c : cases) {
        DotDisplay display;
        display.Resize(35, c.down);
        display.SetText(u"one\ntwo\nthree\nfour");
        std::size_t page = 0;
        for (int steps = 0; steps < 100; ++steps) {
            if (display.Delay() == 0 || display.Delay() >= 1000) { // time to read
                DotDisplay still;
                still.Resize(35, c.down);
                still.SetText(c.shown[page % c.shown.size()]);
                EXPECT_EQ(AllDots(display), AllDots(still)) << c.why << ", page " << page;
                ++page;
            }
            if (display.Delay() == 0) break;
            display.Step();
        }
        EXPECT_EQ(display.Delay(), 0) << c.why;
        // Every page once, and the first again, at which it stays.
        EXPECT_EQ(page, c.shown.size() == 1 ? 1 : c.shown.size() + 1) << c.why;
        const std::vector<bool> rest = AllDots(display);
        display.Step();
        EXPECT_EQ(AllDots(display), rest) << c.why;
    }
}

TEST(DotDisplayTest, NewMessageAndRestartBeginAtTheTop)
{
    DotDisplay display;
    display.Resize(35, 7);
    display.SetText(u"one two three");
    for (int i = 0; i < 12; ++i) display.Step();
    EXPECT_GT(display.TopLine(), 0);
    display.Restart();
    EXPECT_EQ(display.TopLine(), 0);
    EXPECT_GT(display.Delay(), 0);
    for (int i = 0; i < 12; ++i) display.Step();
    display.SetText(u"four five six");
    EXPECT_EQ(display.TopLine(), 0);
}

TEST(DotGlowTest, LitDotsShineUnlitOnesShow)
{
    DotDisplay display;
    display.Resize(5, 7);
    display.SetText(u"I");
    constexpr int kWidth = 40, kHeight = 56, kStride = 44, kPitch = 8;
    std::vector<std::uint8_t> pixels(kStride * kHeight, 77);
    DotGlow(kPitch).Render(display, kWidth, kHeight, kStride, pixels.data());
    const auto at = [&](int x, int y) { return pixels[static_cast<std::size_t>(y * kStride + x)]; };
    const int lit = at(2 * kPitch + 4, 3 * kPitch + 4), unlit = at(4, 3 * kPitch + 4);
    EXPECT_GE(lit, DotGlow::kLit);
    EXPECT_LT(unlit, DotGlow::kLit);
    EXPECT_GT(unlit, at(7, 3 * kPitch + 7)) << "an unlit dot against the gap beside it";
    EXPECT_GT(at(2 * kPitch + 7, 3 * kPitch + 4), at(7, 3 * kPitch + 4)) << "a halo beside a lit dot";
    EXPECT_LT(at(2 * kPitch + 7, 3 * kPitch + 4), DotGlow::kLit);
}

TEST(DotGlowTest, AnySizeIsDrawnInside)
{
    DotDisplay display;
    display.SetText(u"##");
    for (int pitch = 1; pitch < 9; ++pitch) {
        for (const auto& [width, height] : {std::pair(1, 1), {30, 3}, {3, 30}, {97, 61}}) {
            display.Resize(width / pitch, height / pitch);
            std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height));
            DotGlow(pitch).Render(display, width, height, width, pixels.data()); // under AddressSanitizer
            EXPECT_GT(*std::max_element(pixels.begin(), pixels.end()), 0);
        }
    }
}

TEST(DotGlowTest, PitchFollowsTheRoom)
{
    const struct {
        int width, height, atMost, pitch;
    } cases[] = {
        {618, 28, 4, 3},  // one line
        {618, 60, 4, 3},  // two: a line still has room for 32 characters
        {1236, 56, 8, 6}, // twice as fine a screen
        {1580, 60, 4, 4}, {618, 28, 2, 2}, {100, 30, 4, 2}, {100, 5, 4, 1}, {0, 0, 4, 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(BestPitch(c.width, c.height, c.atMost), c.pitch) << c.width << " by " << c.height;
}

} // namespace
