// UnattendedTest.cpp: runs by the command line, through the program's exit code.
#include "tests/windows/MailRun.h"

namespace {

TEST_F(MailRun, TheExitCodeTellsWhatCameOfARunWithoutAUser)
{
    AddFolder(L"Inbox", 2);
    CreateFolder(L"store");
    const std::string folder(program.Folder().begin(), program.Folder().end());
    const std::string settings =
        "[Paths]\r\nStore=" + folder + "nowhere\r\n[Options]\r\nOE Folder Settle Time=0.1\r\n";
    program.Write(L"settings.ini", settings);
    const auto run = [&](const std::wstring& switches) {
        StartedProcess quillbox;
        quillbox.Start(L"\"" + program.Folder() + L"quillbox.exe\" " + switches + L" /close",
                       program.Folder());
        EXPECT_TRUE(quillbox.HasEnded(kPatience)) << "a box waits";
        return quillbox.ExitCode();
    };
    const std::wstring store = L" \"/store:" + program.Folder() + L"store\"";
    const std::wstring inbox = L" \"/folder:Local Folders\\Inbox\"";
    EXPECT_EQ(run(L"/sync /export /al"), 3u);
    EXPECT_FALSE(Contains(Log(), "Started"));
    EXPECT_EQ(run(L"/sync /check /all" + store), 2u) << "no client";
    ASSERT_TRUE(StartDemoClient(client, program.Folder(), L""));
    EXPECT_EQ(run(L"/sync /export /all"), 1u) << "the store folder is missing";
    EXPECT_EQ(run(L"/sync /check" + inbox + store), 1u);
    EXPECT_EQ(run(L"/sync /export" + inbox + store), 0u);
    EXPECT_EQ(run(L"/sync /check /all /comparison:simple" + store), 0u);
    EXPECT_EQ(run(L"/sync /export /all" + store), 0u);
    EXPECT_NE(program.Read(Stored(L"Inbox\\0001_Inbox1.eml")), "");
    EXPECT_EQ(program.Read(L"settings.ini"), settings);
}

} // namespace
