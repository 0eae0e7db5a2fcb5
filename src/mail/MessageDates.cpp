#include "mail/MessageDates.h"

#include <algorithm>
#include <chrono>

namespace {

constexpr std::string_view kMonths[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                        "jul", "aug", "sep", "oct", "nov", "dec"};

struct Zone {
    std::string_view name;
    int hours; // behind Universal Time
};
constexpr Zone kZones[] = {{"est", 5},   {"edt", 4},  {"cst", 6},   {"cdt", 5},  {"mst", 7},  {"mdt", 6},
                           {"pst", 8},   {"pdt", 7},  {"bst", -1},  {"cet", -1}, {"met", -1}, {"cest", -2},
                           {"mest", -2}, {"eet", -2}, {"eest", -3}, {"msk", -3}, {"jst", -9}};

// What a date is put together from; -1: not met yet.
struct Slots {
    int day = -1, month = -1, year = -1, hour = -1, minute = -1, second = 0;
    int minutesBehind = 0;
    bool afternoon = false, morning = false;
};

// Of the digits only; -1 for anything else and for more than fits.
int NumberOf(std::string_view digits)
{
    if (digits.empty() || digits.size() > 4) return -1;
    int number = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') return -1;
        number = number * 10 + (digit - '0');
    }
    return number;
}

void TakeTime(std::string_view word, Slots& slots)
{
    const std::size_t first = word.find_first_of(":.");
    const std::size_t second = word.find_first_of(":.", first + 1);
    slots.hour = NumberOf(word.substr(0, first));
    slots.minute = NumberOf(word.substr(first + 1, second == word.npos ? second : second - first - 1));
    if (second != word.npos) slots.second = std::max(NumberOf(word.substr(second + 1, 2)), 0);
}

// "+0530"; one that is out of range does not count.
void TakeOffset(std::string_view word, Slots& slots)
{
    const int number = NumberOf(word.substr(1, 4));
    if (word.size() < 5 || number < 0 || number / 100 > 14 || number % 100 > 59) return;
    const int minutes = number / 100 * 60 + number % 100;
    slots.minutesBehind = word[0] == '-' ? minutes : -minutes;
}

void TakeName(std::string_view word, Slots& slots)
{
    const auto month = std::find_if(std::begin(kMonths), std::end(kMonths), [word](std::string_view name) {
        return word.size() >= 3 && BeginsWithNoCase(word, name);
    });
    if (month != std::end(kMonths) && slots.month < 0) {
        slots.month = static_cast<int>(month - std::begin(kMonths)) + 1;
        return;
    }
    for (const Zone& zone : kZones)
        if (word.size() == zone.name.size() && BeginsWithNoCase(word, zone.name))
            slots.minutesBehind = zone.hours * 60;
    if (word.size() == 2 && BeginsWithNoCase(word, "pm")) slots.afternoon = true;
    if (word.size() == 2 && BeginsWithNoCase(word, "am")) slots.morning = true;
}

// RFC 5322, section 4.3: two digits are of 1950 to 2049, three count from 1900.
int WholeYear(int year, std::size_t digits)
{
    if (digits == 2) return year < 50 ? year + 2000 : year + 1900;
    return digits == 3 ? year + 1900 : year;
}

void TakeNumber(std::string_view word, Slots& slots)
{
    const int number = NumberOf(word);
    if (number < 0) return;
    if (slots.day < 0 && word.size() <= 2)
        slots.day = number;
    else if (slots.year < 0 && word.size() >= 2)
        slots.year = WholeYear(number, word.size());
}

void TakeWord(std::string_view word, Slots& slots)
{
    const bool digit = word[0] >= '0' && word[0] <= '9';
    if (digit && slots.hour < 0 && word.find(':') != word.npos)
        TakeTime(word, slots);
    else if ((word[0] == '+' || word[0] == '-') && slots.hour >= 0)
        TakeOffset(word, slots);
    else if (digit)
        TakeNumber(word, slots);
    else
        TakeName(word, slots);
}

} // namespace

std::optional<std::int64_t> ReadMessageDate(std::string_view value)
{
    using namespace std::chrono;
    Slots slots;
    int depth = 0; // of comments
    for (std::size_t at = 0; at < value.size();) {
        if (value[at] == '(') ++depth;
        if (value[at] == ')') depth = std::max(depth - 1, 0);
        // "3-Apr-2007" is three words before the time, "-0500" is one behind it.
        const std::string_view parting = slots.hour < 0 ? " \t,()-+" : " \t,()";
        const std::size_t end = std::min(value.find_first_of(parting, at), value.size());
        const bool parts = parting.find(value[at]) != parting.npos;
        if (!parts && depth == 0) TakeWord(value.substr(at, end - at), slots);
        at = parts ? at + 1 : end;
    }
    const year_month_day date{year{slots.year}, month{static_cast<unsigned>(std::max(slots.month, 0))},
                              day{static_cast<unsigned>(std::max(slots.day, 0))}};
    if (!date.ok() || slots.year < 1900 || slots.year > 9998) return std::nullopt;
    if (slots.hour >= 0 && slots.minute < 0) return std::nullopt; // "12: 31" has no time for certain
    if (slots.hour > 24 || slots.minute > 59 || slots.second > 60) return std::nullopt;
    int hour = std::max(slots.hour, 0);
    if (slots.afternoon && hour < 12) hour += 12;
    if (slots.morning && hour == 12) hour = 0;
    const std::int64_t days = sys_days(date).time_since_epoch().count();
    const std::int64_t minutes = hour * 60 + std::max(slots.minute, 0) + slots.minutesBehind;
    return (days * 24 * 60 + minutes) * 60 + slots.second;
}

std::optional<std::int64_t> DateOfMessage(const MessageFields& message)
{
    if (const auto sent = ReadMessageDate(FieldValue(message, "date"))) return sent;
    const std::string_view received = FieldValue(message, "received");
    const std::size_t semicolon = received.rfind(';');
    return semicolon == received.npos ? std::nullopt : ReadMessageDate(received.substr(semicolon + 1));
}

DateFields FieldsOfMoment(std::int64_t secondsSince1970)
{
    return FieldsOf(DateFromSeconds(kBefore1970 + secondsSince1970));
}
