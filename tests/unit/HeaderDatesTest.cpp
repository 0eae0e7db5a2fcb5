// HeaderDatesTest.cpp: dates of headers and list cells.
#include "mail/HeaderDates.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/support/Case.h"
#include "tests/support/FixedClock.h"
#include "text/Numbers.h"

#include <gtest/gtest.h>

namespace {

// The text that ParseHeaderDate leaves, or the fault's words.
std::string Parsed(Text text)
{
    EnglishLocale locale;
    try {
        const double date = ParseHeaderDate(text, locale);
        EXPECT_TRUE(text.empty() || text == FormatDate(date, kSortableFormat));
    } catch (const ValueFault& fault) {
        return fault.what();
    }
    return ToUtf8(text);
}

using DateCase = Case<Text, const char*>;

struct GermanLocale final : Locale {
    Text MonthName(int month, bool abbreviated) override
    {
        return month == 3 && !abbreviated ? u"M\u00E4rz" : u"-";
    }
    Text ShortWeekdayName(int weekday) override { return weekday == 2 ? u"Di" : u"-"; }
    Text DateText(double) override { return {}; }
    std::optional<double> ParseDateText(const Text&) override { return std::nullopt; }
};

} // namespace

// RFC 5322, section 3.3, and what mail of the time before it holds. Kept: where a shape is read in a way that
// its sender did not mean, it is by a rule of this program's own.
TEST(HeaderDates, EveryShapeIsReadAndLeftInSortableForm)
{
    const DateCase cases[] = {
        {"the usual one", u"Tue, 3 Apr 2007 10:15:00 +0100", "2007/04/03 09:15:00"},
        {"blanks around it", u"  Tue, 3 Apr 2007 10:15:00 +0100 ", "2007/04/03 09:15:00"},
        {"year last", u"Tue Apr  3 10:15:00 2007", "2007/04/03 10:15:00"},
        {"year last with a zone", u"Tue Apr 3 10:15:00 2007 +0200", "2007/04/03 08:15:00"},
        {"year last, day from 12 on", u"Tue Apr 13 10:15:00 2007", "2007/04/13 10:15:00"},
        {"month before day", u"Fri, Apr 13 2007 10:15:00 EST", "2007/04/13 15:15:00"},
        {"month before a day below 12: the slots are taken afresh", u"Tue, Apr 3 2007 10:15:00 +0000",
         "2007/04/03 10:15:00"},
        {"no month: from the weekday", u"Tue, 3 2007 10:15:00 +0000", "2007/04/03 10:15:00"},
        {"no month fits the weekday", u"Tues, 3 2007 10:15:00 +0000", "Type mismatch"},
        {"weekday first, month as a number", u"Tue, 3 04 2007 10:15:00 +0100", "2007/04/03 09:15:00"},
        {"from 12 on it is the year, and the month is missing", u"Tue, 3 12 10:15:00", "2012/01/03 10:15:00"},
        {"slashes: month first, letters of pm in any case", u"04/03/2007 10:15:00 PM", "2007/04/03 22:15:00"},
        {"no seconds: midnight, and pm is noon", u"04/03/2007 10:15 PM", "2007/04/03 12:00:00"},
        {"half past noon is the next day", u"04/03/2007 12:30:00 pm -0200", "2007/04/04 02:30:00"},
        {"am adds nothing, nor does a zone in its place", u"04/03/2007 10:15:00 +0100",
         "2007/04/03 10:15:00"},
        {"pm counts with slashes only", u"3 Apr 2007 10:15:00 pm", "2007/04/03 10:15:00"},
        {"date literal", u"{ts '2007-04-03 10:15:00'}", "2007/04/03 10:15:00"},
        {"date literal with a zone: it has none", u"{TS '2007-04-03 10:15:00 +0100'}", "2007/04/03 10:15:00"},
        {"date literal without closing quote", u"{ts '2007-04-03 10:15:00}", "Type mismatch"},
        {"two dates joined: the first is read", u"3 Apr 2007 10:15:00 +0100; 4 Apr 2007 11:00:00 +0100",
         "2007/04/03 09:15:00"},
        {"day 0 takes the slots afresh: the 2007th of April", u"0 Apr 2007 10:15:00", "2012/09/27 10:15:00"},
        {"a short name that is no abbreviation", u"3 Sept 2007 10:15:00", "Type mismatch"},
        {"the CR of the header block", u"\r", "Type mismatch"},
        {"a CR behind a month name makes it another name", u"Tue 2007 Apr\r", "Type mismatch"},
        {"empty stays empty", u"", ""},
    };
    for (const DateCase& c : cases) EXPECT_EQ(Parsed(c.given), c.want) << c.why;
}

// The system's rules for numbers in text: halves to the even one, 16 bits, two-digit years from 1930 to 2029
// and dates of the years 100 to 9999. Which part is looked at first is this program's own.
TEST(HeaderDates, NumbersCarryOverAndFailByTheirFirstFault)
{
    const Text digits(400, u'9');
    const DateCase cases[] = {
        {"the window of two-digit years looks at the number", u"3 Apr 007 10:15:00", "2007/04/03 10:15:00"},
        {"before 1900 the time still counts forward", u"3 Apr 1850 10:15:00 +0100", "1850/04/03 09:15:00"},
        {"halves go to the even number", u"2.5 Apr 2007.5 10:15:00", "2008/04/02 10:15:00"},
        {"year 99 is in the window, 100 is not", u"1 Jan 100 00:00:00", "0100/01/01 00:00:00"},
        {"too early", u"1 Jan 100 00:00:00 +0100", "Invalid procedure call or argument"},
        {"too late, though the zone would bring it back", u"31 Dec 9999 24:00:00 +0100",
         "Invalid procedure call or argument"},
        {"hours carry over", u"3 Apr 2007 25:61:61", "2007/04/04 02:02:01"},
        {"times below zero go back", u"3 Apr 2007 -1:00:00", "2007/04/02 23:00:00"},
        {"time parts are the numbers they start with", u"3 Apr 2007 10h:15m:30.5s", "2007/04/03 10:15:30"},
        {"400 digits as day", digits + u" Apr 2007", "Overflow"},
        {"as zone: its last four", u"3 Apr 2007 10:15:00 " + digits, "2007/03/30 05:15:00"},
        {"the year is looked at first", u"x foo 99999", "Type mismatch"},
        {"the time before the year", u"3 Apr x 99999:0:0", "Overflow"},
        {"and the zone before the time", u"3 Apr 2007 10:15:00 9e9", "Overflow"},
    };
    for (const DateCase& c : cases) EXPECT_EQ(Parsed(c.given), c.want) << c.why;
}

// The names and the signs of RFC 822, section 5.1, military letters with its signs; that only whole hours
// count is a rule of this program's own.
TEST(HeaderDates, ZonesTakeWholeHoursOff)
{
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"EST", "17:00"},     {u"EDT", "16:00"},   {u"CST", "18:00"},   {u"CDT", "17:00"},
        {u"MST", "19:00"},     {u"MDT", "18:00"},   {u"PST", "20:00"},   {u"PDT", "19:00"},
        {u"A", "13:00"},       {u"M", "00:00"},     {u"N", "11:00"},     {u"Y", "00:00"},
        {u"est", "12:00"},     {u"GMT", "12:00"},   {u"Z", "12:00"},     {u"+0000", "12:00"},
        {u"+0100", "11:00"},   {u"-0500", "17:00"}, {u"+0545", "06:00"}, {u"-0330", "16:00"},
        {u"+1.5", "12:00"},    {u"+0530", "06:00"}, // 5.5 goes to 6
        {u"-0530", "18:00"},                        // and so does this
        {u"+0430", "08:00"},                        // 4.5 goes to 4
        {u"+0090", "10:00"},                        // 1.5 goes to 2
        {u"-500", "07:00"},    // the last four characters are "-500", and the sign turns that round
        {u"+1030\r", "12:00"}, // the last four are "030" and the CR
        {u"+12ab", "12:00"},   // "12ab" is 12, which is minutes
    };
    for (const auto& [zone, want] : cases) {
        const std::string got = Parsed(u"3 Apr 2007 12:00:00 " + Text(zone));
        EXPECT_EQ(got.substr(got.find(' ') + 1), std::string(want) + ":00") << ToUtf8(zone);
    }
}

TEST(HeaderDates, NamesAreTheLocales)
{
    GermanLocale german;
    Text text = u"Di, 3 M\u00C4RZ 2007 10:15:00";
    EXPECT_EQ(FormatDate(ParseHeaderDate(text, german), kMinuteFormat), u"03/03/2007 10:15");
    EXPECT_EQ(MonthFromWeekday(u"di, 3 2007", german), u"4");
    text = u"3 Apr 2007";
    EXPECT_THROW(ParseHeaderDate(text, german), ValueFault);
    EXPECT_EQ(MonthNumber(u"Mrz", german) + MonthNumber(u"Mar", german), 0);
    EnglishLocale english;
    for (int number = 1; number <= 12; ++number) {
        const Text name = english.MonthName(number, true);
        for (const Text& month : {name, FoldCase(name), english.MonthName(number, false)})
            EXPECT_EQ(MonthNumber(month, english), number) << ToUtf8(month);
    }
    EXPECT_EQ(MonthNumber(u"anF", english) + MonthNumber(u"", english), 0);
}

// A rule of this program's own for a date without month: the first that fits its weekday.
TEST(HeaderDates, TheFirstMonthWithThatWeekdayIsTaken)
{
    EnglishLocale english;
    EXPECT_EQ(MonthFromWeekday(u"Tue, 3 2007", english), u"4");
    EXPECT_EQ(MonthFromWeekday(u"Mon, 3 2007", english), u"9");
    EXPECT_EQ(MonthFromWeekday(u"Tue,, 3 2007", english), u"") << "one comma is taken off";
    EXPECT_EQ(MonthFromWeekday(u"sat 31 2007", english), u"2") << "31 February is 3 March, a Saturday";
    EXPECT_THROW(MonthFromWeekday(u"Tue 3 2007x", english), ValueFault);
}

TEST(HeaderDates, ATimeWithoutTwoColonsIsMidnight)
{
    EXPECT_EQ(TimeOfText(u"18:00:00"), 0.75);
    for (const char16_t* midnight : {u"18:00", u"", u"::"}) EXPECT_EQ(TimeOfText(midnight), 0);
    EXPECT_EQ(FormatDate(TimeOfText(u"-1:00:00"), kMinuteFormat), u"29/12/1899 23:00");
}

TEST(HeaderDates, AListDateIsRoundedUpFromSecond30OnIfAtAll)
{
    const auto formatted = [](int second, bool roundFirst) {
        return FormatListDate(DateFromSeconds(SecondsOf(DateFromYmd(2007, 4, 3)) + second), roundFirst);
    };
    EXPECT_EQ(formatted(86399, false), u"03/04/2007 23:59");
    EXPECT_EQ(formatted(86399, true), u"04/04/2007 00:00");
    EXPECT_EQ(formatted(29, true), u"03/04/2007 00:00");
    EXPECT_EQ(formatted(30, true), u"03/04/2007 00:01");
}

// What the client's list shows in the user's locale, and what it shows of a header that it cannot read.
TEST(HeaderDates, AListCellIsReadByTheLocaleAndThenAsAHeader)
{
    EnglishLocale english;
    const std::pair<const char16_t*, const char16_t*> cases[] = {
        {u"03/04/2007 10:15", u"03/04/2007 10:15"},
        {u"Tue, 3 Apr 2007 10:15:00 +0100", u"03/04/2007 09:15"},
        {u"", u"01/01/1900 00:00"},
        {u"yesterday", u"01/01/1900 00:00"},
        {u"99999 1 2007", u"01/01/1900 00:00"}, // a fault of another kind
    };
    for (const auto& [cell, want] : cases)
        EXPECT_EQ(FormatListDate(ParseListDate(cell, english), false), want) << ToUtf8(cell);
}

// Kept: the offset counts months, as users of the setting know it.
TEST(HeaderDates, TheSettingsTakeAnHourOffInSummerAndAddMonths)
{
    const std::tuple<const char*, int, float, bool, const char16_t*> cases[] = {
        {"in summer", 1, 0, true, u"02/04/2007 23:00"},
        {"in winter", 1, 0, false, u"03/04/2007 00:00"},
        {"only 1 switches it on", 2, 0, true, u"03/04/2007 00:00"},
        {"months", 0, 2, true, u"03/06/2007 00:00"},
        {"none below zero", 0, -1, true, u"03/04/2007 00:00"},
        {"the hour first", 1, 1, true, u"02/05/2007 23:00"},
    };
    FixedClock clock;
    for (const auto& [why, applyDst, timeOffset, summer, want] : cases) {
        clock.daylightSaving = summer;
        const double date = AdjustListDate(DateFromYmd(2007, 4, 3), applyDst, timeOffset, clock);
        EXPECT_EQ(FormatListDate(date, false), want) << why;
    }
}
