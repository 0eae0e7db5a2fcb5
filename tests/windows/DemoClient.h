// DemoClient.h: the stand-in client in a process of its own.
#pragma once
#include "tests/windows/ProgramUnderTest.h"

// Starts it on the mailbox "mail" in the folder, whose path ends in a backslash, and answers its window once
// a mail folder is shown; null when none is within a minute.
inline HWND StartDemoClient(StartedProcess& process, const std::wstring& folder, const std::wstring& switches)
{
    process.Start(L"\"" + FolderOfTests() + L"demo-client.exe\" --mail \"" + folder + L"mail\" " + switches,
                  folder);
    HWND window = nullptr;
    Eventually(
        [&] {
            window = FindProgramWindow(process.Id(), L"Outlook Express Browser Class");
            return window && TextOf(window).ends_with(L"Outlook Express");
        },
        kPatience);
    return window;
}
