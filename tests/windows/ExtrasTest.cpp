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

TEST_P(ExtrasTest, EachOfThoseThatLookAlikeIsSavedOnlyWithTheExtra)
{
    CreateFolder(L"mail");
    CreateFolder(L"mail\\Inbox");
    for (const wchar_t* name : {L"0", L"1", L"2"})
        program.Write(std::wstring(L"mail\\Inbox\\") + name + L".eml", Message("Twin", 5));
    ASSERT_TRUE(StartWithExtra("Look-alikes=1"));
    Run(cmdSaveAll);
    EXPECT_TRUE(IsStored(L"Inbox\\0000_Twin.eml"));
    EXPECT_EQ(IsStored(L"Inbox\\0001_Twin.eml") && IsStored(L"Inbox\\0002_Twin.eml"), GetParam());
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWith, ExtrasTest, testing::Bool());

} // namespace
