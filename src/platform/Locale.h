// Locale.h: what the user's locale decides: names of months and days, and the text form of dates.
#pragma once
#include "text/Text.h"

#include <optional>

struct Locale {
    virtual ~Locale() = default;
    virtual Text MonthName(int month, bool abbreviated) = 0; // 1 to 12
    virtual Text ShortWeekdayName(int weekday) = 0;          // 0 Sunday to 6 Saturday
    // General date: short date, blank, long time; the time is left out at exactly midnight
    // (VarBstrFromDate). Every stored CRC is made from this text, so it must never change for a system.
    virtual Text DateText(double date) = 0;
    // The other way (VarDateFromStr): nothing when the locale does not read the text as a date.
    virtual std::optional<double> ParseDateText(const Text& text) = 0;
};
