// StoreDatabaseTest.cpp: the extra "Database In Store": each store has a record of its own, and only a store
// that is used.
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

namespace {

struct Disk { // outlives the program, which has its files open to its end
    std::map<Text, MemoryFiles> disk;
};

struct StoreDatabaseTest : testing::Test, Disk, ProgramBench {
    StoreDatabaseTest()
    {
        files.directories.insert({u"c:\\second", u"c:\\second\\below"});
        // One database for each path, as on a disk.
        engine.create = [this](const Text& path, const Text&) {
            made.push_back(path);
            files.AddFile(path);
            CreateSaved(disk[FakeFiles::Key(path)]);
        };
        engine.open = [this](const Text& path) {
            opened.push_back(path);
            MemoryFiles& held = disk[FakeFiles::Key(path)];
            if (held.files.empty()) CreateSaved(held);
            return OpenJetDatabase(held, kSavedPath);
        };
        outside.databaseMakers = {engine};
    }
    void StartWith(bool extra)
    {
        if (extra) profile.values[u"Extras/Database In Store"] = u"1";
        Start();
    }

    std::vector<Text> made, opened;
};

TEST_F(StoreDatabaseTest, EachStoreThatIsUsedHasItsOwn)
{
    StartWith(true);
    EXPECT_TRUE(program.IsEnabled(Needs::records)) << "there is none yet";
    EXPECT_TRUE(opened.empty()) << "nothing was asked for";
    Press(&Program::cmdExport);
    EXPECT_EQ(fake.saved.size(), 3u);
    program.Store().Choose(u"C:\\Second\\Below"); // passed through
    program.Store().Choose(u"C:\\Second");
    fake.selected = {0};
    Press(&Program::cmdExport);
    EXPECT_EQ(fake.saved.size(), 6u) << "a second store begins with a record of its own";
    EXPECT_EQ(made, (Texts{u"C:\\Store\\saved.mdb", u"C:\\Second\\saved.mdb"}));
    program.Store().Choose(u"C:\\Store");
    fake.selected = {0};
    Press(&Program::cmdExport);
    EXPECT_EQ(fake.saved.size(), 6u) << "the first knows what it has";
    EXPECT_EQ(made.size(), 2u);
    Press(&Program::cmdCheckFolder);
    EXPECT_EQ(opened.size(), 3u) << "as long as the store is the same it stays open";
}

TEST_F(StoreDatabaseTest, ResultsOfOneAreNotMarkedInAnother)
{
    StartWith(true);
    Press(&Program::cmdExport);
    window.results = {{u"In", u"0", u"One", u"", u"A1"}};
    window.ticked = {0};
    program.Store().Choose(u"C:\\Second");
    EXPECT_EQ(Press(&Program::mnMarkSaved), kTableCleared);
    EXPECT_TRUE(window.results.empty());
    EXPECT_FALSE(Logged(u"Mark as saved: "));
    window.results = {{u"In", u"0", u"One", u"", u"A1"}};
    window.ticked = {0};
    window.chosenExtras = {{}};
    for (const ExtraRow& row : ExtraRows()) window.chosenExtras[0].push_back(DecimalText(row.normal));
    Press(&Program::cmdExtras);
    EXPECT_EQ(Press(&Program::mnMarkSaved), kTableCleared);
    EXPECT_EQ(opened.back(), u"C:\\Quillbox\\saved.mdb");
}

TEST_F(StoreDatabaseTest, LookingMakesNoneAndTakesNoOtherStores)
{
    StartWith(true);
    Press(&Program::cmdExport);
    program.Store().Choose(u"C:\\Second");
    EXPECT_EQ(Press(&Program::cmdVerifyStore), u"There is no record to hold the store against. 0 e-mail "
                                               u"file(s) looked through: nothing is wrong with the store.");
    Press(&Program::cmdIndexPage);
    EXPECT_EQ(made, Texts{u"C:\\Store\\saved.mdb"});
}

TEST_F(StoreDatabaseTest, AMissingStoreGetsNoneInTheProgramsFolderUnasked)
{
    profile.values[u"Paths/Store"] = u"D:\\gone";
    StartWith(true);
    Press(&Program::mnCondenseDB);
    EXPECT_TRUE(opened.empty());
    Press(&Program::mnCondenseDB); // pressed again
    EXPECT_EQ(opened, Texts{u"C:\\Quillbox\\saved.mdb"});
}

} // namespace
