// FoldersTest.cpp: synchronising with the client and exporting its folder, on a fake client and a database
// in memory.
#include "folders/ExportFolder.h"
#include "folders/ExportStatistics.h"
#include "folders/FolderPaths.h"
#include "folders/StoreFolders.h"
#include "folders/Synchronise.h"
#include "oe/RemoteControls.h"
#include "oe/WindowDiscovery.h"
#include "store/StoreNames.h"
#include "tests/support/MemoryDatabase.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::vector<FakeFolder> Folders()
{
    return {{u"Outlook Express", 0, {}},
            {u"Local Folders", 1, {}},
            {u"Inbox", 2, {MailRow(u"One"), MailRow(u"Two"), MailRow(u"Three"), MailRow(u"Four")}},
            {u"O'Brien", 3, {MailRow(u"Letter")}},
            {u"Empty", 2, {}}};
}

struct FoldersTest : testing::Test, OeBench {
    FoldersTest() : OeBench(Folders())
    {
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        saved.database = std::make_unique<MemoryDatabase>(rows);
        fake.ShowFolder(2);
        Synchronise(run);
        view.log.clear();
        view.shown.clear();
    }
    void Export()
    {
        flags.runCompleted = true;
        ExportFolder(run, false);
    }
    // The log's last line with these words; empty without one.
    Text LastWith(TextView words) const
    {
        const auto found = std::find_if(view.log.rbegin(), view.log.rend(),
                                        [words](const Text& line) { return line.find(words) != Text::npos; });
        return found == view.log.rend() ? Text() : *found;
    }
    Text OutcomeLine() const { return LastWith(u" passed, "); }

    MemoryRows rows;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};
};

} // namespace

TEST_F(FoldersTest, SynchronisingReadsNamesPathsAndTheFolderShown)
{
    EXPECT_EQ(run.folderPaths,
              (std::vector<Text>{u"Outlook Express", u"Local Folders", u"Local Folders\\Inbox",
                                 u"Local Folders\\Inbox\\O'Brien", u"Local Folders\\Empty", u""}));
    EXPECT_TRUE(view.unlocked);
    EXPECT_EQ(view.selectedLine, 2);
    EXPECT_EQ(view.currentFolder, u"Local Folders\\Inbox");
    EXPECT_EQ(view.lines[3], u"---O'Brien");
    EXPECT_EQ(fake.LiveBlocks(), 0u);

    const std::vector<OeFolder> before = client.lstTree;
    static_cast<FakeClient&>(fake).Close();
    Synchronise(run);
    EXPECT_EQ(view.shown.back(), u"Could not find Outlook Express window");
    EXPECT_EQ(client.lstTree.size(), before.size()) << "nothing changes without a client";
}

TEST_F(FoldersTest, ExportsEveryEmailOnceAndRecordsIt)
{
    Export();
    EXPECT_TRUE(flags.runCompleted);
    EXPECT_EQ(view.log,
              (std::vector<Text>{u"Folder Inbox", u"-- Exporting 0 to 3 messages.", u"- Exporting One",
                                 u"- Exporting Two", u"- Exporting Three", u"- Exporting Four",
                                 u"4 passed, 0 failed, 0 skipped", u"Export complete",
                                 u"4 of 4 e-mail(s) handled in this run are saved; 0 are not."}));
    EXPECT_EQ(view.summaryLines, std::vector<Text>{view.log.back()});
    ASSERT_EQ(fake.saved.size(), 4u);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(fake.saved[static_cast<std::size_t>(i)].second, i);
    EXPECT_EQ(fake.saved[3].first, u"C:\\Store\\Local Folders\\Inbox\\0003_Four.eml");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[1][u"efolder"], u"Local Folders\\Inbox");
    EXPECT_EQ(rows[1][u"esubject"], u"Two");
    EXPECT_EQ(view.statistics[Statistic::count], u"4 out of 4");
    EXPECT_EQ(view.statistics[Statistic::left], u"0");
    EXPECT_EQ(view.stopButtons, StopButtons::hidden);
    EXPECT_EQ(view.percentages.back(), (std::pair{Bar::currentFolder, 0}));
    for (const auto& [message, key] : fake.input)
        EXPECT_NE(message, message::kChar) << "a list would search for what is typed";
    EXPECT_EQ(fake.LiveBlocks(), 0u);

    fake.selected = {0};
    Export();
    EXPECT_EQ(OutcomeLine(), u"0 passed, 0 failed, 4 skipped");
    EXPECT_EQ(fake.saved.size(), 4u);
    EXPECT_EQ(rows.size(), 4u);
}

TEST_F(FoldersTest, BeginsWithTheSelectedEmail)
{
    fake.selected = {2};
    Export();
    EXPECT_EQ(view.log[1], u"-- Exporting 2 to 3 messages.");
    EXPECT_EQ(OutcomeLine(), u"2 passed, 0 failed, 0 skipped");
}

TEST_F(FoldersTest, TheOptionsReachTheDialog)
{
    view.options.idOnly = true;
    Export();
    ASSERT_EQ(fake.saved.size(), 4u);
    EXPECT_EQ(fake.saved[3].first, u"C:\\Store\\Local Folders\\Inbox\\0003.eml");
    fake.ShowFolder(3);
    fake.background = true; // no keys are typed there
    Export();
    EXPECT_EQ(fake.saved.size(), 5u);
    rows.clear();
    view.options.sendKeys = true;
    Export();
    EXPECT_EQ(OutcomeLine(), u"0 passed, 1 failed, 0 skipped");
}

TEST_F(FoldersTest, AFileIsNamedAfterTheRowThatWasRead)
{
    fake.ignoreDownKey = true;
    Export();
    EXPECT_EQ(OutcomeLine(), u"1 passed, 0 failed, 3 skipped") << "the same row again and again, saved once";
    EXPECT_EQ(fake.saved.size(), 1u);
}

TEST_F(FoldersTest, AnEmailWithoutAnyDetailsIsExportedAndAnUnreadOneIsNot)
{
    fake.folders[2].rows[1] = std::vector<Text>(6);
    Export();
    EXPECT_EQ(OutcomeLine(), u"4 passed, 0 failed, 0 skipped");
    EXPECT_EQ(fake.saved[1].first, u"C:\\Store\\Local Folders\\Inbox\\0001_.eml");

    fake.selected = {0};
    fake.folders[2].rows[1] = MailRow(u"Other");
    fake.calls.clear();
    view.onEvents = [this] {
        fake.failAt = fake.calls.size() + kBeforeRow + 8;
    }; // inside the row that comes next
    Export();
    EXPECT_EQ(OutcomeLine(), u"0 passed, 0 failed, 4 skipped");
    EXPECT_EQ(std::count(view.log.begin(), view.log.end(),
                         u"An e-mail could not be read from the message list and was not exported."),
              4);
}

TEST_F(FoldersTest, AStopTakesEffectAfterTheEmailBeingSaved)
{
    fake.onSave = [this](int saves) {
        if (saves == 2) flags.stopAfterEmail = flags.stopRequested = true;
    };
    Export();
    EXPECT_FALSE(flags.runCompleted);
    EXPECT_FALSE(flags.stopAfterEmail || flags.stopRequested || flags.stopAfterFolder);
    EXPECT_EQ(view.log[4], u"User aborted on email export.");
    EXPECT_EQ(OutcomeLine(), u"2 passed, 0 failed, 0 skipped");

    fake.onSave = [this](int saves) {
        if (saves == 3) flags.stopAfterEmail = true; // the program's own
    };
    fake.selected = {2};
    flags.runCompleted = true;
    ExportFolder(run, true);
    EXPECT_EQ(LastWith(u"abort"), u"Program forced to abort.");
    EXPECT_TRUE(flags.stopAfterFolder) << "the all-folders run is told";

    fake.onSave = [this](int saves) {
        if (saves == 4) flags.stopAfterEmail = flags.stopRequested = true;
    };
    fake.selected = {3};
    flags = RunFlags();
    Export();
    EXPECT_TRUE(flags.runCompleted) << "pressed on the last e-mail: the loop ends as it would have";
}

TEST_F(FoldersTest, AClientThatClosesEndsTheRun)
{
    fake.closeAfterSaves = 2;
    Export();
    EXPECT_FALSE(flags.runCompleted);
    const std::vector<Text> tail(view.log.end() - 5, view.log.end());
    EXPECT_EQ(tail,
              (std::vector<Text>{u"Terminated unexpectedly", u"OE has closed unexpectedly",
                                 u"2 passed, 0 failed, 0 skipped", u"Export complete",
                                 u"2 of 2 e-mail(s) handled in this run are saved; 0 are not. 2 more were "
                                 u"not looked at."}));
    view.log.clear();
    view.boxes.clear();
    EXPECT_FALSE(SelectShownFolder(run));
    EXPECT_TRUE(view.boxes.empty()) << "without a client only its line";
    EXPECT_EQ(view.shown.back(), u"Could not find Outlook Express window");
}

TEST_F(FoldersTest, WhatCannotRunSaysWhy)
{
    fake.ShowFolder(4);
    Export();
    EXPECT_EQ(view.boxes.back(), u"No emails to export.");
    EXPECT_EQ(OutcomeLine(), u"0 passed, 0 failed, 0 skipped");

    fake.ShowFolder(3);
    files.refused = {u"c:\\store\\local folders\\inbox\\o'brien"};
    Export();
    EXPECT_FALSE(flags.runCompleted);
    EXPECT_EQ(view.boxes.back(),
              u"The export folder could not be made: C:\\Store\\Local Folders\\Inbox\\O'Brien\\");
    EXPECT_TRUE(fake.saved.empty());

    view.options.storeFolder = u"C:\\\u0416";
    Export();
    EXPECT_FALSE(flags.runCompleted);
    EXPECT_TRUE(view.boxes.back().starts_with(
        u"The store folder's name has characters that Outlook Express's dialog cannot be told: "));

    client.lstTree[3].item = 1; // a folder that the list does not know must not pass for the root
    Export();
    EXPECT_FALSE(flags.runCompleted);
    EXPECT_EQ(view.boxes.back(), u"Please ensure a folder has been selected in Outlook Express");
    EXPECT_EQ(LastWith(u"higher rights"), u"");
    EXPECT_TRUE(fake.saved.empty());
}

TEST_F(FoldersTest, ADatabaseFaultEndsTheRunWithItsWords)
{
    static_cast<MemoryDatabase&>(*saved.database).failAdds = true;
    Export();
    EXPECT_FALSE(flags.runCompleted);
    EXPECT_EQ(view.boxes.back(), u"Database error: the disk is full");
    EXPECT_EQ(fake.saved.size(), 1u) << "nothing is exported without a record of it";
    EXPECT_EQ(view.log.back(),
              u"0 of 1 e-mail(s) handled in this run are saved; 1 are not. 3 more were not looked at.");
}

TEST_F(FoldersTest, TheSelectedEmailIsShownInTheSummary)
{
    fake.selected = {1};
    ShowSelectedEmail(run);
    EXPECT_EQ(view.summary.substr(0, view.summary.find(u"\r\nCRC: ")),
              u"Subject: Two\r\nFrom: Ann Archer\r\nTo: bob@example.com\r\nSent: 03/04/2007 10:15:00\r\n"
              u"Rec: 03/04/2007 10:16:00");
    EXPECT_EQ(view.shown.back(), u"Message ID: 1");
}

TEST(FolderPaths, AStatusReplacesTheOneBefore)
{
    EXPECT_EQ(MarkedNodeText(u"Inbox", u" - ", u"3/7"), u"Inbox - 3/7");
    EXPECT_EQ(MarkedNodeText(u"Inbox - 3/7", u" - ", u"7/7"), u"Inbox - 7/7");
    EXPECT_EQ(MarkedNodeText(u"Q1 - plans", u" - ", u"1/2"), u"Q1 - 1/2") << "kept: the name is cut";
    EXPECT_EQ(MarkedNodeText(u"Inbox", u" - ", u""), u"Inbox");
}

TEST(StoreFolders, NamesThatWindowsCannotHold)
{
    CodePage1252 codePage;
    struct Case {
        const char* why;
        Text name, want;
    };
    const Case cases[] = {
        {"forbidden characters", u"a\\b/c:d*e?f\"g<h>i|j", u"a_b_c_d_e_f_g_h_i_j"},
        {"control characters", u"a\tb\x01", u"a_b_"},
        {"trailing dots and blanks", u"a. .", u"a___"},
        {"inner ones stay", u"a. b", u"a. b"},
        {"up and away", u"..", u"__"},
        {"a device", u"con", u"con_"},
        {"a device with an extension", u"LPT1.txt", u"LPT1_.txt"},
        {"a device before blanks", u"nul .x", u"nul _.x"},
        {"no device", u"COM0", u"COM0"},
        {"outside the code page", u"\u0416\u00E9\U0001F4E7", u"_\u00E9__"},
        {"nothing", u"", u"_"},
    };
    for (const Case& c : cases) EXPECT_EQ(DirectoryNameFor(c.name, codePage), c.want) << c.why;
}

TEST(StoreFolders, NoTwoFoldersShareADirectory)
{
    CodePage1252 codePage;
    const std::vector<FolderNode> nodes = {{u"Root", 1}, {u"Local", 2}, {u"a?", 3}, {u"in", 4},
                                           {u"a*", 3},   {u"a_", 3},    {u"in", 4}, {u"A_", 3},
                                           {u"-x", 3},   {u"Other", 2}};
    EXPECT_EQ(StoreDirectories(nodes, codePage),
              (std::vector<Text>{u"Root", u"Local", u"Local\\a__2", u"Local\\a__2\\in", u"Local\\a__3",
                                 u"Local\\a_", u"Local\\a_\\in", u"Local\\A__4", u"Local\\-x", u"Other"}));
}

TEST(StoreFolders, FoldersAreMadeLevelByLevel)
{
    FakeFiles files;
    files.directories = {u"c:", u"\\\\server\\share"};
    EXPECT_TRUE(MakeFolders(files, u"C:\\a\\b\\c\\"));
    EXPECT_TRUE(files.DirectoryExists(u"C:\\a\\b"));
    EXPECT_TRUE(MakeFolders(files, u"\\\\server\\share\\x\\"));
    EXPECT_FALSE(MakeFolders(files, u"Z:\\a\\")) << "a drive that is not there";
    EXPECT_EQ(ExportFolderOf(u"C:\\", u"Local\\Inbox"), u"C:\\Local\\Inbox\\");
}

TEST(ExportStatistics, FiguresOfARunningExport)
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
