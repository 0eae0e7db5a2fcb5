// DayCountTest.cpp: day-count dates against the calendar.
#include "text/DayCount.h"
#include "text/Numbers.h"

#include <cmath>
#include <gtest/gtest.h>

// The system's own count (OLE automation dates): whole days from 30 December 1899, the fraction always
// forward.
TEST(DayCount, FractionsCountForwardAndAreRoundedToTheSecond)
{
    const std::tuple<const char*, double, const char16_t*, int> cases[] = {
        {"day 0", 0, u"30/12/1899 00:00:00", 6},
        {"the last instant of a day rounds into the next", 39175.9999999, u"04/04/2007 00:00:00", 3},
        {"a negative date's fraction counts forward", -1.25, u"29/12/1899 06:00:00", 5},
        {"a negative date at the end of its day", -1.9999999, u"30/12/1899 00:00:00", 6},
        {"first", -657434, u"01/01/0100 00:00:00", 5},
        {"last", 2958465 + 86399 / 86400.0, u"31/12/9999 23:59:59", 5},
    };
    for (const auto& [why, date, want, weekday] : cases) {
        EXPECT_EQ(FormatDate(date, kSecondFormat), want) << why;
        EXPECT_EQ(FieldsOf(date).weekday, weekday) << why;
    }
    EXPECT_EQ(FormatDate(39175.5, kCompactFormat), u"20070403120000");
    for (const double bad : {-657435.0, 2958466.0, 2958465.9999999, 1e300, std::nan("")})
        EXPECT_THROW(FieldsOf(bad), ValueFault) << bad;
}

// The calendar of Pope Gregory, counted on day by day.
TEST(DayCount, EveryDayGoesBothWays)
{
    int year = 100, month = 1, day = 1;
    for (int number = -657434; number <= 2958465; ++number) {
        const DateFields fields = FieldsOf(number);
        ASSERT_TRUE(fields.year == year && fields.month == month && fields.day == day) << number;
        ASSERT_EQ(DateFromYmd(year, month, day), number);
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        const int days[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        if (++day > days[month - 1]) {
            day = 1;
            if (++month > 12) month = 1, ++year;
        }
    }
    for (std::int64_t seconds = -400'000; seconds < 400'000; seconds += 7)
        ASSERT_EQ(SecondsOf(DateFromSeconds(seconds)), seconds);
}

// The system's rules for dates from numbers: years below 100 are those from 1930 to 2029, months and days
// carry.
TEST(DayCount, MonthsAndDaysBeyondTheCalendarCarryOver)
{
    const std::tuple<const char*, int, int, int, const char16_t*> cases[] = {
        {"window below 30", 29, 12, 31, u"31/12/2029 00:00"},
        {"window from 30", 30, 1, 1, u"01/01/1930 00:00"},
        {"the window comes before the carry", 99, 13, 1, u"01/01/2000 00:00"},
        {"100 is the year 100", 100, 1, 1, u"01/01/0100 00:00"},
        {"month 0", 2007, 0, 1, u"01/12/2006 00:00"},
        {"day 0", 2008, 3, 0, u"29/02/2008 00:00"},
        {"far", 2000, 32767, 32767, u"16/03/4820 00:00"},
        {"back into the range", 10000, 0, 1, u"01/12/9999 00:00"},
    };
    for (const auto& [why, year, month, day, want] : cases)
        EXPECT_EQ(FormatDate(DateFromYmd(year, month, day), kMinuteFormat), want) << why;
    EXPECT_THROW(DateFromYmd(-5, 6, 1), ValueFault);
    EXPECT_THROW(DateFromYmd(100, 1, 0), ValueFault);
    EXPECT_THROW(DateFromYmd(10000, 1, 1), ValueFault);
}
