// ClientTest.cpp: the stand-in client misbehaves as it is told; the tests of what drives it rely on that.
// That dialogs are late and boxes stand in front of them is said by the runs that meet them.
#include "tests/support/MailDirectory.h"
#include "tests/windows/DemoClient.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>

namespace {

class ClientTest : public testing::Test {
protected:
    void SetUp() override
    {
        directory.Write("mail/Inbox/1.eml", "Subject: one\r\n\r\nA");
        directory.Write("mail/Inbox/2.eml", "B");
        directory.Write("mail/Inbox/3.eml", "");
    }
    void StartClient(const std::wstring& switches)
    {
        process.emplace();
        window = StartDemoClient(*process, directory.Path().wstring() + L"\\", switches);
        ASSERT_NE(window, nullptr);
        list = FindControl(window, L"ATL:SysListView32");
    }
    int OfList(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return static_cast<int>(SendMessageW(list, message, wParam, lParam));
    }

    MailDirectory directory; // outlives the client
    std::optional<StartedProcess> process;
    HWND window = nullptr, list = nullptr;
};

// Each at the second question for the number of selected rows, or at a key.
TEST_F(ClientTest, ListChangesBetweenTwoQuestions)
{
    const std::tuple<const wchar_t*, int, int, int, int, int> cases[] = {
        {L"--hold-back=1 --at=LVM_GETSELECTEDCOUNT:2:arrive", 0, 2, 0, 3, 1},
        {L"--hold-back=9 --at=LVM_GETSELECTEDCOUNT:2:arrive:2", 0, 0, -1, 2, -1},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete", 1, 3, 1, 2, 0},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete:0", 2, 3, 2, 2, 1},
        {L"--at=LVM_GETSELECTEDCOUNT:2:resort", 0, 3, 0, 3, 2},
        {L"--at=LVM_GETSELECTEDCOUNT:2:group", 0, 3, 0, 2, 0}, // two have no subject
        {L"--at=down:1:lose", 2, 3, 1, 3, 1},
        {L"--at=down:0:lose", 2, 3, 0, 3, 0}, // each time
        {L"--at=down:1:double", 1, 3, 2, 3, 2},
    };
    for (const auto& [switches, downKeys, rowsBefore, selectedBefore, rowsAfter, selectedAfter] : cases) {
        ASSERT_NO_FATAL_FAILURE(StartClient(switches));
        for (int i = 0; i < downKeys; ++i) OfList(WM_KEYDOWN, VK_DOWN);
        for (const bool first : {true, false}) {
            const int selected = first ? selectedBefore : selectedAfter;
            EXPECT_EQ(OfList(LVM_GETSELECTEDCOUNT), selected < 0 ? 0 : 1) << switches;
            EXPECT_EQ(OfList(LVM_GETITEMCOUNT), first ? rowsBefore : rowsAfter) << switches;
            EXPECT_EQ(OfList(LVM_GETNEXTITEM, WPARAM(-1), LVNI_SELECTED), selected) << switches;
        }
    }
}

} // namespace
