// FakeMemory.h: the memory of another process, reached through the calls for foreign memory alone, each of
// them checked: a block that was freed, a handle that was closed or a structure that is too short fails the
// test.
#pragma once
#include "platform/ProcessApi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

class FakeMemory : public ProcessApi {
public:
    std::uint32_t ownProcess = 4711; // another one when it is started anew

    bool elevated = false;          // it has higher rights than the program
    std::uint32_t platform = 2;     // VER_PLATFORM_WIN32_NT
    int platformFailures = 0;       // so many asks fail first
    std::vector<std::string> calls; // that were made
    std::size_t failAt = 0;         // the failAt-th of them is refused

    std::size_t LiveBlocks() const { return blocks_.size(); }
    std::size_t OpenHandles() const { return handles_.size(); }

    bool GetPlatformId(std::uint32_t& platformId) override
    {
        if (platformFailures-- > 0) return false;
        platformId = platform;
        return true;
    }
    std::int32_t OpenProcessHandle(std::uint32_t access, std::uint32_t processId, bool& denied) override
    {
        EXPECT_EQ(access, 0x38u);
        denied = denied || elevated;
        return !elevated && Note("open") && processId == ownProcess ? NewHandle() : 0;
    }
    RemoteAddress AllocateIn(std::int32_t process, std::uint32_t size) override
    {
        return Note("alloc", size) && IsOpen(process) ? NewBlock(size) : RemoteAddress::none;
    }
    bool Write(std::int32_t process, RemoteAddress to, const void* from, std::uint32_t size) override
    {
        return Note("write", size) && IsOpen(process) && Copy(Bytes(to, size, "write"), from, size);
    }
    bool Read(std::int32_t process, RemoteAddress from, void* to, std::uint32_t size) override
    {
        return Note("read", size) && IsOpen(process) && Copy(to, Bytes(from, size, "read"), size);
    }
    bool FreeIn(std::int32_t process, RemoteAddress address) override
    {
        return Note("free") && IsOpen(process) && blocks_.erase(static_cast<std::uint32_t>(address)) != 0;
    }
    bool Close(std::int32_t handle) override { return Note("close") && handles_.erase(handle) != 0; }
    std::int32_t CreateSharedMapping(std::uint32_t size) override
    {
        if (!Note("map", size)) return 0;
        NewBlock(size);
        return NewHandle();
    }
    RemoteAddress MapView(std::int32_t mapping) override
    {
        return Note("view") && IsOpen(mapping) ? static_cast<RemoteAddress>(nextBlock_) : RemoteAddress::none;
    }
    bool UnmapView(const void*) override { return false; }
    void MoveIn(RemoteAddress to, const void* from, std::uint32_t size) override
    {
        Copy(Bytes(to, size, "move in"), from, size);
    }
    void MoveOut(void* to, RemoteAddress from, std::uint32_t size) override
    {
        Copy(to, Bytes(from, size, "move out"), size);
    }

protected:
    // Null for a null pointer, to which a control answers nothing, and for what fails the test.
    char* Bytes(RemoteAddress address, std::size_t size, const char* what)
    {
        const auto at = static_cast<std::uint32_t>(address);
        const auto behind = blocks_.upper_bound(at);
        if (behind != blocks_.begin())
            if (auto& [start, bytes] = *std::prev(behind); at + size <= start + bytes.size())
                return bytes.data() + (at - start);
        if (at != 0) ADD_FAILURE() << "the client was given a bad address for: " << what;
        return nullptr;
    }
    template <class Item>
    Item* ItemAt(std::int32_t address, const char* what)
    {
        return reinterpret_cast<Item*>(Bytes(static_cast<RemoteAddress>(address), sizeof(Item), what));
    }
    void Put(RemoteAddress address, const void* from, std::size_t size, const char* what)
    {
        Copy(Bytes(address, size, what), from, size);
    }

private:
    static bool Copy(void* to, const void* from, std::size_t size)
    {
        if (to && from) std::memcpy(to, from, size);
        return to && from;
    }
    bool Note(std::string call, std::uint32_t size = 0)
    {
        calls.push_back(size == 0 ? std::move(call) : call + ' ' + std::to_string(size));
        return calls.size() != failAt;
    }
    bool IsOpen(std::int32_t handle) const { return handles_.count(handle) != 0; }
    std::int32_t NewHandle() { return *handles_.insert(nextHandle_ += 4).first; }
    RemoteAddress NewBlock(std::uint32_t size)
    {
        constexpr std::uint32_t kPage = 4096; // allocations take whole pages, as Windows has it
        blocks_[nextBlock_ += 0x10000].assign((size + kPage - 1) / kPage * kPage, '\0');
        return static_cast<RemoteAddress>(nextBlock_);
    }

    std::map<std::uint32_t, std::vector<char>> blocks_;
    std::set<std::int32_t> handles_;
    std::uint32_t nextBlock_ = 0x00A00000;
    std::int32_t nextHandle_ = 0x104;
};
