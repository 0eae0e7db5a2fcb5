// Text.h: the program's text type and the few operations on it that everything above uses.
// Text is UTF-16, one unit per char16_t, on every system, so that lengths, cuts and lone surrogates are
// those of Windows. None of these functions can fail.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using Text = std::u16string;
using TextView = std::u16string_view;

Text FromAscii(std::string_view ascii);
Text DecimalText(std::int64_t number);

// UTF-8 for files and streams outside Windows. Lone surrogates and bad bytes become U+FFFD, one for each
// maximal bad part (Unicode, "substitution of maximal subparts").
std::string ToUtf8(TextView text);
Text FromUtf8(std::string_view bytes);

// Number of non-overlapping occurrences, case-sensitive; 0 when none or when delimiter is empty.
std::size_t CountOf(TextView text, TextView delimiter);

// The index-th field, counting from 1, of text split at delimiter; empty when text holds fewer than
// index - 1 delimiters. Field 1 of a text without the delimiter is the whole text.
TextView FieldOf(TextView text, TextView delimiter, std::size_t index);

// Each run of two or more spaces becomes one space. Kept: a single character behind the last run is lost
// (stored keys were made so); a run at the very end becomes one space.
Text CollapseSpaces(TextView text);

// Where the first run of two or more spaces begins, at or after from; npos when there is none.
template <class Char>
std::size_t FindSpaceRun(const std::basic_string<Char>& text, std::size_t from)
{
    for (std::size_t i = from + 1; i < text.size(); i += 2) { // a run covers one of any two characters
        if (text[i] != ' ') continue;
        if (text[i - 1] == ' ') return i - 1;
        if (i + 1 < text.size() && text[i + 1] == ' ') return i;
    }
    return text.npos;
}

// CollapseSpaces in place, for bytes too.
template <class Char>
void CollapseSpacesIn(std::basic_string<Char>& text)
{
    std::size_t run = FindSpaceRun(text, 0);
    if (run == text.npos) return;
    std::size_t out = run;
    for (;;) {
        text[out++] = ' ';
        const std::size_t start = text.find_first_not_of(' ', run);
        if (start == text.npos) break;
        run = FindSpaceRun(text, start);
        const bool last = run == text.npos;
        const std::size_t end = last ? text.size() : run;
        // Kept: one character left over is dropped, two or more are not.
        if (last && end - start < 2) break;
        std::char_traits<Char>::move(&text[out], &text[start], end - start);
        out += end - start;
        if (last) break;
    }
    text.resize(out);
}

// The text before its first NUL; the whole text when it has none.
TextView CutAtNul(TextView text);

// Without leading and trailing spaces (U+0020 only).
TextView TrimSpaces(TextView text);

Text ReplaceAll(TextView text, TextView sought, TextView replacement);
std::vector<Text> SplitAt(TextView text, TextView delimiter);

// Letter case is folded unit by unit for Latin, Greek and Cyrillic, the scripts of the ANSI code pages.
char16_t FoldBeyondAscii(char16_t unit); // from U+0080 on
inline char16_t FoldCase(char16_t unit)
{
    if (unit >= 0x80) return FoldBeyondAscii(unit);
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}
Text FoldCase(TextView text);
bool EqualNoCase(TextView a, TextView b);
// Position of the first occurrence at or after from; npos when none. An empty sought text is found at from.
std::size_t FindNoCase(TextView text, TextView sought, std::size_t from = 0);
