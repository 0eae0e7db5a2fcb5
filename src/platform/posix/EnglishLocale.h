// EnglishLocale.h: the fixed locale of systems that have none of Windows' kind: English names, and dates
// as "dd/mm/yyyy hh:mm:ss", the same on every machine.
#pragma once
#include "platform/Locale.h"

struct EnglishLocale final : Locale {
    Text MonthName(int month, bool abbreviated) override;
    Text ShortWeekdayName(int weekday) override;
    Text DateText(double date) override; // to the nearest second; empty outside the years 100 to 9999
    // "d/m/yyyy" or "yyyy-mm-dd", alone or followed by a blank or "T" and "h:mm" or "h:mm:ss".
    std::optional<double> ParseDateText(const Text& text) override;
};
