// TextTest.cpp: the text helpers, by tables of input and expected output.
#include "text/Text.h"
#include "tests/support/Case.h"

#include <gtest/gtest.h>

TEST(Text, CollapseSpacesKeepsItsLoss)
{
    const Case<Text> cases[] = {
        {"a single character behind the last run is lost", u"a  b", u"a "},
        {"a run at the end becomes one space", u"ab   ", u"ab "},
        {"only the last run loses", u"a  b  cd", u"a b cd"},
        {"a single spaced character behind the last run is two characters", u"a  b c", u"a b c"},
        {"a leading run", u"   xy", u" xy"},
    };
    for (const auto& c : cases) EXPECT_EQ(CollapseSpaces(c.given), c.want) << c.why;
}

TEST(Text, FieldsAreCountedFromOneAndMayBeEmpty)
{
    const std::tuple<const char*, Text, Text, std::size_t, Text, std::size_t> cases[] = {
        {"the whole text is field 1", u"abc", u",", 1, u"abc", 0},
        {"there is no field 2", u"abc", u",", 2, u"", 0},
        {"empty fields count", u"a,,c", u",", 3, u"c", 2},
        {"the last field may be empty", u"a,", u",", 2, u"", 1},
        {"occurrences do not overlap", u"aaa", u"aa", 2, u"a", 1},
        {"case counts", u"axbXc", u"X", 2, u"c", 1},
    };
    for (const auto& [why, text, delimiter, index, want, count] : cases) {
        EXPECT_EQ(FieldOf(text, delimiter, index), want) << why;
        EXPECT_EQ(CountOf(text, delimiter), count) << why;
    }
}

TEST(Text, Utf8GoesBothWaysAndBadBytesAreReplaced)
{
    const Case<std::string, Text> cases[] = {
        {"two, three and four bytes", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xA7", u"\u00E9\u20AC\U0001F4E7"},
        {"a NUL is a character", std::string("a\0b", 3), Text(u"a\0b", 3)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FromUtf8(c.given), c.want) << c.why;
        EXPECT_EQ(ToUtf8(c.want), c.given) << c.why;
    }
    const Case<std::string, Text> bad[] = {
        {"each maximal bad part is one replacement", "\xF0\x9F\x93z", u"\uFFFDz"},
        {"overlong: every byte", "\xC0\xAF", u"\uFFFD\uFFFD"},
        {"encoded surrogate: every byte", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"cut at the end", "x\xE2\x82", u"x\uFFFD"},
    };
    for (const auto& c : bad) EXPECT_EQ(FromUtf8(c.given), c.want) << c.why;
    EXPECT_EQ(ToUtf8(Text{u'a', char16_t(0xD83D)}), "a\xEF\xBF\xBD") << "a lone surrogate";
}

TEST(Text, LetterCaseIsIgnoredInEveryAnsiScript)
{
    const std::pair<Text, Text> pairs[] = {
        {u"Inbox", u"iNBOX"},
        {u"\u00C9t\u00E9", u"\u00E9T\u00C9"},
        {u"\u0141\u00F3d\u017A", u"\u0142\u00D3D\u0179"},
        {u"\u039F\u03B4\u03CC\u03C2", u"\u03BF\u0394\u038C\u03C2"},
        {u"\u0416\u0451", u"\u0436\u0401"},
        {u"\u0178", u"\u00FF"},
        {u"\u0139\u0147", u"\u013A\u0148"},
    };
    for (const auto& [a, b] : pairs) EXPECT_TRUE(EqualNoCase(a, b)) << ToUtf8(a);
    EXPECT_FALSE(EqualNoCase(u"\u00D7", u"\u00F7")) << "the times sign is no capital of the division sign";
    EXPECT_EQ(FindNoCase(u"Re: INBOX - Mail", u"inbox"), 4u);
    EXPECT_EQ(FindNoCase(u"abc", u"abcd"), Text::npos);
    EXPECT_EQ(FindNoCase(u"abc", u"", 3), 3u);
}
