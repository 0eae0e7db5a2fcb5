// LocaleTest.cpp: the user's locale, code page and clock as Windows has them, beside their fixed stand-ins.
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "platform/win32/WideText.h"
#include "platform/win32/WinClock.h"
#include "platform/win32/WinCodePage.h"
#include "platform/win32/WinLocale.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

namespace {

constexpr double kMorning = 39175 + 10.25 / 24; // 3 April 2007 10:15

bool UserHas(LCTYPE type, const wchar_t* wanted)
{
    wchar_t value[80] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, type, value, 80);
    return lstrcmpW(value, wanted) == 0;
}

} // namespace

TEST(WinLocale, DatesAreThoseOfTheUser)
{
    // readBack: of 03/04/2007
    const std::tuple<const wchar_t*, const wchar_t*, const char16_t*, const char16_t*, double> cases[] = {
        {L"dd/MM/yyyy", L"HH:mm:ss", u"03/04/2007 10:15:00", u"03/04/2007", 39175},
        {L"M/d/yyyy", L"h:mm:ss tt", u"4/3/2007 10:15:00 AM", u"4/3/2007", 39145},
    };
    WinLocale locale;
    bool known = false;
    for (const auto& [shortDate, time, morning, midnight, readBack] : cases) {
        if (!UserHas(LOCALE_SSHORTDATE, shortDate) || !UserHas(LOCALE_STIMEFORMAT, time)) continue;
        known = true;
        EXPECT_EQ(locale.DateText(kMorning), morning);
        EXPECT_EQ(locale.DateText(39175), midnight) << "no time at midnight";
        EXPECT_NEAR(locale.ParseDateText(u"03/04/2007 10:15").value_or(0), readBack + 10.25 / 24, 1e-9);
        EXPECT_NEAR(locale.ParseDateText(morning).value_or(0), kMorning, 1e-9);
    }
    if (!known) GTEST_SKIP() << "dates of another kind";
}

TEST(WinLocale, RefusesWhatIsNoDate)
{
    WinLocale locale;
    for (const Text& text : {Text(u""), Text(u"hello"), Text(u"32/13/2007"), Text(u"2007-04-03\0", 11)})
        EXPECT_FALSE(locale.ParseDateText(text).has_value()) << ToUtf8(text);
    EXPECT_NEAR(locale.ParseDateText(u"2007-04-03 10:15").value_or(0), kMorning, 1e-9) << "in every locale";
    EXPECT_EQ(locale.DateText(1e9), u"");
}

TEST(WinLocale, NamesOfAnEnglishUserAreThoseOfTheFixedLocale)
{
    if (PRIMARYLANGID(GetUserDefaultLangID()) != LANG_ENGLISH) GTEST_SKIP() << "not English";
    WinLocale locale;
    EnglishLocale english;
    for (int number = -1; number <= 13; ++number) {
        EXPECT_EQ(locale.MonthName(number, false), english.MonthName(number, false));
        EXPECT_EQ(locale.MonthName(number, true), english.MonthName(number, true));
        EXPECT_EQ(locale.ShortWeekdayName(number), english.ShortWeekdayName(number));
    }
}

// The fixed table gives "?" for whatever the system only fits a look-alike to.
TEST(WinCodePage, AgreesWithTheFixedTable)
{
    if (GetACP() != 1252) GTEST_SKIP() << "code page " << GetACP();
    WinCodePage page;
    CodePage1252 fixed;
    for (int number = 0; number < 256; ++number) {
        const std::string bytes(1, static_cast<char>(number));
        EXPECT_EQ(page.FromAnsi(bytes), fixed.FromAnsi(bytes)) << number;
    }
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const Text text(1, static_cast<char16_t>(unit));
        const std::string ansi = page.ToAnsi(text);
        EXPECT_EQ(fixed.ToAnsi(text), page.FromAnsi(ansi) == text ? ansi : "?") << unit;
    }
    EXPECT_EQ(page.ToAnsi(u"a\U0001F600b"), "a??b");
}

TEST(WinCodePage, ConvertsUtf8AndTextsOfAnyLength)
{
    WinCodePage page;
    EXPECT_EQ(page.FromUtf8Bytes("a \xC2\xA3 \xE6\x97\xA5 \xF0\x9F\x98\x80"), u"a \u00A3 \u65E5 \U0001F600");
    EXPECT_EQ(page.FromUtf8Bytes("") + page.FromAnsi(page.ToAnsi(u"")), u"");
    const std::string large(3 << 20, 'x');
    EXPECT_TRUE(page.ToAnsi(page.FromAnsi(large)) == large);
    EXPECT_EQ(page.FromAnsi(std::string("a\0b", 3)), Text(u"a\0b", 3));
}

// In January and July of 2007, of which one is in summer, wherever there is summer time.
TEST(WinClock, SummerTimeCountsOfThatDay)
{
    TIME_ZONE_INFORMATION zone;
    const DWORD now = GetTimeZoneInformation(&zone);
    ASSERT_NE(now, TIME_ZONE_ID_INVALID);
    const bool hasSummer = zone.DaylightDate.wMonth != 0;
    const int standard = static_cast<int>(-zone.Bias - (hasSummer ? zone.StandardBias : 0));
    const int summer = hasSummer ? static_cast<int>(-zone.Bias - zone.DaylightBias) : standard;
    WinClock clock;
    const int january = clock.MinutesEast(1168430400), july = clock.MinutesEast(1184068800);
    EXPECT_EQ(std::minmax(january, july), std::minmax(standard, summer));
    EXPECT_EQ(clock.IsDaylightSavingNow(), now == TIME_ZONE_ID_DAYLIGHT);
    EXPECT_EQ(clock.MinutesEast(-20000000000), 0) << "before the calendar begins";
    EXPECT_NEAR(25569 + static_cast<double>(clock.UniversalNow()) / 86400 +
                    clock.MinutesEast(clock.UniversalNow()) / 1440.0,
                clock.LocalNow(), 5.0 / 86400);
}
