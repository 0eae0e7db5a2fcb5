// WindowTest.cpp: the program as it starts, shows itself and closes, without a mail client.
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

// log.txt without the time stamps.
std::string Messages(const std::string& log)
{
    std::string messages;
    for (std::size_t at = 0, end = 0; (end = log.find("\r\n", at)) != std::string::npos; at = end + 2)
        messages += (end - at >= 20 ? log.substr(at + 20, end - at - 20) : "(no time stamp)") + "\n";
    return messages;
}

const std::string kSeparator(61, '-');

TEST(WindowTest, StartsAndClosesWithoutSettingsAndClient)
{
    ProgramUnderTest program;
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(TextOf(program.Window()), L"Quillbox v1.0.0 - The Quillbox project");
    const HWND box = program.WaitForBox(L"IMPORTANT! Please Read");
    EXPECT_NE(BoxWords(box).find(L"you must not move the mouse or press any keys"), std::wstring::npos);
    EXPECT_EQ(program.Read(L"log.txt"), "") << "the warning comes before the first line";
    EXPECT_FALSE(IsWindowEnabled(program.Control(cmdSync)));
    program.PressOk(box);
    ASSERT_TRUE(program.WaitUntilIdle(20000));
    EXPECT_EQ(TextOf(program.Control(OrbVac)), L"Could not find Outlook Express window");
    ASSERT_TRUE(program.Close());
    EXPECT_EQ(Messages(program.Read(L"log.txt")),
              kSeparator + "\nStarted Quillbox - 1.0.0\n-- Syncing with OE --\nClosing Quillbox\n");
    const std::string folder(program.Folder().begin(), program.Folder().end() - 1);
    EXPECT_EQ(program.Read(L"settings.ini"),
              "[Paths]\r\nStore=" + folder +
                  "\r\n[Options]\r\nID only=0\r\nSendkeys=0\r\n"
                  "First folder to ignore=Deleted Items\r\n"
                  "Skip Identical Files=0\r\nJump to remaining=0\r\n"
                  "System Folders=|local folders|\r\n"
                  "First folder=Local Folders\r\nTree Separator=[ - ]\r\n"
                  "OE Folder Settle Time=0\r\nApply DST=0\r\nTime Offset=0\r\n");
    EXPECT_NE(program.Read(L"saved.mdb"), "");
}

} // namespace
