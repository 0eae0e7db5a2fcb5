// RemoteMemory.h: blocks of memory inside the mail client's process, for the structures and texts that its
// controls read and write when they are sent messages.
// Fails by: nothing is reported. A block that could not be had is RemoteAddress::none, a read that failed
// gives zeros, and so the texts come out empty.
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

bool IsNtPlatform(RemoteMemory& memory);
RemoteAddress RemoteAlloc(RemoteMemory& memory, WindowHandle window, std::uint32_t size);
// False when nothing was written: the block then still holds the structure of the request before.
bool RemoteWrite(RemoteMemory& memory, RemoteAddress address, const void* source, std::uint32_t size);
// False when nothing was read: the destination is zeros then.
bool RemoteRead(RemoteMemory& memory, RemoteAddress address, void* destination, std::uint32_t size);
void RemoteFree(RemoteMemory& memory, RemoteAddress address);

// Releases what stayed behind, with a handle of its own. To be called between operations: a left block
// takes 64 KB of the client's address space, so that some 30,000 of them would bring it down.
void SweepRemoteMemory(RemoteMemory& memory);

// Leaves everything to the client for good: no release, no reading back, no sweep reaches it any more. For a
// message that was not answered: its handler may still be running, and would write into what was released.
void ForgetRemoteMemory(RemoteMemory& memory);
