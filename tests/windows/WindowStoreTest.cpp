// WindowStoreTest.cpp: the store folder: one that is missing, files that no record knows of, and the page on
// which it is chosen.
#include "tests/windows/MailRun.h"

namespace {

class WindowStoreTest : public MailRun {
protected:
    std::wstring ProgramFolder() const { return program.Folder().substr(0, program.Folder().size() - 1); }
    std::string Narrow(const std::wstring& text) const { return {text.begin(), text.end()}; }
    bool Keeps(const std::wstring& path) const // settings.ini, once the program has closed
    {
        return Contains(program.Read(L"settings.ini"), "Store=" + Narrow(path) + "\r\n");
    }
};

TEST_F(WindowStoreTest, AMissingStoreIsSaidOnceAndKept)
{
    AddFolder(L"Inbox", 2);
    const std::wstring gone = program.Folder() + L"gone";
    store = Narrow(gone);
    ASSERT_TRUE(Start("")) << "start-up says nothing";
    EXPECT_EQ(TextOf(Control(idStorePath)), ProgramFolder());
    const std::wstring words = Run(idCheckFolder);
    EXPECT_TRUE(words.starts_with(L"The store folder of the settings is not there: " + gone))
        << Narrow(words);
    EXPECT_TRUE(words.ends_with(L"works with the program's folder:" + ProgramFolder()) ||
                words.ends_with(L"works with the program's folder:\r\n" + ProgramFolder()))
        << Narrow(words);
    EXPECT_FALSE(Contains(Log(), "Folder has not been stored")) << "nothing was started";
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(gone)) << program.Read(L"settings.ini");

    // The folder comes back between the box and the next press, and is gone to.
    ASSERT_TRUE(program.PassStartUp());
    EXPECT_TRUE(Run(idSaveAll).starts_with(L"The store folder of the settings is not there: " + gone));
    CreateFolder(L"gone");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_EQ(TextOf(Control(idStorePath)), gone);
    EXPECT_EQ(program.Read(L"gone\\Local Folders\\Inbox\\0001_Inbox1.eml"), Message("Inbox 1", 1));
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(gone));
}

TEST_F(WindowStoreTest, ARelativeStoreIsNoneAndTheNextPressGoesAhead)
{
    AddFolder(L"Inbox", 2);
    CreateFolder(L"mails"); // in the program's current folder
    store = "mails";
    ASSERT_TRUE(Start(""));
    EXPECT_TRUE(Run(idExport).starts_with(L"The store folder of the settings is not a full path: mails"));
    EXPECT_EQ(program.Read(L"Local Folders\\Inbox\\0000_Inbox0.eml"), "");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_EQ(program.Read(L"Local Folders\\Inbox\\0000_Inbox0.eml"), Message("Inbox 0", 0));
    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 0 email(s) to be saved.");
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(L"mails"));
}

TEST_F(WindowStoreTest, FilesThatANewDatabaseDoesNotKnowAreSaid)
{
    AddFolder(L"Inbox", 3);
    ASSERT_TRUE(Start(""));
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    ASSERT_TRUE(program.Close());
    EXPECT_FALSE(Contains(Log(), "made anew")) << "the store was empty";
    DeleteFileW((program.Folder() + L"saved.mdb").c_str());

    ASSERT_TRUE(program.Start());
    program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
    const std::wstring words = EndOfRun();
    EXPECT_TRUE(
        words.starts_with(L"saved.mdb has been made anew, but the store folder holds 3 saved e-mail(s) "
                          L"of 1 folder(s):"))
        << Narrow(words);
    EXPECT_NE(words.find(L"\"File (slow)\""), std::wstring::npos);
    const std::string log = Log();
    EXPECT_LT(log.rfind("Started Quillbox"), log.find("saved.mdb has been made anew"));
    // Done as the box says, nothing is exported twice.
    SendMessageW(Control(idComparison), CB_SETCURSEL, 2, 0);
    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 0 email(s) to be saved.");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_TRUE(Contains(Log(), "0 passed, 0 failed, 1 skipped")) << Log();
    Press(Control(idSync));
    EXPECT_TRUE(program.WaitUntilIdle(kPatience)) << "said once";
    ASSERT_TRUE(program.Close());
    ASSERT_TRUE(program.PassStartUp()) << "the database is not new any more";
}

} // namespace
