// SettingsTest.cpp: the twelve keys: how each is read, what stands in for it, and what closing writes.
#include "app/Settings.h"
#include "tests/support/NoFiles.h"

#include <gtest/gtest.h>

#include <map>

namespace {

const Text kFile = u"C:\\Quillbox\\settings.ini";

struct FakeProfile : ProfileFile {
    std::map<Text, Text> values;   // "section/key"
    std::vector<Text> writtenKeys; // "section/key", in order
    bool refuse = false;
    Text Read(const Text& section, const Text& key, const Text& file) override
    {
        EXPECT_EQ(file, kFile);
        const auto found = values.find(section + u"/" + key);
        return found == values.end() ? Text() : found->second;
    }
    bool Write(const Text& section, const Text& key, const Text& value, const Text& file) override
    {
        EXPECT_EQ(file, kFile);
        writtenKeys.push_back(section + u"/" + key);
        if (!refuse) values[section + u"/" + key] = value;
        return !refuse;
    }
};

// Only what loading asks: whether settings.ini is there.
struct OneFile : NoFiles {
    bool there = true;
    bool FileExists(const Text& path) override { return there && path == kFile; }
};

class SettingsTest : public testing::Test {
protected:
    Settings Loaded()
    {
        Settings settings;
        LoadSettings(settings, profile, files, kFile);
        return settings;
    }
    Settings LoadedWith(const Text& key, const Text& value)
    {
        profile.values[u"Options/" + key] = value;
        return Loaded();
    }
    FakeProfile profile;
    OneFile files;
};

TEST_F(SettingsTest, MissingFileMeansDefaultsAndTheDesignedFolderToIgnore)
{
    profile.values[u"Options/ID only"] = u"1"; // must not be asked for
    files.there = false;
    const Settings settings = Loaded();
    EXPECT_EQ(settings.idOnly, 0);
    EXPECT_EQ(settings.store, u"");
    EXPECT_EQ(settings.firstFolderToIgnore, u"Deleted Items");
    EXPECT_EQ(settings.systemFolders, u"|local folders|");
    EXPECT_EQ(settings.firstFolder, u"Local Folders");
    EXPECT_EQ(settings.treeSeparator, u" - ");
    EXPECT_EQ(settings.settleTime, 0.0f);
}

TEST_F(SettingsTest, EmptyFileClearsTheFolderToIgnore)
{
    const Settings settings = Loaded();
    EXPECT_EQ(settings.firstFolderToIgnore, u"");
    EXPECT_EQ(settings.systemFolders, u"|local folders|");
    EXPECT_EQ(settings.treeSeparator, u" - ");
}

TEST_F(SettingsTest, TreeSeparatorLosesItsBracketsFromThreeCharactersOn)
{
    const struct {
        const char* why;
        Text stored, held;
    } cases[] = {
        {"slash between blanks, as closing writes it", u"[ / ]", u" / "},
        {"two characters written by hand", u"::", u"::"},
        {"a pair of empty brackets is a separator", u"[]", u"[]"},
        {"one character", u"|", u"|"},
        {"three characters always lose two", u"a-b", u"-"},
        {"what closing makes of empty brackets", u"[[]]", u"[]"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LoadedWith(u"Tree Separator", c.stored).treeSeparator, c.held) << c.why;
}

TEST_F(SettingsTest, NumbersTakeTheLeadingNumber)
{
    EXPECT_EQ(LoadedWith(u"OE Folder Settle Time", u"1.5").settleTime, 1.5f);
    EXPECT_EQ(LoadedWith(u"OE Folder Settle Time", u"  2 seconds").settleTime, 2.0f);
    EXPECT_EQ(LoadedWith(u"OE Folder Settle Time", u"soon").settleTime, 0.0f);
    EXPECT_EQ(LoadedWith(u"OE Folder Settle Time", u"1e99").settleTime, 0.0f) << "beyond a single";
    EXPECT_EQ(LoadedWith(u"Apply DST", u"1").applyDst, 1);
    EXPECT_EQ(LoadedWith(u"Apply DST", u"40000").applyDst, 0) << "beyond 16 bits";
    EXPECT_EQ(LoadedWith(u"Apply DST", u"-32768").applyDst, -32768);
    EXPECT_EQ(LoadedWith(u"Apply DST", u"32767").applyDst, 32767);
    EXPECT_EQ(LoadedWith(u"Apply DST", u"-32769").applyDst, 0) << "beyond 16 bits";
    EXPECT_EQ(LoadedWith(u"Apply DST", u"1e400").applyDst, 0) << "infinite";
    EXPECT_EQ(LoadedWith(u"Time Offset", u"-1").timeOffset, -1.0f);
    EXPECT_EQ(LoadedWith(u"Sendkeys", u"1").sendKeys, 1);
}

TEST_F(SettingsTest, ClosingWritesTwelveKeysThatLoadAsTheyWere)
{
    Settings settings;
    settings.store = u"D:\\Mail";
    settings.idOnly = 1;
    settings.skipFiles = 1;
    settings.firstFolderToIgnore = u"Trash";
    settings.systemFolders = u"|a|b|";
    settings.firstFolder = u"Lokale Ordner";
    settings.treeSeparator = u" / ";
    settings.settleTime = 0.1f;
    settings.applyDst = 1;
    settings.timeOffset = -2.5f;
    SaveSettings(settings, profile, kFile);

    EXPECT_EQ(profile.writtenKeys,
              (std::vector<Text>{
                  u"Paths/Store", u"Options/ID only", u"Options/Sendkeys", u"Options/First folder to ignore",
                  u"Options/Skip Identical Files", u"Options/Jump to remaining", u"Options/System Folders",
                  u"Options/First folder", u"Options/Tree Separator", u"Options/OE Folder Settle Time",
                  u"Options/Apply DST", u"Options/Time Offset"}));
    EXPECT_EQ(profile.values[u"Options/Tree Separator"], u"[ / ]");
    EXPECT_EQ(profile.values[u"Options/OE Folder Settle Time"], u"0.1");
    EXPECT_EQ(profile.values[u"Options/Time Offset"], u"-2.5");

    const Settings again = Loaded();
    EXPECT_EQ(again.store, settings.store);
    EXPECT_EQ(again.idOnly, 1);
    EXPECT_EQ(again.sendKeys, 0);
    EXPECT_EQ(again.skipFiles, 1);
    EXPECT_EQ(again.jumpRemain, 0);
    EXPECT_EQ(again.firstFolderToIgnore, u"Trash");
    EXPECT_EQ(again.systemFolders, u"|a|b|");
    EXPECT_EQ(again.firstFolder, u"Lokale Ordner");
    EXPECT_EQ(again.treeSeparator, u" / ");
    EXPECT_EQ(again.settleTime, 0.1f);
    EXPECT_EQ(again.applyDst, 1);
    EXPECT_EQ(again.timeOffset, -2.5f);
}

TEST_F(SettingsTest, RefusedWritesAreTriedForEveryKey)
{
    profile.refuse = true;
    SaveSettings(Settings(), profile, kFile);
    EXPECT_EQ(profile.writtenKeys.size(), 12u);
}

} // namespace
