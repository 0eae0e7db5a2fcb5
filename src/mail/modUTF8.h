// modUTF8.h: text that holds the bytes of another encoding, one character per byte.
#pragma once
#include "platform/CodePage.h"

// The code page that bytes are taken to be in, or are wanted in.
enum class BytesIn { ansi = -1, utf8 = 65001 };

// The bytes of text: by default those of the system's ANSI code page ("?" for what does not fit).
std::string TextToBytes(TextView text, CodePage& codePage, BytesIn wanted = BytesIn::ansi);

// Takes text for ANSI bytes and reads these as UTF-8 (or as ANSI again); the result ends before its first
// NUL.
Text Utf8ToText(TextView text, CodePage& codePage, BytesIn taken = BytesIn::utf8);

// Whether text, taken as ANSI bytes, is valid UTF-8 with at least one character of several bytes.
bool IsUtf8Text(TextView text, CodePage& codePage);
