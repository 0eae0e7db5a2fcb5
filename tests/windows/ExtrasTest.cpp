// ExtrasTest.cpp: an extra of settings.ini, with the built program against the stand-in client.
#include "tests/windows/MailRun.h"

namespace {

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

} // namespace
