// ProcessApiTest.cpp: memory of another process, whose small blocks are used again.
#include "platform/win32/WinProcessApi.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <windows.h>

namespace {

constexpr std::uint32_t kAccess = PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE;
constexpr std::uint32_t kSize = 256;

// This program once more, not begun.
struct Suspended {
    Suspended()
    {
        wchar_t path[MAX_PATH];
        GetModuleFileNameW(nullptr, path, MAX_PATH);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        EXPECT_TRUE(CreateProcessW(path, nullptr, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                                   &start, &info));
    }
    ~Suspended()
    {
        End();
        CloseHandle(info.hThread);
        CloseHandle(info.hProcess);
    }
    void End()
    {
        TerminateProcess(info.hProcess, 0);
        WaitForSingleObject(info.hProcess, 10'000);
    }
    DWORD StateOf(RemoteAddress address) const
    {
        MEMORY_BASIC_INFORMATION found{};
        VirtualQueryEx(info.hProcess, reinterpret_cast<void*>(address), &found, sizeof found);
        return found.State;
    }
    PROCESS_INFORMATION info{};
};

class ProcessApiTest : public testing::Test {
protected:
    std::int32_t Open(const Suspended& process)
    {
        bool denied = false;
        const std::int32_t handle = api->OpenProcessHandle(kAccess, process.info.dwProcessId, denied);
        EXPECT_TRUE(handle != 0 && !denied);
        return handle;
    }
    std::string TextAt(std::int32_t handle, RemoteAddress address)
    {
        std::string text(kSize, '?');
        EXPECT_TRUE(api->Read(handle, address, text.data(), kSize));
        return text;
    }

    std::unique_ptr<WinProcessApi> api = std::make_unique<WinProcessApi>();
    Suspended client, other;
};

TEST_F(ProcessApiTest, ASmallBlockIsUsedAgainAsIfItWereNew)
{
    const std::int32_t handle = Open(client);
    const RemoteAddress first = api->AllocateIn(handle, kSize), second = api->AllocateIn(handle, kSize);
    const std::string secret(kSize, 'S');
    EXPECT_TRUE(api->Write(handle, first, secret.data(), kSize));
    EXPECT_TRUE(api->Write(handle, second, secret.data(), kSize));
    EXPECT_TRUE(api->FreeIn(handle, second));
    EXPECT_FALSE(api->FreeIn(handle, second)) << "it is released already";
    EXPECT_EQ(client.StateOf(second), DWORD{MEM_COMMIT}) << "it is kept";
    std::string larger(8000, '?');
    EXPECT_EQ(api->AllocateIn(handle, 8000), second);
    EXPECT_TRUE(api->Read(handle, second, larger.data(), 8000));
    EXPECT_EQ(larger, std::string(8000, '\0'));
    EXPECT_EQ(TextAt(handle, first), secret) << "it is in use";
    const RemoteAddress large = api->AllocateIn(handle, 100'000);
    EXPECT_TRUE(api->FreeIn(handle, large));
    EXPECT_EQ(client.StateOf(large), DWORD{MEM_FREE});

    EXPECT_TRUE(api->Close(handle));
    EXPECT_FALSE(api->FreeIn(handle, first)) << "by a handle that is closed";
    const HANDLE next = CreateEventW(nullptr, FALSE, FALSE, nullptr); // gets its number
    EXPECT_FALSE(api->Close(handle));
    EXPECT_TRUE(CloseHandle(next));
    const std::int32_t anew = Open(client);
    EXPECT_TRUE(api->FreeIn(anew, first) && api->FreeIn(anew, second));
    api.reset();
    for (const RemoteAddress each : {first, second}) EXPECT_EQ(client.StateOf(each), DWORD{MEM_FREE});
}

TEST_F(ProcessApiTest, NoMoreIsKeptThanTheAddressesOfAProcessAllow)
{
    const std::int32_t handle = Open(client);
    std::vector<RemoteAddress> pages;
    for (int i = 0; i < 300; ++i) pages.push_back(api->AllocateIn(handle, kSize));
    for (const RemoteAddress page : pages) EXPECT_TRUE(api->FreeIn(handle, page));
    const auto kept = std::count_if(pages.begin(), pages.end(),
                                    [&](RemoteAddress page) { return client.StateOf(page) == MEM_COMMIT; });
    EXPECT_EQ(kept, 256);
}

TEST_F(ProcessApiTest, EachProcessHasItsOwn)
{
    const std::int32_t handle = Open(client), others = Open(other);
    const RemoteAddress page = api->AllocateIn(handle, kSize);
    EXPECT_TRUE(api->FreeIn(handle, page));
    const RemoteAddress there = api->AllocateIn(others, kSize);
    EXPECT_EQ(other.StateOf(there), DWORD{MEM_COMMIT});
    EXPECT_TRUE(api->FreeIn(others, there));
    EXPECT_EQ(client.StateOf(page), DWORD{MEM_FREE}) << "what was kept is given back for the other's";
    const RemoteAddress left = api->AllocateIn(others, kSize);
    EXPECT_TRUE(api->FreeIn(others, left));
    api->LeaveKept();
    EXPECT_EQ(other.StateOf(left), DWORD{MEM_COMMIT}) << "nothing is asked of a silent one";
    other.End();
    EXPECT_EQ(api->AllocateIn(others, kSize), RemoteAddress::none)
        << "nothing is left of what was kept there";
}

} // namespace
