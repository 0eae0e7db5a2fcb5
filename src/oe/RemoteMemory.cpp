#include "oe/RemoteMemory.h"

#include <algorithm>
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
    memory.sharedHandle = memory.api.OpenProcessHandle(kAccess, memory.api.ProcessIdOf(window));
    const RemoteAddress address = memory.api.AllocateIn(memory.sharedHandle, size);
    if (memory.sharedHandle != 0) memory.blocks.push_back({address, memory.sharedHandle});
    return address;
}

void RemoteWrite(RemoteMemory& memory, RemoteAddress address, const void* source, std::uint32_t size)
{
    if (IsNtPlatform(memory)) {
        (void)memory.api.Write(memory.sharedHandle, address, source, size);
    } else if (address != RemoteAddress::none) {
        memory.api.MoveIn(address, source, size);
    }
}

void RemoteRead(RemoteMemory& memory, RemoteAddress address, void* destination, std::uint32_t size)
{
    if (IsNtPlatform(memory)) {
        // Zeros and not what the buffer held: that may be the text of the cell before.
        if (!memory.api.Read(memory.sharedHandle, address, destination, size)) std::memset(destination, 0, size);
    } else if (address != RemoteAddress::none) {
        memory.api.MoveOut(destination, address, size);
    } else {
        std::memset(destination, 0, size);
    }
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
    const auto done = [&](const RemoteMemory::Block& block) {
        return block.process == memory.sharedHandle && block.address == address && freed && closed;
    };
    memory.blocks.erase(std::remove_if(memory.blocks.begin(), memory.blocks.end(), done), memory.blocks.end());
}

void SweepRemoteMemory(RemoteMemory& memory)
{
    for (const RemoteMemory::Block& block : memory.blocks) {
        if (block.address != RemoteAddress::none) (void)memory.api.FreeIn(block.process, block.address);
        (void)memory.api.Close(block.process);
    }
    memory.blocks.clear();
}
