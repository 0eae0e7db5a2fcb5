// EncodedWords.h: encoded words ("=?charset?encoding?text?=") in header values, and their character sets.
// Fails by: ValueFault Overflow for base64 with a wrong character in the first place of a group of four.
#pragma once
#include "platform/CodePage.h"

struct HeaderSegment {
    TextView text; // part of the value that was split, delimiters included
    bool isWord = false;
};

// The runs of plain text and the encoded words of a value, in order; together they are the value.
std::vector<HeaderSegment> SplitEncodedWords(TextView value);

struct HeaderText {
    Text shown; // what a reader is to see
    Text key;   // what the mail client's list shows
};

// Decodes words in ISO-8859-1, ISO-8859-15, Windows-1252 and UTF-8; those in other sets stay as they are.
HeaderText DecodeHeaderText(TextView value, CodePage& codePage);

// Whole groups of four only; the bytes become text through the ANSI code page.
Text Base64Decode(TextView text, CodePage& codePage);

// A subject cell as the list shows it, in the form that file subjects have: runs of spaces collapsed.
Text CleanSubject(TextView subject);
