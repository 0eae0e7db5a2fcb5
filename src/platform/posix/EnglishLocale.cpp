#include "platform/posix/EnglishLocale.h"

#include "text/DayCount.h"
#include "text/Numbers.h"

#include <array>

namespace {

constexpr std::array<TextView, 12> kMonths = {u"January",   u"February", u"March",    u"April",
                                              u"May",       u"June",     u"July",     u"August",
                                              u"September", u"October",  u"November", u"December"};
constexpr std::array<TextView, 7> kWeekdays = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};

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

bool ReadDate(Reader& reader, double& date)
{
    unsigned first = 0, month = 0, last = 0;
    if (!reader.Number(1, 4, first)) return false;
    const bool dayFirst = reader.Literal(u'/');
    if (!dayFirst && !reader.Literal(u'-')) return false;
    if (!reader.Number(1, 2, month) || !reader.Literal(dayFirst ? u'/' : u'-')) return false;
    if (!reader.Number(dayFirst ? 4 : 1, dayFirst ? 4 : 2, last)) return false;
    const unsigned year = dayFirst ? last : first, day = dayFirst ? first : last;
    if (year < 100) return false; // which century?
    date = DateFromYmd(static_cast<int>(year), static_cast<int>(month), static_cast<int>(day));
    const DateFields fields = FieldsOf(date);
    return fields.month == static_cast<int>(month) && fields.day == static_cast<int>(day);
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
try {
    const DateFields fields = FieldsOf(date);
    const bool midnight = fields.hour == 0 && fields.minute == 0 && fields.second == 0;
    return FormatDate(date, midnight ? TextView{u"dd/mm/yyyy"} : kSecondFormat);
} catch (const ValueFault&) { // outside the calendar
    return {};
}

std::optional<double> EnglishLocale::ParseDateText(const Text& text)
try {
    Reader reader{TrimSpaces(text)};
    double date = 0;
    unsigned seconds = 0;
    if (!ReadDate(reader, date)) return std::nullopt;
    if (reader.Literal(u' ') || reader.Literal(u'T')) {
        if (!ReadTime(reader, seconds)) return std::nullopt;
    }
    if (!reader.AtEnd()) return std::nullopt;
    return DateFromSeconds(SecondsOf(date) + seconds);
} catch (const ValueFault&) {
    return std::nullopt;
}
