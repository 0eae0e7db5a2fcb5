// FixedClock.h: a clock that stands still.
#pragma once
#include "platform/Clock.h"

struct FixedClock : Clock {
    double now = 39175.5; // 3 April 2007 12:00
    bool daylightSaving = false;
    double LocalNow() override { return now; }
    bool IsDaylightSavingNow() override { return daylightSaving; }
};
