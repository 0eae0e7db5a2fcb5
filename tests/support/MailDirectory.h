// MailDirectory.h: a scratch directory that a test fills with files.
#pragma once
#include "tests/support/ScratchDirectory.h"

#include <fstream>
#include <string>
#include <string_view>

class MailDirectory : public ScratchDirectory {
public:
    // Makes the directories on the way.
    void Write(const std::string& name, std::string_view bytes) const
    {
        const std::filesystem::path file = Path() / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
};
