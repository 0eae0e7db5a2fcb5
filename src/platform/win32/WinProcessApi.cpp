#include "platform/win32/WinProcessApi.h"

#include <cstring>
#include <windows.h>

static_assert(sizeof(void*) == 4, "addresses of the mail client are 32-bit");

namespace {

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
    return reinterpret_cast<std::int32_t>(process);
}

RemoteAddress WinProcessApi::AllocateIn(std::int32_t process, std::uint32_t size)
{
    return static_cast<RemoteAddress>(reinterpret_cast<std::uint32_t>(
        VirtualAllocEx(HandleOf(process), nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)));
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
    return VirtualFreeEx(HandleOf(process), PointerOf(address), 0, MEM_RELEASE) != FALSE;
}

bool WinProcessApi::Close(std::int32_t handle)
{
    return CloseHandle(HandleOf(handle)) != FALSE;
}

std::int32_t WinProcessApi::CreateSharedMapping(std::uint32_t size)
{
    return reinterpret_cast<std::int32_t>(
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, nullptr));
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
