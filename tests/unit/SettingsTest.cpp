// SettingsTest.cpp: the twelve keys: how each is read, what stands in for it, and what closing writes.
#include "app/Settings.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/FakeProfile.h"

#include <gtest/gtest.h>

namespace {

const Text kFile = u"C:\\Quillbox\\settings.ini";

struct SettingsTest : testing::Test {
    SettingsTest() { files.AddFile(kFile); }
    Settings Loaded() { return LoadSettings(profile, files, kFile); }

    FakeProfile profile{kFile};
    FakeFiles files;
};

TEST_F(SettingsTest, WithoutAFileAllAreDefaultsAndInAnEmptyOneButTheFolderToIgnore)
{
    for (const Text& toIgnore : {Text(u""), Text(u"Deleted Items")}) {
        const Settings settings = Loaded();
        EXPECT_FALSE(settings.options.idOnly);
        EXPECT_EQ(settings.options.firstFolderToIgnore, toIgnore);
        EXPECT_EQ(settings.options.systemFolders, u"|local folders|");
        EXPECT_EQ(settings.options.firstFolder, u"Local Folders");
        EXPECT_EQ(settings.treeSeparator, u" - ");
        files.Delete(kFile);
        profile.values[u"Options/ID only"] = u"1"; // must not be asked for
    }
}

TEST_F(SettingsTest, EachKeyIsItsMemberAndIsWrittenInItsPlace)
{
    const std::vector<std::pair<Text, Text>> stored = {
        {u"Paths/Store", u"D:\\Mail"},
        {u"Options/ID only", u"1"},
        {u"Options/Sendkeys", u"0"},
        {u"Options/First folder to ignore", u"Trash"},
        {u"Options/Skip Identical Files", u"1"},
        {u"Options/Jump to remaining", u"0"},
        {u"Options/System Folders", u"|a|b|"},
        {u"Options/First folder", u"Lokale Ordner"},
        {u"Options/Tree Separator", u"[ / ]"},
        {u"Options/OE Folder Settle Time", u"0.1"},
        {u"Options/Apply DST", u"1"},
        {u"Options/Time Offset", u"-2.5"},
    };
    for (const auto& [key, value] : stored) profile.values[key] = value;
    const Settings settings = Loaded();
    EXPECT_EQ(settings.store, u"D:\\Mail");
    EXPECT_TRUE(settings.options.idOnly);
    EXPECT_FALSE(settings.options.sendKeys);
    EXPECT_EQ(settings.options.firstFolderToIgnore, u"Trash");
    EXPECT_TRUE(settings.options.skipFiles);
    EXPECT_FALSE(settings.options.jumpRemain);
    EXPECT_EQ(settings.options.systemFolders, u"|a|b|");
    EXPECT_EQ(settings.options.firstFolder, u"Lokale Ordner");
    EXPECT_EQ(settings.treeSeparator, u" / ");
    EXPECT_EQ(settings.client.settleTime, 0.1f);
    EXPECT_EQ(settings.client.applyDst, 1);
    EXPECT_EQ(settings.client.timeOffset, -2.5f);
    profile.refuse = true; // each is tried all the same
    SaveSettings(settings, profile, kFile);
    EXPECT_EQ(profile.written, stored);
}

TEST_F(SettingsTest, WhatIsReadIsWrittenInOneForm)
{
    const struct {
        const char* why;
        Text key, stored, written;
    } cases[] = {
        {"two characters written by hand", u"Tree Separator", u"::", u"[::]"},
        {"a pair of empty brackets is a separator", u"Tree Separator", u"[]", u"[[]]"},
        {"three characters always lose two", u"Tree Separator", u"a-b", u"[-]"},
        {"no number", u"OE Folder Settle Time", u"soon", u"0"},
        {"beyond a single", u"OE Folder Settle Time", u"1e99", u"0"},
        {"beyond 16 bits", u"Apply DST", u"-32769", u"0"},
        {"a box is ticked by any number", u"Sendkeys", u"-1", u"1"},
        {"that 16 bits can hold", u"Sendkeys", u"40000", u"0"},
        {"half of one is rounded to even", u"Sendkeys", u"0.5", u"0"},
    };
    for (const auto& c : cases) {
        profile.values[u"Options/" + c.key] = c.stored;
        SaveSettings(Loaded(), profile, kFile);
        EXPECT_EQ(profile.values[u"Options/" + c.key], c.written) << c.why;
    }
}

} // namespace
