// AllFoldersTest.cpp: checking and exporting every folder of the fake client.
#include "folders/AllFolders.h"
#include "folders/Synchronise.h"
#include "tests/support/JetSamples.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<Text>;

struct AllFoldersTest : testing::Test, OeBench {
    AllFoldersTest()
        : OeBench({{u"Outlook Express", 0, {}},
                   {u"Local Folders", 1, {MailRow(u"never seen")}},
                   {u"Inbox", 2, {MailRow(u"One"), MailRow(u"Two")}},
                   {u"O'Brien", 3, {MailRow(u"Letter")}},
                   {u"Empty", 2, {}},
                   {u"Deleted Items", 2, {MailRow(u"Junk")}},
                   {u"Behind", 2, {MailRow(u"Ignored")}}})
    {
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        view.options.systemFolders = u"|LOCAL FOLDERS|other|";
        view.options.firstFolderToIgnore = u"local folders\\deleted items";
        CreateSaved(databaseFiles);
        saved.database = OpenJetDatabase(databaseFiles, kSavedPath);
        fake.ShowFolder(2);
        Synchronise(run);
    }
    void RunIn(AllFoldersMode mode)
    {
        view.summaryLines.clear();
        view.marks.clear();
        RunAllFolders(run, mode);
        EXPECT_EQ(fake.LiveBlocks(), 0u);
    }
    // As the button does that exports all folders.
    void SaveAll()
    {
        RunIn(AllFoldersMode::check);
        run.runTotalSaved = 0;
        flags.runCompleted = false;
        RunIn(AllFoldersMode::exportEmails);
    }
    std::ptrdiff_t Logged(const Text& line) const
    {
        return std::count(view.log.begin(), view.log.end(), line);
    }

    MemoryFiles databaseFiles;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};
};

} // namespace

TEST_F(AllFoldersTest, ACheckTellsWhatIsToBeExported)
{
    CountFoldersToCheck(run);
    EXPECT_EQ(run.folderCount, 5);
    RunIn(AllFoldersMode::check);
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
    EXPECT_EQ(run.exportList[0].firstUnsaved, 0) << "a folder never exported begins with its first";
    EXPECT_EQ(view.marks[1], (std::pair<Text, Text>{u"0/2", u"red"}));
    EXPECT_EQ(view.selectedNode, 4) << "the node that is marked";
    EXPECT_EQ(view.tab, static_cast<int>(Tab::progress));
    EXPECT_TRUE(fake.saved.empty());
}

TEST_F(AllFoldersTest, ExportsWhatTheCheckFoundAndNothingTwice)
{
    SaveAll();
    EXPECT_TRUE(flags.runCompleted);
    EXPECT_EQ(fake.saved.size(), 3u);
    EXPECT_EQ(Logged(u"Exporting emails from Local Folders\\Inbox\\O'Brien"), 1);
    EXPECT_EQ(Logged(u"-> Local Folders\\Empty"), 0) << "nothing to save there";
    EXPECT_EQ(view.statistics[Statistic::totalCount], u"3");
    EXPECT_EQ(RowsOf(*saved.database).size(), 3u);

    run.exportList.clear();
    fake.folders[2].rows.push_back(MailRow(u"New"));
    files.AddFile(u"c:\\store\\local folders\\empty\\0000.eml");
    view.options.jumpRemain = true;
    RunIn(AllFoldersMode::check);
    EXPECT_EQ(Logged(u"Local Folders\\Inbox - has 1 emails not saved"), 1);
    EXPECT_EQ(Logged(u"No emails in folder."), 1);
    EXPECT_EQ(Logged(u"1 folder(s) saved, 1 folder(s) not saved, 1 empty folder(s)."), 1);
    EXPECT_EQ(Logged(u"3 email(s) already saved."), 1);
    ASSERT_EQ(run.exportList.size(), 1u);
    EXPECT_EQ(run.exportList[0].firstUnsaved, 2);
    EXPECT_EQ(view.marks, (std::vector<std::pair<Text, Text>>{{u"", u"envelope"},
                                                              {u"2/3", u"yellow"},
                                                              {u"", u"envelope"},
                                                              {u"1/1", u"green"},
                                                              {u"", u"envelope"}}));
    RunIn(AllFoldersMode::exportEmails);
    EXPECT_EQ(Logged(u"-- Exporting 2 to 2 messages."), 1) << "it begins with the first that is not saved";
    EXPECT_EQ(fake.saved.size(), 4u);
    EXPECT_EQ(view.percentages.back(), (std::pair<Bar, int>{Bar::allFolders, 100}));
}

TEST_F(AllFoldersTest, MoreFilesThanEmailsCountAsSaved)
{
    view.options.comparison = ComparisonType::simple;
    for (const Text name : {u"0000.eml", u"0001.eml", u"0002.eml"})
        files.AddFile(u"c:\\store\\local folders\\inbox\\" + name);
    RunIn(AllFoldersMode::check);
    EXPECT_EQ(Logged(u"Local Folders\\Inbox - has 1 too many emails saved"), 1);
    EXPECT_EQ(Logged(u"1 folder(s) saved, 1 folder(s) not saved, 1 empty folder(s)."), 1);
    EXPECT_EQ(view.marks[1], (std::pair<Text, Text>{u"3/2", u""})) << "the image stays";
}

TEST_F(AllFoldersTest, AStopEndsTheRunBeforeTheNextFolder)
{
    fake.onSave = [this](int) { flags.stopAfterFolder = flags.stopRequested = true; };
    SaveAll();
    EXPECT_EQ(fake.saved.size(), 2u) << "the folder is finished";
    EXPECT_EQ(view.log[view.log.size() - 2], u"User aborted folder export.");
    EXPECT_TRUE(flags.runCompleted) << "the closing box follows all the same";
    EXPECT_FALSE(flags.stopAfterFolder || flags.stopRequested);
}

TEST_F(AllFoldersTest, AStopBetweenTwoEmailsEndsTheCheckAndTheExportBehindIt)
{
    files.AddFile(u"c:\\store\\local folders\\inbox\\0000.eml");
    view.onEvents = [this] {
        if (view.shown.back().starts_with(u"[1 of 3]")) flags.stopAfterEmail = flags.stopRequested = true;
    };
    SaveAll();
    EXPECT_EQ(Logged(u"-> Local Folders\\Inbox\\O'Brien"), 0);
    EXPECT_TRUE(view.boxes.empty()) << "it is not the client that does not answer";
    EXPECT_TRUE(run.exportList.empty());
    EXPECT_TRUE(fake.saved.empty());

    // Where no e-mail needs to be read, the check ends with the folder.
    run.exportList.clear();
    flags = {};
    view.onEvents = [this] {
        if (view.log.back().ends_with(u"O'Brien - has all 1 emails to be exported."))
            flags.stopAfterEmail = flags.stopRequested = true;
    };
    files.files.clear();
    RunIn(AllFoldersMode::check);
    EXPECT_EQ(Logged(u"User aborted folder export."), 1);
    EXPECT_EQ(Logged(u"-> Local Folders\\Empty"), 0);
    EXPECT_EQ(view.log[view.log.size() - 2], u"3 email(s) to be saved.") << "what was found until then";
    view.onEvents = nullptr;
    RunIn(AllFoldersMode::exportEmails);
    EXPECT_TRUE(fake.saved.empty()) << "the user has asked for the end of all";
    EXPECT_EQ(Logged(u"User aborted on email export."), 1) << "it was the user";
}

TEST_F(AllFoldersTest, AFolderThatTheClientDoesNotShowIsLeftAlone)
{
    fake.refreshAfter = 100000;
    fake.ShowFolder(4); // so that the first folder needs a change
    RunIn(AllFoldersMode::check);
    EXPECT_EQ(Logged(u"Outlook Express failed to change folders."), 1);
    EXPECT_EQ(Logged(u"Program forced to abort."), 1);
    EXPECT_TRUE(run.exportList.empty()) << "the list on the screen is another folder's";
}

TEST_F(AllFoldersTest, TheIgnoreNameDecidesWhereTheRunEnds)
{
    const struct {
        const char* why;
        Text name;
        std::int32_t count;
        std::size_t toExport;
    } cases[] = {
        {"the first folder of all", u"Local Folders", 1, 0},
        {"no such folder", u"Nowhere", 6, 4},
        {"no name", u"", 6, 4},
        {"a part of a full name is none", u"Inbox", 6, 4},
    };
    for (const auto& c : cases) {
        view.options.firstFolderToIgnore = c.name;
        CountFoldersToCheck(run);
        EXPECT_EQ(run.folderCount, c.count) << c.why;
        run.exportList.clear();
        RunIn(AllFoldersMode::check);
        EXPECT_EQ(run.exportList.size(), c.toExport) << c.why;
    }
    run.client.lstTree.clear();
    view.log.clear();
    RunIn(AllFoldersMode::check);
    EXPECT_TRUE(view.log.empty()) << "no folders: no message";
}
