// ClientTest.cpp: the stand-in client's windows and its dialog, driven from this process.
#include "tests/support/MailDirectory.h"
#include "tests/windows/ProgramUnderTest.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cwchar>
#include <memory>

namespace {

constexpr WPARAM kSaveAs = 40101;
constexpr wchar_t kSaveDialog[] = L"Save Message As";

// Direct child by part of its class's name.
HWND ChildOf(HWND parent, const wchar_t* windowClass)
{
    for (HWND child = parent ? GetWindow(parent, GW_CHILD) : nullptr; child;
         child = GetWindow(child, GW_HWNDNEXT)) {
        wchar_t name[100] = {};
        GetClassNameW(child, name, 100);
        if (std::wcsstr(name, windowClass)) return child;
    }
    return nullptr;
}

std::string BytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ClientTest : public testing::Test {
protected:
    void StartClient(const std::wstring& switches)
    {
        wchar_t program[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        const std::filesystem::path client = std::filesystem::path(program).parent_path() / "demo-client.exe";
        const std::filesystem::path mail = directory.Path() / "mail";
        process = std::make_unique<StartedProcess>(L"\"" + client.wstring() + L"\" --mail \"" +
                                                       mail.wstring() + L"\" " + switches,
                                                   directory.Path().wstring());
        window =
            WaitForWindow(process->Id(), L"Outlook Express Browser Class", L"Inbox - Outlook Express", 20000);
        ASSERT_NE(window, nullptr);
    }

    void SetUp() override
    {
        directory.Write("mail/Inbox/1.eml", "Subject: one\r\n\r\nA");
        directory.Write("mail/Inbox/2.eml", std::string("\0\x1A\r\n\n\r\xFF", 7));
        directory.Write("mail/Inbox/3.eml", "");
        directory.Write("mail/Other/1.eml", "Subject: other\r\n\r\n");
    }

    HWND List() const
    {
        return ChildOf(
            ChildOf(ChildOf(window, L"Outlook Express Message View"), L"Outlook Express Message List"),
            L"ATL:SysListView32");
    }
    HWND Tree() const
    {
        const HWND frame =
            ChildOf(ChildOf(window, L"Outlook Express Navigation Pane"), L"Outlook Express Pane Frame");
        EXPECT_EQ(TextOf(frame), L"Folders");
        return ChildOf(ChildOf(frame, L"ThorTreeViewWndClass"), L"SysTreeView32");
    }
    static int Selected(HWND list)
    {
        return static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, WPARAM(-1), LVNI_SELECTED));
    }
    static void Key(HWND list, WPARAM key)
    {
        SendMessageW(list, WM_KEYDOWN, key, 0);
        SendMessageW(list, WM_KEYUP, key, 0);
    }
    HWND OpenDialog(DWORD patience = 5000) const
    {
        PostMessageW(window, WM_COMMAND, kSaveAs, 0);
        return WaitForWindow(process->Id(), L"#32770", kSaveDialog, patience);
    }
    static HWND Edit(HWND dialog)
    {
        return ChildOf(ChildOf(ChildOf(dialog, L"ComboBoxEx32"), L"ComboBox"), L"Edit");
    }
    static void Click(HWND dialog, int id)
    {
        SendMessageW(GetDlgItem(dialog, id), WM_LBUTTONDOWN, 0, 0);
        SendMessageW(GetDlgItem(dialog, id), WM_LBUTTONUP, 0, 0);
    }
    void Save(HWND dialog, const char* name) const
    {
        SendMessageW(Edit(dialog), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>((directory.Path() / name).wstring().c_str()));
        Click(dialog, IDOK);
    }

    MailDirectory directory;
    std::unique_ptr<StartedProcess> process;
    HWND window = nullptr;
};

TEST_F(ClientTest, ListIsBuiltAnewForEachFolder)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    const HWND list = List(), tree = Tree();
    EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 3);
    EXPECT_EQ(Selected(list), 0);
    Key(list, VK_DOWN);
    EXPECT_EQ(Selected(list), 1);
    EXPECT_EQ(TextOf(tree), L"Folder List");

    const LPARAM inbox = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0);
    const LPARAM other = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXT, inbox);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, other);
    EXPECT_EQ(TextOf(window), L"Other - Outlook Express");
    EXPECT_FALSE(IsWindow(list));
    EXPECT_EQ(SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0), 1);
    EXPECT_EQ(Selected(List()), -1);
    Key(List(), VK_HOME);
    EXPECT_EQ(Selected(List()), 0);

    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
    EXPECT_EQ(TextOf(window), L"Outlook Express");
    EXPECT_EQ(SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0), 0);
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(process->WaitForEnd(5000));
}

TEST_F(ClientTest, SavesTheSelectedMessageUnchanged)
{
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    for (const char* name : {"1.eml", "2.eml", "3.eml"}) {
        const HWND dialog = OpenDialog();
        ASSERT_NE(dialog, nullptr);
        Save(dialog, name);
        ASSERT_TRUE(std::filesystem::exists(directory.Path() / name)) << name;
        EXPECT_EQ(BytesOf(directory.Path() / name), BytesOf(directory.Path() / "mail/Inbox" / name)) << name;
        Key(List(), VK_DOWN);
    }
}

TEST_F(ClientTest, NeverReplacesAFile)
{
    directory.Write("there.eml", "mine");
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    const HWND dialog = OpenDialog();
    ASSERT_NE(dialog, nullptr);
    Save(dialog, "there.eml");
    EXPECT_EQ(TextOf(dialog), kSaveDialog) << "still open";
    Save(dialog, "no such directory/x.eml");
    EXPECT_EQ(TextOf(dialog), kSaveDialog) << "still open";
    Click(dialog, IDCANCEL);
    EXPECT_TRUE(Eventually([&] { return !IsWindow(dialog); }, 5000));
    EXPECT_EQ(BytesOf(directory.Path() / "there.eml"), "mine");
}

TEST_F(ClientTest, FiftySavesOfFifty)
{
    for (int i = 0; i < 50; ++i)
        directory.Write("mail/Inbox/x" + std::to_string(i) + ".eml", std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(StartClient(L""));
    int saved = 0;
    for (int i = 0; i < 50; ++i) {
        const std::string name = "out" + std::to_string(i) + ".eml";
        if (const HWND dialog = OpenDialog()) Save(dialog, name.c_str());
        saved += std::filesystem::exists(directory.Path() / name);
    }
    EXPECT_EQ(saved, 50);
}

// It waits until the dialog before has closed.
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

TEST_F(ClientTest, MisbehavesOnRequest)
{
    const struct {
        const wchar_t* switches;
        bool dialog, edit, file;
    } cases[] = {
        {L"--no-dialog", false, false, false}, {L"--no-combo", true, false, false},
        {L"--no-edit", true, false, false},    {L"--save-nothing", true, true, false},
        {L"--slow=100", true, true, true},     {L"--one-column", true, true, true},
    };
    for (const auto& c : cases) {
        std::filesystem::remove(directory.Path() / "x.eml");
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        const HWND dialog = OpenDialog(1000);
        EXPECT_EQ(dialog != nullptr, c.dialog) << c.switches;
        EXPECT_EQ(Edit(dialog) != nullptr, c.edit) << c.switches;
        if (c.edit) Save(dialog, "x.eml");
        const auto there = [&] { return std::filesystem::exists(directory.Path() / "x.eml"); };
        EXPECT_EQ(Eventually(there, 500), c.file) << c.switches;
        EXPECT_EQ(SendMessageW(reinterpret_cast<HWND>(SendMessageW(List(), LVM_GETHEADER, 0, 0)),
                               HDM_GETITEMCOUNT, 0, 0),
                  c.switches == std::wstring(L"--one-column") ? 1 : 8);
        process.reset();
    }
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--ignore-down-key"));
    Key(List(), VK_DOWN);
    EXPECT_EQ(Selected(List()), 0);
    process.reset();

    ASSERT_NO_FATAL_FAILURE(StartClient(L"--close-after=1"));
    Save(OpenDialog(), "y.eml");
    EXPECT_TRUE(process->WaitForEnd(5000));
    EXPECT_TRUE(std::filesystem::exists(directory.Path() / "y.eml"));
}

// Each at the second question for the number of selected rows, or at a key.
TEST_F(ClientTest, ListChangesBetweenTwoQuestions)
{
    const struct {
        const wchar_t* switches;
        int downKeys;
        int rowsBefore, selectedBefore, rows, selected;
    } cases[] = {
        {L"--hold-back=1 --at=LVM_GETSELECTEDCOUNT:2:arrive", 0, 2, 0, 3, 1},
        {L"--hold-back=9 --at=LVM_GETSELECTEDCOUNT:2:arrive:2", 0, 0, -1, 2, -1},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete", 1, 3, 1, 2, 0},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete:0", 2, 3, 2, 2, 1},
        {L"--at=LVM_GETSELECTEDCOUNT:2:delete:-1", 0, 3, 0, 3, 0},
        {L"--at=LVM_GETSELECTEDCOUNT:2:resort", 0, 3, 0, 3, 2},
        {L"--at=LVM_GETSELECTEDCOUNT:2:group", 0, 3, 0, 2, 0}, // two have no subject
        {L"--at=down:1:lose", 2, 3, 1, 3, 1},
        {L"--at=down:1:double", 1, 3, 2, 3, 2},
    };
    for (const auto& c : cases) {
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        const HWND list = List();
        for (int i = 0; i < c.downKeys; ++i) Key(list, VK_DOWN);
        EXPECT_EQ(SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0), c.selectedBefore < 0 ? 0 : 1) << c.switches;
        EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), c.rowsBefore) << c.switches;
        EXPECT_EQ(Selected(list), c.selectedBefore) << c.switches;
        EXPECT_EQ(SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0), c.selected < 0 ? 0 : 1) << c.switches;
        EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), c.rows) << c.switches;
        EXPECT_EQ(Selected(list), c.selected) << c.switches;
    }
}

// While the list works on a message, does another window of the client answer?
TEST_F(ClientTest, SlowActsAreBusyOrPump)
{
    const struct {
        const wchar_t* switches;
        bool answers;
    } cases[] = {{L"--at=LVM_GETITEMCOUNT:2:silent:1500", false},
                 {L"--at=LVM_GETITEMCOUNT:2:pump:1500", true}};
    for (const auto& c : cases) {
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        EXPECT_EQ(SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0), 3);
        const DWORD start = GetTickCount();
        SendNotifyMessageW(List(), LVM_GETITEMCOUNT, 0, 0);
        DWORD_PTR unused = 0;
        EXPECT_EQ(SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 800, &unused) != 0, c.answers)
            << c.switches;
        EXPECT_TRUE(SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &unused));
        EXPECT_TRUE(c.answers || GetTickCount() - start >= 1400u);
        EXPECT_EQ(SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0), 3) << "it comes back";
    }
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--at=LVM_GETCOLUMNORDERARRAY:0:lose --fill=2000"));
    EXPECT_EQ(SendMessageW(List(), LVM_GETCOLUMNORDERARRAY, 0, 0), 0);
    EXPECT_LT(SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0), 3) << "the list is still filling";
    EXPECT_TRUE(Eventually([&] { return SendMessageW(List(), LVM_GETITEMCOUNT, 0, 0) == 3; }, 5000));
}

TEST_F(ClientTest, LateDialogHoldsOneOfTwoMessages)
{
    const struct {
        const wchar_t* switches;
        const char* message;
    } cases[] = {{L"--dialog-delays=700,0", "mail/Inbox/2.eml"},
                 {L"--dialog-delays=700,0 --take-at-command", "mail/Inbox/1.eml"}};
    for (const auto& c : cases) {
        std::filesystem::remove(directory.Path() / "x.eml");
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        PostMessageW(window, WM_COMMAND, kSaveAs, 0);
        EXPECT_EQ(WaitForWindow(process->Id(), L"#32770", kSaveDialog, 300), nullptr);
        Key(List(), VK_DOWN);
        const HWND dialog = WaitForWindow(process->Id(), L"#32770", kSaveDialog, 5000);
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(IsWindowEnabled(window));
        Save(dialog, "x.eml");
        EXPECT_EQ(BytesOf(directory.Path() / "x.eml"), BytesOf(directory.Path() / c.message)) << c.switches;
        EXPECT_NE(OpenDialog(300), nullptr) << "the second comes at once";
    }
}

TEST_F(ClientTest, BoxesStandInFrontOfTheDialog)
{
    const struct {
        const wchar_t* box;
        const wchar_t* caption;
        const wchar_t* button;
        bool saved;
    } cases[] = {{L"bad-name", kSaveDialog, L"OK", false},
                 {L"replace", kSaveDialog, L"No", false},
                 {L"replace", kSaveDialog, L"Yes", true},
                 {L"disk-full", L"Outlook Express", L"OK", false}};
    for (const auto& c : cases) {
        directory.Write("x.eml", "old");
        ASSERT_NO_FATAL_FAILURE(StartClient(std::wstring(L"--at=save:1:box:") + c.box));
        const HWND dialog = OpenDialog();
        SendMessageW(Edit(dialog), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>((directory.Path() / "x.eml").wstring().c_str()));
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
        HWND box = nullptr;
        EXPECT_TRUE(Eventually([&] { return (box = GetLastActivePopup(window)) != dialog; }, 5000)) << c.box;
        EXPECT_EQ(TextOf(box), c.caption);
        EXPECT_EQ(GetWindow(box, GW_OWNER), dialog);
        EXPECT_FALSE(IsWindowEnabled(dialog));
        PostMessageW(FindButton(box, c.button), BM_CLICK, 0, 0);
        EXPECT_TRUE(Eventually([&] { return !IsWindow(box); }, 5000));
        EXPECT_EQ(Eventually([&] { return !IsWindow(dialog); }, 500), c.saved) << c.box;
        EXPECT_EQ(BytesOf(directory.Path() / "x.eml") == "old", !c.saved) << c.box;
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
        const char *at0, *at600; // the file's bytes; null: no file
    } cases[] = {
        {L"--at=save:1:lose", false, nullptr, nullptr},
        {L"--at=save:1:no-file", true, nullptr, nullptr},
        {L"--at=save:1:late:500", true, nullptr, "Subject: one\r\n\r\nA"},
        {L"--at=save:1:empty", true, "", ""},
        {L"--at=save:1:empty:500", true, "", "Subject: one\r\n\r\nA"},
    };
    const auto check = [this](const char* wanted, const wchar_t* switches) {
        EXPECT_EQ(std::filesystem::exists(directory.Path() / "x.eml"), wanted != nullptr) << switches;
        EXPECT_EQ(BytesOf(directory.Path() / "x.eml"), wanted ? wanted : "") << switches;
    };
    for (const auto& c : cases) {
        std::filesystem::remove(directory.Path() / "x.eml");
        ASSERT_NO_FATAL_FAILURE(StartClient(c.switches));
        const HWND dialog = OpenDialog();
        Save(dialog, "x.eml");
        check(c.at0, c.switches);
        EXPECT_EQ(Eventually([&] { return !IsWindow(dialog); }, 300), c.closes) << c.switches;
        Sleep(600);
        check(c.at600, c.switches);
        if (!c.closes) Save(dialog, "x.eml");
        EXPECT_TRUE(Eventually([&] { return !IsWindow(dialog); }, 5000));
    }
}

TEST_F(ClientTest, SystemDialogHasTheSameControlsAndItsOwnBoxes)
{
    directory.Write("there.eml", "mine");
    ASSERT_NO_FATAL_FAILURE(StartClient(L"--system-dialog --at=save:2:lose"));
    HWND dialog = OpenDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(IsWindowEnabled(window));
    Save(dialog, "x.eml");
    EXPECT_TRUE(Eventually([&] { return !IsWindow(dialog); }, 5000));
    EXPECT_EQ(BytesOf(directory.Path() / "x.eml"), "Subject: one\r\n\r\nA");

    dialog = OpenDialog();
    Save(dialog, "y.eml");
    EXPECT_FALSE(Eventually([&] { return !IsWindow(dialog); }, 300)) << "the lost one";
    // The box is not the dialog; the file stays as it is.
    for (const char* name : {"no such directory\\x.eml", "there.eml"}) {
        SendMessageW(Edit(dialog), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>((directory.Path() / name).wstring().c_str()));
        PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
        HWND box = nullptr;
        ASSERT_TRUE(Eventually([&] { return (box = GetLastActivePopup(window)) != dialog; }, 5000)) << name;
        const HWND no = FindButton(box, L"No");
        PostMessageW(no ? no : FindButton(box, L"OK"), BM_CLICK, 0, 0);
        EXPECT_TRUE(Eventually([&] { return !IsWindow(box); }, 5000)) << name;
        EXPECT_TRUE(IsWindow(dialog)) << name;
    }
    Click(dialog, IDCANCEL);
    EXPECT_TRUE(Eventually([&] { return !IsWindow(dialog); }, 5000));
    EXPECT_EQ(BytesOf(directory.Path() / "there.eml"), "mine");
}

} // namespace
