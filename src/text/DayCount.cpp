#include "text/DayCount.h"

#include "text/Numbers.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

using std::chrono::days, std::chrono::months, std::chrono::sys_days, std::chrono::year_month_day;

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kFirstDay = -657434; // 1 January 100
constexpr std::int64_t kLastDay = 2958465;  // 31 December 9999
constexpr std::int64_t kDaysBefore1970 = 25569;

std::int64_t FloorDivide(std::int64_t value, std::int64_t by)
{
    const std::int64_t quotient = value / by;
    return value % by < 0 ? quotient - 1 : quotient;
}

std::int64_t DayOf(year_month_day date)
{
    return sys_days(date).time_since_epoch().count() + kDaysBefore1970;
}

// The first day of a month that is counted from January of the year 0.
year_month_day FirstOf(std::int64_t month)
{
    const std::int64_t year = FloorDivide(month, 12);
    if (year < -0x7FFF || year > 0x7FFF) throw ValueFault(Fault::invalidCall);
    return std::chrono::year(static_cast<int>(year)) /
           std::chrono::month(static_cast<unsigned>(month - year * 12) + 1) / 1;
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

// What a letter of a pattern stands for; null for the letters that stand for themselves.
int* PartOf(DateFields& fields, char16_t letter)
{
    switch (letter) {
    case u'y':
        return &fields.year;
    case u'm':
        return &fields.month;
    case u'd':
        return &fields.day;
    case u'h':
        return &fields.hour;
    case u'n':
        return &fields.minute;
    case u's':
        return &fields.second;
    default:
        return nullptr;
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
    return Checked(DayOf(FirstOf(std::int64_t(year) * 12 + month - 1)) + day - 1);
}

DateFields FieldsOf(double date)
{
    const std::int64_t seconds = SecondsOf(date);
    const std::int64_t dayNumber = FloorDivide(seconds, kSecondsPerDay);
    Checked(dayNumber); // half a second before the year 10000 is rounded into it
    const int time = static_cast<int>(seconds - dayNumber * kSecondsPerDay);
    const sys_days day{days(static_cast<int>(dayNumber - kDaysBefore1970))};
    const year_month_day calendar(day);
    return {static_cast<int>(calendar.year()),
            static_cast<int>(static_cast<unsigned>(calendar.month())),
            static_cast<int>(static_cast<unsigned>(calendar.day())),
            time / 3600,
            time / 60 % 60,
            time % 60,
            static_cast<int>(std::chrono::weekday(day).c_encoding())};
}

double AddMonths(double date, double count)
{
    const DateFields from = FieldsOf(date);
    const year_month_day first = FirstOf(std::int64_t(from.year) * 12 + from.month - 1 +
                                         static_cast<std::int64_t>(CheckedCount(count)));
    const std::int64_t last = DayOf(first.year() / first.month() / std::chrono::last);
    const std::int64_t day = std::min(DayOf(first) + from.day - 1, last);
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
    DateFields fields = FieldsOf(date);
    Text out(pattern);
    for (std::size_t i = out.size(); i-- > 0;) {
        int* const part = PartOf(fields, out[i]);
        if (part == nullptr) continue;
        out[i] = static_cast<char16_t>(u'0' + *part % 10);
        *part /= 10;
    }
    return out;
}
