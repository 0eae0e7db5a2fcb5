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

    std::int32_t Condense()
    {
        const Condensed done = CondenseDatabase(saved, [](int) { return true; });
        EXPECT_FALSE(done.stopped);
        return done.removed;
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
    std::vector<int> percentages;
    const auto note = [&percentages](int percent) {
        percentages.push_back(percent);
        return true;
    };
    EXPECT_EQ(CondenseDatabase(saved, note).removed, 501);
    EXPECT_EQ(percentages, (std::vector<int>{50, 100}));
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
        EXPECT_EQ(Condense(), c.removed);
        const Text all = u"SELECT * FROM saved ORDER BY ecrc, efolder";
        EXPECT_EQ(RowsOf(*saved.database, all), c.after);
        EXPECT_EQ(Condense(), 0);
        Open();
        EXPECT_EQ(RowsOf(*saved.database, all), c.after) << "opened again";
    }
}

// What the disk waits for does not grow with the rows.
TEST_F(SavedMaintenanceTest, CondensingWaitsForTheDiskOnceABatch)
{
    Rows all;
    for (int i = 0; i < 4500; ++i) all.push_back({u"f", u"", DecimalText(i % 1500)});
    Add(all);
    files.flushes = 0;
    EXPECT_EQ(Condense(), 3000);
    EXPECT_EQ(files.flushes, 6u) << "count and rows of each thousand";
    EXPECT_EQ(RowsOf(*saved.database).size(), 1500u);
}

TEST_F(SavedMaintenanceTest, CondensingCanBeStopped)
{
    Rows all;
    for (int i = 0; i < 3000; ++i) all.push_back({u"f", u"", DecimalText(i % 1500)});
    Add(all);
    int asked = 0;
    Condensed done = CondenseDatabase(saved, [&](int) { return ++asked < 4; });
    EXPECT_TRUE(done.stopped);
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(done.removed, 502) << "of 1,004 rows that were looked at";
    Open();
    EXPECT_EQ(RowsOf(*saved.database).size(), 3000u - 502u) << "what was found is gone";
    EXPECT_EQ(Condense(), 998) << "and the rest another time";

    Add({251 - 1500 % 251, {u"f", u"", u"Z"}}); // its last row is the last that is asked about
    done = CondenseDatabase(saved, [](int percent) { return percent < 100; });
    EXPECT_FALSE(done.stopped) << "nothing was left to be looked at";
}

// Ends anywhere in a batch: what is reported as removed is, nothing else is lost, and the next time goes on.
TEST_F(SavedMaintenanceTest, ADiskThatFailsInMidBatchLosesNoRecord)
{
    Rows all;
    for (int i = 0; i < 1400; ++i)
        all.push_back({u"f", Text(i % 3 == 0 ? 300 : 0, u's'), DecimalText(i % 700)});
    Add(all);
    saved.database.reset();
    const MemoryImage start = files[kSavedPath];
    std::size_t failures = 0;
    for (std::size_t change = 1;; change += 5) {
        SCOPED_TRACE(change);
        files = {};
        files[kSavedPath] = start;
        saved = {};
        Open();
        files.failAt = files.changes + change;
        files.tornBytes = 1000;
        files.failForGood = change % 2 == 0;
        bool failed = false;
        try {
            Condense();
        } catch (const DatabaseError&) {
            failed = true;
        }
        if (!failed) break;
        ++failures;
        files.failForGood = false;
        if (change % 2 == 0) files.tornBytes = 0;
        if (change % 2 == 1) Condense(); // the same connection goes on
        Open();
        EXPECT_EQ(saved.database->PrepareForWriting(u"saved", {}).refusal, u"");
        Condense();
        EXPECT_EQ(RowsOf(*saved.database).size(), 700u);
    }
    EXPECT_GT(failures, 5u);
}

TEST_F(SavedMaintenanceTest, AFileThatCannotBeWrittenEndsCondensing)
{
    Add({{u"f", u"1", u"A"}, {u"f", u"2", u"A"}});
    files.failAt = files.changes + 1;
    files.failForGood = true;
    EXPECT_THROW(Condense(), DatabaseError);
    files.failAt = 0;
    Open();
    EXPECT_EQ(RowsOf(*saved.database).size(), 2u) << "nothing is lost";
}
