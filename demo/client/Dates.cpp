// Dates.cpp: reads the dates of header fields and shows them as the user's locale wants it.
#include "demo/client/Dates.h"

#include "demo/mailbox/Headers.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <vector>

namespace {

struct Zone {
    const char* name;
    int hoursEast;
};
constexpr Zone kZones[] = {{"EST", -5}, {"EDT", -4}, {"CST", -6}, {"CDT", -5},
                           {"MST", -7}, {"MDT", -6}, {"PST", -8}, {"PDT", -7}};
constexpr const char* kMonths[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                   "jul", "aug", "sep", "oct", "nov", "dec"};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The whole of text as a small number, -1 when it is none.
int NumberOf(std::string_view text)
{
    if (text.empty() || text.size() > 5) return -1;
    int number = 0;
    for (const char c : text) {
        if (!IsDigit(c)) return -1;
        number = number * 10 + (c - '0');
    }
    return number;
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separators)
{
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
        if (end > at) parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

std::string WithoutComments(std::string_view text)
{
    std::string kept;
    int depth = 0;
    for (const char c : text) {
        if (c == '(')
            ++depth;
        else if (c == ')' && depth > 0)
            --depth;
        else if (depth == 0)
            kept += c;
    }
    return kept;
}

int MonthOf(std::string_view token)
{
    for (int m = 0; m < 12; ++m)
        if (token.size() >= 3 && EqualNoCase(token.substr(0, 3), kMonths[m])) return m + 1;
    return 0;
}

// What has been read so far; -1: not yet.
struct Fields {
    int year = -1, month = -1, day = -1, hour = 0, minute = 0, second = 0, minutesEast = 0;
    bool timeRead = false;

    void TakeTime(std::string_view token)
    {
        const std::vector<std::string_view> parts = Split(token, ":.");
        if (parts.size() < 2) return;
        hour = NumberOf(parts[0]);
        minute = NumberOf(parts[1]);
        second = parts.size() > 2 ? NumberOf(parts[2]) : 0;
        timeRead = true;
    }

    void TakeNumericDate(std::string_view token)
    {
        const bool yearFirst = token.find('-') != std::string_view::npos;
        const std::vector<std::string_view> parts = Split(token, "-/");
        if (parts.size() != 3) return;
        if (MonthOf(parts[1]) > 0) { // "3-Apr-2007"
            day = NumberOf(parts[0]), month = MonthOf(parts[1]), year = NumberOf(parts[2]);
            return;
        }
        year = NumberOf(parts[yearFirst ? 0 : 2]);
        month = NumberOf(parts[yearFirst ? 1 : 0]);
        day = NumberOf(parts[yearFirst ? 2 : 1]);
    }

    void TakeZone(std::string_view token)
    {
        const int number = NumberOf(token.substr(1));
        if (number >= 0 && (token[0] == '+' || token[0] == '-')) {
            const int minutes = number / 100 * 60 + number % 100;
            minutesEast = token[0] == '-' ? -minutes : minutes;
        }
        for (const Zone& zone : kZones)
            if (EqualNoCase(token, zone.name)) minutesEast = zone.hoursEast * 60;
    }

    void Take(std::string_view token)
    {
        const int number = NumberOf(token);
        if (token.find(':') != std::string_view::npos)
            TakeTime(token);
        else if (number >= 0 && day < 0 && number <= 31 && token.size() <= 2)
            day = number;
        else if (number >= 0 && year < 0)
            year = number;
        else if (IsDigit(token[0]) && token.find_first_of("-/") != std::string_view::npos)
            TakeNumericDate(token);
        else if (EqualNoCase(token, "PM") && hour < 12)
            hour += 12;
        else if (EqualNoCase(token, "AM") && hour == 12)
            hour = 0;
        else if (timeRead)
            TakeZone(token);
        else if (month < 0 && MonthOf(token) > 0)
            month = MonthOf(token);
    }
};

} // namespace

std::optional<Moment> ParseDate(std::string_view text)
{
    Fields f;
    const std::string plain = WithoutComments(text);
    for (const std::string_view token : Split(plain, " \t,")) f.Take(token);
    if (f.year >= 0 && f.year < 50)
        f.year += 2000; // RFC 2822, 4.3
    else if (f.year >= 50 && f.year < 1000)
        f.year += 1900;
    if (f.year < 0 || f.month < 1 || f.month > 12 || f.day < 1 || f.day > 31) return {};
    if (f.hour < 0 || f.hour > 23 || f.minute < 0 || f.minute > 59 || f.second < 0 || f.second > 60)
        return {};
    return Moment{f.year, f.month, f.day, f.hour, f.minute, f.second, f.minutesEast};
}

std::wstring ShowDate(const Moment& moment)
{
    SYSTEMTIME shown{};
    shown.wYear = static_cast<WORD>(moment.year);
    shown.wMonth = static_cast<WORD>(moment.month);
    shown.wDay = static_cast<WORD>(moment.day);
    shown.wHour = static_cast<WORD>(moment.hour);
    shown.wMinute = static_cast<WORD>(moment.minute);
    shown.wSecond = static_cast<WORD>(moment.second == 60 ? 59 : moment.second); // a leap second

    FILETIME stated, utc, local;
    if (!SystemTimeToFileTime(&shown, &stated)) return {};
    ULARGE_INTEGER ticks{};
    ticks.LowPart = stated.dwLowDateTime;
    ticks.HighPart = stated.dwHighDateTime;
    const LONGLONG east = LONGLONG(moment.minutesEast) * 60 * 10000000;
    if (LONGLONG(ticks.QuadPart) < east) return {};
    ticks.QuadPart -= ULONGLONG(east);
    utc.dwLowDateTime = ticks.LowPart;
    utc.dwHighDateTime = ticks.HighPart;
    // Today's offset also for dates of the other half of the year: so mail clients of this kind show them.
    if (!FileTimeToLocalFileTime(&utc, &local) || !FileTimeToSystemTime(&local, &shown)) return {};

    std::array<wchar_t, 80> date{}, time{};
    const int dateLength =
        GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &shown, nullptr, date.data(), 80);
    const int timeLength =
        GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &shown, nullptr, time.data(), 80);
    if (dateLength == 0 || timeLength == 0) return {};
    return std::wstring(date.data()) + L" " + time.data();
}
