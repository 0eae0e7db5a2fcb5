#include "platform/Files.h"

#include "platform/FileNames.h"

namespace {

template <class Wanted>
FileError ListNames(Files& files, const Text& directory, std::vector<Text>& names, Wanted wanted)
{
    names.clear();
    std::vector<DirectoryEntry> entries;
    const FileError error = files.ListAll(directory, entries);
    for (DirectoryEntry& entry : entries)
        if (wanted(entry)) names.push_back(std::move(entry.name));
    return error;
}

} // namespace

Text Describe(FileError error)
{
    switch (error) {
    case FileError::none:
        return {};
    case FileError::notFound:
        return u"The file was not found";
    case FileError::exists:
        return u"A file of this name exists already";
    case FileError::inUse:
        return u"The file is in use by another program";
    case FileError::denied:
        return u"Access to the file was denied";
    case FileError::readFailed:
        return u"The file could not be read";
    case FileError::writeFailed:
        return u"The file could not be written";
    case FileError::full:
        return u"The disk is full";
    case FileError::outOfMemory:
        return u"There is not enough memory to read the file";
    }
    return {};
}

FileError ListEmlFiles(Files& files, const Text& directory, std::vector<Text>& names)
{
    return ListNames(files, directory, names, [](const DirectoryEntry& entry) {
        return entry.kind == EntryKind::file && IsEmlName(entry.name);
    });
}

FileError ListDirectories(Files& files, const Text& directory, std::vector<Text>& names)
{
    return ListNames(files, directory, names, [](const DirectoryEntry& entry) {
        return entry.kind == EntryKind::directory || entry.kind == EntryKind::directoryLink;
    });
}

std::unique_ptr<RandomFile> OpenBeside(Files& files, const Text& path, Text& beside, FileError& error)
{
    constexpr int kMostTries = 100;
    std::unique_ptr<RandomFile> file;
    error = FileError::exists;
    for (int number = 1; number <= kMostTries && error == FileError::exists; ++number) {
        beside = path + u".new" + (number == 1 ? Text() : DecimalText(number));
        file = files.Open(beside, OpenMode::createNew, error);
    }
    return file;
}
