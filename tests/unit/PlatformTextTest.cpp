#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(CodePage1252, HoldsThePublishedCharacters)
{
    CodePage1252 page;
    const struct {
        unsigned char byte;
        char16_t unit;
    } cases[] = {
        {0x00, 0x0000},
        {0x0D, 0x000D},
        {0x3F, u'?'},
        {0x41, u'A'},
        {0x7F, 0x007F},
        {0x80, 0x20AC},
        {0x82, 0x201A},
        {0x83, 0x0192},
        {0x88, 0x02C6},
        {0x8A, 0x0160},
        {0x8C, 0x0152},
        {0x8E, 0x017D},
        {0x91, 0x2018},
        {0x92, 0x2019},
        {0x93, 0x201C},
        {0x94, 0x201D},
        {0x95, 0x2022},
        {0x96, 0x2013},
        {0x97, 0x2014},
        {0x98, 0x02DC},
        {0x99, 0x2122},
        {0x9A, 0x0161},
        {0x9C, 0x0153},
        {0x9E, 0x017E},
        {0x9F, 0x0178},
        {0xA0, 0x00A0},
        {0xA3, 0x00A3},
        {0xE9, 0x00E9},
        {0xFF, 0x00FF},
        // Left undefined by the published table, control characters in Windows.
        {0x81, 0x0081},
        {0x8D, 0x008D},
        {0x8F, 0x008F},
        {0x90, 0x0090},
        {0x9D, 0x009D},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(page.FromAnsi(std::string(1, static_cast<char>(c.byte))), Text(1, c.unit)) << int(c.byte);
        EXPECT_EQ(page.ToAnsi(Text(1, c.unit)), std::string(1, static_cast<char>(c.byte))) << int(c.byte);
    }
}

TEST(CodePage1252, EveryByteComesBack)
{
    CodePage1252 page;
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(page.ToAnsi(page.FromAnsi(all)), all);
}

TEST(CodePage1252, WhatDoesNotFitIsAQuestionMarkForEachUnit)
{
    CodePage1252 page;
    EXPECT_EQ(page.ToAnsi(u"\u0141\u00F3d\u017A"), "?\xF3"
                                                   "d?"); // no best fit: L with stroke is not "L"
    EXPECT_EQ(page.ToAnsi(u"\u0080\uFF21\u2212"), "???"); // the byte 80 is taken by the euro sign
    EXPECT_EQ(page.ToAnsi(u"a\U0001F600b"), "a??b");
}

TEST(EnglishLocale, Names)
{
    EnglishLocale locale;
    EXPECT_EQ(locale.MonthName(1, false), u"January");
    EXPECT_EQ(locale.MonthName(9, true), u"Sep");
    EXPECT_EQ(locale.MonthName(12, false), u"December");
    EXPECT_EQ(locale.MonthName(0, false) + locale.MonthName(13, true), u"");
    EXPECT_EQ(locale.ShortWeekdayName(0), u"Sun");
    EXPECT_EQ(locale.ShortWeekdayName(6), u"Sat");
    EXPECT_EQ(locale.ShortWeekdayName(-1) + locale.ShortWeekdayName(7), u"");
}

TEST(EnglishLocale, DateText)
{
    const struct {
        const char* why;
        double date;
        const char16_t* want;
    } cases[] = {
        {"morning", 39175 + 10.25 / 24, u"03/04/2007 10:15:00"},
        {"midnight has no time", 39175, u"03/04/2007"},
        {"1 January 1900", 2, u"01/01/1900"},
        {"half a second before midnight is the next day", 39175 + 1 - 0.4 / 86400, u"04/04/2007"},
        {"a moment more than a second before is not", 39175 + 1 - 1.1 / 86400, u"03/04/2007 23:59:59"},
        {"the fraction counts forward before day zero", -1.25, u"29/12/1899 06:00:00"},
        {"a leap day", 36585, u"29/02/2000"},
        {"first day", -657434, u"01/01/0100"},
        {"last second", 2958465 + 86399.0 / 86400, u"31/12/9999 23:59:59"},
        {"behind the last day", 2958466, u""},
        {"rounded behind the last day", 2958465 + 1 - 0.1 / 86400, u""},
        {"before the first day", -657435, u""},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), u""},
        {"endless", std::numeric_limits<double>::infinity(), u""},
    };
    EnglishLocale locale;
    for (const auto& c : cases) EXPECT_EQ(locale.DateText(c.date), c.want) << c.why;
}

TEST(EnglishLocale, ParseDateText)
{
    constexpr double kNothing = -1e9;
    const struct {
        const char16_t* text;
        double want;
    } cases[] = {
        {u"03/04/2007", 39175},
        {u"03/04/2007 10:15", 39175 + 10.25 / 24},
        {u" 3/4/2007 10:15:30 ", 39175 + (10.25 * 3600 + 30) / 86400},
        {u"2007-04-03", 39175},
        {u"2007-04-03 10:15", 39175 + 10.25 / 24},
        {u"2007-04-03T10:15:00", 39175 + 10.25 / 24},
        {u"29/12/1899 06:00:00", -1.25},
        {u"01/01/0100", -657434},
        {u"", kNothing},
        {u"hello", kNothing},
        {u"31/04/2007", kNothing},        // no such day
        {u"29/02/2007", kNothing},        // no leap year
        {u"03/13/2007", kNothing},        // never month first
        {u"03/04/07", kNothing},          // which century?
        {u"01/01/0099", kNothing},        // before the first year
        {u"03/04/2007 24:00", kNothing},  // no such hour
        {u"03/04/2007 10", kNothing},     // a time has minutes
        {u"03/04/2007 10:15x", kNothing}, // something behind
        {u"03/04/2007 ", 39175},
        {u"99999999999999/04/2007", kNothing},
    };
    EnglishLocale locale;
    for (const auto& c : cases)
        EXPECT_NEAR(locale.ParseDateText(c.text).value_or(kNothing), c.want, 1e-9) << ToUtf8(c.text);
}
