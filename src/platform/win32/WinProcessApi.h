// WinProcessApi.h: memory of another process, through the Windows calls.
#pragma once
#include "platform/ProcessApi.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

// A small block that is released is kept for the next that is asked for in the same process, and given out
// full of zeros as a new one is: having memory reserved by another process is by far the dearest of these
// calls, and Wine 8 never returns from it when that process is killed under it.
class WinProcessApi : public ProcessApi {
public:
    WinProcessApi() = default;
    ~WinProcessApi() override; // gives back what was kept
    WinProcessApi(const WinProcessApi&) = delete;
    WinProcessApi& operator=(const WinProcessApi&) = delete;
    bool GetPlatformId(std::uint32_t& platformId) override;
    std::uint32_t ProcessIdOf(WindowHandle window) override;
    std::int32_t OpenProcessHandle(std::uint32_t access, std::uint32_t processId, bool& denied) override;
    RemoteAddress AllocateIn(std::int32_t process, std::uint32_t size) override;
    bool Write(std::int32_t process, RemoteAddress to, const void* from, std::uint32_t size) override;
    bool Read(std::int32_t process, RemoteAddress from, void* to, std::uint32_t size) override;
    bool FreeIn(std::int32_t process, RemoteAddress address) override;
    void LeaveKept() override;
    bool Close(std::int32_t handle) override;
    std::int32_t CreateSharedMapping(std::uint32_t size) override;
    RemoteAddress MapView(std::int32_t mapping) override;
    bool UnmapView(const void* view) override;
    void MoveIn(RemoteAddress to, const void* from, std::uint32_t size) override;
    void MoveOut(void* to, RemoteAddress from, std::uint32_t size) override;

private:
    bool IsKept(std::uint32_t processId, RemoteAddress block) const; // and so is released already
    bool Keep(std::uint32_t processId, RemoteAddress block);
    void GiveBack();

    struct Kept { // of one process at a time
        std::uint32_t processId = 0;
        void* process = nullptr; // a handle: as long as it is open no other process gets the number
        std::vector<RemoteAddress> blocks{};
    };
    Kept kept_;
    // Of the handles that are open, 0 for a mapping's. Windows is asked to do nothing by any other, whose
    // number may be that of something else by now.
    std::map<std::int32_t, std::uint32_t> processIds_;
    std::set<std::pair<std::uint32_t, RemoteAddress>> blocksInUse_; // by process
};
