#include "platform/win32/WinFiles.h"
#include "platform/win32/WinProfileFile.h"
#include "tests/support/ScratchDirectory.h"

#include <fstream>
#include <gtest/gtest.h>
#include <windows.h>

namespace {

class Profile : public testing::Test {
protected:
    void SetUp() override
    {
        if (GetACP() != 1252) GTEST_SKIP() << "written for code page 1252";
    }
    Text Bounce(const Text& value)
    {
        EXPECT_TRUE(profile.Write(u"Options", u"Key", value, file));
        return profile.Read(u"Options", u"Key", file);
    }
    std::string FileBytes()
    {
        std::string bytes;
        WinFiles{}.ReadWhole(file, bytes);
        return bytes;
    }

    ScratchDirectory scratch;
    Text file = scratch / u"settings.ini";
    WinProfileFile profile;
};

} // namespace

TEST_F(Profile, ValuesComeBackAsTheSystemKeepsThem)
{
    const struct {
        const char* why;
        Text value, want;
    } cases[] = {
        {"plain", u"Local Folders", u"Local Folders"},
        {"empty", u"", u""},
        {"blanks at the ends are lost", u"  - ", u"-"},
        {"brackets keep them", u"[ - ]", u"[ - ]"},
        {"one pair of quotes is lost", u"\"quoted\"", u"quoted"},
        {"quotes keep blanks", u"\" x \"", u" x "},
        {"a single quote stays", u"5\"", u"5\""},
        {"equals signs and semicolons", u"a=b;c", u"a=b;c"},
        {"letters of the ANSI code page", u"\u00A3 \u00E9\u00DF\u20AC", u"\u00A3 \u00E9\u00DF\u20AC"},
        {"letters beyond it", u"\u65E5\u672C", u"??"},
        {"254 characters", Text(254, u'x'), Text(254, u'x')},
        {"255 are cut", Text(255, u'x'), Text(254, u'x')},
        {"1000 are cut", Text(1000, u'\u00E9'), Text(254, u'\u00E9')},
    };
    for (const auto& c : cases) EXPECT_EQ(Bounce(c.value), c.want) << c.why;
}

TEST_F(Profile, WhatIsMissingReadsAsEmpty)
{
    EXPECT_EQ(profile.Read(u"Options", u"Key", file), u"");
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(file))); // reading makes nothing
    ASSERT_TRUE(profile.Write(u"Options", u"Key", u"1", file));
    EXPECT_EQ(profile.Read(u"Options", u"Other", file), u"");
    EXPECT_EQ(profile.Read(u"Paths", u"Key", file), u"");
    EXPECT_EQ(profile.Read(u"OPTIONS", u"key", file), u"1"); // names have no case
}

TEST_F(Profile, WritesAnsiLinesAndLeavesOtherSectionsAlone)
{
    std::ofstream(scratch.Path() / "settings.ini", std::ios::binary)
        << "; by hand\r\n[Extras]\r\nDepth = 3\r\n[Options]\r\nID only=0\r\n";
    ASSERT_TRUE(profile.Write(u"Options", u"ID only", u"1", file));
    ASSERT_TRUE(profile.Write(u"Paths", u"Store", u"C:\\M\u00E9ls", file));
    EXPECT_EQ(profile.Read(u"Extras", u"Depth", file), u"3");
    const std::string bytes = FileBytes();
    EXPECT_NE(bytes.find("; by hand\r\n[Extras]\r\n"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("[Options]\r\nID only=1\r\n"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("[Paths]\r\nStore=C:\\M\xE9ls\r\n"), std::string::npos) << bytes;
}

TEST_F(Profile, ReadsWhatWasWrittenByHand)
{
    std::ofstream(scratch.Path() / "settings.ini", std::ios::binary)
        << "[Options]\nTree Separator = ::\n\n  OE Folder Settle Time=1.5\nno equals sign\nSystem "
           "Folders=|\xE9t\xE9|";
    EXPECT_EQ(profile.Read(u"Options", u"Tree Separator", file), u"::");
    EXPECT_EQ(profile.Read(u"Options", u"OE Folder Settle Time", file), u"1.5");
    EXPECT_EQ(profile.Read(u"Options", u"System Folders", file), u"|\u00E9t\u00E9|"); // without a line end
}

TEST_F(Profile, TellsWhenItCannotWrite)
{
    EXPECT_FALSE(profile.Write(u"Options", u"Key", u"1", scratch / u"missing\\settings.ini"));
    EXPECT_FALSE(profile.Write(u"Options", u"Key", u"1", scratch / u"")); // a directory
}

TEST_F(Profile, FindsTheProgramFolderWhateverItsName)
{
    std::filesystem::create_directory(scratch.Path() / u"\u65E5\u672C");
    file = scratch / u"\u65E5\u672C\\settings.ini";
    EXPECT_EQ(Bounce(u"1"), u"1");
    EXPECT_NE(FileBytes().find("Key=1"), std::string::npos);
}
