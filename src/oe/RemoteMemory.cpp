#include "oe/RemoteMemory.h"

#include <cstring>

namespace {
constexpr std::uint32_t kPlatformNt = 2;
constexpr std::uint32_t kAccess = 0x38; // PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE
} // namespace

bool IsNtPlatform(RemoteMemory& memory)
{
    std::uint32_t platformId = 0;
    if (!memory.platformChecked && memory.api.GetPlatformId(platformId)) {
        memory.platformChecked = true;
        memory.platformIsNt = platformId == kPlatformNt;
    }
    return memory.platformIsNt;
}

RemoteAddress RemoteAlloc(RemoteMemory& memory, WindowHandle window, std::uint32_t size)
{
    if (!IsNtPlatform(memory)) {
        memory.sharedHandle = memory.api.CreateSharedMapping(size);
        return memory.api.MapView(memory.sharedHandle);
    }
    const std::uint32_t processId = memory.api.ProcessIdOf(window);
    memory.sharedHandle = memory.api.OpenProcessHandle(kAccess, processId, memory.denied);
    const RemoteAddress address = memory.api.AllocateIn(memory.sharedHandle, size);
    if (memory.sharedHandle != 0) memory.blocks.push_back({address, memory.sharedHandle, processId});
    return address;
}

bool RemoteWrite(RemoteMemory& memory, RemoteAddress address, const void* source, std::uint32_t size)
{
    if (IsNtPlatform(memory)) return memory.api.Write(memory.sharedHandle, address, source, size);
    if (address == RemoteAddress::none) return false;
    memory.api.MoveIn(address, source, size);
    return true;
}

bool RemoteRead(RemoteMemory& memory, RemoteAddress address, void* destination, std::uint32_t size)
{
    bool done = address != RemoteAddress::none;
    if (IsNtPlatform(memory))
        done = memory.api.Read(memory.sharedHandle, address, destination, size);
    else if (done)
        memory.api.MoveOut(destination, address, size);
    // Zeros and not what the buffer held: that may be the text of the cell before.
    if (!done) std::memset(destination, 0, size);
    return done;
}

void RemoteFree(RemoteMemory& memory, RemoteAddress address)
{
    if (!IsNtPlatform(memory)) {
        // Kept: the place that holds the address is passed and not the address, so the view stays mapped.
        (void)memory.api.UnmapView(&address);
        (void)memory.api.Close(memory.sharedHandle);
        return;
    }
    const bool freed = memory.api.FreeIn(memory.sharedHandle, address);
    const bool closed = memory.api.Close(memory.sharedHandle);
    for (RemoteMemory::Block& block : memory.blocks) {
        if (freed && block.address == address) block.address = RemoteAddress::none;
        if (closed && block.process == memory.sharedHandle) block.process = 0;
    }
    std::erase_if(memory.blocks, [](const RemoteMemory::Block& block) {
        return block.address == RemoteAddress::none && block.process == 0;
    });
}

void SweepRemoteMemory(RemoteMemory& memory)
{
    std::uint32_t processId = 0; // that `own` belongs to; as a rule all blocks lie in one process
    std::int32_t own = 0;
    for (const RemoteMemory::Block& block : memory.blocks) {
        if (block.address != RemoteAddress::none) {
            if (own == 0 || block.processId != processId) {
                if (own != 0) (void)memory.api.Close(own);
                processId = block.processId;
                own = memory.api.OpenProcessHandle(kAccess, processId, memory.denied);
            }
            (void)memory.api.FreeIn(own, block.address);
        }
        if (block.process != 0) (void)memory.api.Close(block.process);
    }
    if (own != 0) (void)memory.api.Close(own);
    memory.blocks.clear();
}

void ForgetRemoteMemory(RemoteMemory& memory)
{
    memory.blocks.clear();
    memory.sharedHandle = 0; // without it, the operation under way can neither read nor release
}
