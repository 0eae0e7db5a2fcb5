// OneFile.h: a file system in which every path names the same file, in memory, which may fail to be read.
#pragma once
#include "tests/support/NoFiles.h"

struct OneFile final : NoFiles {
    std::string content;
    FileError error = FileError::none;
    int reads = 0;

    FileError ReadWhole(const Text&, std::string& bytes) override
    {
        ++reads;
        bytes = error == FileError::none ? content : "";
        return error;
    }
};
