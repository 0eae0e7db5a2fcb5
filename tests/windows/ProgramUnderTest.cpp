#include "tests/windows/ProgramUnderTest.h"

#include <fstream>
#include <iterator>

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

RECT PlaceOf(HWND window)
{
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

bool Encloses(const RECT& outer, const RECT& inner)
{
    RECT both = {};
    UnionRect(&both, &outer, &inner);
    return EqualRect(&both, &outer);
}

std::string BytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
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
    std::filesystem::copy_file(FolderOfTests() + L"quillbox.exe", folder_ + L"quillbox.exe");
}

ProgramUnderTest::~ProgramUnderTest()
{
    if (process_.Id() && !process_.WaitForEnd(0)) Close();
}

void ProgramUnderTest::Write(const std::wstring& name, const std::string& bytes) const
{
    std::ofstream(std::filesystem::path(folder_ + name), std::ios::binary) << bytes;
}

std::string ProgramUnderTest::Read(const std::wstring& name) const
{
    return BytesOf(folder_ + name);
}

bool ProgramUnderTest::Start()
{
    process_.Start(L"\"" + folder_ + L"quillbox.exe\"", folder_);
    window_ = WaitForWindow(process_.Id(), L"Form1", L"", kPatience);
    return window_ && WaitForBox(L"IMPORTANT! Please Read");
}

bool ProgramUnderTest::PassStartUp()
{
    if (!Start()) return false;
    PressOk(WaitForBox(L"IMPORTANT! Please Read"));
    return WaitUntilIdle(kPatience);
}

HWND ProgramUnderTest::Control(int id) const
{
    HWND found = GetDlgItem(window_, id);
    for (HWND frame = GetWindow(window_, GW_CHILD); frame && !found; frame = GetWindow(frame, GW_HWNDNEXT))
        found = GetDlgItem(frame, id);
    return found;
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
    return Eventually([this] { return IsWindowEnabled(Control(cmdSync)) != FALSE; }, milliseconds);
}

bool ProgramUnderTest::Close()
{
    PostMessageW(window_, WM_CLOSE, 0, 0);
    return process_.WaitForEnd(kPatience);
}
