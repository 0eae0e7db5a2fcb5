// WinProfileFile.h: initialisation files by the system's own calls, in the ANSI code page. As there, a value
// loses blanks at its ends and one pair of quotes around it. Names and values hold no NUL and no line end.
#pragma once
#include "platform/ProfileFile.h"

struct WinProfileFile final : ProfileFile {
    Text Read(const Text& section, const Text& key, const Text& file) override;
    bool Write(const Text& section, const Text& key, const Text& value, const Text& file) override;
};
