// BareDriver.cpp: bench-bare.exe: of the program's work on windows what cannot be left out, and no more.
//   bench-bare cells -- CLIENT...            reads each cell of the client's list by three calls
//   bench-bare export FOLDER WAIT -- CLIENT...
//                                            saves each e-mail of the list through the client's dialog; WAIT:
//                                            milliseconds between two looks
//   bench-bare run PROGRAM... -- CLIENT...   runs a program beside the client until it ends
//   bench-bare start WINDOWCLASS PROGRAM...  starts a program until its window answers
//   bench-bare window                        shows an empty window
// Prints the milliseconds; behind them the bytes of the texts, or the program's exit code. Ends with 1 when
// something is missing.
#include "demo/driver/ProgramDriver.h"
#include "oe/RemoteControls.h"

#include <commctrl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>
#include <stdexcept>

namespace {

constexpr DWORD kLimit = 60000; // milliseconds
constexpr wchar_t kEmptyClass[] = L"EmptyWindow";

class Stopwatch {
public:
    double Milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - began_).count();
    }

private:
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

HWND Needed(HWND window, const char* what)
{
    return window ? window : throw std::runtime_error(std::string("there is no ") + what);
}

struct ShownClient {
    explicit ShownClient(const std::wstring& commandLine) : process(commandLine, L"")
    {
        window = Needed(WaitForWindow(process.Id(), L"Outlook Express Browser Class", L"", kLimit), "client");
        const auto listed = [this] {
            list = FindControl(window, L"ATL:SysListView32");
            return list && SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) > 0;
        };
        if (!Eventually(listed, kLimit)) throw std::runtime_error("the client lists no e-mails");
    }
    int Rows() const { return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0)); }

    StartedProcess process;
    HWND window = nullptr, list = nullptr;
};

// One behind the last column, as the program reads them.
void ReadCells(const ShownClient& client)
{
    const auto header = reinterpret_cast<HWND>(SendMessageW(client.list, LVM_GETHEADER, 0, 0));
    const auto columns = static_cast<std::uint32_t>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) + 1;
    const auto rows = static_cast<std::uint32_t>(client.Rows());
    const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, client.process.Id());
    const auto place = [process](SIZE_T bytes) {
        return VirtualAllocEx(process, nullptr, bytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    };
    constexpr std::size_t kUnits = 128;
    void* const item = place(sizeof(RemoteListItem));
    void* const text = place(kUnits * sizeof(wchar_t));
    std::size_t units = 0;
    const Stopwatch watch;
    for (std::uint32_t row = 0; row < rows; ++row) {
        for (std::uint32_t column = 0; column < columns; ++column) {
            RemoteListItem request{};
            request.mask = LVIF_TEXT;
            request.item = row;
            request.subItem = column;
            request.text = static_cast<decltype(request.text)>(reinterpret_cast<std::uintptr_t>(text));
            request.textMax = kUnits * sizeof(wchar_t);
            wchar_t cell[kUnits] = {};
            DWORD_PTR answer = 0;
            if (!WriteProcessMemory(process, item, &request, sizeof request, nullptr) ||
                !SendMessageTimeoutW(client.list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(item),
                                     SMTO_NORMAL, kLimit, &answer) ||
                !ReadProcessMemory(process, text, cell, sizeof cell, nullptr))
                throw std::runtime_error("a cell cannot be read");
            if (column + 1 < columns) units += wcsnlen(cell, kUnits);
        }
    }
    std::printf("%.3f %u\n", watch.Milliseconds(), static_cast<unsigned>(units * sizeof(wchar_t)));
}

// Two seconds at the most.
template <class Look>
void Await(Look look, const char* what, DWORD wait)
{
    for (DWORD waited = 0; !look(); waited += wait) {
        if (waited >= 2000) throw std::runtime_error(std::string("there is no ") + what);
        Sleep(wait);
    }
}

void Export(const ShownClient& client, const std::wstring& folder, DWORD wait)
{
    const Stopwatch watch;
    for (int row = 0, rows = client.Rows(); row < rows; ++row) {
        wchar_t name[20] = {};
        std::swprintf(name, std::size(name), L"\\%04d.eml", row);
        const std::wstring path = folder + name;
        HWND dialog = nullptr;
        PostMessageW(client.window, WM_COMMAND, 40101, 0);
        Await([&] { return (dialog = FindWindowW(L"#32770", L"Save Message As")) != nullptr; }, "dialog",
              wait);
        const HWND outer = FindWindowExW(dialog, nullptr, L"ComboBoxEx32", nullptr);
        const HWND combo = FindWindowExW(outer, nullptr, L"ComboBox", nullptr);
        const HWND edit = Needed(FindWindowExW(combo, nullptr, L"Edit", nullptr), "place for a name");
        SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        const HWND save = Needed(FindWindowExW(dialog, nullptr, L"Button", L"&Save"), "button");
        SendMessageW(save, WM_LBUTTONDOWN, MK_LBUTTON, 0);
        SendMessageW(save, WM_LBUTTONUP, 0, 0);
        Await([&] { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }, "file", wait);
        SendMessageW(client.list, WM_KEYDOWN, VK_DOWN, 0);
        SendMessageW(client.list, WM_KEYUP, VK_DOWN, 0);
    }
    std::printf("%.3f\n", watch.Milliseconds());
}

void RunToEnd(const std::wstring& commandLine)
{
    const Stopwatch watch;
    const StartedProcess process(commandLine, L"");
    (void)process.HasEnded(INFINITE);
    std::printf("%.3f %lu\n", watch.Milliseconds(), process.ExitCode());
}

void Start(const std::wstring& windowClass, const std::wstring& commandLine)
{
    const Stopwatch watch;
    const StartedProcess process(commandLine, L"");
    DWORD_PTR answer = 0;
    for (HWND window = nullptr;
         !window || !SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kLimit, &answer);
         Sleep(window ? 0 : 1)) {
        window = FindProgramWindow(process.Id(), windowClass);
        if (watch.Milliseconds() > kLimit) throw std::runtime_error("the window does not answer");
    }
    std::printf("%.3f\n", watch.Milliseconds());
}

int ShowEmptyWindow()
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kEmptyClass;
    RegisterClassW(&windowClass);
    CreateWindowW(kEmptyClass, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 600, 400, nullptr, nullptr,
                  windowClass.hInstance, nullptr);
    for (MSG message = {}; GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
    return 0;
}

std::wstring CommandLine(std::span<wchar_t*> words)
{
    std::wstring line;
    for (const wchar_t* word : words) line += Quoted(word) + L" ";
    return line;
}

} // namespace

int wmain(int argc, wchar_t** argv)
try {
    const std::span<wchar_t*> words(argv, static_cast<std::size_t>(argc));
    const std::wstring mode = argc > 1 ? argv[1] : L"";
    if (mode == L"window") return ShowEmptyWindow();
    if (mode == L"start" && argc > 3) {
        Start(argv[2], CommandLine(words.subspan(3)));
        return 0;
    }
    const auto end = std::find(words.begin(), words.end(), std::wstring_view(L"--"));
    if (argc < 3 || end == words.end() || (mode == L"export" && end - words.begin() != 4)) return 2;
    const ShownClient client(CommandLine({end + 1, words.end()}));
    if (mode == L"cells")
        ReadCells(client);
    else if (mode == L"export")
        Export(client, argv[2], std::max(1ul, std::wcstoul(argv[3], nullptr, 10)));
    else
        RunToEnd(CommandLine({words.begin() + 2, end}));
    return 0;
} catch (const std::exception& error) {
    std::printf("bench-bare: %s\n", error.what());
    return 1;
}
