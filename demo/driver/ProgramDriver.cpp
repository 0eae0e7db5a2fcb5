// ProgramDriver.cpp: finds the program's windows and presses its buttons.
#include "demo/driver/ProgramDriver.h"

#include <commctrl.h>

#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace {

constexpr UINT kAnswerLimit = 20000;    // milliseconds; a window that takes longer counts as silent
constexpr DWORD kEndingLimit = 10000;   // milliseconds a process may take to be gone once it was ended
constexpr std::size_t kShownText = 300; // characters of a control's text in DescribeScreen

std::wstring WithoutMnemonic(std::wstring caption)
{
    for (std::size_t at = caption.find(L'&'); at != std::wstring::npos; at = caption.find(L'&', at + 1))
        caption.erase(at, 1); // what follows stays, "&&" being a plain "&"
    return caption;
}

// Calls visit(window) for each window of an enumeration until it answers false.
template <class Visit>
BOOL CALLBACK VisitWindow(HWND window, LPARAM visit)
{
    return (*reinterpret_cast<Visit*>(visit))(window) ? TRUE : FALSE;
}

template <class Visit>
void ForEachTopWindow(Visit visit)
{
    EnumWindows(VisitWindow<Visit>, reinterpret_cast<LPARAM>(&visit));
}

template <class Visit>
void ForEachControl(HWND window, Visit visit)
{
    EnumChildWindows(window, VisitWindow<Visit>, reinterpret_cast<LPARAM>(&visit));
}

} // namespace

StartedProcess::~StartedProcess()
{
    if (!process_.hProcess) return;
    End();
    CloseHandle(process_.hProcess);
    CloseHandle(process_.hThread);
}

void StartedProcess::End()
{
    if (HasEnded()) return;
    TerminateProcess(process_.hProcess, 0);
    (void)HasEnded(kEndingLimit);
}

void StartedProcess::Start(const std::wstring& commandLine, const std::wstring& folder)
{
    if (process_.hProcess) { // of the program that ran before
        CloseHandle(process_.hProcess);
        CloseHandle(process_.hThread);
        process_ = {};
    }
    std::wstring command = commandLine; // the call may write to it
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                        folder.empty() ? nullptr : folder.c_str(), &startup, &process_))
        throw std::runtime_error("a program does not start, error " + std::to_string(GetLastError()));
}

bool StartedProcess::HasEnded(DWORD waitMilliseconds) const
{
    return WaitForSingleObject(process_.hProcess, waitMilliseconds) == WAIT_OBJECT_0;
}

DWORD StartedProcess::ExitCode() const
{
    DWORD code = 0;
    return GetExitCodeProcess(process_.hProcess, &code) ? code : 0;
}

// Quoting as the C runtime's start-up code takes it apart again: backslashes count only before quotes.
std::wstring Quoted(const std::wstring& word)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L"\"";
}

HWND FindProgramWindow(DWORD process, const std::wstring& windowClass, const std::wstring& caption)
{
    HWND found = nullptr;
    ForEachTopWindow([&](HWND window) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process && IsWindowVisible(window) &&
            (windowClass.empty() || ClassOf(window) == windowClass) &&
            (caption.empty() || TextOf(window) == caption))
            found = window;
        return !found;
    });
    return found;
}

HWND WaitForWindow(DWORD process, const std::wstring& windowClass, const std::wstring& caption,
                   DWORD milliseconds)
{
    HWND found = nullptr;
    Eventually([&] { return (found = FindProgramWindow(process, windowClass, caption)) != nullptr; },
               milliseconds);
    return found;
}

HWND FindButton(HWND window, std::wstring_view caption)
{
    HWND found = nullptr;
    ForEachControl(window, [&](HWND control) {
        if (IsWindowVisible(control) && WithoutMnemonic(TextOf(control)) == caption) found = control;
        return !found;
    });
    return found;
}

HWND FindControl(HWND window, std::wstring_view windowClass, std::wstring_view caption, Visible visible)
{
    HWND found = nullptr;
    ForEachControl(window, [&](HWND control) {
        const bool seen = visible == Visible::no || IsWindowVisible(control);
        if (seen && lstrcmpiW(ClassOf(control).c_str(), std::wstring(windowClass).c_str()) == 0 &&
            (caption.empty() || WithoutMnemonic(TextOf(control)) == caption))
            found = control;
        return !found;
    });
    return found;
}

std::vector<TreeLine> TreeLines(HWND tree)
{
    // What the control is to fill in: the item, and behind it room for its text.
    struct Block {
        TVITEMW item;
        wchar_t text[512];
    };
    DWORD id = 0;
    GetWindowThreadProcessId(tree, &id);
    const HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
    void* const there =
        process ? VirtualAllocEx(process, nullptr, sizeof(Block), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)
                : nullptr;
    std::vector<TreeLine> lines;
    LRESULT node = there ? SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0) : 0;
    while (node) {
        Block block = {};
        block.item.mask = TVIF_TEXT | TVIF_IMAGE;
        block.item.hItem = reinterpret_cast<HTREEITEM>(node);
        block.item.pszText = reinterpret_cast<wchar_t*>(static_cast<char*>(there) + offsetof(Block, text));
        block.item.cchTextMax = static_cast<int>(std::size(block.text));
        if (!WriteProcessMemory(process, there, &block, sizeof block, nullptr)) break;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(there));
        if (!ReadProcessMemory(process, there, &block, sizeof block, nullptr)) break;
        block.text[std::size(block.text) - 1] = L'\0';
        lines.push_back({block.text, block.item.iImage});
        LRESULT next = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, node);
        while (!next && node) {
            next = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXT, node);
            if (!next) node = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_PARENT, node);
        }
        node = next;
    }
    if (there) VirtualFreeEx(process, there, 0, MEM_RELEASE);
    if (process) CloseHandle(process);
    return lines;
}

std::wstring ClassOf(HWND window)
{
    wchar_t name[256] = {};
    GetClassNameW(window, name, 256);
    return name;
}

std::wstring TextOf(HWND window)
{
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_NORMAL, kAnswerLimit, &length)) return {};
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                             SMTO_NORMAL, kAnswerLimit, &copied))
        return {};
    text.resize(copied < text.size() ? copied : length);
    return text;
}

std::wstring BoxWords(HWND box)
{
    std::wstring words;
    ForEachControl(box, [&](HWND control) {
        if (ClassOf(control) == L"Static") words += TextOf(control);
        return true;
    });
    return words;
}

bool Press(HWND button)
{
    return IsWindowEnabled(button) && PostMessageW(button, BM_CLICK, 0, 0);
}

bool PressOk(HWND box)
{
    const HWND button = FindWindowExW(box, nullptr, L"Button", nullptr);
    return button && Press(button);
}

std::wstring DescribeScreen()
{
    std::wstring screen;
    ForEachTopWindow([&](HWND top) {
        if (!IsWindowVisible(top)) return true;
        if (IsHungAppWindow(top)) {
            screen += L"[" + ClassOf(top) + L"] does not answer\n";
            return true;
        }
        screen += L"[" + ClassOf(top) + L"] " + TextOf(top) + L"\n";
        ForEachControl(top, [&](HWND control) {
            const std::wstring text = IsWindowVisible(control) ? TextOf(control) : std::wstring();
            if (!text.empty())
                screen += L"    " + text.substr(0, kShownText) +
                          (IsWindowEnabled(control) ? L"\n" : L" (disabled)\n");
            return true;
        });
        return true;
    });
    return screen;
}

GrowingFile::GrowingFile(const std::wstring& path) : path_(path)
{
    position_ = static_cast<LONGLONG>(ReadFrom(0).size());
}

std::string GrowingFile::ReadFrom(LONGLONG position) const
{
    // The writer opens the file anew for each line and must find nothing in its way.
    const HANDLE file =
        CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    std::string bytes;
    LARGE_INTEGER start;
    start.QuadPart = position;
    if (SetFilePointerEx(file, start, nullptr, FILE_BEGIN)) {
        char block[16384];
        DWORD read = 0;
        while (ReadFile(file, block, sizeof block, &read, nullptr) && read > 0) bytes.append(block, read);
    }
    CloseHandle(file);
    return bytes;
}

std::vector<std::wstring> GrowingFile::NewLines()
{
    const std::string bytes = ReadFrom(position_);
    std::vector<std::wstring> lines;
    std::size_t start = 0;
    for (std::size_t end = bytes.find('\n'); end != std::string::npos; end = bytes.find('\n', start)) {
        const std::size_t length = end - start - (end > start && bytes[end - 1] == '\r');
        std::wstring line(length, L'\0');
        line.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, bytes.data() + start,
                                                                 static_cast<int>(length), line.data(),
                                                                 static_cast<int>(length))));
        lines.push_back(line);
        start = end + 1;
    }
    position_ += static_cast<LONGLONG>(start);
    return lines;
}
