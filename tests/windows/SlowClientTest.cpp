// SlowClientTest.cpp: while the client takes long over a click or a change of folder, busy or pumping
// messages, the program's window answers, and so do its stop buttons.
#include "tests/windows/MailRun.h"

#include <algorithm>

namespace {

struct Slow {
    const wchar_t* switches;
    bool allFolders;
    const char* begun; // in the log when the act is under way, or is just coming
};

class SlowClientTest : public MailRun, public testing::WithParamInterface<Slow> {
protected:
    // Milliseconds until the window has answered.
    DWORD AnswerTime() const
    {
        const DWORD start = GetTickCount();
        DWORD_PTR answer = 0;
        if (!SendMessageTimeoutW(program.Window(), WM_NULL, 0, 0, SMTO_NORMAL, 10000, &answer)) return 10000;
        return GetTickCount() - start;
    }
};

TEST_P(SlowClientTest, TheStopButtonsAnswer)
{
    AddFolder(L"Inbox", 3);
    AddFolder(L"Later", 2);
    ASSERT_TRUE(Start("System Folders=|local folders|\r\n", GetParam().switches));
    ASSERT_TRUE(Press(Control(GetParam().allFolders ? idCheckAllFolders : idExport)));
    ASSERT_TRUE(WaitForLog(GetParam().begun));
    Sleep(1500); // the act is under way
    std::vector<DWORD> times;
    for (int i = 0; i < 20; ++i) {
        times.push_back(AnswerTime());
        Sleep(50);
    }
    std::sort(times.begin(), times.end());
    EXPECT_LT(times[times.size() / 2], 200u);
    EXPECT_LT(times.back(), 1000u) << "with the machine's other work";

    const DWORD start = GetTickCount();
    SendMessageW(Control(idStopAfterEmail), BM_CLICK, 0, 0);
    EXPECT_LT(GetTickCount() - start, 1000u);
    EXPECT_TRUE(Eventually(
        [&] { return TextOf(Control(idOrbVac)) == L"Stopping as soon as Outlook Express has answered"; },
        2000))
        << "what it waits for";
}

INSTANTIATE_TEST_SUITE_P(Acts, SlowClientTest,
                         testing::Values(Slow{L"--at=save:1:silent:20000", false, "- Exporting Inbox 0"},
                                         Slow{L"--at=save:1:pump:20000", false, "- Exporting Inbox 0"},
                                         Slow{L"--at=folder:1:silent:20000", true, "-> Local Folders\\Later"},
                                         Slow{L"--at=folder:1:pump:20000", true, "-> Local Folders\\Later"}));

} // namespace
