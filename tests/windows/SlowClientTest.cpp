// SlowClientTest.cpp: while the client takes long over a click or a change of folder, busy or pumping
// messages, the program's window answers, and so do its stop buttons.
#include "tests/windows/MailRun.h"

namespace {

class SlowClientTest : public MailRun, public testing::WithParamInterface<const wchar_t*> {};

// The act lasts 20 s, and every answer comes within 2.
TEST_P(SlowClientTest, TheStopButtonsAnswer)
{
    const bool allFolders = std::wstring(GetParam()).starts_with(L"--at=folder");
    AddFolder(L"Inbox", 3);
    AddFolder(L"Later", 2);
    ASSERT_TRUE(Start("System Folders=|local folders|\r\n", GetParam()));
    ASSERT_TRUE(Press(Control(allFolders ? cmdCheckAllFolders : cmdExport)));
    ASSERT_TRUE(WaitForLog(allFolders ? "-> Local Folders\\Later" : "- Exporting Inbox 0"));
    Sleep(1500); // the act is under way
    DWORD_PTR unused = 0;
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(SendMessageTimeoutW(program.Window(), WM_NULL, 0, 0, SMTO_NORMAL, 2000, &unused)) << i;
    EXPECT_TRUE(SendMessageTimeoutW(Control(cmdStopAfterEmail), BM_CLICK, 0, 0, SMTO_NORMAL, 2000, &unused));
    EXPECT_TRUE(Eventually(
        [&] { return TextOf(Control(OrbVac)) == L"Stopping as soon as Outlook Express has answered"; }, 2000))
        << "what it waits for";
}

INSTANTIATE_TEST_SUITE_P(Acts, SlowClientTest,
                         testing::Values(L"--at=save:1:silent:20000", L"--at=save:1:pump:20000",
                                         L"--at=folder:1:silent:20000", L"--at=folder:1:pump:20000"));

} // namespace
