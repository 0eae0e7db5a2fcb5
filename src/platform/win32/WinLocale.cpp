#include "platform/win32/WinLocale.h"

#include <windows.h>

#include "platform/win32/WideText.h"

#include <oleauto.h>

namespace {

Text UserName(LCTYPE type)
{
    wchar_t name[80]; // the longest that the system holds
    const int count = GetLocaleInfoW(LOCALE_USER_DEFAULT, type, name, 80);
    return count > 0 ? FromWide(name) : Text{};
}

} // namespace

Text WinLocale::MonthName(int month, bool abbreviated)
{
    if (month < 1 || month > 12) return {};
    const LCTYPE january = abbreviated ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1;
    return UserName(january + static_cast<LCTYPE>(month - 1));
}

Text WinLocale::ShortWeekdayName(int weekday)
{
    if (weekday < 0 || weekday > 6) return {};
    return UserName(LOCALE_SABBREVDAYNAME1 + static_cast<LCTYPE>((weekday + 6) % 7)); // the first is Monday
}

Text WinLocale::DateText(double date)
{
    BSTR characters = nullptr;
    if (FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &characters))) return {};
    Text text = FromWide(characters, SysStringLen(characters));
    SysFreeString(characters);
    return text;
}

std::optional<double> WinLocale::ParseDateText(const Text& text)
{
    DATE date = 0;
    if (text.find(u'\0') != Text::npos) return std::nullopt; // would be read up to there
    // Older headers want a pointer to what they do not change.
    if (FAILED(VarDateFromStr(const_cast<wchar_t*>(Wide(text)), LOCALE_USER_DEFAULT, 0, &date)))
        return std::nullopt;
    return date;
}
