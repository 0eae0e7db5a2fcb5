// ExtrasTest.cpp: extras of settings.ini, with the built program against the stand-in client.
#include "tests/windows/MailRun.h"

namespace {

struct ExtrasTest : MailRun, testing::WithParamInterface<bool> {
    bool StartWithExtra(const std::string& line, const std::wstring& clientSwitches = {})
    {
        const std::string section = GetParam() ? "[Extras]\r\n" + line + "\r\n" : "";
        return Start("System Folders=|local folders|\r\n" + section, clientSwitches);
    }
    bool IsStored(const std::wstring& name) const { return !program.Read(Stored(name)).empty(); }
};

// The list's window stays, and holds the e-mails of the folder before for longer than the caption.
TEST_P(ExtrasTest, NeighboursWithEqualCountsEndARunOnlyWithoutTheExtra)
{
    AddFolder(L"Inbox", 3);
    AddFolder(L"Later", 3);
    ASSERT_TRUE(StartWithExtra("Equal Counts=1", L"--keep-list=300"));
    Run(cmdSaveAll);
    EXPECT_EQ(IsStored(L"Later\\0002_Later2.eml"), GetParam());
    EXPECT_EQ(Contains(Log(), "The extra \"Equal Counts\" is made for what was left out here."), !GetParam());
}

TEST_P(ExtrasTest, AListWhoseDownKeyIsDeadIsReadToItsEndOnlyWithTheExtra)
{
    AddFolder(L"Inbox", 4);
    ASSERT_TRUE(StartWithExtra("Select Rows=1", L"--ignore-down-key"));
    Run(cmdExport);
    EXPECT_TRUE(IsStored(L"Inbox\\0000_Inbox0.eml"));
    EXPECT_EQ(IsStored(L"Inbox\\0003_Inbox3.eml"), GetParam());
}

// The client makes an empty file and fills it later; the second one never.
TEST_P(ExtrasTest, AFileThatStaysEmptyCountsOnlyWithoutTheExtra)
{
    AddFolder(L"Inbox", 2);
    ASSERT_TRUE(StartWithExtra("Verify Saved=1", L"--at=save:1:empty:3000 --at=save:2:empty"));
    ASSERT_TRUE(Press(Control(cmdExport)));
    EXPECT_EQ(WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", 90'000) != nullptr, true);
    EXPECT_TRUE(Contains(Log(), GetParam() ? "1 passed, 1 failed" : "2 passed, 0 failed"));
    EXPECT_EQ(Contains(Log(), "Not taken for saved, as it is empty, or still being written"), GetParam());
}

TEST_P(ExtrasTest, AFileGetsTheDateOfItsEmailOnlyWithTheExtra)
{
    AddFolder(L"Inbox", 1);
    ASSERT_TRUE(StartWithExtra("File Date=1"));
    Run(cmdExport);
    WIN32_FIND_DATAW found{};
    const HANDLE search =
        FindFirstFileW((program.Folder() + Stored(L"Inbox\\0000_Inbox0.eml")).c_str(), &found);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    FindClose(search);
    SYSTEMTIME universal{}, local{};
    FileTimeToSystemTime(&found.ftLastWriteTime, &universal);
    SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
    EXPECT_EQ(local.wYear == 2007 && local.wMonth == 4 && local.wDay == 3, GetParam());
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWith, ExtrasTest, testing::Bool());

} // namespace
