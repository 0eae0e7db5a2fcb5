// WinLocale.h: names and date texts in the user's locale, as set in the control panel.
#pragma once
#include "platform/Locale.h"

struct WinLocale final : Locale {
    Text MonthName(int month, bool abbreviated) override;
    Text ShortWeekdayName(int weekday) override;
    Text DateText(double date) override; // empty for what the system does not take as a date
    std::optional<double> ParseDateText(const Text& text) override;
};
