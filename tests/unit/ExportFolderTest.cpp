// ExportFolderTest.cpp: synchronising with the client and exporting its folder, on a fake client and a
// database in memory.
#include "folders/ExportStatistics.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/RunBench.h"

namespace {

struct ExportFolderTest : testing::Test, RunBench {
    ExportFolderTest() : RunBench(4, {{u"O'Brien", 3, {MailRow(u"Letter")}}, {u"Empty", 2, {}}}) {}
    void ExpectOutcome(const Text& passed) { EXPECT_EQ(Count(passed + u" skipped"), 1); }
};

} // namespace

TEST_F(ExportFolderTest, SynchronisingReadsNamesPathsAndTheFolderShown)
{
    EXPECT_EQ(run.folderPaths, (Texts{u"Outlook Express", u"Local Folders", u"Local Folders\\Inbox",
                                      u"Local Folders\\Inbox\\O'Brien", u"Local Folders\\Empty", u""}));
    EXPECT_TRUE(view.unlocked);
    EXPECT_EQ(view.selectedLine, 2);
    EXPECT_EQ(view.currentFolder, kInbox);
    EXPECT_EQ(view.lines[3], u"---O'Brien");
    EXPECT_EQ(fake.LiveBlocks(), 0u);

    const std::size_t known = client.lstTree.size();
    fake.End();
    Synchronise(run);
    EXPECT_EQ(view.shown.back(), u"Could not find Outlook Express window");
    EXPECT_EQ(client.lstTree.size(), known) << "nothing changes without a client";
}

TEST_F(ExportFolderTest, ExportsEveryEmailOnceAndRecordsIt)
{
    Export();
    EXPECT_TRUE(flags.runCompleted);
    EXPECT_EQ(view.log, (Texts{u"Folder Inbox", u"-- Exporting 0 to 3 messages.", u"- Exporting Mail0",
                               u"- Exporting Mail1", u"- Exporting Mail2", u"- Exporting Mail3",
                               u"4 passed, 0 failed, 0 skipped", u"Export complete",
                               u"4 of 4 e-mail(s) handled in this run are saved; 0 are not."}));
    EXPECT_EQ(view.summaryLines, Texts{view.log.back()});
    ASSERT_EQ(fake.saved.size(), 4u);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(fake.saved[static_cast<std::size_t>(i)].row, i);
    EXPECT_EQ(fake.saved[3].path, kDirectory + u"0003_Mail3.eml");
    ASSERT_EQ(Records().size(), 4u);
    EXPECT_EQ(Records()[1][0], kInbox);
    EXPECT_EQ(Records()[1][1], u"Mail1");
    EXPECT_EQ(view.statistics[Statistic::count], u"4 out of 4");
    EXPECT_EQ(view.statistics[Statistic::left], u"0");
    EXPECT_EQ(view.stopButtons, StopButtons::hidden);
    EXPECT_EQ(view.percentages.back(), (std::pair{Bar::currentFolder, 0}));
    for (const auto& [message, key] : fake.input)
        EXPECT_NE(message, message::kChar) << "a list would search for what is typed";
    EXPECT_EQ(fake.LiveBlocks(), 0u);
    EXPECT_EQ(std::exchange(lookUps, 0), 4u) << "a no is asked for";

    fake.selected = {0};
    Export();
    ExpectOutcome(u"0 passed, 0 failed, 4");
    EXPECT_EQ(lookUps, 0u) << "DAO would go through all rows for each";
    EXPECT_EQ(fake.saved.size(), 4u);
    EXPECT_EQ(Records().size(), 4u);
}

TEST_F(ExportFolderTest, AnEmailWithoutAnyDetailsIsExportedAndAnUnreadOneIsNot)
{
    Mail()[1] = std::vector<Text>(6);
    Export();
    ExpectOutcome(u"4 passed, 0 failed, 0");
    EXPECT_EQ(fake.saved[1].path, kDirectory + u"0001_.eml");

    fake.selected = {0};
    fake.calls.clear();
    view.onEvents = [this] {
        fake.failAt = fake.calls.size() + kBeforeRow + 3;
    }; // in the row that comes next
    Export();
    ExpectOutcome(u"0 passed, 0 failed, 4");
    EXPECT_EQ(Count(u"An e-mail could not be read from the message list and was not exported."), 4);
}

TEST_F(ExportFolderTest, WhatCannotRunSaysWhy)
{
    const Text select = u"Please ensure a folder has been selected in Outlook Express";
    fake.ShowFolder(4);
    Export();
    EXPECT_EQ(view.boxes, Texts{u"No emails to export."});
    ExpectOutcome(u"0 passed, 0 failed, 0");

    fake.ShowFolder(3);
    files.refused = {u"c:\\store\\local folders\\inbox\\o'brien"};
    const struct {
        const char* why;
        std::function<void()> spoil;
        Text box; // what it begins with
        bool isElevated = false;
    } cases[] = {
        {"no directory", [] {},
         u"The export folder could not be made: C:\\Store\\Local Folders\\Inbox\\O'Brien\\"},
        {"no name for the dialog", [this] { view.options.storeFolder = u"C:\\\u0416"; },
         u"The store folder's name has characters that Outlook Express's dialog cannot be told: "},
        {"higher rights", [this] { fake.elevated = true; }, select, true},
        {"started anew without them; a folder that is not known must not pass for the root",
         [this] {
             fake.elevated = false;
             client.lstTree[3].item = 1;
         },
         select},
        {"no folders", [this] { client.lstTree.clear(); }, select},
    };
    for (const auto& c : cases) {
        c.spoil();
        Export();
        EXPECT_FALSE(flags.runCompleted) << c.why;
        ASSERT_EQ(view.boxes.size(), 1u) << c.why;
        EXPECT_TRUE(view.boxes[0].starts_with(c.box)) << c.why;
        EXPECT_EQ(Logged(u"Outlook Express runs with higher rights than Quillbox"), c.isElevated) << c.why;
        EXPECT_TRUE(fake.saved.empty()) << c.why;
    }
}

TEST(ExportStatistics, ShowRateRestAndTotals)
{
    RecordingView view;
    ExportStatistics statistics;
    statistics.startTime = 39175.0;
    statistics.count = 11;
    statistics.processed = 3;
    statistics.Show(view, 2, 39175.0);
    EXPECT_EQ(view.statistics.count(Statistic::perSecond), 0u) << "no second has passed";
    statistics.Show(view, 2, 39175.0 + 9.0 / 86400);
    EXPECT_EQ(view.statistics[Statistic::perSecond], u"0.333 / second");
    EXPECT_EQ(view.statistics[Statistic::time], u"00:00:24");
    EXPECT_EQ(view.statistics[Statistic::left], u"8");
    EXPECT_EQ(view.percentages.back(), (std::pair{Bar::currentFolder, 20}));
    statistics.Show(view, 2, 39176.0);
    EXPECT_EQ(view.statistics[Statistic::time], u"-:-:-") << "more than 16 bits of seconds";
    statistics.count = 1;
    statistics.Show(view, 0, 39175.0 + 9.0 / 86400);
    EXPECT_EQ(view.percentages.back().second, 100);
    EXPECT_EQ(view.statistics[Statistic::time], u"-:-:-");
    statistics.ShowTotals(view, 5, 20);
    EXPECT_EQ(view.statistics[Statistic::totalLeft], u"15");
    EXPECT_EQ(view.statistics[Statistic::totalTime], u"00:00:45");
    EXPECT_EQ(view.percentages.back(), (std::pair{Bar::allFolders, 25}));
}
