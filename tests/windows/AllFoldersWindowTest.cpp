// AllFoldersWindowTest.cpp: checks and exports of all folders, by the buttons that a user presses.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

namespace {

const std::string kOptions =
    "First folder to ignore=Local Folders\\OLD\r\nSystem Folders=|local folders|local folders\\beta|\r\n";

class AllFoldersWindowTest : public MailRun {
protected:
    bool StartWithFolders(const std::wstring& clientSwitches = {})
    {
        AddFolder(L"Alpha", 3);
        AddFolder(L"Beta", 2);
        AddFolder(L"Drafts", 0);
        AddFolder(L"Inbox", 4);
        AddFolder(L"Old", 2);
        return Start(kOptions, clientSwitches);
    }
    LRESULT TreeNode(int relation, LRESULT from = 0) const
    {
        return SendMessageW(Control(idTree), TVM_GETNEXTITEM, static_cast<WPARAM>(relation), from);
    }
    std::string Exported(const std::wstring& name) const { return program.Read(Stored(name)); }
};

TEST_F(AllFoldersWindowTest, ChecksAndExportsAllFolders)
{
    ASSERT_TRUE(StartWithFolders());
    EXPECT_TRUE(IsWindowEnabled(Control(idComparison)));
    const LRESULT chosen = TreeNode(TVGN_CHILD, TreeNode(TVGN_CHILD, TreeNode(TVGN_ROOT)));
    SendMessageW(Control(idTree), TVM_SELECTITEM, TVGN_CARET, chosen);
    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 7 email(s) to be saved.");
    EXPECT_EQ(TreeNode(TVGN_CARET), chosen) << "the user's choice in the tree is not the run's";
    EXPECT_EQ(TextOf(Control(idSummary)), L"Local Folders\\Alpha - all 3 emails need to be exported.\r\n"
                                          L"Local Folders\\Inbox - all 4 emails need to be exported.\r\n"
                                          L"7 email(s) to be saved.");
    EXPECT_TRUE(Contains(Log(), "Ignoring all folders after: Local Folders\\OLD"));
    EXPECT_FALSE(Contains(Log(), "Beta"));

    EXPECT_EQ(Run(idSaveAll), L"All folders have been exported.");
    EXPECT_TRUE(Contains(Log(), "4 passed, 0 failed, 0 skipped")) << Log();
    EXPECT_EQ(Exported(L"Inbox\\0003_Inbox3.eml"), Message("Inbox 3", 3));
    EXPECT_EQ(Exported(L"Old\\0000_Old0.eml"), "");
    const std::vector<std::wstring> lines = LinesOf(Control(idProgressList));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), L"Exporting Outlook Express folders") << "the check's lines are cleared away";
    EXPECT_EQ(lines.back(), L"7 of 7 e-mail(s) handled in this run are saved; 0 are not.");

    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 0 email(s) to be saved.");
    EXPECT_TRUE(Contains(Log(), "2 folder(s) saved, 0 folder(s) not saved, 1 empty folder(s)."));
    EXPECT_TRUE(program.Close());
}

TEST_F(AllFoldersWindowTest, EachStopEndsTheRunWhereItSays)
{
    ASSERT_TRUE(StartWithFolders(L"--slow=250"));
    Press(Control(idSaveAll));
    ASSERT_TRUE(WaitForLog("- Exporting Alpha 0"));
    Press(Control(idStopAfterEmail));
    EXPECT_EQ(EndOfRun(), L"All folders have been exported.") << "the box comes after a stop, too";
    EXPECT_TRUE(Contains(Log(), "User aborted on email export."));
    EXPECT_EQ(Exported(L"Alpha\\0000_Alpha0.eml"), Message("Alpha 0", 0)) << "it is finished";
    EXPECT_EQ(Exported(L"Alpha\\0002_Alpha2.eml"), "");
    EXPECT_FALSE(Contains(Log(), "Exporting emails from Local Folders\\Inbox"));

    Press(Control(idSaveAll));
    ASSERT_TRUE(WaitForLog("- Exporting Alpha 2"));
    Press(Control(idStopAfterFolder));
    EXPECT_EQ(EndOfRun(), L"All folders have been exported.");
    EXPECT_TRUE(Contains(Log(), "User aborted folder export."));
    EXPECT_EQ(Exported(L"Alpha\\0002_Alpha2.eml"), Message("Alpha 2", 2));
    EXPECT_FALSE(Contains(Log(), "Exporting emails from Local Folders\\Inbox"));
}

TEST_F(AllFoldersWindowTest, NamesThatAreTakenAreSkippedOrRenamed)
{
    AddFolder(L"Inbox", 4);
    CreateFolder(L"store");
    for (const wchar_t* folder : {L"", L"Inbox"}) CreateFolder(Stored(folder));
    program.Write(Stored(L"Inbox\\0002_Inbox2.eml"), "the user's own");
    storedBefore = true;
    ASSERT_TRUE(Start("Skip Identical Files=1\r\nJump to remaining=1\r\nSystem Folders=|local folders|\r\n"));
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_TRUE(Contains(Log(), "SKIP: 2 0002_Inbox2.eml - file already exists"));
    EXPECT_TRUE(Contains(Log(), "3 passed, 0 failed, 1 skipped"));

    Tick(idSkipFiles);
    EXPECT_EQ(Run(idSaveAll), L"All folders have been exported.");
    EXPECT_TRUE(Contains(Log(), "-- Exporting 2 to 3 messages.")) << "the first that is not saved";
    EXPECT_TRUE(Contains(Log(), "RENAME: 2 0002_Inbox2.eml - file already exists"));
    EXPECT_TRUE(Contains(Log(), "1 passed, 0 failed, 1 skipped")) << Log();
    EXPECT_EQ(Exported(L"Inbox\\0002_Inbox2.eml"), "the user's own");
    EXPECT_EQ(Exported(L"Inbox\\0002_Inbox2a.eml"), Message("Inbox 2", 2));
}

} // namespace
