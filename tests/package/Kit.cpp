// Kit.cpp: kit.exe: tries Quillbox on the system that it is started on: the tests, an export with checks of a
// sample mailbox through the window, databases in the hands of DAO. Writes report.txt beside its folder: what
// the system is, and what came of each part, without personal data. Writes nothing outside the kit's folder.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr DWORD kMinute = 60000; // milliseconds

struct Part {
    const char* name;
    const wchar_t* command; // in the kit's folder
    DWORD minutes;          // it may take, on an old machine
    const wchar_t* output;  // file for what it prints, which does not go into the report; or null
};
const Part kParts[] = {
    // Two of the tests write to the registry.
    {"Windows tests",
     L"programs\\windows-tests.exe --gtest_brief=1 --gtest_filter=-Dao.*:OeRegistryEditor.*:Engines.*", 60,
     nullptr},
    {"Core tests", L"programs\\unit-tests.exe --gtest_brief=1", 30, nullptr},
    {"Export and checks through the window",
     L"programs\\demo-driver.exe --program work\\program\\quillbox.exe --do export-all --do check-all "
     L"--do compare=database --do check-all --do compare=file --do check-all --do show "
     L"-- programs\\demo-client.exe --mail mail.pack",
     30, nullptr},
    {"Records read by the embedded engine",
     L"programs\\quillbox-inspect.exe db work\\program\\saved.mdb list", 5, L"work\\records.txt"},
    {"Stored e-mails beside the mailbox",
     L"programs\\demo-check.exe --mail mail.pack --store work\\store --all --log work\\program\\log.txt "
     L"--records work\\records.txt",
     5, nullptr},
    {"Databases in the hands of DAO", L"programs\\windows-tests.exe --gtest_filter=Engines.*", 120, nullptr},
};

std::string Narrow(const std::wstring& text, UINT codePage = CP_UTF8)
{
    std::string narrow(text.size() * 3, '\0');
    narrow.resize(static_cast<std::size_t>(
        WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr)));
    return narrow;
}

// What a report must not tell: where the kit lies, and whose machine it is.
class Personal {
public:
    explicit Personal(const fs::path& kit)
    {
        for (const std::wstring& path : {kit.wstring(), kit.generic_wstring()})
            for (const std::string& spelt : {Narrow(path), Narrow(path, CP_ACP)})
                words_.emplace_back(spelt, ".");
        for (const wchar_t* const name : {L"USERNAME", L"COMPUTERNAME", L"USERDOMAIN"})
            if (const wchar_t* const value = _wgetenv(name); value && std::wcslen(value) > 2)
                for (const std::string& spelt : {Narrow(value), Narrow(value, CP_ACP)})
                    words_.emplace_back(spelt, "***");
    }
    std::string Without(std::string text) const
    {
        const auto same = [](char a, char b) {
            return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
        };
        for (const auto& [word, instead] : words_)
            for (auto at = text.begin();;) {
                at = std::search(at, text.end(), word.begin(), word.end(), same);
                if (at == text.end()) break;
                const auto place = at - text.begin();
                text.replace(static_cast<std::size_t>(place), word.size(), instead);
                at = text.begin() + place + static_cast<std::ptrdiff_t>(instead.size());
            }
        return text;
    }

private:
    std::vector<std::pair<std::string, std::string>> words_;
};

std::string WindowsVersion()
{
    RTL_OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    using GetVersion = LONG(WINAPI*)(RTL_OSVERSIONINFOEXW*);
    using WineVersion = const char*(__cdecl*)();
    // What GetVersionEx answers is at most what a program's manifest names.
    const auto get =
        reinterpret_cast<GetVersion>(reinterpret_cast<void*>(GetProcAddress(system, "RtlGetVersion")));
    const auto wine =
        reinterpret_cast<WineVersion>(reinterpret_cast<void*>(GetProcAddress(system, "wine_get_version")));
    if (get) get(&version);
    return "Windows " + std::to_string(version.dwMajorVersion) + "." +
           std::to_string(version.dwMinorVersion) + "." + std::to_string(version.dwBuildNumber) + " " +
           Narrow(version.szCSDVersion) + (wine ? std::string(", Wine ") + wine() : "");
}

bool IsRegistered(const wchar_t* progId)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, progId, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

std::string DescribeSystem()
{
    wchar_t date[80] = {}, time[80] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, date, 80);
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STIMEFORMAT, time, 80);
    TIME_ZONE_INFORMATION zone = {};
    GetTimeZoneInformation(&zone);
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    char text[400];
    std::snprintf(
        text, sizeof text,
        "code page %u, console %u; language %04lX; dates \"%s %s\"; %ld minutes to Universal Time; %d dpi; "
        "DAO 3.6: %s, 12.0: %s\n",
        GetACP(), GetOEMCP(), GetUserDefaultLCID(), Narrow(date).c_str(), Narrow(time).c_str(), zone.Bias,
        dpi, IsRegistered(L"DAO.DBEngine.36") ? "yes" : "no",
        IsRegistered(L"DAO.DBEngine.120") ? "yes" : "no");
    return WindowsVersion() + "\n" + text;
}

// The exit code; that of a program that does not end in time is 259, which is "still active".
DWORD Run(const Part& part, const fs::path& output)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE file =
        CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = file;
    PROCESS_INFORMATION process = {};
    std::wstring command = part.command; // the call may write to it
    DWORD code = 0;
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &process)) {
        WaitForSingleObject(process.hProcess, part.minutes * kMinute);
        GetExitCodeProcess(process.hProcess, &code);
        if (code == STILL_ACTIVE) TerminateProcess(process.hProcess, 1);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    } else {
        code = GetLastError();
    }
    CloseHandle(file);
    return code;
}

std::string BytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\r'), bytes.end());
    return bytes;
}

void Prepare(const fs::path& kit)
{
    fs::remove_all("work");
    for (const char* folder : {"work/program", "work/store", "work/temporary"})
        fs::create_directories(folder);
    fs::copy_file("programs/quillbox.exe", "work/program/quillbox.exe");
    std::ofstream("work/program/settings.ini")
        << "[Paths]\nStore=" << Narrow((kit / "work" / "store").wstring(), CP_ACP)
        << "\n[Options]\nSystem Folders=|outlook express|\n"; // else messages of the root are passed over
    const std::wstring temporary = (kit / "work" / "temporary").wstring();
    for (const wchar_t* const name : {L"TEMP", L"TMP"}) SetEnvironmentVariableW(name, temporary.c_str());
    SetEnvironmentVariableW(L"QUILLBOX_DATABASES", (kit / "databases").wstring().c_str());
}

} // namespace

int wmain()
{
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const fs::path kit = fs::path(program).parent_path().parent_path();
    const Personal personal(kit);
    try {
        fs::current_path(kit);
        Prepare(kit);
        std::ofstream report("report.txt");
        report << BytesOf("version.txt") << DescribeSystem() << std::flush;
        int failed = 0;
        for (const Part& part : kParts) {
            std::printf("%s ...\n", part.name);
            std::fflush(stdout);
            const DWORD began = GetTickCount();
            const fs::path output = part.output ? part.output : L"work\\output.txt";
            const DWORD code = Run(part, output);
            failed += code != 0;
            report << "\n== " << part.name << ": "
                   << (code ? "FAILED with code " + std::to_string(code) : "passed") << " ("
                   << (GetTickCount() - began) / 1000 << " s)\n";
            if (!part.output || code) report << personal.Without(BytesOf(output));
            report.flush();
        }
        report << "\n== " << failed << " of " << std::size(kParts) << " parts failed\n";
        std::printf("%d of %u parts failed; report.txt tells more.\n", failed, unsigned{std::size(kParts)});
        return failed ? 1 : 0;
    } catch (const std::exception& error) {
        std::printf("kit: %s\n", error.what());
        return 2;
    }
}
