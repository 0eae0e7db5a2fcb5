// ProcessApi.h: memory of another process. Names and results are those of the Windows calls.
#pragma once
#include "platform/Desktop.h"

// A number in the other process: never followed here.
enum class RemoteAddress : std::uint32_t { none = 0 };

struct ProcessApi {
    virtual ~ProcessApi() = default;
    virtual bool GetPlatformId(std::uint32_t& platformId) = 0; // GetVersionExA; 2 is the NT family
    virtual std::uint32_t ProcessIdOf(WindowHandle window) = 0;
    // 0: not to be had; denied is set when that is for want of rights and left alone otherwise.
    virtual std::int32_t OpenProcessHandle(std::uint32_t access, std::uint32_t processId, bool& denied) = 0;
    // VirtualAllocEx, to be read and written.
    virtual RemoteAddress AllocateIn(std::int32_t process, std::uint32_t size) = 0;
    virtual bool Write(std::int32_t process, RemoteAddress to, const void* from, std::uint32_t size) = 0;
    virtual bool Read(std::int32_t process, RemoteAddress from, void* to, std::uint32_t size) = 0;
    virtual bool FreeIn(std::int32_t process, RemoteAddress address) = 0; // VirtualFreeEx, MEM_RELEASE
    // Whatever is kept of what was released stays where it is: nothing more is asked of a process that has
    // fallen silent, as the system may wait for it.
    virtual void LeaveKept() {}
    virtual bool Close(std::int32_t handle) = 0;
    // The older family: a page-file mapping is seen by every process at the same address.
    virtual std::int32_t CreateSharedMapping(std::uint32_t size) = 0; // 0: refused
    virtual RemoteAddress MapView(std::int32_t mapping) = 0;
    virtual bool UnmapView(const void* view) = 0;
    virtual void MoveIn(RemoteAddress to, const void* from, std::uint32_t size) = 0;
    virtual void MoveOut(void* to, RemoteAddress from, std::uint32_t size) = 0;
};
