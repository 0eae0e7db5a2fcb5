#include "platform/win32/WinProcessApi.h"

#include <algorithm>
#include <cstring>
#include <windows.h>

static_assert(sizeof(void*) == 4, "addresses of the mail client are 32-bit");

namespace {

constexpr std::uint32_t kKeptSize = 8192; // bytes of each block that is kept, whatever was asked for
constexpr std::size_t kMostKept = 256;    // blocks; each takes 64 KB of the other process's addresses

HANDLE HandleOf(std::int32_t number)
{
    return reinterpret_cast<HANDLE>(number);
}

void* PointerOf(RemoteAddress address)
{
    return reinterpret_cast<void*>(address);
}

} // namespace

bool WinProcessApi::GetPlatformId(std::uint32_t& platformId)
{
    OSVERSIONINFOA version{};
    static_assert(sizeof version == 148);
    version.dwOSVersionInfoSize = sizeof version;
    if (!GetVersionExA(&version)) return false;
    platformId = version.dwPlatformId;
    return true;
}

std::uint32_t WinProcessApi::ProcessIdOf(WindowHandle window)
{
    DWORD processId = 0;
    GetWindowThreadProcessId(reinterpret_cast<HWND>(window), &processId);
    return processId;
}

std::int32_t WinProcessApi::OpenProcessHandle(std::uint32_t access, std::uint32_t processId, bool& denied)
{
    const HANDLE process = OpenProcess(access, FALSE, processId);
    if (!process && GetLastError() == ERROR_ACCESS_DENIED) denied = true;
    const auto handle = reinterpret_cast<std::int32_t>(process);
    if (process) processIds_[handle] = processId;
    return handle;
}

RemoteAddress WinProcessApi::AllocateIn(std::int32_t process, std::uint32_t size)
{
    const auto owner = processIds_.find(process);
    const bool isToKeep = size <= kKeptSize && owner != processIds_.end();
    RemoteAddress address = RemoteAddress::none;
    if (isToKeep && owner->second == kept_.processId && !kept_.blocks.empty()) {
        constexpr char kZeros[kKeptSize] = {};
        address = kept_.blocks.back();
        kept_.blocks.pop_back();
        if (!Write(process, address, kZeros, size)) address = RemoteAddress::none; // the process has ended
    }
    if (address == RemoteAddress::none)
        address = static_cast<RemoteAddress>(reinterpret_cast<std::uint32_t>(
            VirtualAllocEx(HandleOf(process), nullptr, isToKeep ? kKeptSize : size, MEM_COMMIT | MEM_RESERVE,
                           PAGE_READWRITE)));
    if (isToKeep && address != RemoteAddress::none) blocksInUse_.emplace(owner->second, address);
    return address;
}

bool WinProcessApi::Write(std::int32_t process, RemoteAddress to, const void* from, std::uint32_t size)
{
    return WriteProcessMemory(HandleOf(process), PointerOf(to), from, size, nullptr) != FALSE;
}

bool WinProcessApi::Read(std::int32_t process, RemoteAddress from, void* to, std::uint32_t size)
{
    return ReadProcessMemory(HandleOf(process), PointerOf(from), to, size, nullptr) != FALSE;
}

bool WinProcessApi::FreeIn(std::int32_t process, RemoteAddress address)
{
    const auto owner = processIds_.find(process);
    if (owner == processIds_.end()) return false;
    const std::uint32_t processId = owner->second;
    if (IsKept(processId, address)) return false;
    if (blocksInUse_.erase({processId, address}) != 0 && Keep(processId, address)) return true;
    return VirtualFreeEx(HandleOf(process), PointerOf(address), 0, MEM_RELEASE) != FALSE;
}

bool WinProcessApi::IsKept(std::uint32_t processId, RemoteAddress block) const
{
    const auto& blocks = kept_.blocks;
    return processId == kept_.processId && std::find(blocks.begin(), blocks.end(), block) != blocks.end();
}

bool WinProcessApi::Keep(std::uint32_t processId, RemoteAddress block)
{
    if (kept_.processId != processId) {
        GiveBack();
        kept_ = {processId, OpenProcess(PROCESS_VM_OPERATION, FALSE, processId)};
    }
    if (!kept_.process || kept_.blocks.size() == kMostKept) return false;
    kept_.blocks.push_back(block);
    return true;
}

void WinProcessApi::GiveBack()
{
    for (const RemoteAddress block : kept_.blocks)
        (void)VirtualFreeEx(kept_.process, PointerOf(block), 0, MEM_RELEASE);
    WinProcessApi::LeaveKept(); // by its name, as the destructor comes here, too
}

void WinProcessApi::LeaveKept()
{
    if (kept_.process) CloseHandle(kept_.process);
    kept_ = {};
}

WinProcessApi::~WinProcessApi()
{
    GiveBack();
}

bool WinProcessApi::Close(std::int32_t handle)
{
    return processIds_.erase(handle) != 0 && CloseHandle(HandleOf(handle)) != FALSE;
}

std::int32_t WinProcessApi::CreateSharedMapping(std::uint32_t size)
{
    const auto handle = reinterpret_cast<std::int32_t>(
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, nullptr));
    if (handle != 0) processIds_[handle] = 0;
    return handle;
}

RemoteAddress WinProcessApi::MapView(std::int32_t mapping)
{
    return static_cast<RemoteAddress>(
        reinterpret_cast<std::uint32_t>(MapViewOfFile(HandleOf(mapping), FILE_MAP_ALL_ACCESS, 0, 0, 0)));
}

bool WinProcessApi::UnmapView(const void* view)
{
    return UnmapViewOfFile(view) != FALSE;
}

void WinProcessApi::MoveIn(RemoteAddress to, const void* from, std::uint32_t size)
{
    std::memcpy(PointerOf(to), from, size);
}

void WinProcessApi::MoveOut(void* to, RemoteAddress from, std::uint32_t size)
{
    std::memcpy(to, PointerOf(from), size);
}
