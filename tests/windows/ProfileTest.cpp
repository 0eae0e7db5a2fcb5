// ProfileTest.cpp: settings.ini through the system's own reader and writer of such files.
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

// What Windows does with values; users edit the file with that in mind.
TEST_F(Profile, ValuesComeBackAsTheSystemKeepsThem)
{
    const std::pair<Text, Text> cases[] = {
        {u"Local Folders", u"Local Folders"},
        {u"", u""},
        {u"  - ", u"-"},
        {u"[ - ]", u"[ - ]"},
        {u"\"quoted\"", u"quoted"},
        {u"\" x \"", u" x "},
        {u"5\"", u"5\""},
        {u"a=b;c", u"a=b;c"},
        {u"\u00A3 \u00E9\u00DF\u20AC", u"\u00A3 \u00E9\u00DF\u20AC"},
        {u"\u65E5\u672C", u"??"},
        {Text(254, u'x'), Text(254, u'x')},
        {Text(255, u'x'), Text(254, u'x')},
        {Text(1000, u'\u00E9'), Text(254, u'\u00E9')},
    };
    for (const auto& [value, want] : cases) EXPECT_EQ(Bounce(value), want) << ToUtf8(value);
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
