// NoFiles.h: a file system that holds nothing and refuses everything; a test overrides what it needs.
#pragma once
#include "platform/Files.h"

struct NoFiles : Files {
    bool FileExists(const Text&) override { return false; }
    bool DirectoryExists(const Text&) override { return false; }
    bool MakeDirectory(const Text&) override { return false; }
    FileError ListAll(const Text&, std::vector<DirectoryEntry>&) override { return FileError::notFound; }
    FileError ReadWhole(const Text&, std::string& bytes) override
    {
        bytes.clear();
        return FileError::notFound;
    }
    FileError Append(const Text&, std::string_view) override { return FileError::denied; }
    std::unique_ptr<RandomFile> Open(const Text&, OpenMode, FileError& error) override
    {
        error = FileError::denied;
        return nullptr;
    }
    FileError Rename(const Text&, const Text&) override { return FileError::denied; }
    FileError Replace(const Text&, const Text&) override { return FileError::denied; }
    bool Delete(const Text&) override { return false; }
    FileError SetLastChange(const Text&, double) override { return FileError::denied; }
};
