#include "platform/win32/WinClock.h"

#include <windows.h>

#include <oleauto.h>

namespace {

constexpr std::int64_t kTicksPerSecond = 10000000; // of a FILETIME
constexpr std::int64_t kBefore1970 = 11644473600;  // seconds from 1601 on, where a FILETIME begins

std::int64_t MomentOf(const FILETIME& time)
{
    return (std::int64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime) / kTicksPerSecond - kBefore1970;
}

} // namespace

double WinClock::LocalNow()
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    double date = 0;
    SystemTimeToVariantTime(&now, &date);
    return date;
}

bool WinClock::IsDaylightSavingNow()
{
    TIME_ZONE_INFORMATION zone;
    return GetTimeZoneInformation(&zone) == TIME_ZONE_ID_DAYLIGHT;
}

std::int64_t WinClock::UniversalNow()
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return MomentOf(now);
}

int WinClock::MinutesEast(std::int64_t moment)
{
    const std::int64_t ticks = (moment + kBefore1970) * kTicksPerSecond;
    const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SYSTEMTIME universal, local;
    FILETIME shown;
    if (!FileTimeToSystemTime(&time, &universal) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) ||
        !SystemTimeToFileTime(&local, &shown))
        return 0; // before 1601
    return static_cast<int>((MomentOf(shown) - moment) / 60);
}
