#include "platform/posix/PosixClock.h"

#include <ctime>

namespace {

constexpr double kUnixEpoch = 25569; // 1 January 1970 as a day count

std::tm LocalTime(std::time_t now)
{
    std::tm fields{};
    localtime_r(&now, &fields);
    return fields;
}

} // namespace

double PosixClock::LocalNow()
{
    std::tm fields = LocalTime(std::time(nullptr));
    return kUnixEpoch + static_cast<double>(timegm(&fields)) / 86400;
}

bool PosixClock::IsDaylightSavingNow()
{
    return LocalTime(std::time(nullptr)).tm_isdst > 0;
}

std::int64_t PosixClock::UniversalNow()
{
    return std::time(nullptr);
}

int PosixClock::MinutesEast(std::int64_t moment)
{
    return static_cast<int>(LocalTime(moment).tm_gmtoff / 60);
}
