// DayCount.h: dates as day counts: days since 30 December 1899, the fraction being the time of day.
// Before that day the whole part is negative and the fraction still counts forward: -1.25 is 29 December
// 1899 06:00. Everything here works in whole seconds; a fraction of a second is rounded.
// Fails by: ValueFault (Invalid procedure call or argument) for a date outside the years 100 to 9999.
#pragma once
#include "text/Text.h"

// A date that is missing: 1 January 1900 00:00.
inline constexpr double kNoListDate = 2.0;

struct DateFields {
    int year, month, day; // 100 to 9999, 1 to 12, 1 to 31
    int hour, minute, second;
    int weekday; // 0 Sunday to 6 Saturday
};

DateFields FieldsOf(double date);

// Seconds since 30 December 1899 00:00, an unbroken count on both sides of it; and back.
std::int64_t SecondsOf(double date);
double DateFromSeconds(std::int64_t seconds);

// Months and days may lie outside their range and carry over (month 13 is January of the next year, day 0
// the last of the month before). Years 0 to 29 are 2000 to 2029, years 30 to 99 are 1930 to 1999.
double DateFromYmd(int year, int month, int day);

// Date arithmetic; count is rounded half to even. A month later than 31 January is the last of February.
double AddMonths(double date, double count);
double AddHours(double date, double count);
double AddMinutes(double date, double count);

// Writes date by a pattern in which yyyy, mm, dd, hh, nn (minutes) and ss, each once at the most, stand for
// their digits and everything else for itself.
Text FormatDate(double date, TextView pattern);
inline constexpr TextView kMinuteFormat = u"dd/mm/yyyy hh:nn";
inline constexpr TextView kSecondFormat = u"dd/mm/yyyy hh:nn:ss";
inline constexpr TextView kSortableFormat = u"yyyy/mm/dd hh:nn:ss";
inline constexpr TextView kCompactFormat = u"yyyymmddhhnnss";
inline constexpr TextView kTimeFormat = u"hh:nn:ss";
