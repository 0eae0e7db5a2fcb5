// RemoteMemory.h: blocks of memory inside the mail client's process, for the structures and texts that its
// controls read and write when they are sent messages.
// Fails by: the answer; nothing is thrown. The address of a block that could not be had is
// RemoteAddress::none, a read that failed gives zeros, and so the texts come out empty.
#pragma once
#include "platform/ProcessApi.h"

#include <vector>

// There is one shared handle. Kept: an operation that holds two blocks works with the handle of the second,
// whose release closes it; the release of the first then does nothing, and that block and the first handle
// stay behind until SweepRemoteMemory.
struct RemoteMemory {
    explicit RemoteMemory(ProcessApi& processApi) : api(processApi) {}

    struct Block {
        RemoteAddress address; // none: released, or never had
        std::int32_t process;  // handle it was allocated with; 0: closed
        std::uint32_t processId;
    };

    ProcessApi& api;
    bool platformChecked = false;
    bool platformIsNt = false;
    std::int32_t sharedHandle = 0;
    bool denied = false;       // the client has higher rights than this program
    std::vector<Block> blocks; // on the NT path: what is not released or not closed yet
};

// What was asked for in one allocation, and all that may be copied to or from it: beyond it lies memory that
// the client uses itself.
struct RemoteBlock {
    RemoteAddress address = RemoteAddress::none;
    std::uint32_t size = 0; // bytes
};

bool IsNtPlatform(RemoteMemory& memory);
RemoteBlock RemoteAlloc(RemoteMemory& memory, WindowHandle window, std::uint32_t size);
// Both copy from the block's first byte on, `size` bytes or none: more than the block holds are refused.
// False when nothing was written: the block then still holds the structure of the request before.
bool RemoteWrite(RemoteMemory& memory, const RemoteBlock& block, const void* source, std::uint32_t size);
// False when nothing was read: the destination is zeros then.
bool RemoteRead(RemoteMemory& memory, const RemoteBlock& block, void* destination, std::uint32_t size);
void RemoteFree(RemoteMemory& memory, const RemoteBlock& block);

// Releases what stayed behind, with a handle of its own. To be called between operations: a left block
// takes 64 KB of the client's address space, so that some 30,000 of them would bring it down.
void SweepRemoteMemory(RemoteMemory& memory);

// After each of many operations: sweeps behind every 64th.
void SweepNowAndThen(RemoteMemory& memory, std::int32_t operations);

// Leaves everything to the client for good: no release, no reading back, no sweep reaches it any more. For a
// message that was not answered: its handler may still be running, and would write into what was released.
void ForgetRemoteMemory(RemoteMemory& memory);
