// ReadableText.h: header values as a reader is to see them: RFC 2047, and what programs send in breach of it.
// Cannot fail: what cannot be decoded stays as it is.
#pragma once
#include "platform/CodePage.h"

// Encoded words are decoded; a character that was cut in two between neighbouring words is put together.
// Control characters become blanks. Raw bytes are UTF-8 where they are valid as such, else of the character
// set named (the body's, say), else of the ANSI code page.
Text ReadableText(std::string_view value, std::string_view charset, CodePage& codePage);
