// DotDisplayTest.cpp: how a display writes, lays out, rolls and lights a message.
#include "controls/DotDisplay.h"
#include "tests/support/Case.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

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

TEST(DotDisplayTest, ALongMessageRollsToItsEndAndBack)
{
    // height, last line at the top, rests to read
    const std::tuple<int, int, int> cases[] = {{7, 3, 4}, {16, 2, 3}, {34, 0, 0}};
    for (const auto& [down, last, rests] : cases) {
        DotDisplay display;
        display.Resize(35, down);
        display.SetText(u"one\ntwo\nthree\nfour");
        for (int time = 0; time < 2; ++time) {
            int lowest = 0, rested = 0;
            for (int steps = 0; display.Delay() != 0 && steps < 100; ++steps) {
                rested += display.Delay() >= 1000;
                display.Step();
                lowest = std::max(lowest, display.TopLine());
            }
            EXPECT_TRUE(lowest == last && rested == rests) << down;
            EXPECT_TRUE(display.Delay() == 0 && display.TopLine() == 0) << down;
            display.Restart();
        }
        for (int i = 0; i < 12; ++i) display.Step();
        EXPECT_EQ(display.TopLine() > 0, last > 0) << down;
        display.SetText(u"a new one");
        EXPECT_EQ(display.TopLine(), 0) << down;
    }
}

// The sanitizers watch the ends of the picture.
TEST(DotGlowTest, LitDotsShineAndNothingIsWrittenBesideThePicture)
{
    DotDisplay display;
    display.Resize(5, 7);
    for (const std::u16string_view text : {u"", u"I"})
        for (const auto& [width, height] : {std::pair{40, 56}, {20, 30}, {1, 90}, {1, 1}}) {
            display.SetText(text);
            std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height));
            DotGlow(8).Render(display, width, height, width, pixels.data());
            const int brightest = *std::max_element(pixels.begin(), pixels.end());
            EXPECT_EQ(brightest >= DotGlow::kLit, !text.empty()) << width << " by " << height;
        }
}

} // namespace
