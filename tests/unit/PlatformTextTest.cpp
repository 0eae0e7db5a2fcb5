// PlatformTextTest.cpp: the locale that stands in for the system's where there is no Windows. The code page
// that does is held against Windows' own in tests/windows/LocaleTest.cpp.
#include "platform/posix/EnglishLocale.h"

#include <gtest/gtest.h>

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
