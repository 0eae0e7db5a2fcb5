// ClientTest.cpp: the stand-in client misbehaves as it is told; the tests of what drives it rely on that.
#include "tests/support/MailDirectory.h"
#include "tests/windows/DemoClient.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>

namespace {

constexpr wchar_t kSaveDialog[] = L"Save Message As";
constexpr char kFirst[] = "Subject: one\r\n\r\nA", kSecond[] = "B";

class ClientTest : public testing::Test {
protected:
    void SetUp() override
    {
        directory.Write("mail/Inbox/1.eml", kFirst);
        directory.Write("mail/Inbox/2.eml", kSecond);
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
    HWND OpenDialog(DWORD patience = 5000) const
    {
        PostMessageW(window, WM_COMMAND, 40101, 0);
        return WaitForWindow(process->Id(), L"#32770", kSaveDialog, patience);
    }
    void TypeAndPress(HWND dialog, const char* name) const
    {
        const std::wstring path = (directory.Path() / name).wstring();
        SendMessageW(FindControl(dialog, L"Edit"), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    }
    static bool Closes(HWND dialog, DWORD patience = 5000)
    {
        return Eventually([dialog] { return !IsWindow(dialog); }, patience);
    }
    std::string Stored() const // what x.eml holds; "none" without it
    {
        const std::filesystem::path path = directory.Path() / "x.eml";
        return std::filesystem::exists(path) ? BytesOf(path) : "none";
    }
    // Opened only when it is as long: a client could not write a file that is being read.
    bool ComesToHold(std::string_view want) const
    {
        return Eventually(
            [&] {
                const std::filesystem::path path = directory.Path() / "x.eml";
                std::error_code error;
                const bool isThere = std::filesystem::exists(path, error);
                if (want == "none" || !isThere) return want == "none" && !isThere;
                return std::filesystem::file_size(path, error) == want.size() && BytesOf(path) == want;
            },
            5000);
    }

    MailDirectory directory; // outlives the client
    std::optional<StartedProcess> process;
    HWND window = nullptr, list = nullptr;
};

TEST_F(ClientTest, NeverReplacesAFileUnasked)
{
    directory.Write("x.eml", "mine");
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    const HWND dialog = OpenDialog();
    ASSERT_NE(dialog, nullptr);
    for (const char* name : {"x.eml", "no such directory/x.eml"}) {
        TypeAndPress(dialog, name);
        EXPECT_FALSE(Closes(dialog, 300)) << name;
    }
    EXPECT_EQ(Stored(), "mine");
}

TEST_F(ClientTest, CommandBehindACancelledDialogIsNotLost)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    for (int i = 0; i < 20; ++i) {
        const HWND dialog = OpenDialog(2000);
        ASSERT_NE(dialog, nullptr) << i;
        PostMessageW(GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
        ASSERT_TRUE(Eventually([&] { return !IsWindow(dialog) || TextOf(dialog).empty(); }, 5000)) << i;
    }
}

// Each at the second question for the number of selected rows, or at a key.
TEST_F(ClientTest, ListChangesBetweenTwoQuestions)
{
    const struct {
        const wchar_t* switches;
        int downKeys, rowsBefore, selectedBefore, rows, selected;
    } cases[] = {
        {L"--hold-back=1 --at=LVM_GETSELECTEDCOUNT:2:arrive", 0, 2, 0, 3, 1},
        {L"--hold-back=9 --at=LVM_GETSELECTEDCOUNT:2:arrive:2", 0, 0, -1, 2, -1},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete", 1, 3, 1, 2, 0},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete:0", 2, 3, 2, 2, 1},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete:-1", 0, 3, 0, 3, 0},
        {L"--at=LVM_GETSELECTEDCOUNT:2:resort", 0, 3, 0, 3, 2},
        {L"--at=LVM_GETSELECTEDCOUNT:2:group", 0, 3, 0, 2, 0}, // two have no subject
        {L"--at=down:1:lose", 2, 3, 1, 3, 1},
        {L"--at=down:0:lose", 2, 3, 0, 3, 0}, // each time
        {L"--at=down:1:double", 1, 3, 2, 3, 2},
    };
    for (const auto& c : cases) {
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        for (int i = 0; i < c.downKeys; ++i) OfList(WM_KEYDOWN, VK_DOWN);
        for (const bool first : {true, false}) {
            const int selected = first ? c.selectedBefore : c.selected;
            EXPECT_EQ(OfList(LVM_GETSELECTEDCOUNT), selected < 0 ? 0 : 1) << c.switches;
            EXPECT_EQ(OfList(LVM_GETITEMCOUNT), first ? c.rowsBefore : c.rows) << c.switches;
            EXPECT_EQ(OfList(LVM_GETNEXTITEM, WPARAM(-1), LVNI_SELECTED), selected) << c.switches;
        }
    }
}

// While the list works on a message, does another window of the client answer?
TEST_F(ClientTest, SlowActsAreBusyOrPump)
{
    for (const bool pumps : {false, true}) {
        ASSERT_NO_FATAL_FAILURE(StartClient(pumps ? L"--at=LVM_GETITEMCOUNT:2:pump:1500"
                                                  : L"--at=LVM_GETITEMCOUNT:2:silent:1500"));
        EXPECT_EQ(OfList(LVM_GETITEMCOUNT), 3);
        SendNotifyMessageW(list, LVM_GETITEMCOUNT, 0, 0);
        DWORD_PTR unused = 0;
        EXPECT_EQ(SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 800, &unused) != 0, pumps);
        EXPECT_EQ(OfList(LVM_GETITEMCOUNT), 3) << "it comes back";
    }
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--fill=2000"));
    EXPECT_LT(OfList(LVM_GETITEMCOUNT), 3) << "the list is still filling";
    EXPECT_TRUE(Eventually([&] { return OfList(LVM_GETITEMCOUNT) == 3; }, 5000));
}

TEST_F(ClientTest, LateDialogHoldsOneOfTwoMessages)
{
    const std::pair<const wchar_t*, const char*> cases[] = {
        {L"--dialog-delays=700,0", kSecond}, {L"--dialog-delays=700,0 --take-at-command", kFirst}};
    for (const auto& [switches, message] : cases) {
        std::filesystem::remove(directory.Path() / "x.eml");
        ASSERT_NO_FATAL_FAILURE(StartClient(switches));
        EXPECT_EQ(OpenDialog(300), nullptr);
        OfList(WM_KEYDOWN, VK_DOWN);
        const HWND dialog = WaitForWindow(process->Id(), L"#32770", kSaveDialog, 5000);
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(IsWindowEnabled(window));
        TypeAndPress(dialog, "x.eml");
        EXPECT_TRUE(Closes(dialog));
        EXPECT_EQ(Stored(), message) << switches;
        EXPECT_NE(OpenDialog(300), nullptr) << "the second comes at once";
    }
}

TEST_F(ClientTest, BoxesStandInFrontOfTheDialog)
{
    const struct {
        const wchar_t *box, *caption, *button;
        bool saved;
    } cases[] = {{L"bad-name", kSaveDialog, L"OK", false},
                 {L"replace", kSaveDialog, L"No", false},
                 {L"replace", kSaveDialog, L"Yes", true},
                 {L"disk-full", L"Outlook Express", L"OK", false}};
    for (const auto& c : cases) {
        directory.Write("x.eml", "old");
        ASSERT_NO_FATAL_FAILURE(StartClient(std::wstring(L"--at=save:1:box:") + c.box));
        const HWND dialog = OpenDialog();
        TypeAndPress(dialog, "x.eml");
        HWND box = nullptr;
        EXPECT_TRUE(Eventually([&] { return (box = GetLastActivePopup(window)) != dialog; }, 5000)) << c.box;
        EXPECT_EQ(TextOf(box), c.caption);
        EXPECT_EQ(GetWindow(box, GW_OWNER), dialog);
        EXPECT_FALSE(IsWindowEnabled(dialog));
        PostMessageW(FindButton(box, c.button), BM_CLICK, 0, 0);
        EXPECT_TRUE(Closes(box));
        EXPECT_EQ(Closes(dialog, 500), c.saved) << c.box;
        EXPECT_EQ(Stored(), c.saved ? kFirst : "old") << c.box;
    }
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--at=time:300:box:other"));
    EXPECT_TRUE(Eventually([&] { return !IsWindowEnabled(window); }, 5000));
    const HWND box = WaitForWindow(process->Id(), L"#32770", L"Outlook Express", 5000);
    EXPECT_EQ(GetWindow(box, GW_OWNER), nullptr);
    PostMessageW(FindButton(box, L"Cancel"), BM_CLICK, 0, 0);
    EXPECT_TRUE(Eventually([&] { return IsWindowEnabled(window) != FALSE; }, 5000));
}

TEST_F(ClientTest, SavesGoWrong)
{
    const struct {
        const wchar_t* switches;
        bool closes;
        const char *now, *later; // what the file holds
    } cases[] = {
        {L"--at=save:1:lose", false, "none", "none"},
        {L"--system-dialog --at=save:1:lose", false, "none", "none"},
        {L"--at=save:1:no-file", true, "none", "none"},
        {L"--at=save:1:late:1500", true, "none", kFirst},
        {L"--at=save:1:empty", true, "", ""},
        {L"--at=save:1:empty:1500", true, "", kFirst},
    };
    for (const auto& c : cases) {
        std::filesystem::remove(directory.Path() / "x.eml");
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        const HWND dialog = OpenDialog();
        TypeAndPress(dialog, "x.eml");
        EXPECT_EQ(Closes(dialog, c.closes ? 5000 : 300), c.closes) << c.switches;
        EXPECT_EQ(Stored(), c.now) << c.switches;
        EXPECT_TRUE(ComesToHold(c.later)) << c.switches;
        if (c.closes) continue;
        TypeAndPress(dialog, "x.eml");
        EXPECT_TRUE(Closes(dialog)) << c.switches;
        // The system's dialog has gone before the client writes.
        EXPECT_TRUE(ComesToHold(kFirst)) << c.switches;
    }
}

} // namespace
