// AllFoldersTest.cpp: checking and exporting every folder of the fake client.
#include "tests/support/RunBench.h"

namespace {

struct AllFoldersTest : testing::Test, RunBench {
    AllFoldersTest()
        : RunBench(2, {{u"O'Brien", 3, {MailRow(u"Letter")}},
                       {u"Empty", 2, {}},
                       {u"Deleted Items", 2, {MailRow(u"Junk")}},
                       {u"Behind", 2, {MailRow(u"Ignored")}}})
    {
        view.options.systemFolders = u"|LOCAL FOLDERS|other|";
        view.options.firstFolderToIgnore = u"local folders\\deleted items";
    }
};

} // namespace

TEST_F(AllFoldersTest, ACheckTellsWhatIsToBeExported)
{
    CountFoldersToCheck(run);
    EXPECT_EQ(run.folderCount, 5);
    CheckAll();
    EXPECT_EQ(view.log, (Texts{u"Checking Outlook Express folders", u"-> Local Folders\\Inbox",
                               u"Local Folders\\Inbox - has all 2 emails to be exported.",
                               u"-> Local Folders\\Inbox\\O'Brien",
                               u"Local Folders\\Inbox\\O'Brien - has all 1 emails to be exported.",
                               u"-> Local Folders\\Empty", u"Local Folders\\Empty - empty.",
                               u"Ignoring all folders after: local folders\\deleted items",
                               u"0 folder(s) saved, 2 folder(s) not saved, 1 empty folder(s).",
                               u"3 email(s) to be saved.", u"0 email(s) already saved."}));
    EXPECT_EQ(view.summaryLines, (Texts{u"Local Folders\\Inbox - all 2 emails need to be exported.",
                                        u"Local Folders\\Inbox\\O'Brien - all 1 emails need to be exported.",
                                        u"3 email(s) to be saved."}));
    EXPECT_EQ(run.checkSummary, u"3 email(s) to be saved.");
    ASSERT_EQ(run.exportList.size(), 2u);
    EXPECT_EQ(run.exportList.at(kInbox), 0) << "a folder never exported begins with its first";
    EXPECT_EQ(view.marks[1], (std::pair<Text, Text>{u"0/2", u"red"}));
    EXPECT_EQ(view.selectedNode, 4) << "the node that is marked";
    EXPECT_EQ(view.tab, static_cast<int>(Tab::progress));
    EXPECT_TRUE(fake.saved.empty());
    EXPECT_EQ(fake.LiveBlocks(), 0u);
}

TEST(AllFolders, ReachFoldersWhoseNamesTheClientsCaptionCannotShow)
{
    RunBench bench(
        2, {{u"\u0416\u0443\u043A", 2, {MailRow(u"Beetle")}}, {u"\u202Ebackwards", 2, {MailRow(u"Last")}}});
    bench.CheckAll();
    EXPECT_EQ(bench.run.checkSummary, u"4 email(s) to be saved.");
}

TEST_F(AllFoldersTest, ExportsWhatTheCheckFoundAndNothingTwice)
{
    SaveAll();
    EXPECT_TRUE(flags.runCompleted);
    EXPECT_EQ(Records().size(), 3u);
    EXPECT_EQ(Count(u"Exporting emails from Local Folders\\Inbox\\O'Brien"), 1);
    EXPECT_EQ(Count(u"-> Local Folders\\Empty"), 1) << "by the check: nothing to save there";
    EXPECT_EQ(view.statistics[Statistic::totalCount], u"3");
    EXPECT_EQ(fake.LiveBlocks(), 0u);

    Mail().push_back(MailRow(u"New"));
    files.AddFile(u"c:\\store\\local folders\\empty\\0000.eml");
    view.options.jumpRemain = true;
    CheckAll();
    ExpectLog("check", {u"Local Folders\\Inbox - has 1 emails not saved", u"No emails in folder.",
                        u"1 folder(s) saved, 1 folder(s) not saved, 1 empty folder(s).",
                        u"3 email(s) already saved."});
    ASSERT_EQ(run.exportList.size(), 1u);
    EXPECT_EQ(run.exportList.at(kInbox), 2);
    EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"},
                                 {u"2/3", u"yellow"},
                                 {u"", u"envelope"},
                                 {u"1/1", u"green"},
                                 {u"", u"envelope"}}));
    ExportAll();
    ExpectLog("begins with the first that is not saved", {u"-- Exporting 2 to 2 messages."});
    EXPECT_EQ(Records().size(), 4u);
    EXPECT_EQ(view.percentages.back(), (std::pair<Bar, int>{Bar::allFolders, 100}));
}

TEST_F(AllFoldersTest, TheIgnoreNameDecidesWhereTheRunEnds)
{
    const std::tuple<const char*, Text, std::int32_t, std::size_t> cases[] = {
        {"the first folder of all", u"Local Folders", 1, 0},
        {"no such folder", u"Nowhere", 6, 4},
        {"no name", u"", 6, 4},
        {"a part of a full name is none", u"Inbox", 6, 4},
    };
    for (const auto& [why, name, count, toExport] : cases) {
        view.options.firstFolderToIgnore = name;
        CountFoldersToCheck(run);
        EXPECT_EQ(run.folderCount, count) << why;
        CheckAll();
        EXPECT_EQ(run.exportList.size(), toExport) << why;
    }
    // A folder whose name is a part of a system folder's is none.
    view.options.systemFolders = u"|Local Folders|Local Folders\\Empty and more|My Local Folders\\Behind|";
    CheckAll();
    EXPECT_EQ(run.exportList.size(), 4u);
    run.client.lstTree.clear();
    CheckAll();
    EXPECT_TRUE(view.log.empty()) << "no folders: no message";
}
