#include "text/Numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

const char* ValueFault::what() const noexcept
{
    switch (fault_) {
    case Fault::typeMismatch:
        return "Type mismatch";
    case Fault::overflow:
        return "Overflow";
    case Fault::invalidCall:
        break;
    }
    return "Invalid procedure call or argument";
}

namespace {

bool IsWhite(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}
bool IsDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

std::size_t SkipWhite(TextView text, std::size_t at)
{
    while (at < text.size() && IsWhite(text[at])) ++at;
    return at;
}

// More digits than can decide how a double is rounded; of those behind only "not all zero" matters.
constexpr std::size_t kMaxDigits = 800;
constexpr int kMaxExponent = 100'000'000;

// The significant digits of a number as they are met, and the power of ten behind them.
struct Digits {
    std::string kept;
    std::int64_t exponent = 0;
    bool any = false;
    bool moreBehind = false;

    void Take(char16_t unit, bool fraction)
    {
        any = true;
        const bool leadingZero = kept.empty() && unit == u'0';
        const bool keep = !leadingZero && kept.size() < kMaxDigits;
        if (keep) kept += static_cast<char>(unit);
        if (fraction && (keep || leadingZero)) --exponent;
        if (!fraction && !keep && !leadingZero) ++exponent;
        moreBehind = moreBehind || (!keep && unit != u'0');
    }

    double Value() const
    {
        const std::string plain =
            moreBehind ? kept + "1e" + std::to_string(exponent - 1) : kept + "e" + std::to_string(exponent);
        return std::strtod(plain.c_str(), nullptr);
    }
};

struct ScannedNumber {
    double value = 0;
    std::size_t end = 0; // behind the last character used; 0 when there is no number
};

// Returns the position behind the exponent at `at`, or `at` itself when there is none.
std::size_t ScanExponent(TextView text, std::size_t at, std::int64_t& exponent)
{
    if (at >= text.size() || (text[at] != u'e' && text[at] != u'E')) return at;
    std::size_t digit = at + 1;
    const bool negative = digit < text.size() && text[digit] == u'-';
    if (negative || (digit < text.size() && text[digit] == u'+')) ++digit;
    if (digit >= text.size() || !IsDigit(text[digit])) return at;
    std::int64_t power = 0;
    for (; digit < text.size() && IsDigit(text[digit]); ++digit)
        if (power < kMaxExponent) power = power * 10 + (text[digit] - u'0');
    exponent += negative ? -power : power;
    return digit;
}

ScannedNumber ScanNumber(TextView text)
{
    std::size_t at = SkipWhite(text, 0);
    const bool negative = at < text.size() && text[at] == u'-';
    if (negative || (at < text.size() && text[at] == u'+')) ++at;

    // Nearly every number there is: so few digits, and nothing else, are exact in a double.
    constexpr std::size_t kExact = 15;
    std::int64_t whole = 0;
    std::size_t end = at;
    for (; end < text.size() && end - at < kExact && IsDigit(text[end]); ++end)
        whole = whole * 10 + (text[end] - u'0');
    const char16_t next = end < text.size() ? text[end] : u' ';
    if (end > at && !IsDigit(next) && next != u'.' && next != u'e' && next != u'E')
        return {static_cast<double>(negative ? -whole : whole), end};
    if (end == at && next != u'.') return {};

    Digits digits;
    for (; at < text.size() && IsDigit(text[at]); ++at) digits.Take(text[at], false);
    if (at < text.size() && text[at] == u'.') {
        ++at;
        for (; at < text.size() && IsDigit(text[at]); ++at) digits.Take(text[at], true);
    }
    if (!digits.any) return {};
    at = ScanExponent(text, at, digits.exponent);
    if (digits.kept.empty()) return {0, at};
    const double value = digits.Value();
    return {negative ? -value : value, at};
}

} // namespace

double LeadingNumber(TextView text)
{
    return ScanNumber(text).value;
}

bool IsNumericText(TextView text)
{
    const std::size_t end = ScanNumber(text).end;
    return end != 0 && SkipWhite(text, end) == text.size();
}

double RoundHalfEven(double number)
{
    return std::nearbyint(number); // the rounding mode is never changed: to nearest, halves to even
}

std::int16_t ToInt16(double number)
{
    const double whole = RoundHalfEven(number);
    if (!(whole >= -32768 && whole <= 32767)) throw ValueFault(Fault::overflow);
    return static_cast<std::int16_t>(whole);
}

std::int16_t Int16OfText(TextView text)
{
    const ScannedNumber number = ScanNumber(text);
    if (number.end == 0 || SkipWhite(text, number.end) != text.size()) throw ValueFault(Fault::typeMismatch);
    return ToInt16(number.value);
}

Text ShortestText(float number)
{
    char buffer[64];
    const double wide = static_cast<double>(number);
    int decimals = 0; // of the form d.ddde+dd
    for (;; ++decimals) {
        std::snprintf(buffer, sizeof buffer, "%.*e", decimals, wide);
        if (decimals == 8 || std::strtof(buffer, nullptr) == number) break;
    }
    const char* exponentText = std::strchr(buffer, 'e');
    if (exponentText == nullptr) return FromAscii(buffer); // infinite or no number
    const int exponent = std::atoi(exponentText + 1);
    if (exponent >= -5 && exponent <= 9)
        std::snprintf(buffer, sizeof buffer, "%.*f", std::max(0, decimals - exponent), wide);
    return FromAscii(buffer);
}
