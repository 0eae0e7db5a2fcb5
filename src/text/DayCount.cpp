#include "text/DayCount.h"

#include "text/Numbers.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kFirstDay = -657434; // 1 January 100
constexpr std::int64_t kLastDay = 2958465;  // 31 December 9999

std::int64_t FloorDivide(std::int64_t value, std::int64_t by)
{
    const std::int64_t quotient = value / by;
    return value % by < 0 ? quotient - 1 : quotient;
}

// Day number of a day of the proleptic Gregorian calendar. Years are counted from March, so that the leap
// day comes last; 693899 days lie between 1 March of the year 0 and day 0.
std::int64_t DayOf(std::int64_t year, int month, std::int64_t day)
{
    if (month <= 2) --year;
    const std::int64_t monthFromMarch = month > 2 ? month - 3 : month + 9;
    const std::int64_t leapDays = FloorDivide(year, 4) - FloorDivide(year, 100) + FloorDivide(year, 400);
    return year * 365 + leapDays + (153 * monthFromMarch + 2) / 5 + day - 1 - 693899;
}

int DaysInMonth(int year, int month)
{
    return static_cast<int>(month == 12 ? 31 : DayOf(year, month + 1, 1) - DayOf(year, month, 1));
}

double Checked(std::int64_t day)
{
    if (day < kFirstDay || day > kLastDay) throw ValueFault(Fault::invalidCall);
    return static_cast<double>(day);
}

// Also refuses what is not a number.
double CheckedCount(double count)
{
    constexpr double kMost = 1e12;
    const double whole = RoundHalfEven(count);
    if (!(whole >= -kMost && whole <= kMost)) throw ValueFault(Fault::invalidCall);
    return whole;
}

double AddSeconds(double date, double count, std::int64_t unit)
{
    return DateFromSeconds(SecondsOf(date) + static_cast<std::int64_t>(CheckedCount(count)) * unit);
}

// What a letter of a pattern stands for; -1 for the letters that stand for themselves.
int PartOf(const DateFields& fields, char16_t letter)
{
    switch (letter) {
    case u'y':
        return fields.year;
    case u'm':
        return fields.month;
    case u'd':
        return fields.day;
    case u'h':
        return fields.hour;
    case u'n':
        return fields.minute;
    case u's':
        return fields.second;
    default:
        return -1;
    }
}

} // namespace

std::int64_t SecondsOf(double date)
{
    if (!(date > kFirstDay - 1.0 && date < kLastDay + 1.0)) throw ValueFault(Fault::invalidCall);
    const double day = std::trunc(date);
    const double seconds = RoundHalfEven(std::fabs(date - day) * kSecondsPerDay);
    return static_cast<std::int64_t>(day) * kSecondsPerDay + static_cast<std::int64_t>(seconds);
}

double DateFromSeconds(std::int64_t seconds)
{
    const std::int64_t day = FloorDivide(seconds, kSecondsPerDay);
    const double time = static_cast<double>(seconds - day * kSecondsPerDay) / kSecondsPerDay;
    return day < 0 ? Checked(day) - time : Checked(day) + time;
}

double DateFromYmd(int year, int month, int day)
{
    if (year >= 0 && year <= 99) year += year < 30 ? 2000 : 1900;
    const std::int64_t months = std::int64_t(year) * 12 + month - 1;
    const std::int64_t carried = FloorDivide(months, 12);
    return Checked(DayOf(carried, static_cast<int>(months - carried * 12) + 1, day));
}

DateFields FieldsOf(double date)
{
    const std::int64_t seconds = SecondsOf(date);
    const std::int64_t dayNumber = FloorDivide(seconds, kSecondsPerDay);
    Checked(dayNumber); // half a second before the year 10000 is rounded into it
    const int time = static_cast<int>(seconds - dayNumber * kSecondsPerDay);

    // 146097 days make 400 years; the estimate is at most one year too late.
    int year = static_cast<int>(FloorDivide((dayNumber + 693899) * 400, 146097)) + 1;
    while (DayOf(year, 1, 1) > dayNumber) --year;
    int month = 1;
    while (month < 12 && DayOf(year, month + 1, 1) <= dayNumber) ++month;
    const int day = static_cast<int>(dayNumber - DayOf(year, month, 1)) + 1;
    const int weekday = static_cast<int>((dayNumber + 6 + 7 * 100000) % 7); // day 0 is a Saturday
    return {year, month, day, time / 3600, time / 60 % 60, time % 60, weekday};
}

double AddMonths(double date, double count)
{
    const DateFields from = FieldsOf(date);
    const std::int64_t months =
        std::int64_t(from.year) * 12 + from.month - 1 + static_cast<std::int64_t>(CheckedCount(count));
    const std::int64_t year = FloorDivide(months, 12);
    if (year < 100 || year > 9999) throw ValueFault(Fault::invalidCall);
    const int month = static_cast<int>(months - year * 12) + 1;
    const std::int64_t day =
        DayOf(year, month, std::min(from.day, DaysInMonth(static_cast<int>(year), month)));
    return DateFromSeconds(day * kSecondsPerDay + from.hour * 3600 + from.minute * 60 + from.second);
}

double AddHours(double date, double count)
{
    return AddSeconds(date, count, 3600);
}

double AddMinutes(double date, double count)
{
    return AddSeconds(date, count, 60);
}

Text FormatDate(double date, TextView pattern)
{
    const DateFields fields = FieldsOf(date);
    Text out(pattern);
    for (std::size_t i = 0, end = 0; i < pattern.size(); i = end) {
        while (end < pattern.size() && pattern[end] == pattern[i]) ++end;
        int part = PartOf(fields, pattern[i]);
        if (part < 0) continue;
        for (std::size_t digit = end; digit-- > i; part /= 10)
            out[digit] = static_cast<char16_t>(u'0' + part % 10);
    }
    return out;
}
