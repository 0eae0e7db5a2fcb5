// DisturbedTest.cpp: runs beside a user who clicks, mail that comes and goes, and a client that was started
// anew: what the matrix of faults does not tell of single lines and boxes. Whatever happens, every file holds
// the e-mail that its name and record say (RunBench).
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"
#include "store/SavedEmails.h"
#include "tests/support/RunBench.h"

namespace {

const Text kAllSaved = u"All emails have been saved.", kOnceMore = u"; it is read once more.",
           kGoesOn = u"what has come counts as not saved";

bool HasGreenMark(const RunBench& bench)
{
    return std::any_of(bench.view.marks.begin(), bench.view.marks.end(),
                       [](const auto& mark) { return mark.second == u"green"; });
}

// With another e-mail, but empty from the second count to the last given.
void EmptyUntil(RunBench& bench, int last)
{
    bench.Mail().push_back(MailRow(u"New"));
    bench.fake.onMessage = AtEach(message::kListItemCount, [&bench, last, mail = bench.Mail()](int counts) {
        bench.Mail() = counts >= 2 && counts <= last ? Mails(0) : mail;
    });
}

} // namespace

TEST(DisturbedExport, AClickWhileTheDialogIsOnItsWaySavesNothing)
{
    for (const std::set<std::int32_t>& clicked : {std::set<std::int32_t>{4}, {1, 4}})
        for (const bool takesAtOpening : {false, true}) {
            RunBench bench;
            bench.fake.dialogDelays = {0, 900};
            bench.fake.takesAtOpening = takesAtOpening;
            bench.view.onEvents = [&] {
                if (bench.fake.Asks() == 2 && bench.fake.saved.size() == 1 && bench.fake.Find(u"#32770") == 0)
                    bench.fake.selected = clicked;
            };
            bench.Export();
            bench.ExpectLog("clicked", {u"FAIL: "});
        }
}

TEST(DisturbedExport, WhatReadingLeavesBehindIsSweptOnTheWay)
{
    RunBench bench(300);
    std::size_t most = 0;
    bench.fake.onMessage = AtEach(message::kKeyDown, [&](int) {
        most = std::max(most, bench.fake.LiveBlocks());
        bench.fake.failAt = bench.fake.calls.size() + kBeforeRow - 1; // the titles' release
    });
    bench.Export();
    EXPECT_EQ(bench.Records().size(), 300u);
    EXPECT_GT(most, 60u);
    EXPECT_LT(most, 70u) << "64 KB each in a client of 32 bits";
}

TEST(DisturbedExport, SkippedIsNotAlwaysWell)
{
    RunBench bench(3);
    bench.Mail().push_back(MailRow(u"Mail1"));
    bench.Mail().push_back(MailRow(u"Mail2"));
    for (const Text name : {u"a.eml", u"b.eml"}) bench.files.AddFile(kDirectory + name); // somebody's own
    const auto expectClosing = [&bench](const Text& closing, const Texts& says, const Texts& saysNot = {}) {
        bench.fake.selected = {0};
        bench.Export();
        bench.ExpectLog(ToUtf8(closing), says, saysNot);
        EXPECT_TRUE(closing.empty() || bench.view.log.back() == closing) << ToUtf8(bench.view.log.back());
    };
    expectClosing(Closing(3, 5),
                  {u"2 skipped: look exactly like another e-mail of this folder, the first like row 1"});
    expectClosing(Closing(3, 5), {u"3 skipped: recorded as saved before"}, {u"no .eml file"});
    AddRow(*bench.saved.database, bench.Records()[1]); // two records: both look-alikes are known to be saved
    expectClosing(Closing(4, 5), {});
    bench.files.files.clear(); // another store folder, or an emptied one
    expectClosing(Closing(0, 5), {u"All of them are recorded as saved, but there is no .eml file in " +
                                  kDirectory + u" - another or emptied store folder?"});
    bench.Mail().push_back(MailRow(u"New"));
    bench.fake.saveNothing = true;
    bench.fake.onSave = nullptr;
    expectClosing(u"", {}, {u"All of them are recorded"}); // one was tried and failed

    RunBench taken(2);
    taken.files.AddFile(kDirectory + u"0000_mail0.eml");
    taken.view.options.skipFiles = true;
    taken.Export();
    taken.ExpectLog("taken", {u"1 skipped: the file name is taken"});
    EXPECT_EQ(taken.view.log.back(), Closing(1, 2));

    RunBench above(3); // a look-alike above the first row has the record
    above.Mail().push_back(MailRow(u"Mail1"));
    above.Export();
    above.fake.selected = {2};
    above.Export();
    EXPECT_EQ(above.view.log.back(), Closing(1, 2));
}

TEST(DisturbedCheck, AListThatMovesIsReadOnceMoreAndInDoubtNotSaved)
{
    using Disturb = std::function<void(RunBench&)>;
    const Disturb mailComesIn = [](RunBench& b) {
        b.fake.onMessage = At(message::kListItemW, 10, [&b] { b.Mail().push_back(MailRow(u"New")); });
    };
    const struct {
        const char* why;
        Disturb disturb; // when all six are saved
        Texts says;
        ComparisonType type = ComparisonType::database;
    } cases[] = {
        {"mail comes in", mailComesIn, {kOnceMore, u"Not saved 6 - New"}},
        {"while files are compared", mailComesIn, {kOnceMore, u"Not saved 6 - New"}, ComparisonType::file},
        {"it never comes to rest",
         [](RunBench& b) {
             b.fake.onMessage = AtEach(message::kListItemW,
                                       [&b](int) { b.Mail().insert(b.Mail().begin(), MailRow(u"New")); });
         },
         {kGoesOn}},
        {"sorted anew",
         [](RunBench& b) {
             b.Mail().push_back(MailRow(u"New"));
             b.fake.onMessage =
                 At(message::kListItemW, 24, [&b] { std::reverse(b.Mail().begin(), b.Mail().end()); });
         },
         {kOnceMore, u"Not saved 0 - New"}},
        {"it fills slowly",
         [](RunBench& b) {
             b.fake.onMessage = AtEach(message::kListItemW, [&b](int cells) {
                 if (cells % 40 == 0) b.Mail().push_back(MailRow(u"New"));
             });
         },
         {kGoesOn}},
        {"behind the second reading: nor is the first row certain",
         [](RunBench& b) {
             b.fake.onMessage = AtEach(message::kListItemCount, [&b](int counts) {
                 if (counts == 3) std::reverse(b.Mail().begin(), b.Mail().end());
                 if (counts == 5) b.Mail().push_back(MailRow(u"New"));
             });
         },
         {kGoesOn, u"Inbox has 5 saved email(s). 2 email(s) not saved."}},
        {"empty for a moment", [](RunBench& b) { EmptyUntil(b, 3); }, {}},
        {"empty for longer", [](RunBench& b) { EmptyUntil(b, 8); }, {}},
        {"another folder's",
         [](RunBench& b) {
             b.fake.keepsList = true;
             b.fake.onMessage = At(message::kListItemW, 5, [&b] { b.fake.ShowFolder(3); });
         },
         {u"Outlook Express shows another folder meanwhile; this one has no result."}},
    };
    for (const auto& c : cases) {
        RunBench bench;
        bench.Export();
        c.disturb(bench);
        bench.Check(c.type);
        bench.ExpectLog(c.why, c.says, {kAllSaved});
        EXPECT_FALSE(HasGreenMark(bench)) << c.why;
    }
    for (int nth = 1; nth < 60; nth += 2) {
        RunBench bench;
        bench.Export();
        bench.Mail().insert(bench.Mail().begin() + 3, MailRow(u"New")); // 0 1 2 New 3 4 5
        bench.fake.onMessage =
            At(message::kListItemW, nth, [&] { std::swap(bench.Mail()[2], bench.Mail()[3]); });
        bench.Check();
        bench.ExpectLog("swapped at cell " + std::to_string(nth), {}, {kAllSaved});
    }
}

TEST(DisturbedCheck, LookAlikesAndMissingColumnsAreNamed)
{
    RunBench bench(3);
    bench.Mail().push_back(MailRow(u"Mail1"));
    bench.Export();
    bench.Check();
    bench.ExpectLog("alike", {u"1 look exactly like another e-mail of this folder, the first like row 1"});
    bench.fake.columnTitles[4] = u"Gesendet";
    bench.Check();
    bench.ExpectLog("column", {u"The message list has no column titled: Sent",
                               u"Its columns are titled: \"!\", \"From\", \"Subject\", \"Received\", "
                               u"\"Gesendet\", \"To\"",
                               u"The extra \"Any Language\" is made for what was left out here."});
    bench.fake.silentHeader = true;
    bench.Check();
    bench.ExpectLog("those that could not be read look like nothing", {}, {u"look exactly like"});
    EXPECT_EQ(bench.Count(u"Not saved "), 4);
    bench.fake.silentHeader = false;
    bench.fake.onMessage = At(message::kListItemW, 10, [&bench] { bench.fake.noHeader = true; });
    bench.Check();
    bench.ExpectLog("a header that goes", {u"no column titled: From"}, {u"Its columns are titled"});

    RunBench later;
    later.fake.onMessage = At(message::kKeyDown, 2, [&later] { later.fake.columnTitles[4] = u"Gesendet"; });
    later.Export();
    EXPECT_EQ(later.Count(u"The message list has no column titled: Sent"), 1);
}

TEST(DisturbedFolders, AFolderThatIsNotKnownIsNotTheRoot)
{
    for (const int nth : {1, 2, 3}) {
        RunBench bench;
        bench.fake.onMessage = At(message::kTreeNextItem, nth, [&] { bench.fake.folders[2].item = 0x123; });
        bench.Export();
        for (const auto& row : bench.Records()) EXPECT_EQ(row[0], kInbox) << nth;
    }
}

TEST(DisturbedFolders, AnotherClientsItemsAreNotSelected)
{
    RunBench bench; // its items have the same numbers for other folders
    bench.client.treeProcessId += 1;
    bench.Export();
    EXPECT_TRUE(bench.fake.saved.empty());
    EXPECT_EQ(bench.view.boxes, Texts{u"Please ensure a folder has been selected in Outlook Express"});
    int selects = 0;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        selects += message == message::kTreeSelectItem;
    };
    bench.SaveAll();
    EXPECT_EQ(selects, 0) << "they are addresses in the other process";
    EXPECT_LE(bench.view.boxes.size(), 1u) << "no box stands for each folder";
}

TEST(DisturbedSynchronise, APartOfTheFoldersIsNoList)
{
    for (const bool isBack : {false, true}) {
        RunBench bench;
        const Texts paths = bench.run.folderPaths;
        bench.fake.folders.push_back({u"New", 2, {}, 0x00360000});
        bench.fake.onMessage =
            At(message::kTreeItemW, 3, [&] { bench.fake.FallSilent(isBack ? 90'000 : kForGood); });
        bench.view.unlocked = false;
        Synchronise(bench.run);
        EXPECT_EQ(bench.run.folderPaths.size(), paths.size() + isBack) << "those that were known stay";
        EXPECT_EQ(bench.client.lstTree.size() + 1, bench.run.folderPaths.size());
        EXPECT_EQ(bench.view.boxes, isBack ? Texts{} : Texts{kSilent});
        EXPECT_EQ(bench.view.unlocked, isBack);
    }
}

TEST(DisturbedStore, ADirectoryThatCannotBeReadIsNotEmpty)
{
    RunBench bench(3);
    bench.Export();
    bench.files.unlisted = {FakeFiles::Key(kDirectory)};
    const Text words = Text(u"The saved files of this folder could not be listed ") +
                       u"(Access to the file was denied): " + kDirectory;
    bench.Check(ComparisonType::file);
    EXPECT_EQ(bench.view.boxes, Texts{words});
    EXPECT_EQ(bench.view.log, Texts{words});
    EXPECT_FALSE(HasGreenMark(bench));
    bench.SaveAll();
    bench.ExpectLog("all folders", {words, u"1 folder(s) were not checked."}, {u"has all 3 emails"});
    bench.fake.ShowFolder(2);
    bench.Export();
    bench.ExpectLog("everything is recorded", {words}, {u"there is no .eml file"});
    EXPECT_FALSE(bench.flags.runCompleted) << "nothing can be said of it";
}

TEST(DisturbedAllFolders, ARunThatIsRepeatedDoesTheRest)
{
    RunBench bench(3);
    bench.AfterSave(2, [&] { bench.Stop(); });
    bench.SaveAll();
    bench.SaveAll();
    EXPECT_EQ(bench.view.log.back(), Closing(6, 6, 0));
    bench.SaveAll();
    bench.ExpectLog("nothing is to do", {}, {u"e-mail(s) handled"});
    for (const std::size_t folder : {2, 3}) bench.fake.folders[folder].rows.push_back(MailRow(u"New"));
    bench.fake.onSave = [&](int) { bench.StopAfterFolder(); };
    bench.SaveAll();
    EXPECT_EQ(bench.view.log.back(), Closing(4, 4, 3)) << "nothing is to be looked at in the complete folder";
    EXPECT_FALSE(bench.flags.stopAfterFolder || bench.flags.stopRequested) << "the next run is not stopped";
}

TEST(DisturbedAllFolders, FoldersThatCannotBeMadeCostOneLineEachAndOneBox)
{
    RunBench bench(3);
    bench.files.refused = {FakeFiles::Key(kDirectory), u"c:\\store\\local folders\\last"};
    bench.AfterSave(2, [&] { bench.fake.folders[3].rows.pop_back(); });
    bench.SaveAll();
    EXPECT_EQ(bench.Count(u"The export folder could not be made: "), 2);
    EXPECT_EQ(bench.view.boxes, Texts{u"2 export folder(s) could not be made; the log names them."});
    EXPECT_EQ(bench.view.log.back(), Closing(2, 2, 4));
    bench.files.refused.clear();
    bench.SaveAll();
    EXPECT_TRUE(bench.view.boxes.empty()) << "those of the run before are told no more";

    RunBench gone(3);
    gone.files.directories.erase(u"c:\\store");
    gone.files.refused = {u"c:\\store"};
    gone.SaveAll();
    EXPECT_EQ(gone.view.boxes.size(), 1u) << "the store folder itself: the run ends";
    EXPECT_EQ(gone.Count(u"Exporting emails from"), 1);
    EXPECT_EQ(gone.view.log.back(), Closing(0, 0, 6));
}

TEST(DisturbedAllFolders, FoldersThatTheCheckDidNotComeToAreNamed)
{
    RunBench stopped;
    stopped.view.onEvents = [&] {
        if (stopped.Logged(u"Inbox - has all 6 emails to be exported.") && !stopped.Logged(u"Exporting"))
            stopped.StopAfterFolder();
    };
    stopped.SaveAll([&] { stopped.view.onEvents = nullptr; });
    stopped.ExpectLog("stopped", {u"2 folder(s) were not checked."});
    EXPECT_EQ(stopped.view.log.back(), Closing(6, 6, 0));
    stopped.CheckAll();
    stopped.ExpectLog("another run", {}, {u"were not checked."});

    RunBench failed; // the last folder is never shown
    failed.fake.onMessage = At(message::kTreeSelectItem, 4, [&] { failed.fake.refreshAfter = 100'000; });
    failed.SaveAll();
    failed.ExpectLog("failed",
                     {u"Outlook Express failed to change folders.", u"1 folder(s) were not checked."});
    EXPECT_NE(failed.view.log.back().find(u" e-mail(s) handled in this run"), Text::npos);

    RunBench lost; // the client does not come back: no second box
    lost.fake.onMessage = At(message::kListItemCount, 1, [&] { lost.fake.FallSilent(kForGood); });
    lost.SaveAll();
    EXPECT_EQ(lost.view.boxes, Texts{kSilent});
    lost.ExpectLog("lost", {u"3 folder(s) were not checked."});

    RunBench broken;
    broken.Export();
    CloseSavedEmails(broken.saved);
    broken.CheckAll();
    const Text words = u"Database error: the database of saved emails is not open";
    EXPECT_EQ(broken.Count(words), 1);
    EXPECT_EQ(broken.view.boxes, Texts{words});
    EXPECT_EQ(broken.Count(u"-> "), 1) << "it ends the run";
}

TEST(DisturbedExport, WhereADialogWasWrittenOffTheFileTellsWhoseItIs)
{
    // The dialog of the first e-mail comes after 70 s, just when the second one of another is waited for.
    for (int third = 3500; third <= 4500; third += 100) {
        RunBench bench(5);
        bench.fake.dialogDelays = {70'000, 1000, third, 1000, third};
        bench.Export();
        bench.client.saveDialog = {};
        bench.ExpectRestIsSaved(std::to_string(third));
    }
}
