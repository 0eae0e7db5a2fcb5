// DemonstrationLists.cpp: how long the window takes for what its user does with long lists.
#include "demo/driver/main/Demonstration.h"

#include <commctrl.h>

#include <chrono>
#include <stdexcept>

namespace {

constexpr UINT kAnswerLimit = 60000; // milliseconds

struct Act {
    const wchar_t* name;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};
const Act kToEnd = {L"end", WM_KEYDOWN, VK_END, 0}, kPageUp = {L"page up", WM_KEYDOWN, VK_PRIOR, 0},
          kToBeginning = {L"beginning", WM_KEYDOWN, VK_HOME, 0};

// ", end 3 ms": from the act until the window has done it and what it shows is drawn.
std::wstring TimeOf(const Act& act, HWND window, HWND shown)
{
    const auto began = std::chrono::steady_clock::now();
    DWORD_PTR unused = 0;
    if (!SendMessageTimeoutW(window, act.message, act.wParam, act.lParam, SMTO_NORMAL, kAnswerLimit,
                             &unused) ||
        !SendMessageTimeoutW(shown, WM_PAINT, 0, 0, SMTO_NORMAL, kAnswerLimit, &unused))
        throw std::runtime_error("a list does not answer");
    const auto time = std::chrono::steady_clock::now() - began;
    return L", " + std::wstring(act.name) + L" " +
           std::to_wstring(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) + L" ms";
}

} // namespace

void Demonstration::MeasureLists()
{
    ShowTab(Tab::progress);
    const auto measure = [](const std::wstring& name, HWND list, UINT counts) {
        std::wstring line =
            L"> " + name + L": " + std::to_wstring(SendMessageW(list, counts, 0, 0)) + L" lines";
        for (const Act& act : {kToEnd, kPageUp, kToBeginning}) line += TimeOf(act, list, list);
        return line;
    };
    Print(measure(L"log list", FindControl(window_, L"ListBox"), LB_GETCOUNT));
    SendMessageW(FindButton(window_, L"Results"), BM_CLICK, 0, 0);
    const HWND table = FindControl(window_, WC_LISTVIEWW);
    if (!table) throw std::runtime_error("the results are not shown");
    std::wstring line = measure(L"results table", table, LVM_GETITEMCOUNT);
    const auto titles = reinterpret_cast<HWND>(SendMessageW(table, LVM_GETHEADER, 0, 0));
    SendMessageW(titles, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 5));
    Print(line + TimeOf({L"sorted", WM_LBUTTONUP, 0, MAKELPARAM(10, 5)}, titles, table));
    SendMessageW(FindButton(window_, L"Log"), BM_CLICK, 0, 0);
    ShowTab(Tab::summary);
    Print(measure(L"summary", FindControl(window_, L"Edit"), EM_GETLINECOUNT));
}
