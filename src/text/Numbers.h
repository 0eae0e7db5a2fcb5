// Numbers.h: numbers from text and text from numbers, by the rules of the program's files and headers.
// Fails by: ValueFault, where a comment says so.
#pragma once
#include "text/Text.h"

#include <exception>

enum class Fault { typeMismatch, overflow, invalidCall };

// A value that cannot be converted. The words are those the user meets: "Type mismatch", "Overflow",
// "Invalid procedure call or argument".
class ValueFault : public std::exception {
public:
    explicit ValueFault(Fault fault) : fault_(fault) {}
    Fault Kind() const { return fault_; }
    const char* what() const noexcept override;
    Text Words() const { return FromAscii(what()); }

private:
    Fault fault_;
};

// The number at the start of a text: white space, sign, digits with an optional decimal point, exponent.
// What follows is ignored; without a number 0. Beyond the range of a double: infinity.
double LeadingNumber(TextView text);

// Whether the whole text is one such number. White space at both ends does not matter; thousands commas,
// currency signs, parentheses and other bases make it no number.
bool IsNumericText(TextView text);

double RoundHalfEven(double number);

// Rounded half to even; Overflow outside -32768 to 32767.
std::int16_t ToInt16(double number);
// The same of a whole text; Type mismatch when IsNumericText is false.
std::int16_t Int16OfText(TextView text);

// The shortest decimal text that reads back as the same number: "1.5", "0", "-0.25", "1e+20".
Text ShortestText(float number);
