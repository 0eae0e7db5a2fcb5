// main.cpp: demo-client.exe: reads the command line and the mailbox, and shows the window.
#include "demo/client/Client.h"
#include "demo/mailbox/LoadMailbox.h"
#include "demo/mailbox/Names.h"

#include <shellapi.h>

namespace {

// To standard error where there is one (scripts), else to the user.
int Fail(const std::wstring& reason, int exitCode)
{
    const HANDLE errors = GetStdHandle(STD_ERROR_HANDLE);
    const std::string text =
        "demo-client: " + NameToUtf8(std::u16string(reason.begin(), reason.end())) + "\r\n";
    DWORD written = 0;
    if (!WriteFile(errors, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        MessageBoxW(nullptr, reason.c_str(), L"demo-client", MB_ICONERROR);
    return exitCode;
}

std::vector<std::wstring> Arguments()
{
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> arguments(words + 1, words + count);
    LocalFree(words);
    return arguments;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand)
{
    Options options;
    const std::wstring wrong = ParseOptions(Arguments(), options);
    if (!wrong.empty()) return Fail(wrong + L"\n" + kUsage, 2);

    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES |
                                                       ICC_USEREX_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    try {
        Client client(options, LoadMailbox(options.mail));
        if (!client.Show(showCommand)) return Fail(options.select + L": no such folder", 1);
        return client.Run();
    } catch (const std::exception& error) {
        const std::u16string reason = NameFromUtf8(error.what());
        return Fail(std::wstring(reason.begin(), reason.end()), 1);
    }
}
