#include "oe/RemoteMemory.h"

#include <cstring>

namespace {
constexpr std::uint32_t kPlatformNt = 2;
constexpr std::uint32_t kAccess = 0x38; // PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE
constexpr std::int32_t kSweepEvery = 64;
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

RemoteBlock RemoteAlloc(RemoteMemory& memory, WindowHandle window, std::uint32_t size)
{
    if (!IsNtPlatform(memory)) {
        memory.sharedHandle = memory.api.CreateSharedMapping(size);
        return {memory.api.MapView(memory.sharedHandle), size};
    }
    const std::uint32_t processId = memory.api.ProcessIdOf(window);
    memory.sharedHandle = memory.api.OpenProcessHandle(kAccess, processId, memory.denied);
    const RemoteAddress address = memory.api.AllocateIn(memory.sharedHandle, size);
    if (memory.sharedHandle != 0) memory.blocks.push_back({address, memory.sharedHandle, processId});
    return {address, size};
}

bool RemoteWrite(RemoteMemory& memory, const RemoteBlock& block, const void* source, std::uint32_t size)
{
    if (size > block.size) return false;
    if (IsNtPlatform(memory)) return memory.api.Write(memory.sharedHandle, block.address, source, size);
    if (block.address == RemoteAddress::none) return false;
    memory.api.MoveIn(block.address, source, size);
    return true;
}

bool RemoteRead(RemoteMemory& memory, const RemoteBlock& block, void* destination, std::uint32_t size)
{
    bool done = size <= block.size;
    if (done && IsNtPlatform(memory)) {
        done = memory.api.Read(memory.sharedHandle, block.address, destination, size);
    } else if (done) {
        done = block.address != RemoteAddress::none;
        if (done) memory.api.MoveOut(destination, block.address, size);
    }
    // Zeros and not what the buffer held: that may be the text of the cell before.
    if (!done) std::memset(destination, 0, size);
    return done;
}

void RemoteFree(RemoteMemory& memory, const RemoteBlock& block)
{
    if (!IsNtPlatform(memory)) {
        // Kept: the place that holds the address is passed and not the address, so the view stays mapped.
        (void)memory.api.UnmapView(&block.address);
        (void)memory.api.Close(memory.sharedHandle);
        return;
    }
    const bool freed = memory.api.FreeIn(memory.sharedHandle, block.address);
    const bool closed = memory.api.Close(memory.sharedHandle);
    for (RemoteMemory::Block& each : memory.blocks) {
        if (freed && each.address == block.address) each.address = RemoteAddress::none;
        if (closed && each.process == memory.sharedHandle) each.process = 0;
    }
    std::erase_if(memory.blocks, [](const RemoteMemory::Block& each) {
        return each.address == RemoteAddress::none && each.process == 0;
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

void SweepNowAndThen(RemoteMemory& memory, std::int32_t operations)
{
    if (operations % kSweepEvery == 0) SweepRemoteMemory(memory);
}

void ForgetRemoteMemory(RemoteMemory& memory)
{
    memory.blocks.clear();
    memory.api.LeaveKept();
    memory.sharedHandle = 0; // without it, the operation under way can neither read nor release
}
