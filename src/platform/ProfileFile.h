// ProfileFile.h: initialisation files of sections, keys and values ("[Options]", "ID only=1").
#pragma once
#include "text/Text.h"

struct ProfileFile {
    virtual ~ProfileFile() = default;
    // The stored value, at most 254 characters of it; empty when file, section or key is missing.
    virtual Text Read(const Text& section, const Text& key, const Text& file) = 0;
    // Makes file and section when missing; false when it could not be written.
    virtual bool Write(const Text& section, const Text& key, const Text& value, const Text& file) = 0;
};
