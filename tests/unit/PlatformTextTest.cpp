// PlatformTextTest.cpp: the code page and the locale that stand in for the system's where there is no
// Windows.
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"

#include <gtest/gtest.h>

// The table that Windows has; tests/windows/LocaleTest.cpp holds all of it against the system's. Bytes that
// stand for nothing are control characters.
TEST(CodePage1252, EveryByteIsACharacterOfItsOwnAndComesBack)
{
    CodePage1252 page;
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(page.ToAnsi(page.FromAnsi(all)), all);
    EXPECT_EQ(page.FromAnsi("A\x80\x81\x8A\x96\x9E\x9F\xA3\xE9"),
              u"A\u20AC\u0081\u0160\u2013\u017E\u0178\u00A3\u00E9");
}

// No best fit, as a rule of this program's own: it could make one text of two.
TEST(CodePage1252, WhatDoesNotFitIsAQuestionMarkForEachUnit)
{
    CodePage1252 page;
    EXPECT_EQ(page.ToAnsi(u"\u0141\u00F3d\u017A"), "?\xF3"
                                                   "d?");
    EXPECT_EQ(page.ToAnsi(u"\u0080\uFF21\u2212"), "???") << "the byte 80 is taken by the euro sign";
    EXPECT_EQ(page.ToAnsi(u"a\U0001F600b"), "a??b");
}

// As a user in Britain has it; tests/windows/LocaleTest.cpp finds all its names in Windows.
TEST(EnglishLocale, ADateIsShownDayFirstAndWithoutATimeAtMidnight)
{
    EnglishLocale locale;
    EXPECT_EQ(locale.DateText(39175 + 10.25 / 24), u"03/04/2007 10:15:00");
    EXPECT_EQ(locale.DateText(39175), u"03/04/2007");
    EXPECT_EQ(locale.DateText(2958466), u"") << "behind the last day";
    EXPECT_EQ(locale.MonthName(0, false) + locale.MonthName(13, true), u"");
}

TEST(EnglishLocale, ADateIsReadDayFirstOrYearFirstOrRefused)
{
    constexpr double kNothing = -1e9;
    const std::pair<const char16_t*, double> cases[] = {
        {u"03/04/2007 ", 39175},
        {u" 3/4/2007 10:15:30 ", 39175 + (10.25 * 3600 + 30) / 86400},
        {u"2007-04-03T10:15:00", 39175 + 10.25 / 24},
        {u"29/12/1899 06:00:00", -1.25},
        {u"01/01/0100", -657434},
        {u"", kNothing},
        {u"31/04/2007", kNothing},        // no such day
        {u"03/13/2007", kNothing},        // never month first
        {u"03/04/07", kNothing},          // which century?
        {u"01/01/0099", kNothing},        // before the first year
        {u"03/04/2007 24:00", kNothing},  // no such hour
        {u"03/04/2007 10", kNothing},     // a time has minutes
        {u"03/04/2007 10:15x", kNothing}, // something behind
        {u"99999999999999/04/2007", kNothing},
    };
    EnglishLocale locale;
    for (const auto& [text, want] : cases)
        EXPECT_NEAR(locale.ParseDateText(text).value_or(kNothing), want, 1e-9) << ToUtf8(text);
}
