// WinProcessApi.h: memory of another process, through the Windows calls.
#pragma once
#include "platform/ProcessApi.h"

class WinProcessApi : public ProcessApi {
public:
    bool GetPlatformId(std::uint32_t& platformId) override;
    std::uint32_t ProcessIdOf(WindowHandle window) override;
    std::int32_t OpenProcessHandle(std::uint32_t access, std::uint32_t processId, bool& denied) override;
    RemoteAddress AllocateIn(std::int32_t process, std::uint32_t size) override;
    bool Write(std::int32_t process, RemoteAddress to, const void* from, std::uint32_t size) override;
    bool Read(std::int32_t process, RemoteAddress from, void* to, std::uint32_t size) override;
    bool FreeIn(std::int32_t process, RemoteAddress address) override;
    bool Close(std::int32_t handle) override;
    std::int32_t CreateSharedMapping(std::uint32_t size) override;
    RemoteAddress MapView(std::int32_t mapping) override;
    bool UnmapView(const void* view) override;
    void MoveIn(RemoteAddress to, const void* from, std::uint32_t size) override;
    void MoveOut(void* to, RemoteAddress from, std::uint32_t size) override;
};
