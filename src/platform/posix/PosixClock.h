// PosixClock.h: the clock through localtime, in the zone that TZ or the system names.
#pragma once
#include "platform/Clock.h"

struct PosixClock final : Clock {
    double LocalNow() override; // to the second
    bool IsDaylightSavingNow() override;
    std::int64_t UniversalNow() override;
    int MinutesEast(std::int64_t moment) override;
};
