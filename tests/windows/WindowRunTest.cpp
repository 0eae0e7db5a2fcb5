// WindowRunTest.cpp: the program's commands, pressed against the stand-in mail client in a process of its
// own.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

namespace {

constexpr int kMessages = 6;

bool IsShown(HWND control)
{
    return (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0;
}

int Top(HWND control)
{
    RECT place = {};
    GetWindowRect(control, &place);
    return place.top;
}

class WindowRunTest : public MailRun {
protected:
    bool StartWithInbox(const std::wstring& clientSwitches = {})
    {
        AddFolder(L"Inbox", kMessages);
        AddFolder(L"Drafts", 0);
        return Start("", clientSwitches);
    }
    std::string Exported(int row) const
    {
        const std::wstring number = std::to_wstring(row);
        return program.Read(Stored(L"Inbox\\000" + number + L"_Inbox" + number + L".eml"));
    }
    static std::string Message(int number)
    {
        return MailRun::Message("Inbox " + std::to_string(number), number);
    }
};

TEST_F(WindowRunTest, SynchronisingShowsFoldersAndUnlocksCommands)
{
    ASSERT_TRUE(StartWithInbox());
    EXPECT_EQ(LinesOf(Control(idTreeList)),
              (std::vector<std::wstring>{L"Outlook Express", L"-Local Folders", L"--Drafts", L"--Inbox"}));
    EXPECT_EQ(LinesOf(Control(idLines)),
              (std::vector<std::wstring>{L"Outlook Express", L"Local Folders", L"Local Folders\\Drafts",
                                         L"Local Folders\\Inbox"}));
    EXPECT_EQ(SendMessageW(Control(idTreeList), LB_GETCURSEL, 0, 0), 3);
    EXPECT_EQ(SendMessageW(Control(idTree), TVM_GETCOUNT, 0, 0), 4);
    EXPECT_EQ(TextOf(Control(idOEFolder)), L"Local Folders\\Inbox");
    EXPECT_EQ(TextOf(Control(idOrbVac)), L"Subject: Inbox 0");
    for (const int id : {idExport, idGetID}) {
        EXPECT_TRUE(IsShown(Control(id))) << id;
        EXPECT_TRUE(IsWindowEnabled(Control(id))) << id;
    }

    Press(Control(idUseSelection));
    EXPECT_EQ(TextOf(Control(idIgnore)), L"") << "nothing is selected in the tree";
    const HWND tree = Control(idTree);
    LRESULT node = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    for (int level = 0; level < 2; ++level) node = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, node);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, node);
    Press(Control(idUseSelection));
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(idIgnore)) == L"Local Folders\\Drafts"; }, kPatience));

    Press(Control(idGetID));
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(idOrbVac)) == L"Message ID: 0"; }, kPatience));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    const std::wstring summary = TextOf(Control(idSummary));
    EXPECT_EQ(summary.find(L"Subject: Inbox 0\r\nFrom: Ann Writer\r\nTo: Bob Reader\r\nSent: "), 0u);
    EXPECT_NE(summary.find(L"\r\nCRC: "), std::wstring::npos);
}

TEST_F(WindowRunTest, ExportSavesEveryEmailOnce)
{
    ASSERT_TRUE(StartWithInbox());
    Press(Control(idExport));
    ASSERT_TRUE(WaitForLog("- Exporting Inbox 1"));
    for (const int id : {idSync, idGetID, idExport, idUseSelection})
        EXPECT_FALSE(IsWindowEnabled(Control(id))) << id;
    EXPECT_TRUE(IsShown(GetParent(Control(idProg))));
    EXPECT_FALSE(IsShown(Control(idTree)));
    EXPECT_TRUE(IsShown(Control(idStopAfterEmail)));
    EXPECT_TRUE(IsShown(Control(idStopAfterFolder)));
    EXPECT_LT(Top(Control(idProg)), Top(Control(idStopAfterEmail)));
    EXPECT_LT(Top(Control(idStopAfterEmail)), Top(Control(idTab)));
    EXPECT_EQ(SendMessageW(Control(idTab), TCM_GETCURSEL, 0, 0), 2) << "the progress is shown";

    HWND box = program.WaitForBox(L"Quillbox");
    ASSERT_TRUE(box);
    EXPECT_EQ(BoxWords(box), L"All emails for the selected folder have been exported.");
    EXPECT_FALSE(IsShown(Control(idStopAfterEmail)));
    program.PressOk(box);
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_FALSE(IsShown(GetParent(Control(idProg))));
    EXPECT_TRUE(IsShown(Control(idTree)));
    for (int i = 0; i < kMessages; ++i) EXPECT_EQ(Exported(i), Message(i)) << i;
    EXPECT_TRUE(Contains(program.Read(L"log.txt"), "6 passed, 0 failed, 0 skipped"));

    // The last e-mail is selected now: it alone is looked at, and it is known.
    Press(Control(idExport));
    EXPECT_TRUE(WaitForLog("0 passed, 0 failed, 1 skipped"));
    ASSERT_TRUE(program.WaitForBox(L"Quillbox"));
    EXPECT_TRUE(program.Close()) << "the box that stands open is no hindrance";
}

TEST_F(WindowRunTest, StopAfterEmailEndsTheExportWithoutABox)
{
    ASSERT_TRUE(StartWithInbox(L"--slow=200"));
    Press(Control(idExport));
    ASSERT_TRUE(WaitForLog("- Exporting Inbox 1"));
    SendMessageW(Control(idStopAfterEmail), BM_CLICK, 0, 0);
    EXPECT_FALSE(IsShown(Control(idStopAfterEmail))) << "each stop is asked for once";
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    const std::string log = program.Read(L"log.txt");
    EXPECT_TRUE(Contains(log, "User aborted on email export."));
    EXPECT_FALSE(Contains(log, "- Exporting Inbox 4"));
    EXPECT_FALSE(WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", 300));
    EXPECT_EQ(Exported(1), Message(1)) << "the e-mail under way is finished";
    EXPECT_FALSE(IsShown(Control(idStopAfterFolder)));
    EXPECT_TRUE(IsShown(Control(idTree)));
}

TEST_F(WindowRunTest, ClosingInMidRunFinishesTheEmailAndSavesTheSettings)
{
    ASSERT_TRUE(StartWithInbox(L"--slow=200"));
    Press(Control(idExport));
    ASSERT_TRUE(WaitForLog("- Exporting Inbox 1"));
    ASSERT_TRUE(program.Close());
    const std::string log = program.Read(L"log.txt");
    EXPECT_TRUE(Contains(log, "User aborted on email export."));
    EXPECT_EQ(log.rfind("Closing Quillbox\r\n"), log.size() - 18);
    EXPECT_EQ(Exported(1), Message(1));
    EXPECT_TRUE(Contains(program.Read(L"settings.ini"), "Time Offset=0"));
}

TEST_F(WindowRunTest, ClientThatClosesEndsTheExportAndTheProgramLives)
{
    ASSERT_TRUE(StartWithInbox(L"--close-after=2"));
    Press(Control(idExport));
    ASSERT_TRUE(WaitForLog("OE has closed unexpectedly"));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_FALSE(WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", 300));
    Press(Control(idSync));
    EXPECT_TRUE(Eventually(
        [&] { return TextOf(Control(idOrbVac)) == L"Could not find Outlook Express window"; }, kPatience));
    EXPECT_TRUE(program.Close());
}

} // namespace
