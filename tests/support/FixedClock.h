// FixedClock.h: a clock that stands still.
#pragma once
#include "platform/Clock.h"

#include <functional>

struct FixedClock : Clock {
    double now = 39175.5; // 3 April 2007 12:00
    bool daylightSaving = false;
    double LocalNow() override { return now; }
    bool IsDaylightSavingNow() override { return daylightSaving; }
    std::int64_t universalNow = 1175594400;
    std::function<int(std::int64_t moment)> zone = [](std::int64_t) { return 0; };
    std::int64_t UniversalNow() override { return universalNow; }
    int MinutesEast(std::int64_t moment) override { return zone(moment); }
};
