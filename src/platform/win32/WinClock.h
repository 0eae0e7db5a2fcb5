// WinClock.h: the system's local time and time zone.
#pragma once
#include "platform/Clock.h"

struct WinClock final : Clock {
    double LocalNow() override; // to the second
    bool IsDaylightSavingNow() override;
    std::int64_t UniversalNow() override;
    int MinutesEast(std::int64_t moment) override;
};
