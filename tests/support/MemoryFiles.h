// MemoryFiles.h: files in memory that can be stopped between any two writes, or made to fail at one.
#pragma once
#include "tests/support/NoFiles.h"

#include <algorithm>
#include <map>

// The bytes of a file. Copies share what is equal, and what was never written costs nothing, so that a
// test can keep every state of a large file.
class MemoryImage {
public:
    MemoryImage() = default;
    explicit MemoryImage(std::string_view bytes) { Write(0, bytes.data(), bytes.size()); }

    std::uint64_t Size() const { return size_; }
    bool Read(std::uint64_t offset, char* bytes, std::size_t count) const
    {
        if (offset > size_ || count > size_ - offset) return false;
        for (std::size_t done = 0; done < count;) {
            const auto [block, from, length] = Part(offset + done, count - done);
            if (const auto found = blocks_.find(block); found != blocks_.end())
                std::copy_n(found->second->data() + from, length, bytes + done);
            else
                std::fill_n(bytes + done, length, '\0');
            done += length;
        }
        return true;
    }
    void Write(std::uint64_t offset, const char* bytes, std::size_t count)
    {
        for (std::size_t done = 0; done < count;) {
            const auto [block, from, length] = Part(offset + done, count - done);
            const auto found = blocks_.find(block);
            std::string copy = found == blocks_.end() ? std::string(kBlock, '\0') : *found->second;
            copy.replace(from, length, bytes + done, length);
            blocks_[block] = std::make_shared<const std::string>(std::move(copy));
            done += length;
        }
        size_ = std::max(size_, offset + count);
    }
    void Resize(std::uint64_t size)
    {
        for (std::uint64_t at = size; at < size_ && at % kBlock != 0; ++at) Write(at, "", 1);
        blocks_.erase(blocks_.lower_bound((size + kBlock - 1) / kBlock), blocks_.end());
        size_ = size;
    }
    bool operator==(const MemoryImage& other) const
    {
        const auto same = [](const auto& a, const auto& b) {
            return a.first == b.first && (a.second == b.second || *a.second == *b.second);
        };
        return size_ == other.size_ &&
               std::equal(blocks_.begin(), blocks_.end(), other.blocks_.begin(), other.blocks_.end(), same);
    }
    std::string Bytes() const
    {
        std::string bytes(size_, '\0');
        Read(0, bytes.data(), bytes.size());
        return bytes;
    }

private:
    static constexpr std::size_t kBlock = 4096;
    struct Piece {
        std::uint64_t block;
        std::size_t from, length;
    };
    static Piece Part(std::uint64_t offset, std::size_t count)
    {
        const std::size_t from = offset % kBlock;
        return {offset / kBlock, from, std::min(kBlock - from, count)};
    }

    std::uint64_t size_ = 0;
    std::map<std::uint64_t, std::shared_ptr<const std::string>> blocks_;
};

struct MemoryFiles : NoFiles {
    std::map<Text, std::shared_ptr<MemoryImage>> files;
    bool record = false;
    std::vector<std::map<Text, MemoryImage>> history; // while record: all files after each change
    std::vector<std::size_t> flushedAt;               // while record: the history's length at each flush
    struct Written {
        std::uint64_t offset;
        std::string bytes;
    };
    std::vector<Written> written; // while record
    std::size_t changes = 0;      // writes, resizes, renames, deletions and flushes so far
    std::size_t failAt = 0;       // this change and, if failForGood, all later ones fail
    bool failForGood = false;
    std::size_t tornBytes = 0; // of a write that fails, as many bytes get to the file
    std::size_t flushes = 0, reads = 0;

    MemoryImage& operator[](const Text& path)
    {
        std::shared_ptr<MemoryImage>& file = files[path];
        if (!file) file = std::make_shared<MemoryImage>();
        return *file;
    }

    bool FileExists(const Text& path) override { return files.count(path) != 0; }
    FileError ReadWhole(const Text& path, std::string& bytes) override
    {
        bytes.clear();
        if (!FileExists(path)) return FileError::notFound;
        bytes = files[path]->Bytes();
        return FileError::none;
    }
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) override;
    FileError Rename(const Text& from, const Text& to) override
    {
        if (Fails()) return FileError::writeFailed;
        if (FileExists(to)) return FileError::exists;
        auto node = files.extract(from);
        if (node.empty()) return FileError::notFound;
        node.key() = to;
        files.insert(std::move(node));
        Note();
        return FileError::none;
    }
    bool Delete(const Text& path) override
    {
        if (Fails()) return false;
        const bool there = files.erase(path) != 0;
        Note();
        return there;
    }

    bool Fails()
    {
        ++changes;
        return failAt != 0 && (changes == failAt || (failForGood && changes > failAt));
    }
    void Note()
    {
        if (!record) return;
        std::map<Text, MemoryImage>& state = history.emplace_back();
        for (const auto& [path, image] : files) state.emplace(path, *image);
    }
};

class MemoryFile final : public RandomFile {
public:
    MemoryFile(MemoryFiles& files, std::shared_ptr<MemoryImage> image)
        : files_(files), image_(std::move(image))
    {
    }

    std::uint64_t Size() override { return image_->Size(); }
    bool ReadAt(std::uint64_t offset, char* bytes, std::size_t count) override
    {
        ++files_.reads;
        return image_->Read(offset, bytes, count);
    }
    FileError WriteAt(std::uint64_t offset, const char* bytes, std::size_t count) override
    {
        const bool fails = files_.Fails();
        image_->Write(offset, bytes, fails ? std::min(count, files_.tornBytes) : count);
        if (files_.record) files_.written.push_back({offset, std::string(bytes, count)});
        files_.Note();
        return fails ? FileError::full : FileError::none;
    }
    bool Resize(std::uint64_t size) override
    {
        if (files_.Fails()) return false;
        image_->Resize(size);
        files_.Note();
        return true;
    }
    FileError Flush() override
    {
        ++files_.flushes;
        if (files_.record) files_.flushedAt.push_back(files_.history.size());
        return files_.Fails() ? FileError::full : FileError::none;
    }

private:
    MemoryFiles& files_;
    std::shared_ptr<MemoryImage> image_;
};

inline std::unique_ptr<RandomFile> MemoryFiles::Open(const Text& path, OpenMode mode, FileError& error)
{
    const bool exists = FileExists(path);
    error = mode == OpenMode::createNew ? (exists ? FileError::exists : FileError::none)
                                        : (exists ? FileError::none : FileError::notFound);
    if (error != FileError::none) return nullptr;
    (*this)[path]; // made when it is to be new
    return std::make_unique<MemoryFile>(*this, files[path]);
}
