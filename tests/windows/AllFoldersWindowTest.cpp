// AllFoldersWindowTest.cpp: checks and exports of all folders, by the buttons that a user presses.
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

constexpr DWORD kPatience = 60000;

bool Contains(const std::string& text, const std::string& sought)
{
    return text.find(sought) != std::string::npos;
}

std::string Message(const std::string& subject, int minute)
{
    return "From: Ann Writer <ann@example.com>\r\nTo: Bob Reader <bob@example.com>\r\nSubject: " + subject +
           "\r\nDate: Tue, 3 Apr 2007 10:" + std::to_string(10 + minute) + ":00 +0000\r\n\r\nBody\r\n";
}

class AllFoldersWindowTest : public testing::Test {
protected:
    void AddFolder(const std::wstring& name, int messages)
    {
        CreateDirectoryW((program.Folder() + L"mail\\" + name).c_str(), nullptr);
        for (int i = 0; i < messages; ++i)
            program.Write(L"mail\\" + name + L"\\" + std::to_wstring(i) + L".eml",
                          Message(std::string(name.begin(), name.end()) + " " + std::to_string(i), i));
    }
    bool Start(const std::wstring& clientSwitches = {})
    {
        CreateDirectoryW((program.Folder() + L"mail").c_str(), nullptr);
        CreateDirectoryW((program.Folder() + L"store").c_str(), nullptr);
        AddFolder(L"Alpha", 3);
        AddFolder(L"Beta", 2);
        AddFolder(L"Drafts", 0);
        AddFolder(L"Inbox", 4);
        AddFolder(L"Old", 2);
        const std::string folder(program.Folder().begin(), program.Folder().end());
        program.Write(L"settings.ini", "[Paths]\r\nStore=" + folder +
                                           "store\r\n[Options]\r\nFirst folder to ignore=Local "
                                           "Folders\\OLD\r\nSystem Folders=|local folders|local "
                                           "folders\\beta|\r\n");
        client.Start(L"\"" + FolderOfTests() + L"demo-client.exe\" --mail \"" + program.Folder() +
                         L"mail\" " + clientSwitches,
                     program.Folder());
        return WaitForWindow(client.Id(), L"Outlook Express Browser Class", L"", kPatience) &&
               program.PassStartUp();
    }
    // Presses the button, answers the box at the end, and returns its words.
    std::wstring Run(int button)
    {
        Press(program.Control(button));
        const HWND box = WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", kPatience);
        if (!box) return L"no box";
        const std::wstring words = BoxWords(box);
        program.PressOk(box);
        return program.WaitUntilIdle(kPatience) ? words : L"still busy";
    }
    std::string Log() const { return program.Read(L"log.txt"); }

    ProgramUnderTest program; // outlives the client, whose files lie in its folder
    StartedProcess client;
};

TEST_F(AllFoldersWindowTest, ChecksAndExportsAllFolders)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(IsWindowEnabled(program.Control(idComparison)));
    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 7 email(s) to be saved.");
    EXPECT_EQ(TextOf(program.Control(idSummary)),
              L"Local Folders\\Alpha - all 3 emails need to be exported.\r\n"
              L"Local Folders\\Inbox - all 4 emails need to be exported.\r\n"
              L"7 email(s) to be saved.");
    EXPECT_TRUE(Contains(Log(), "Ignoring all folders after: Local Folders\\OLD"));
    EXPECT_FALSE(Contains(Log(), "Beta"));

    EXPECT_EQ(Run(idSaveAll), L"All folders have been exported.");
    EXPECT_TRUE(Contains(Log(), "4 passed, 0 failed, 0 skipped")) << Log();
    EXPECT_EQ(program.Read(L"store\\Local Folders\\Inbox\\0003_Inbox3.eml"), Message("Inbox 3", 3));
    EXPECT_EQ(program.Read(L"store\\Local Folders\\Old\\0000_Old0.eml"), "");

    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 0 email(s) to be saved.");
    EXPECT_TRUE(Contains(Log(), "2 folder(s) saved, 0 folder(s) not saved, 1 empty folder(s)."));
    EXPECT_TRUE(program.Close());
}

} // namespace
