#include "platform/win32/WinClock.h"

#include <windows.h>

#include <oleauto.h>

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
