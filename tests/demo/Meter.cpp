// Meter.cpp: demo-meter.exe LOG [EMAILS [SECONDS]]: what Quillbox and the mail client hold of the system
// while they work: a line now, whenever so many more e-mails (default 1000) stand in the log, and every so
// many seconds (default 60). Runs until it is ended.
#include "demo/driver/ProgramDriver.h"

#include <winternl.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <vector>

namespace {

struct Holdings {
    DWORD handles, gdiObjects, userObjects; // 0 where the system does not count
    SIZE_T privateKilobytes;
};

// What the system tells of all its processes; of one process alone Wine tells less.
std::vector<char> AllProcesses()
{
    std::vector<char> answer(1 << 20);
    ULONG size = 0;
    if (NtQuerySystemInformation(SystemProcessInformation, answer.data(), static_cast<ULONG>(answer.size()),
                                 &size) < 0)
        return {};
    return answer;
}

Holdings HoldingsOf(const wchar_t* windowClass)
{
    DWORD id = 0;
    GetWindowThreadProcessId(FindWindowW(windowClass, nullptr), &id);
    Holdings held = {};
    const std::vector<char> all = AllProcesses();
    for (std::size_t at = 0; at < all.size();) {
        SYSTEM_PROCESS_INFORMATION process;
        std::memcpy(&process, all.data() + at, sizeof process);
        if (reinterpret_cast<ULONG_PTR>(process.UniqueProcessId) == id)
            held = {process.HandleCount, 0, 0, process.VirtualMemoryCounters.PagefileUsage / 1024};
        if (process.NextEntryOffset == 0) break;
        at += process.NextEntryOffset;
    }
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, id);
    if (!process) return held;
    held.gdiObjects = GetGuiResources(process, GR_GDIOBJECTS);
    held.userObjects = GetGuiResources(process, GR_USEROBJECTS);
    CloseHandle(process);
    return held;
}

void PrintHoldings(const char* name, const Holdings& held)
{
    std::printf("; %s: %lu handles, %lu KB, %lu GDI, %lu USER", name, held.handles,
                static_cast<unsigned long>(held.privateKilobytes), held.gdiObjects, held.userObjects);
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc < 2) return 2;
    GrowingFile log(argv[1]);
    const unsigned long step = argc > 2 ? std::wcstoul(argv[2], nullptr, 10) : 1000;
    const unsigned long pause = 1000 * (argc > 3 ? std::wcstoul(argv[3], nullptr, 10) : 60);
    unsigned long emails = 0, nextAt = 0;
    for (DWORD began = GetTickCount(), shown = began;; Sleep(200)) {
        for (const std::wstring& line : log.NewLines())
            if (line.find(L" - Exporting ") != std::wstring::npos) ++emails;
        const DWORD now = GetTickCount();
        if (emails < nextAt && now - shown < pause) continue;
        if (emails >= nextAt) nextAt = (emails / step + 1) * step;
        shown = now;
        std::printf("meter: %lu e-mails, %lu s", emails, (now - began) / 1000);
        PrintHoldings("Quillbox", HoldingsOf(L"Form1"));
        PrintHoldings("client", HoldingsOf(L"Outlook Express Browser Class"));
        std::printf("\n");
        std::fflush(stdout);
    }
}
