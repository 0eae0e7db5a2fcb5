// HeaderPeers.h: other mail readers, asked for what this program takes out of a saved e-mail. Those in C and
// C++ get the file and the mark of attachments through this program's own routines, so that the headers alone
// differ.
#pragma once
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// Texts are decoded and UTF-8; addresses as in "Ann Lee <ann@x.example>, bob@x.example". Dates are seconds
// since the beginning of 1970 in Universal Time, 0 for one that is missing. Received is that of the last hop.
struct Answer {
    std::string from, to, cc, bcc, subject;
    std::int64_t delivery = 0, sent = 0, received = 0;
    bool attached = false;
};

enum class Extent { headerBlock, wholeMessage };
Answer ReadWithGmime(const std::string& path, Extent extent);
Answer ReadWithVmime(const std::string& path); // the header block

// Python's email package in a process of its own (headers.py), which reads a directory's files.
class PythonReader {
public:
    explicit PythonReader(const std::filesystem::path& directory);
    ~PythonReader();
    PythonReader(const PythonReader&) = delete;

    std::vector<Answer> Answers(); // of the files in the order of their names
    void ReadAll();                // the same without telling of it

private:
    void Ask(const std::string& command);
    std::string Line();

    int process_ = 0;
    std::FILE *to_ = nullptr, *from_ = nullptr;
};

void PreparePeers(); // once, before all others
