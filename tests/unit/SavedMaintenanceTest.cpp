// SavedMaintenanceTest.cpp: the record of exported e-mails as a whole, on the embedded engine.
#include "store/SavedMaintenance.h"
#include "tests/support/JetSamples.h"

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<std::vector<Text>>;

struct SavedMaintenanceTest : testing::Test {
    SavedMaintenanceTest()
    {
        CreateSaved(files);
        Open();
    }
    void Open()
    {
        saved.database.reset();
        saved.database = OpenJetDatabase(files, kSavedPath);
    }
    void Add(const Rows& rows)
    {
        for (const auto& row : rows) AddRow(*saved.database, row);
    }
    Text Crcs(const Text& folder)
    {
        return FolderCrcList(saved, folder, u",", [this] { ++yields; });
    }

    MemoryFiles files;
    SavedEmails saved;
    int yields = 0;
};

} // namespace

TEST_F(SavedMaintenanceTest, ListsTheCrcsOfOneFolder)
{
    EXPECT_EQ(Crcs(u"Inbox"), u",");
    Add({{u"Inbox", u"one", u"A1"}, {u"O'Brien", u"two", u"C3"}, {u"Inbox", u"three", u"B2"}});
    EXPECT_EQ(Crcs(u"Inbox"), u",A1,B2,");
    EXPECT_EQ(Crcs(u"O'Brien"), u",C3,");
    EXPECT_EQ(Crcs(u"inbox"), u",A1,B2,") << "\"=\" on texts ignores letter case";
    EXPECT_EQ(FolderCrcList(saved, u"Inbox", u" | ", [] {}), u" | A1 | B2 | ");
}

TEST_F(SavedMaintenanceTest, TheWindowLivesAfterEvery251Rows)
{
    for (int i = 0; i < 250; ++i) AddRow(*saved.database, {u"f", u"", u"A"});
    (void)Crcs(u"f");
    EXPECT_EQ(yields, 0);
    AddRow(*saved.database, {u"f", u"", u"A"});
    (void)Crcs(u"f");
    EXPECT_EQ(yields, 1);
    for (int i = 0; i < 251; ++i) AddRow(*saved.database, {u"f", u"", u"A"});
    yields = 0;
    EXPECT_EQ(Crcs(u"f").size(), 1u + 502u * 2u);
    EXPECT_EQ(yields, 2);
    EXPECT_EQ(CondenseDatabase(saved, [this] { ++yields; }), 501);
    EXPECT_EQ(yields, 4);
}

TEST_F(SavedMaintenanceTest, CondensingKeepsOneOfEachCrcAndFolder)
{
    const struct {
        const char* why;
        Rows before;
        std::int32_t removed;
        Rows after;
    } cases[] = {
        {"nothing to remove", {}, 0, {}},
        {"other folders are kept, order does not matter",
         {{u"g", u"1", u"A"}, {u"f", u"2", u"A"}, {u"f", u"3", u"B"}, {u"f", u"4", u"A"}},
         1,
         {{u"f", u"2", u"A"}, {u"g", u"1", u"A"}, {u"f", u"3", u"B"}}},
        {"of three, the first stays",
         {{u"f", u"1", u"A"}, {u"f", u"2", u"A"}, {u"f", u"3", u"A"}},
         2,
         {{u"f", u"1", u"A"}}},
        {"letter case counts",
         {{u"f", u"1", u"A"}, {u"F", u"2", u"A"}},
         0,
         {{u"f", u"1", u"A"}, {u"F", u"2", u"A"}}},
        {"a first row without CRC and folder goes",
         {{u"", u"1", u""}, {u"f", u"2", u"A"}},
         1,
         {{u"f", u"2", u"A"}}},
        {"a first row without CRC alone stays",
         {{u"f", u"1", u""}, {u"f", u"2", u"A"}},
         0,
         {{u"f", u"1", u""}, {u"f", u"2", u"A"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        saved.database.reset();
        files = {};
        CreateSaved(files);
        Open();
        Add(c.before);
        EXPECT_EQ(CondenseDatabase(saved, [] {}), c.removed);
        const Text all = u"SELECT * FROM saved ORDER BY ecrc, efolder";
        EXPECT_EQ(RowsOf(*saved.database, all), c.after);
        EXPECT_EQ(CondenseDatabase(saved, [] {}), 0);
        Open();
        EXPECT_EQ(RowsOf(*saved.database, all), c.after) << "opened again";
    }
}

TEST_F(SavedMaintenanceTest, AFileThatCannotBeWrittenEndsCondensing)
{
    Add({{u"f", u"1", u"A"}, {u"f", u"2", u"A"}});
    files.failAt = files.changes + 1;
    files.failForGood = true;
    EXPECT_THROW(CondenseDatabase(saved, [] {}), DatabaseError);
    files.failAt = 0;
    Open();
    EXPECT_EQ(RowsOf(*saved.database).size(), 2u) << "nothing is lost";
}
