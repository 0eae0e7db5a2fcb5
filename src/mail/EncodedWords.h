// EncodedWords.h: encoded words ("=?charset?encoding?text?=") in header values, and their character sets.
// Fails by: ValueFault Overflow for base64 with a wrong character in the first place of a group of four.
#pragma once
#include "platform/CodePage.h"

#include <utility>

struct HeaderSegment {
    TextView text; // part of the value that was split, delimiters included
    bool isWord = false;
};

// The runs of plain text and the encoded words of a value, in order; together they are the value.
std::vector<HeaderSegment> SplitEncodedWords(TextView value);

// A header's value in display mode, as a reader is to see it, and in comparison mode, as the mail client's
// list shows it.
struct HeaderTexts {
    Text display, comparison;
};

// Both forms by one decoding. ISO-8859-1, ISO-8859-15, Windows-1252 and UTF-8 are known; words in other sets
// stay as they are.
HeaderTexts DecodeHeaderTexts(TextView value, CodePage& codePage);
inline Text DecodeHeaderText(TextView value, bool comparisonMode, CodePage& codePage)
{
    HeaderTexts texts = DecodeHeaderTexts(value, codePage);
    return std::move(comparisonMode ? texts.comparison : texts.display);
}

// Whole groups of four only; the bytes become text through the ANSI code page.
Text Base64Decode(TextView text, CodePage& codePage);

// A subject cell as the list shows it, in the form that file subjects have: runs of spaces collapsed.
Text CleanSubject(TextView subject);
