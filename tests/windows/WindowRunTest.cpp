// WindowRunTest.cpp: what only the real window can show of the program's commands, pressed against the
// stand-in mail client in a process of its own.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

#include <map>
#include <set>

namespace {

class WindowRunTest : public MailRun {
protected:
    bool IsShown(int id) const { return (GetWindowLongW(Control(id), GWL_STYLE) & WS_VISIBLE) != 0; }
    // Captions and values of the statistics, in their order; the bars are values.
    void NoteStatistics()
    {
        std::size_t i = 0;
        for (HWND label = GetWindow(Control(fraStats), GW_CHILD); label;
             label = GetWindow(label, GW_HWNDNEXT))
            seen[i++].insert(TextOf(label));
    }
    HWND Menu(DWORD patience = kPatience)
    {
        return WaitForWindow(program.Process().Id(), L"#32768", L"", patience);
    }
    static void Type(HWND window, WPARAM key)
    {
        PostMessageW(window, WM_KEYDOWN, key, 0);
        PostMessageW(window, WM_KEYUP, key, 0xC0000001);
    }
    // By the keyboard, up to the box that follows. A window that comes to the front late takes a menu away:
    // it is opened again.
    HWND ChooseFromMenu(HWND list, WPARAM letter)
    {
        HWND box = nullptr;
        for (int time = 0; time < 5 && !box; ++time) {
            PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
            const HWND menu = Menu(5000);
            Type(menu, letter);
            Eventually([menu] { return !IsWindow(menu); }, kPatience);
            box = WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", 5000);
        }
        return box;
    }

    std::map<std::size_t, std::set<std::wstring>> seen;
};

TEST_F(WindowRunTest, ARunShowsItsFiguresAndGivesTheWindowBack)
{
    AddFolder(L"Inbox", 6);
    AddFolder(L"Sent, all", 2);
    program.Write(L"explorer.exe", "not the system's");
    ASSERT_TRUE(Start("ID only=1\r\n", L"--slow=250"));
    EXPECT_EQ(LinesOf(Control(lstTree)),
              (std::vector<std::wstring>{L"Outlook Express", L"-Local Folders", L"--Inbox", L"--Sent, all"}));
    EXPECT_EQ(LinesOf(Control(lstLines)).back(), L"Local Folders\\Sent, all");
    EXPECT_EQ(TextOf(Control(lblOEFolder)), L"Local Folders\\Inbox");
    EXPECT_EQ(TextOf(Control(OrbVac)), L"Subject: Inbox 0");
    const HWND tree = Control(tvOETree);
    const LRESULT root = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, root);
    Press(Control(cmdUseSelection));
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(txtIgnore)) == L"Outlook Express"; }, kPatience));
    Tick(chkSkipFiles);

    Press(Control(cmdSaveAll));
    ASSERT_TRUE(WaitForLog("Exporting Outlook Express folders"));
    EXPECT_TRUE(IsShown(fraStats) && IsShown(cmdStopAfterEmail) && IsShown(cmdStopAfterFolder));
    EXPECT_FALSE(IsShown(tvOETree));
    EXPECT_EQ(SendMessageW(Control(nTab), TCM_GETCURSEL, 0, 0), 2) << "the progress is shown";
    const int commands[] = {cmdSync,        cmdGetID,           cmdExport,       cmdSaveAll,
                            cmdCheckFolder, cmdCheckAllFolders, cmdUseSelection, cmdChooseStore,
                            cmdOpenFolder,  cmdNewFolder,       Drive1,          Dir1,
                            cboComparison};
    for (const int id : commands) EXPECT_FALSE(IsWindowEnabled(Control(id))) << id;
    for (const int id : {Dir1, cmdSync}) // nor does anything else answer
        SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(id, id == Dir1 ? LBN_DBLCLK : BN_CLICKED), 0);
    EXPECT_EQ(TextOf(Control(lblStorePath)), program.Folder() + L"store");
    const auto isOver = [&] {
        NoteStatistics();
        return FindProgramWindow(program.Process().Id(), L"#32770", L"Quillbox") != nullptr;
    };
    EXPECT_TRUE(Eventually(isOver, kPatience));
    EXPECT_EQ(EndOfRun(), L"All folders have been exported.");
    const std::pair<std::size_t, const wchar_t*> figures[] = {
        {1, L"20%"},  {1, L"60%"},  {3, L"2 out of 6"}, {3, L"2 out of 2"}, {9, L"4"}, {9, L"1"},
        {11, L"25%"}, {11, L"75%"}, {13, L"8"},         {15, L"6"},         {15, L"1"}};
    for (const auto& [place, text] : figures) EXPECT_TRUE(seen[place].count(text)) << place;
    EXPECT_TRUE(seen[5].rbegin()->ends_with(L" / second"));
    for (const std::size_t time : {7, 17}) EXPECT_TRUE(seen[time].rbegin()->starts_with(L"00:0")) << time;
    EXPECT_EQ(program.Read(Stored(L"Inbox\\0003.eml")), Message("Inbox 3", 3)) << "named by its number alone";

    EXPECT_FALSE(IsShown(fraStats) || IsShown(cmdStopAfterEmail) || IsShown(cmdStopAfterFolder));
    for (const int id : commands) EXPECT_TRUE(IsWindowEnabled(Control(id))) << id;
    EXPECT_TRUE(IsShown(tvOETree));
    EXPECT_EQ(SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0), root)
        << "the user's choice is not the run's";
    std::vector<std::pair<std::wstring, int>> nodes; // texts, pictures
    for (const TreeLine& line : TreeLines(tree)) nodes.emplace_back(line.text, line.image);
    EXPECT_EQ(
        nodes,
        (decltype(nodes){
            {L"Outlook Express", 0}, {L"Local Folders", 1}, {L"Inbox - 0/6", 5}, {L"Sent, all - 0/2", 5}}));
    const std::vector<std::wstring> lines = LinesOf(Control(lstProgress));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), L"Exporting Outlook Express folders") << "the check's lines are cleared away";
    EXPECT_EQ(lines.back(), L"8 of 8 e-mail(s) handled in this run are saved; 0 are not.");

    SetForegroundWindow(program.Window());
    program.Type('p'); // "Open folder"
    HWND explorer = nullptr;
    EXPECT_TRUE(Eventually([&] { return (explorer = FindWindowW(L"ExplorerWClass", nullptr)) != nullptr; },
                           kPatience));
    PostMessageW(explorer, WM_CLOSE, 0, 0);
    SendMessageW(program.Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(Contains(Log(), "Closing Quillbox")) << "the process may be gone from here on";
    EXPECT_TRUE(Contains(program.Read(L"settings.ini"), "Skip Identical Files=1"));
    EXPECT_TRUE(program.Process().WaitForEnd(kPatience));
}

TEST_F(WindowRunTest, AStoppedRunEndsAndTheResultsAreMarkedFromTheKeyboard)
{
    AddFolder(L"Inbox", 6);
    ASSERT_TRUE(Start("", L"--slow=200"));
    Press(Control(cmdExport));
    ASSERT_TRUE(WaitForLog("- Exporting Inbox 1"));
    SetForegroundWindow(program.Window());
    SendMessageW(Control(cmdStopAfterEmail), BM_CLICK, 0, 0);
    EXPECT_FALSE(IsShown(cmdStopAfterEmail)) << "each stop is asked for once";
    EXPECT_TRUE(IsShown(cmdStopAfterFolder));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_FALSE(Contains(Log(), "- Exporting Inbox 4"));

    for (int time = 0; time < 2; ++time) // the table begins anew
        EXPECT_TRUE(Run(cmdCheckAllFolders).ends_with(L" email(s) to be saved."));
    const HWND list = Control(lvResults);
    const auto last = SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) - 1;
    ASSERT_GE(last, 2);
    ASSERT_LE(last, 3);
    const auto isTicked = [&] {
        return SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(last), LVIS_STATEIMAGEMASK) >> 12 ==
               2;
    };
    Type(list, VK_END);
    Type(list, VK_SPACE);
    EXPECT_TRUE(Eventually(isTicked, kPatience));
    ASSERT_TRUE(ChooseFromMenu(list, L'M')) << "the menu key opens the menu";
    EXPECT_EQ(EndOfRun(), L"Finished updating database");
    EXPECT_TRUE(Contains(Log(), "Mark as saved: Local Folders\\Inbox - Inbox 5 : "));
    EXPECT_FALSE(isTicked()) << "unticked, and still there";
    SendMessageW(program.Window(), WM_COMMAND, mnTickSel, 0);
    EXPECT_TRUE(isTicked());
    const HWND question = ChooseFromMenu(list, L'F');
    ASSERT_TRUE(question);
    PostMessageW(question, WM_COMMAND, IDYES, 0);
    EXPECT_TRUE(Eventually([&] { return !IsWindow(question); }, kPatience));
    EXPECT_EQ(EndOfRun(), L"1 record(s) of the ticked e-mails were deleted");
    SendMessageW(program.Window(), WM_COMMAND, mnTickSel, 0);
    POINT place = {30, 30}; // where the pointer stands, as the list takes a move elsewhere for dragging
    ClientToScreen(list, &place);
    SetCursorPos(place.x, place.y);
    PostMessageW(list, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(30, 30));
    PostMessageW(list, WM_RBUTTONUP, 0, MAKELPARAM(30, 30));
    ASSERT_TRUE(Menu()) << "so does the right mouse button";
    Type(Menu(), L'C');
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(OrbVac)) == L"Removed 0 record(s)"; }, kPatience));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    Press(Control(cmdExport));
    ASSERT_TRUE(program.WaitForBox(L"Quillbox"));
    EXPECT_TRUE(program.Close()) << "the box that stands open is no hindrance";
}

TEST_F(WindowRunTest, ASecondCopyLeavesTheFirstOnesDatabaseAlone)
{
    AddFolder(L"Inbox", 3);
    ASSERT_TRUE(Start(""));
    StartedProcess second(Quoted(program.Folder() + L"quillbox.exe"), program.Folder());
    const HWND refused = WaitForWindow(second.Id(), L"#32770", L"Quillbox", kPatience);
    EXPECT_TRUE(BoxWords(refused).ends_with(L"The file is in use by another program"));
    program.PressOk(refused);
    program.PressOk(WaitForWindow(second.Id(), L"#32770", L"IMPORTANT! Please Read", kPatience));
    const HWND form = FindProgramWindow(second.Id(), L"Form1");
    EXPECT_TRUE(Eventually([form] { return IsWindowEnabled(FindButton(form, L"Check folder")) != FALSE; },
                           kPatience));
    EXPECT_FALSE(IsWindowEnabled(FindButton(form, L"Export emails in all folders")));
    EXPECT_EQ(Run(cmdExport), L"All emails for the selected folder have been exported.");
    EXPECT_TRUE(Contains(Log(), "3 of 3 e-mail(s) handled in this run are saved"));
    PostMessageW(form, WM_CLOSE, 0, 0);
    EXPECT_TRUE(second.WaitForEnd(kPatience));
}

struct ExtrasTest : MailRun, testing::WithParamInterface<bool> {};

// The list's window stays, and holds the e-mails of the folder before for longer than the caption.
TEST_P(ExtrasTest, NeighboursWithEqualCountsEndARunOnlyWithoutTheExtra)
{
    AddFolder(L"Inbox", 3);
    AddFolder(L"Later", 3);
    const std::string section = GetParam() ? "[Extras]\r\nEqual Counts=1\r\n" : "";
    ASSERT_TRUE(Start("System Folders=|local folders|\r\n" + section, L"--keep-list=300"));
    Run(cmdSaveAll);
    EXPECT_EQ(program.Read(Stored(L"Later\\0002_Later2.eml")).empty(), !GetParam());
    EXPECT_EQ(Contains(Log(), "The extra \"Equal Counts\" is made for what was left out here."), !GetParam());
}
INSTANTIATE_TEST_SUITE_P(WithoutAndWith, ExtrasTest, testing::Bool());

// While the client takes long over a click or a change of folder, busy or pumping messages, the window
// answers.
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
