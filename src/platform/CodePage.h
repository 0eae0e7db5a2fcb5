// CodePage.h: the system's ANSI code page, through which every text passes that leaves the program.
#pragma once
#include "text/Text.h"

struct CodePage {
    virtual ~CodePage() = default;
    // What does not fit becomes the default character ("?"), or on Windows a look-alike (L for L with
    // stroke).
    virtual std::string ToAnsi(TextView text) = 0;
    virtual Text FromAnsi(std::string_view bytes) = 0;
    // Code page 65001. Bad bytes: on Windows the system decides; natively U+FFFD for each maximal bad part.
    virtual Text FromUtf8Bytes(std::string_view bytes) = 0;
};

// What a program that knows the code page alone sees of a text.
inline Text ThroughAnsi(CodePage& codePage, TextView text)
{
    return codePage.FromAnsi(codePage.ToAnsi(text));
}

// Whether such a program can be told the text.
inline bool SurvivesAnsi(CodePage& codePage, TextView text)
{
    return ThroughAnsi(codePage, text) == text;
}
