// NumbersTest.cpp: numbers from text.
#include "text/Numbers.h"

#include <cmath>
#include <gtest/gtest.h>

// The system's rules for the number that a text begins with, and for a text that is one, in a plain locale.
TEST(Numbers, ATextBeginsWithANumberOrIsOne)
{
    const struct {
        const char* why;
        Text text;
        double number;
        bool numeric;
    } cases[] = {
        {"white space at both ends, the CR of a header block included", u" \t-1.5 \r", -1.5, true},
        {"exponent", u"2.5e+2", 250, true},
        {"no digits in the exponent: it is no part of the number", u"7e+", 7, false},
        {"point first", u".5", 0.5, true},
        {"point last", u"3.", 3, true},
        {"a point alone", u".", 0, false},
        {"leading number", u"12:30", 12, false},
        {"other base", u"&H1F", 0, false},
        {"400 digits", Text(400, u'9'), HUGE_VAL, true},
        {"an exponent of 400 digits", u"1e" + Text(400, u'9'), HUGE_VAL, true},
        {"many zeros after the point", u"0." + Text(400, u'0') + u"1", 0, true},
        {"zeros that an exponent takes back", u"0." + Text(400, u'0') + u"25e401", 2.5, true},
        {"the digit behind 900 others decides", u"2.5" + Text(900, u'0') + u"1e0", 2.5, true},
        {"a NUL ends the number", Text{u'5', 0, u'6'}, 5, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(LeadingNumber(c.text), c.number) << c.why;
        EXPECT_EQ(IsNumericText(c.text), c.numeric) << c.why;
    }
}

// Halves go to the even number; what 16 bits do not hold is an overflow, in the system's words.
TEST(Numbers, ATextIsOneOfSixteenBitsOrAFault)
{
    const auto read = [](const Text& text) -> std::string {
        try {
            return std::to_string(Int16OfText(text));
        } catch (const ValueFault& fault) {
            return fault.what();
        }
    };
    const struct {
        Text text;
        const char* want;
    } cases[] = {
        {u"2.5", "2"},
        {u"32767.4", "32767"},
        {u"32767.5", "Overflow"},
        {u"-32768.5", "-32768"},
        {u"-32769", "Overflow"},
        {Text(500, u'1'), "Overflow"},
        {u"Apr", "Type mismatch"},
        {u"07\r", "7"},
    };
    for (const auto& [text, want] : cases) EXPECT_EQ(read(text), want) << ToUtf8(text);
    EXPECT_THROW(ToInt16(std::nan("")), ValueFault);
}
