// Clock.h: the time as the program needs it. Dates are day counts: days since 30 December 1899, the
// fraction being the time of day (OLE automation dates).
#pragma once

struct Clock {
    virtual ~Clock() = default;
    virtual double LocalNow() = 0;
    // True only when the system reports daylight saving time in force now (GetTimeZoneInformation answers 2).
    virtual bool IsDaylightSavingNow() = 0;
};
