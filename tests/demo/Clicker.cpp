// Clicker.cpp: demo-clicker.exe [SEED [MILLISECONDS]]: a user who clicks rows of the mail client's list at
// random while another program works with it, but only while the client's main window is enabled. Runs until
// it is ended. SEED (default 1) makes the order; MILLISECONDS (default 50) is the time between two clicks.
#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <cwchar>
#include <random>
#include <string>

namespace {

constexpr int kRowsToReport = 10; // clicks for each line that is printed

// The list is found anew for each click: with every folder comes a new one.
HWND FindList(HWND client)
{
    HWND window = client;
    for (const wchar_t* windowClass :
         {L"Outlook Express Message View", L"Outlook Express Message List", L"ATL:SysListView32"})
        window = window ? FindWindowExW(window, nullptr, windowClass, nullptr) : nullptr;
    return window;
}

// Fully visible rows, by the list's height: asking for their places would need memory of its process.
bool Click(HWND list, std::mt19937& random)
{
    DWORD_PTR rows = 0;
    RECT area{}, header{};
    const HWND titles = FindWindowExW(list, nullptr, WC_HEADERW, nullptr);
    if (!SendMessageTimeoutW(list, LVM_GETCOUNTPERPAGE, 0, 0, SMTO_ABORTIFHUNG, 1000, &rows) || rows == 0 ||
        !GetClientRect(list, &area) || !titles || !GetWindowRect(titles, &header))
        return false;
    const int top = header.bottom - header.top;
    const int place = static_cast<int>(random() % rows);
    const int rowHeight = (area.bottom - top) / static_cast<int>(rows);
    const LPARAM point = MAKELPARAM(100, top + place * rowHeight + rowHeight / 2);
    return PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, point) &&
           PostMessageW(list, WM_LBUTTONUP, 0, point);
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    const unsigned long seed = argc > 1 ? std::wcstoul(argv[1], nullptr, 10) : 1;
    const unsigned long pause = argc > 2 ? std::wcstoul(argv[2], nullptr, 10) : 50;
    std::mt19937 random(seed);
    for (int clicks = 0;; Sleep(pause)) {
        const HWND client = FindWindowW(L"Outlook Express Browser Class", nullptr);
        const HWND list = client && IsWindowEnabled(client) ? FindList(client) : nullptr;
        if (!list || !Click(list, random) || ++clicks % kRowsToReport != 0) continue;
        std::printf("clicker: %d clicks\n", clicks);
        std::fflush(stdout);
    }
}
