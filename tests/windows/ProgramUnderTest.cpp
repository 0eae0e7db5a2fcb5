#include "tests/windows/ProgramUnderTest.h"

namespace {

constexpr DWORD kPatience = 20000;

struct Search {
    int id;
    HWND found;
};

BOOL CALLBACK MatchControl(HWND window, LPARAM lParam)
{
    auto& search = *reinterpret_cast<Search*>(lParam);
    if (GetDlgCtrlID(window) != search.id) return TRUE;
    search.found = window;
    return FALSE;
}

void DeleteTree(const std::wstring& folder)
{
    WIN32_FIND_DATAW entry = {};
    const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..") continue;
        const std::wstring path = folder + name;
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            DeleteTree(path + L"\\");
        else
            DeleteFileW(path.c_str());
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    RemoveDirectoryW(folder.c_str());
}

} // namespace

std::vector<std::wstring> LinesOf(HWND listBox)
{
    std::vector<std::wstring> lines;
    const auto count = static_cast<WPARAM>(SendMessageW(listBox, LB_GETCOUNT, 0, 0));
    for (WPARAM i = 0; i < count; ++i) {
        std::wstring line(static_cast<std::size_t>(SendMessageW(listBox, LB_GETTEXTLEN, i, 0)) + 1, L'\0');
        SendMessageW(listBox, LB_GETTEXT, i, reinterpret_cast<LPARAM>(line.data()));
        line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::wstring FolderOfTests()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring whole = path;
    return whole.substr(0, whole.rfind(L'\\') + 1);
}

ProgramUnderTest::ProgramUnderTest()
{
    static int number = 0;
    wchar_t temporary[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temporary);
    folder_ = temporary + (L"quillbox" + std::to_wstring(GetCurrentProcessId()) + L"_" +
                           std::to_wstring(++number) + L"\\");
    CreateDirectoryW(folder_.c_str(), nullptr);
    CopyFileW((FolderOfTests() + L"quillbox.exe").c_str(), (folder_ + L"quillbox.exe").c_str(), FALSE);
}

ProgramUnderTest::~ProgramUnderTest()
{
    if (process_.Id() && !process_.WaitForEnd(0)) Close();
    DeleteTree(folder_);
}

void ProgramUnderTest::Write(const std::wstring& name, const std::string& bytes) const
{
    const HANDLE file =
        CreateFileW((folder_ + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
}

std::string ProgramUnderTest::Read(const std::wstring& name) const
{
    const HANDLE file = CreateFileW((folder_ + name).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    return bytes;
}

bool ProgramUnderTest::Start()
{
    process_.Start(L"\"" + folder_ + L"quillbox.exe\"", folder_);
    return Attach() && WaitForBox(L"IMPORTANT! Please Read");
}

bool ProgramUnderTest::Attach()
{
    window_ = WaitForWindow(process_.Id(), L"Form1", L"", kPatience);
    return window_ != nullptr;
}

bool ProgramUnderTest::PassStartUp()
{
    if (!Start()) return false;
    PressOk(WaitForBox(L"IMPORTANT! Please Read"));
    return WaitUntilIdle(kPatience);
}

HWND ProgramUnderTest::Control(int id) const
{
    Search search = {id, nullptr};
    EnumChildWindows(window_, MatchControl, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND ProgramUnderTest::Focus() const
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info);
    return info.hwndFocus;
}

void ProgramUnderTest::Type(WORD key) const
{
    constexpr LPARAM kAltHeld = 1 << 29;
    if (key >= 'a' && key <= 'z')
        PostMessageW(Focus(), WM_SYSKEYDOWN, static_cast<WPARAM>(key - 'a' + 'A'), kAltHeld);
    else
        PostMessageW(Focus(), WM_KEYDOWN, key, 0);
}

HWND ProgramUnderTest::WaitForBox(const std::wstring& caption) const
{
    return WaitForWindow(process_.Id(), L"#32770", caption, kPatience);
}

void ProgramUnderTest::PressOk(HWND box) const
{
    ::PressOk(box);
    Eventually([box] { return !IsWindow(box); }, kPatience);
}

bool ProgramUnderTest::WaitUntilIdle(DWORD milliseconds) const
{
    return Eventually([this] { return IsWindowEnabled(Control(idSync)) != FALSE; }, milliseconds);
}

bool ProgramUnderTest::Close()
{
    PostMessageW(window_, WM_CLOSE, 0, 0);
    return process_.WaitForEnd(kPatience);
}
