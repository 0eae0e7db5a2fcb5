#include "platform/posix/EnglishLocale.h"

#include <array>
#include <chrono>
#include <cmath>

namespace {

constexpr std::array<TextView, 12> kMonths = {u"January",   u"February", u"March",    u"April",
                                              u"May",       u"June",     u"July",     u"August",
                                              u"September", u"October",  u"November", u"December"};
constexpr std::array<TextView, 7> kWeekdays = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};

using std::chrono::sys_days;
using std::chrono::year_month_day;
constexpr sys_days kDayZero{std::chrono::year{1899} / 12 / 30};
constexpr int kSecondsPerDay = 86400;

int DaysOf(year_month_day date)
{
    return (sys_days{date} - kDayZero).count();
}
const int kFirstDay = DaysOf(std::chrono::year{100} / 1 / 1);
const int kLastDay = DaysOf(std::chrono::year{9999} / 12 / 31);

void AppendNumber(Text& out, unsigned number, unsigned digits)
{
    const Text text = DecimalText(number);
    if (text.size() < digits) out.append(digits - text.size(), u'0');
    out += text;
}

// Reads the numbers and the literal characters of a date from left to right.
class Reader {
public:
    explicit Reader(TextView text) : text_(text) {}

    bool Number(unsigned least, unsigned most, unsigned& number) // digits, at least and at most
    {
        unsigned digits = 0;
        for (number = 0; digits < most && !AtEnd() && text_[at_] >= u'0' && text_[at_] <= u'9'; ++digits)
            number = number * 10 + (text_[at_++] - u'0');
        return digits >= least;
    }
    bool Literal(char16_t unit) { return !AtEnd() && text_[at_] == unit ? (++at_, true) : false; }
    bool AtEnd() const { return at_ == text_.size(); }

private:
    TextView text_;
    std::size_t at_ = 0;
};

bool ReadDate(Reader& reader, year_month_day& date)
{
    unsigned first = 0, month = 0, last = 0;
    if (!reader.Number(1, 4, first)) return false;
    const bool dayFirst = reader.Literal(u'/');
    if (!dayFirst && !reader.Literal(u'-')) return false;
    if (!reader.Number(1, 2, month) || !reader.Literal(dayFirst ? u'/' : u'-')) return false;
    if (!reader.Number(dayFirst ? 4 : 1, dayFirst ? 4 : 2, last)) return false;
    const unsigned year = dayFirst ? last : first, day = dayFirst ? first : last;
    date = std::chrono::year{static_cast<int>(year)} / static_cast<int>(month) / static_cast<int>(day);
    return date.ok() && year >= 100;
}

bool ReadTime(Reader& reader, unsigned& seconds)
{
    unsigned hour = 0, minute = 0, second = 0;
    if (!reader.Number(1, 2, hour) || !reader.Literal(u':') || !reader.Number(2, 2, minute)) return false;
    if (reader.Literal(u':') && !reader.Number(2, 2, second)) return false;
    seconds = (hour * 60 + minute) * 60 + second;
    return hour < 24 && minute < 60 && second < 60;
}

} // namespace

Text EnglishLocale::MonthName(int month, bool abbreviated)
{
    if (month < 1 || month > 12) return {};
    const TextView name = kMonths[static_cast<std::size_t>(month - 1)];
    return Text(abbreviated ? name.substr(0, 3) : name);
}

Text EnglishLocale::ShortWeekdayName(int weekday)
{
    if (weekday < 0 || weekday > 6) return {};
    return Text(kWeekdays[static_cast<std::size_t>(weekday)]);
}

Text EnglishLocale::DateText(double date)
{
    if (!(date > kFirstDay - 1.0 && date < kLastDay + 1.0)) return {}; // false for NaN as well
    // The fraction counts forward from midnight, in days before day zero too.
    int day = static_cast<int>(date);
    int seconds = static_cast<int>(std::lround(std::abs(date - day) * kSecondsPerDay));
    if (seconds == kSecondsPerDay) {
        seconds = 0;
        ++day;
    }
    if (day > kLastDay) return {};
    const year_month_day calendar{kDayZero + std::chrono::days{day}};
    Text text;
    AppendNumber(text, unsigned{calendar.day()}, 2);
    text += u'/';
    AppendNumber(text, unsigned{calendar.month()}, 2);
    text += u'/';
    AppendNumber(text, static_cast<unsigned>(int{calendar.year()}), 4);
    if (seconds == 0) return text;
    for (const unsigned field : {seconds / 3600, seconds / 60 % 60, seconds % 60}) {
        text += text.size() == 10 ? u' ' : u':';
        AppendNumber(text, field, 2);
    }
    return text;
}

std::optional<double> EnglishLocale::ParseDateText(const Text& text)
{
    Reader reader{TrimSpaces(text)};
    year_month_day date;
    unsigned seconds = 0;
    if (!ReadDate(reader, date)) return std::nullopt;
    if (reader.Literal(u' ') || reader.Literal(u'T')) {
        if (!ReadTime(reader, seconds)) return std::nullopt;
    }
    if (!reader.AtEnd()) return std::nullopt;
    const double day = DaysOf(date), fraction = static_cast<double>(seconds) / kSecondsPerDay;
    return day < 0 ? day - fraction : day + fraction;
}
