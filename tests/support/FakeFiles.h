// FakeFiles.h: a file system in memory with Windows paths and names that ignore letter case.
#pragma once
#include "platform/FileNames.h"
#include "tests/support/NoFiles.h"

#include <algorithm>
#include <functional>
#include <map>
#include <new>
#include <set>

struct HeldFile final : RandomFile { // the bytes of a file, which grow to so many
    explicit HeldFile(std::string& held, std::size_t most = 0) : bytes(held), room(most) {}
    std::uint64_t Size() override { return bytes.size(); }
    bool ReadAt(std::uint64_t offset, char* to, std::size_t count) override
    {
        return offset + count <= bytes.size() && bytes.copy(to, count, offset) == count;
    }
    FileError WriteAt(std::uint64_t offset, const char* from, std::size_t count) override
    {
        bytes.replace(offset, count, from, count);
        return bytes.size() > room ? FileError::full : FileError::none;
    }
    bool Resize(std::uint64_t) override { return false; }
    FileError Flush() override { return FileError::none; }
    std::string& bytes;
    std::size_t room;
};

struct FakeFiles : NoFiles {
    std::map<Text, std::string> files;  // by folded path
    std::set<Text> directories;         // likewise, without a separator at the end
    std::set<Text> refused;             // directories that cannot be made or written to
    std::set<Text> unlisted;            // directories that cannot be read
    std::set<Text> inUse;               // files that another program writes
    std::map<Text, double> lastChanges; // that were set, by folded path
    std::set<Text> tooLarge;            // files that do not fit into memory
    Text gone;                          // a drive or directory, folded, below which nothing can be reached
    Text locked;                        // a file, folded, that another program has to itself
    std::function<void()> onLook;       // before each look at the store, which may take its time

    static Text Key(Text path)
    {
        while (!path.empty() && path.back() == u'\\') path.pop_back();
        return FoldCase(path);
    }
    bool IsGone(const Text& path)
    {
        if (onLook) onLook();
        return !gone.empty() && Key(path).starts_with(gone);
    }
    // Whether another program could save there. Where no directories are known, they do not matter.
    bool TakesFile(const Text& path)
    {
        const Text directory = path.substr(0, std::min(path.rfind(u'\\'), path.size()));
        return !IsGone(path) && !refused.count(Key(directory)) &&
               (directories.empty() || DirectoryExists(directory));
    }
    void AddFile(const Text& path, std::string bytes = "x") { files[Key(path)] = std::move(bytes); }

    FileError Rename(const Text& from, const Text& to) override
    {
        if (FileExists(to)) return FileError::exists;
        auto node = files.extract(Key(from));
        if (node.empty()) return FileError::notFound;
        node.key() = Key(to);
        files.insert(std::move(node));
        return FileError::none;
    }
    FileError Replace(const Text& from, const Text& to) override
    {
        files.erase(Key(to));
        return Rename(from, to);
    }
    bool Delete(const Text& path) override { return !IsGone(path) && files.erase(Key(path)) != 0; }
    FileError SetLastChange(const Text& path, double localDate) override
    {
        if (!FileExists(path)) return FileError::notFound;
        lastChanges[Key(path)] = localDate;
        return FileError::none;
    }
    bool FileExists(const Text& path) override { return !IsGone(path) && files.count(Key(path)) != 0; }
    bool DirectoryExists(const Text& path) override
    {
        return !IsGone(path) && directories.count(Key(path)) != 0;
    }
    // In lower case: the names' own is not kept.
    FileError ListAll(const Text& directory, std::vector<DirectoryEntry>& entries) override
    {
        entries.clear();
        if (unlisted.count(Key(directory))) return FileError::denied;
        if (IsGone(directory)) return FileError::notFound;
        const auto nameIn = [start = Key(directory) + u'\\'](const Text& path) {
            const bool inside = path.starts_with(start) && path.rfind(u'\\') + 1 == start.size();
            return inside ? path.substr(start.size()) : Text();
        };
        for (const Text& path : directories)
            if (!nameIn(path).empty()) entries.push_back({nameIn(path), EntryKind::directory});
        for (const auto& [path, bytes] : files)
            if (!nameIn(path).empty()) entries.push_back({nameIn(path), EntryKind::file, bytes.size()});
        std::sort(entries.begin(), entries.end(), [](const DirectoryEntry& a, const DirectoryEntry& b) {
            return NamePrecedes(a.name, b.name);
        });
        return entries.empty() && !DirectoryExists(directory) ? FileError::notFound : FileError::none;
    }
    FileError ReadWhole(const Text& path, std::string& bytes) override
    {
        const auto found = files.find(Key(path));
        bytes.clear();
        if (Key(path) == locked) return FileError::inUse;
        if (tooLarge.count(Key(path))) throw std::bad_alloc();
        const bool isThere = found != files.end() && !IsGone(path);
        if (isThere) bytes = found->second;
        return isThere ? FileError::none : FileError::notFound;
    }
    FileError Append(const Text& path, std::string_view bytes) override
    {
        if (Key(path) == locked) return FileError::inUse;
        files[Key(path)] += bytes;
        return FileError::none;
    }
    // For reading alone.
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) override
    {
        const bool isThere = mode == OpenMode::read && FileExists(path);
        error = !isThere ? FileError::notFound : inUse.count(Key(path)) ? FileError::inUse : FileError::none;
        if (error != FileError::none) return nullptr;
        return std::make_unique<HeldFile>(files.at(Key(path)));
    }
    bool MakeDirectory(const Text& path) override
    {
        if (refused.count(Key(path)) || IsGone(path)) return false;
        const Text key = Key(path);
        const Text parent = key.substr(0, key.rfind(u'\\'));
        if (!directories.count(parent)) return false; // one level only
        directories.insert(key);
        return true;
    }
};
