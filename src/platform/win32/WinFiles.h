// WinFiles.h: files through CreateFileW. Paths have at most 259 characters; a longer one, and a text with a
// NUL in it, names no file and is never cut.
#pragma once
#include "platform/Files.h"

struct WinFiles final : Files {
    bool FileExists(const Text& path) override;
    bool DirectoryExists(const Text& path) override;
    bool MakeDirectory(const Text& path) override;
    FileError ListAll(const Text& directory, std::vector<DirectoryEntry>& entries) override;
    FileError ReadWhole(const Text& path, std::string& bytes) override; // also while others write it
    FileError Append(const Text& path, std::string_view bytes) override;
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) override;
    FileError Rename(const Text& from, const Text& to) override;
    FileError Replace(const Text& from, const Text& to) override;
    bool Delete(const Text& path) override; // files only
    FileError SetLastChange(const Text& path, double localDate) override;
};
