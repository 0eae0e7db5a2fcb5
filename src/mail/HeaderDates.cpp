#include "mail/HeaderDates.h"

#include "text/Numbers.h"

#include <algorithm>
#include <cmath>

namespace {

// The parts of a date as the text writes them.
struct DateSlots {
    Text day, month, year, time, zone, meridiem;
};

struct Words {
    TextView text;
    Text operator[](std::size_t index) const { return Text(FieldOf(text, u" ", index)); }
};

bool HasColon(TextView text)
{
    return text.find(u':') != TextView::npos;
}

// "{ts '2007-04-03 10:15:00'}": what stands between the first two quotes, empty without both.
Text QuotedPart(TextView text)
{
    const std::size_t open = text.find(u'\'');
    if (open == TextView::npos) return {};
    const std::size_t close = text.find(u'\'', open + 1);
    if (close == TextView::npos) return {};
    return Text(text.substr(open + 1, close - open - 1));
}

// "Tue Apr 3 10:15:00 2007", the year last.
DateSlots YearLast(const Words& words)
{
    return {words[3], words[2], words[5], words[4], words[6], {}};
}

// "Tue, 3 Apr 2007 10:15:00 +0100" and its relatives, a weekday first.
DateSlots WeekdayFirst(const Words& words, Locale& locale)
{
    const Text second = words[2], third = words[3];
    DateSlots slots;
    if (LeadingNumber(third) < 12) { // a month name counts as 0
        slots = {second, third, words[4], words[5], words[6], {}};
    } else if (IsNumericText(second)) { // weekday, day, year: the month is missing
        return {second, MonthFromWeekday(words.text, locale), third, words[4], words[5], {}};
    } else {
        slots = {third, second, words[4], words[5], words[6], {}};
    }
    return HasColon(slots.year) ? YearLast(words) : slots;
}

// Fills the slots; text becomes what a date literal quotes.
DateSlots SlotsOf(Text& text, Locale& locale)
{
    const Text first = Words{text}[1];
    if (EqualNoCase(first, u"{ts")) {
        text = QuotedPart(text);
        const Words words{text};
        const Text date = words[1];
        const auto part = [&date](std::size_t index) { return Text(FieldOf(date, u"-", index)); };
        return {part(3), part(2), part(1), words[2], {}, {}};
    }
    const Words words{text};
    if (first.find(u'/') != Text::npos) { // month first
        const auto part = [&first](std::size_t index) { return Text(FieldOf(first, u"/", index)); };
        return {part(2), part(1), part(3), words[2], words[4], FoldCase(words[3])};
    }
    if (IsNumericText(first)) return {first, words[2], words[3], words[4], words[5], {}};
    return WeekdayFirst(words, locale);
}

// Whole hours to add to reach Universal Time.
int ZoneOffset(TextView zone)
{
    struct Named {
        TextView name;
        int hours;
    };
    static constexpr Named kNamed[] = {
        {u"EST", 5},
        {u"EDT", 4},
        {u"CST", 6},
        {u"CDT", 5},
        {u"MST", 7},
        {u"MDT", 6},
        {u"PST", 8},
        {u"PDT", 7},
        // Kept: the military letters with the sign that early mail gave them, the opposite of today's.
        {u"A", 1},
        {u"M", 12},
        {u"N", -1},
        {u"Y", -12}};
    if (zone.empty()) return 0;
    for (const Named& named : kNamed)
        if (zone == named.name) return named.hours;

    double value = LeadingNumber(zone.substr(zone.size() - std::min<std::size_t>(4, zone.size())));
    if (zone[0] == u'-') value = -value;
    const double hoursAndMinutes = RoundHalfEven(value);
    const double hours = std::trunc(hoursAndMinutes / 100);
    const double minutes = hoursAndMinutes - 100 * hours;
    // Kept: whole hours only, half hours to the even one (+0530 takes 6 off).
    return ToInt16(-(hours + minutes / 60));
}

std::int64_t SecondsOfText(TextView text)
{
    if (CountOf(text, u":") < 2) return 0; // Kept: a time without seconds counts as midnight
    const int hour = ToInt16(LeadingNumber(FieldOf(text, u":", 1)));
    const int minute = ToInt16(LeadingNumber(FieldOf(text, u":", 2)));
    const int second = ToInt16(LeadingNumber(FieldOf(text, u":", 3)));
    return hour * 3600 + minute * 60 + second;
}

} // namespace

double ParseHeaderDate(Text& text, Locale& locale)
{
    if (text.empty()) return kNoListDate;
    CollapseSpacesIn(text);
    text = TrimSpaces(text);
    DateSlots slots = SlotsOf(text, locale);
    if (LeadingNumber(slots.day) == 0) {
        slots.day = Words{text}[3];
        slots.month = Words{text}[2];
    }
    const int offset = ZoneOffset(slots.zone);
    std::int64_t time = SecondsOfText(slots.time);
    if (slots.meridiem == u"pm") time += 12 * 3600; // Kept: 12:30:00 pm is half past midnight
    MonthNumber(slots.month, locale);

    const int year = Int16OfText(slots.year);
    const int month = Int16OfText(slots.month);
    const int day = Int16OfText(slots.day);
    const double local = DateFromSeconds(SecondsOf(DateFromYmd(year, month, day)) + time);
    const double date = AddHours(local, offset);
    text = FormatDate(date, kSortableFormat);
    return date;
}

void MonthNumber(Text& month, Locale& locale)
{
    const bool abbreviated = month.size() == 3;
    for (int number = 1; number <= 12; ++number) {
        if (!EqualNoCase(month, locale.MonthName(number, abbreviated))) continue;
        month = number < 10 ? u"0" + DecimalText(number) : DecimalText(number);
        return;
    }
}

Text MonthFromWeekday(TextView text, Locale& locale)
{
    TextView weekday = FieldOf(text, u" ", 1);
    if (weekday.ends_with(u',')) weekday.remove_suffix(1);
    const int day = Int16OfText(FieldOf(text, u" ", 2));
    const int year = Int16OfText(FieldOf(text, u" ", 3));
    for (int month = 1; month <= 12; ++month) {
        const DateFields fields = FieldsOf(DateFromYmd(year, month, day));
        if (EqualNoCase(weekday, locale.ShortWeekdayName(fields.weekday))) return DecimalText(month);
    }
    return {};
}

double TimeOfText(TextView text)
{
    return DateFromSeconds(SecondsOfText(text));
}

double RoundToMinute(double date)
{
    return FieldsOf(date).second >= 30 ? AddMinutes(date, 1) : date;
}

Text FormatListDate(double date, bool roundFirst)
{
    return FormatDate(roundFirst ? RoundToMinute(date) : date, kMinuteFormat);
}

double ParseListDate(TextView cell, Locale& locale)
{
    Text text(cell);
    if (text.empty()) return kNoListDate;
    if (const std::optional<double> date = locale.ParseDateText(text)) return *date;
    try {
        return ParseHeaderDate(text, locale);
    } catch (const ValueFault&) {
        return kNoListDate;
    }
}

double AdjustListDate(double date, int applyDst, float timeOffset, Clock& clock)
{
    if (applyDst == 1 && clock.IsDaylightSavingNow()) date = AddHours(date, -1);
    // Kept: the offset counts months, and one below 0 does nothing.
    if (timeOffset > 0) date = AddMonths(date, static_cast<double>(timeOffset));
    return date;
}
