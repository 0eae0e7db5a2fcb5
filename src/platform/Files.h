// Files.h: the file system as the program needs it. Paths are full paths in the system's own form.
// Fails by: the answer; nothing here throws.
#pragma once
#include "text/Text.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

enum class FileError { none, notFound, exists, inUse, denied, readFailed, writeFailed, full, outOfMemory };
Text Describe(FileError error); // plain words for a message, without a full stop; empty for none

// One open file that is read and written at any place: the database file.
struct RandomFile {
    virtual ~RandomFile() = default; // closes
    virtual std::uint64_t Size() = 0;
    // All or nothing as far as the answer goes: a short read is false, a short write an error.
    virtual bool ReadAt(std::uint64_t offset, char* bytes, std::size_t count) = 0;
    // Past the end it extends the file.
    virtual FileError WriteAt(std::uint64_t offset, const char* bytes, std::size_t count) = 0;
    virtual bool Resize(std::uint64_t size) = 0;
    virtual FileError Flush() = 0; // down to the disk
};

enum class OpenMode {
    read,      // others may read meanwhile
    exclusive, // read and write, nobody else may have it open; inUse otherwise
    createNew, // exclusive, and the file must not exist yet
};

// What lies in a directory. A link to a file counts as the file.
enum class EntryKind {
    file,
    directory,
    directoryLink, // may lead out of the directory, or back into it
    other,         // no file to be read: a pipe, a link to nothing
};
struct DirectoryEntry {
    Text name;
    EntryKind kind = EntryKind::other;
    std::uint64_t size = 0; // bytes of a file
};

struct Files {
    virtual ~Files() = default;
    virtual bool FileExists(const Text& path) = 0;      // false for a directory
    virtual bool DirectoryExists(const Text& path) = 0; // with or without a trailing separator
    virtual bool MakeDirectory(const Text& path) = 0;   // one level; true when it exists afterwards
    // All that lies there but "." and "..", in the order of FileNames.h; nothing unless the answer is none.
    virtual FileError ListAll(const Text& directory, std::vector<DirectoryEntry>& entries) = 0;
    virtual FileError ReadWhole(const Text& path, std::string& bytes) = 0; // bytes are empty on failure
    // Opens for appending (made when missing), writes, closes.
    virtual FileError Append(const Text& path, std::string_view bytes) = 0;
    // Null when it fails, and error says why.
    virtual std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) = 0;
    virtual FileError Rename(const Text& from, const Text& to) = 0; // never replaces
    // A file of that name goes in the same step: there is always one of the two.
    virtual FileError Replace(const Text& from, const Text& to) = 0;
    virtual bool Delete(const Text& path) = 0;
    // The time of the file's last change: a day count (text/DayCount.h) in the user's time zone, with summer
    // time as it was on that day. One that the file system cannot hold leaves it as it is, which is no error.
    virtual FileError SetLastChange(const Text& path, double localDate) = 0;
};

// Of what ListAll tells the names (no paths) of the e-mails, as FileNames.h knows them; of the directories
// and links to them.
FileError ListEmlFiles(Files& files, const Text& directory, std::vector<Text>& names);
FileError ListDirectories(Files& files, const Text& directory, std::vector<Text>& names);

// Makes a file that is to get its name when it is whole: beside path, under the first of path + ".new",
// ".new2" and so on that is free, as nobody else's file is a rest of ours. Null when it fails, and error says
// why.
std::unique_ptr<RandomFile> OpenBeside(Files& files, const Text& path, Text& beside, FileError& error);
