// SettingsTest.cpp: the twelve keys: how each is read, what stands in for it, and what closing writes; and
// the section "Extras".
#include "app/Extras.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/FakeProfile.h"
#include "text/Numbers.h"

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
    const std::tuple<const char*, Text, Text, Text> cases[] = {
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
    for (const auto& [why, key, stored, written] : cases) {
        profile.values[u"Options/" + key] = stored;
        SaveSettings(Loaded(), profile, kFile);
        EXPECT_EQ(profile.values[u"Options/" + key], written) << why;
    }
}

TEST_F(SettingsTest, EachExtraTakesItsNumbersAndNothingElse)
{
    for (const ExtraRow& row : ExtraRows()) {
        SCOPED_TRACE(testing::PrintToString(row.key));
        const Text key = u"Extras/" + Text(row.key);
        const std::pair<Text, bool> cases[] = {
            {DecimalText(row.least), true},
            {u" " + DecimalText(row.most) + u" ", true},
            {u"", true},
            {DecimalText(row.least - 1), false},
            {DecimalText(row.most + 1), false},
            {u"yes", false},
            {u"1.5", false},
            {u"99999999999999999999", false},
        };
        for (const auto& [stored, isTaken] : cases) {
            Settings loaded;
            EXPECT_EQ(row.get(loaded), row.normal) << "without a file";
            profile.values[key] = stored;
            const auto refused = LoadExtras(loaded, profile, files, kFile);
            const Text trimmed(TrimSpaces(stored));
            EXPECT_EQ(refused.empty(), isTaken) << testing::PrintToString(stored);
            for (const RefusedExtra& one : refused) EXPECT_EQ(one.stored, stored);
            EXPECT_EQ(DecimalText(row.get(loaded)),
                      isTaken && !trimmed.empty() ? trimmed : DecimalText(row.normal));
        }
        profile.values.clear();
    }
}

TEST_F(SettingsTest, EachExtraHasAMemberOfItsOwnAndIsWrittenByNobodyElse)
{
    SaveSettings(Settings(), profile, kFile);
    for (const auto& [key, value] : profile.written) EXPECT_FALSE(key.starts_with(u"Extras/"));
    for (const ExtraRow& row : ExtraRows()) {
        profile.values.clear();
        Settings other;
        const int value = row.normal == row.most ? row.least : row.most;
        row.set(other, value);
        profile.written.clear();
        EXPECT_TRUE(SaveExtras(other, profile, kFile));
        ASSERT_EQ(profile.written.size(), ExtraRows().size());
        for (std::size_t i = 0; i < ExtraRows().size(); ++i) {
            const ExtraRow& written = ExtraRows()[i];
            EXPECT_EQ(profile.written[i].first, u"Extras/" + Text(written.key));
            EXPECT_EQ(profile.written[i].second, DecimalText(&written == &row ? value : written.normal));
        }
    }
}

} // namespace
