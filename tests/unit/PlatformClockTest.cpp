// PlatformClockTest.cpp: the clock of the system that the tests run on.
#include "platform/System.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <string>

namespace {

double UniversalNow()
{
    return 25569 + static_cast<double>(std::time(nullptr)) / 86400; // from 1 January 1970 on
}

} // namespace

TEST(PlatformClock, LocalTimeIsNoFartherFromUniversalTimeThanAnyZone)
{
    EXPECT_NEAR(SystemClock().LocalNow(), UniversalNow(), 15.0 / 24);
}

#ifndef _WIN32
TEST(PlatformClock, TheZoneAndItsSummerTimeCount)
{
    const char* const before = std::getenv("TZ");
    const std::string restored = before ? before : "";
    // hours: east of Universal Time
    const std::tuple<const char*, double, bool> cases[] = {
        {"AAA-5:30", 5.5, false},
        {"EST5", -5, false},
        {"EST5EDT,0/0,J365/25", -4, true}, // summer time all year
    };
    SystemClock clock;
    for (const auto& [zone, hours, summer] : cases) {
        ::setenv("TZ", zone, 1);
        ::tzset();
        EXPECT_NEAR((clock.LocalNow() - UniversalNow()) * 24, hours, 3.0 / 3600) << zone;
        EXPECT_EQ(clock.IsDaylightSavingNow(), summer) << zone;
        EXPECT_EQ(clock.MinutesEast(clock.UniversalNow()), hours * 60) << zone;
    }
    ::setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1); // on the second Sunday of March and the first of November
    ::tzset();
    EXPECT_EQ(clock.MinutesEast(1168430400), -300) << "in January 2007";
    EXPECT_EQ(clock.MinutesEast(1184068800), -240) << "in July";
    before ? ::setenv("TZ", restored.c_str(), 1) : ::unsetenv("TZ");
    ::tzset();
}
#endif
