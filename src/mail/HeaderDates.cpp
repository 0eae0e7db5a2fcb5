#include "mail/HeaderDates.h"

#include "text/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr TextView kEnglishMonths = u"JanFebMarAprMayJunJulAugSepOctNovDec";

// The parts of a date as the text writes them.
struct DateSlots {
    TextView day;
    Text month;
    TextView year, time, zone;
    bool afternoon = false;
};

// The fields of a text at single spaces, counted from 1, as far as a date can need them.
class Words {
public:
    explicit Words(TextView text)
    {
        for (std::size_t i = 1, start = 0; i < words_.size() && start <= text.size(); ++i) {
            const std::size_t end = std::min(text.find(u' ', start), text.size());
            words_[i] = text.substr(start, end - start);
            start = end + 1;
        }
    }
    TextView operator[](std::size_t index) const { return words_[index]; }

private:
    std::array<TextView, 7> words_;
};

bool HasColon(TextView text)
{
    return text.find(u':') != TextView::npos;
}

// "{ts '2007-04-03 10:15:00'}": what stands between the first two quotes, empty without both.
TextView QuotedPart(TextView text)
{
    const std::size_t open = text.find(u'\'');
    if (open == TextView::npos) return {};
    const std::size_t close = text.find(u'\'', open + 1);
    if (close == TextView::npos) return {};
    return text.substr(open + 1, close - open - 1);
}

// "Tue Apr 3 10:15:00 2007", the year last.
DateSlots YearLast(const Words& words)
{
    return {words[3], Text(words[2]), words[5], words[4], words[6]};
}

// "Tue, 3 Apr 2007 10:15:00 +0100" and its relatives, a weekday first.
DateSlots WeekdayFirst(TextView text, const Words& words, Locale& locale)
{
    const bool monthThird = LeadingNumber(words[3]) < 12; // a month name counts as 0
    if (!monthThird && IsNumericText(words[2]))           // weekday, day, year: the month is missing
        return {words[2], MonthFromWeekday(text, locale), words[3], words[4], words[5]};
    if (HasColon(words[4])) return YearLast(words);
    const TextView day = words[monthThird ? 2 : 3], month = words[monthThird ? 3 : 2];
    return {day, Text(month), words[4], words[5], words[6]};
}

// The slots are parts of text, of which a date literal leaves what it quotes.
DateSlots SlotsOf(TextView& text, Locale& locale)
{
    const Words words(text);
    const TextView first = words[1];
    if (EqualNoCase(first, u"{ts")) {
        text = QuotedPart(text);
        const Words quoted(text);
        const TextView date = quoted[1];
        return {FieldOf(date, u"-", 3), Text(FieldOf(date, u"-", 2)), FieldOf(date, u"-", 1), quoted[2], {}};
    }
    if (first.find(u'/') != TextView::npos) { // month first
        const bool afternoon = EqualNoCase(words[3], u"pm");
        return {FieldOf(first, u"/", 2),
                Text(FieldOf(first, u"/", 1)),
                FieldOf(first, u"/", 3),
                words[2],
                words[4],
                afternoon};
    }
    if (IsNumericText(first)) return {first, Text(words[2]), words[3], words[4], words[5]};
    return WeekdayFirst(text, words, locale);
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
    const std::size_t first = text.find(u':');
    const std::size_t last = first == TextView::npos ? first : text.find(u':', first + 1);
    if (last == TextView::npos) return 0;          // Kept: a time without seconds counts as midnight
    const int hour = ToInt16(LeadingNumber(text)); // which ends before the colon
    const int minute = ToInt16(LeadingNumber(text.substr(first + 1)));
    const int second = ToInt16(LeadingNumber(text.substr(last + 1)));
    return hour * 3600 + minute * 60 + second;
}

// The seconds stay: the format it is used with does not show them.
double RoundToMinute(double date)
{
    return FieldsOf(date).second >= 30 ? AddMinutes(date, 1) : date;
}

} // namespace

double HeaderDateOf(TextView text, Locale& locale)
{
    if (text.empty()) return kNoListDate;
    text = TrimSpaces(text);
    DateSlots slots = SlotsOf(text, locale);
    if (LeadingNumber(slots.day) == 0) {
        const Words words(text);
        slots.day = words[3];
        slots.month = words[2];
    }
    const int offset = ZoneOffset(slots.zone);
    std::int64_t time = SecondsOfText(slots.time);
    if (slots.afternoon) time += 12 * 3600; // Kept: 12:30:00 pm is half past midnight
    const int named = MonthNumber(slots.month, locale);

    const int year = Int16OfText(slots.year);
    const int month = named != 0 ? named : Int16OfText(slots.month);
    const int day = Int16OfText(slots.day);
    const double local = DateFromSeconds(SecondsOf(DateFromYmd(year, month, day)) + time);
    return AddHours(local, offset);
}

double ParseHeaderDate(Text& text, Locale& locale)
{
    const double date = HeaderDateOf(CollapseSpaces(text), locale);
    if (!text.empty()) text = FormatDate(date, kSortableFormat);
    return date;
}

int MonthNumber(TextView month, Locale& locale)
{
    const bool abbreviated = month.size() == 3;
    // Headers are in English, whose names many locales share: one is asked for then, not all up to it.
    const std::size_t at = abbreviated ? kEnglishMonths.find(month) : TextView::npos;
    if (at != TextView::npos) {
        const int likely = static_cast<int>(at / 3 + 1);
        if (EqualNoCase(month, locale.MonthName(likely, true))) return likely;
    }
    for (int number = 1; number <= 12; ++number)
        if (EqualNoCase(month, locale.MonthName(number, abbreviated))) return number;
    return 0;
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
