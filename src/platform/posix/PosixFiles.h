// PosixFiles.h: files through open(2). Names are UTF-8; a name that is not comes back with U+FFFD in it and
// cannot be opened. A text with a NUL in it names no file.
#pragma once
#include "platform/Files.h"

struct PosixFiles final : Files {
    bool FileExists(const Text& path) override;
    bool DirectoryExists(const Text& path) override;
    bool MakeDirectory(const Text& path) override;
    FileError ListAll(const Text& directory, std::vector<DirectoryEntry>& entries) override;
    FileError ReadWhole(const Text& path, std::string& bytes) override;
    FileError Append(const Text& path, std::string_view bytes) override;
    // Shared and exclusive use is kept with flock, which binds programs that ask for it and no others.
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) override;
    FileError Rename(const Text& from, const Text& to) override;
    FileError Replace(const Text& from, const Text& to) override;
    bool Delete(const Text& path) override; // files only
    FileError SetLastChange(const Text& path, double localDate) override;
};
