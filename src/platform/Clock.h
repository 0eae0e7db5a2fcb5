// Clock.h: the time as the program needs it. Dates are day counts: days since 30 December 1899, the
// fraction being the time of day (OLE automation dates).
#pragma once
#include <cstdint>

struct Clock {
    virtual ~Clock() = default;
    virtual double LocalNow() = 0;
    // True only when the system reports daylight saving time in force now (GetTimeZoneInformation answers 2).
    virtual bool IsDaylightSavingNow() = 0;
    // Moments are seconds since the beginning of 1970 in Universal Time.
    virtual std::int64_t UniversalNow() = 0;
    // By how many minutes the user's local time is ahead of Universal Time at a moment of any year, by the
    // system's rules for summer time.
    virtual int MinutesEast(std::int64_t moment) = 0;
};
