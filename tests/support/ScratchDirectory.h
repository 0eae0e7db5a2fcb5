// ScratchDirectory.h: an empty directory for one test, removed with all that is in it at the end.
#pragma once
#include "text/Text.h"

#include <filesystem>
#include <system_error>

class ScratchDirectory {
public:
    ScratchDirectory()
    {
        const std::filesystem::path root = std::filesystem::temp_directory_path();
        for (unsigned number = 0;; ++number) {
            path_ = root / ("quillbox-test-" + std::to_string(number));
            if (std::filesystem::create_directory(path_)) return;
        }
    }
    ~ScratchDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    // A full path in the system's form; of the directory itself without a name.
    Text operator/(const Text& name) const { return (name.empty() ? path_ : path_ / name).u16string(); }

private:
    std::filesystem::path path_;
};
