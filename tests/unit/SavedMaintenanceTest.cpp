// SavedMaintenanceTest.cpp: the record of exported e-mails as a whole, on the embedded engine.
#include "store/SavedMaintenance.h"
#include "tests/support/JetSamples.h"

#include <gtest/gtest.h>

namespace {

struct SavedMaintenanceTest : testing::Test {
    SavedMaintenanceTest() { Start({}); }
    void Start(const Rows& rows)
    {
        saved = {};
        files = {};
        CreateSaved(files);
        Open();
        for (const auto& row : rows) AddRow(*saved.database, row);
    }
    void Open()
    {
        saved.database.reset();
        saved.database = OpenJetDatabase(files, kSavedPath);
    }
    // Each of the CRCs again and again; every third row may have a long subject.
    void Fill(int rows, int crcs, std::size_t subject = 0)
    {
        for (int i = 0; i < rows; ++i)
            AddRow(*saved.database, {u"f", Text(i % 3 == 0 ? subject : 0, u's'), DecimalText(i % crcs)});
    }
    std::size_t Count() { return RowsOf(*saved.database).size(); }
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
    Start({{u"Inbox", u"one", u"A1"}, {u"O'Brien", u"two", u"C3"}, {u"Inbox", u"three", u"B2"}});
    EXPECT_EQ(Crcs(u"O'Brien"), u",C3,");
    EXPECT_EQ(Crcs(u"inbox"), u",A1,B2,") << "\"=\" on texts ignores letter case";
    EXPECT_EQ(FolderCrcList(saved, u"Inbox", u" | ", [] {}), u" | A1 | B2 | ");
}

TEST_F(SavedMaintenanceTest, TheWindowLivesAfterEvery251Rows)
{
    Fill(250, 1);
    EXPECT_EQ(Crcs(u"f").size(), 1u + 250u * 2u);
    EXPECT_EQ(yields, 0);
    Fill(252, 1);
    (void)Crcs(u"f");
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
    // kept: of these, in the order of CRC and folder
    const std::tuple<const char*, Rows, std::vector<std::size_t>> cases[] = {
        {"other folders are kept, order does not matter",
         {{u"g", u"", u"A"}, {u"f", u"2", u"A"}, {u"f", u"", u"B"}, {u"f", u"4", u"A"}},
         {1, 0, 2}},
        {"letter case counts", {{u"f", u"", u"A"}, {u"F", u"", u"A"}}, {0, 1}},
        {"a first row without CRC and folder goes", {{u"", u"", u""}, {u"f", u"", u"A"}}, {1}},
        {"a first row without CRC alone stays", {{u"f", u"", u""}, {u"f", u"", u"A"}}, {0, 1}},
    };
    for (const auto& [why, before, kept] : cases) {
        SCOPED_TRACE(why);
        Start(before);
        EXPECT_EQ(Condense(), static_cast<std::int32_t>(before.size() - kept.size()));
        EXPECT_EQ(Condense(), 0);
        Rows after;
        for (const std::size_t row : kept) after.push_back(before[row]);
        Open();
        EXPECT_EQ(RowsOf(*saved.database, u"SELECT * FROM saved ORDER BY ecrc, efolder"), after);
    }
}

// What the disk waits for does not grow with the rows.
TEST_F(SavedMaintenanceTest, CondensingWaitsForTheDiskOnceABatch)
{
    for (const auto& [repeated, flushes] : {std::pair{16000, 2u}, {16001, 4u}}) {
        Start({});
        Fill(repeated + 500, 500);
        files.flushes = 0;
        EXPECT_EQ(Condense(), repeated);
        EXPECT_EQ(files.flushes, flushes) << "count and rows of each batch";
        EXPECT_EQ(Count(), 500u);
    }
}

TEST_F(SavedMaintenanceTest, CondensingCanBeStopped)
{
    Fill(3000, 1500);
    int asked = 0;
    Condensed done = CondenseDatabase(saved, [&](int) { return ++asked < 4; });
    EXPECT_TRUE(done.stopped);
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(done.removed, 502) << "of 1,004 rows that were looked at";
    Open();
    EXPECT_EQ(Count(), 3000u - 502u) << "what was found is gone";
    EXPECT_EQ(Condense(), 998) << "and the rest another time";

    Fill(251 - 1500 % 251, 1); // its last row is the last that is asked about
    done = CondenseDatabase(saved, [](int percent) { return percent < 100; });
    EXPECT_FALSE(done.stopped) << "nothing was left to be looked at";
}

TEST_F(SavedMaintenanceTest, HeldCrcsSayYesForTheirFolderWhileTheyLive)
{
    Start({{u"In", u"s", u"A"}, {u"In", u"s", u"A"}, {u"Other", u"s", u"B"}});
    {
        const HeldCrcs held(saved, u"In", [] {});
        ForgetSavedEmail(saved, u"A", u"In", 2); // as another program may
        AddRow(*saved.database, {u"In", u"s", u"C"});
        const struct {
            const char* why;
            Text crc, folder;
            std::int32_t times;
            bool isSaved;
        } cases[] = {
            {"as it was read", u"A", u"In", 2, true},       {"not so many", u"A", u"In", 3, false},
            {"another folder's", u"A", u"Other", 1, false}, {"come since", u"C", u"In", 1, true},
            {"once is not twice", u"C", u"In", 2, false},   {"not held", u"B", u"Other", 1, true},
        };
        for (const auto& c : cases) EXPECT_EQ(IsSaved(saved, c.crc, c.folder, c.times), c.isSaved) << c.why;
    }
    EXPECT_FALSE(IsSaved(saved, u"A", u"In"));
}
