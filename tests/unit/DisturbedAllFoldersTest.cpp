// DisturbedAllFoldersTest.cpp: runs over all folders beside a client that falls silent, a user who stops them
// and a disk that refuses: no run ends without telling what it did not come to.
#include "store/SavedEmails.h"
#include "tests/support/RunBench.h"

TEST(DisturbedAllFolders, TheRestIsCountedHoweverTheExportEnds)
{
    const struct {
        const char* why;
        int afterSaves;
        std::function<void(RunBench&)> disturb;
        Text closing;
        Texts says;
    } cases[] = {
        {"silent: the file over which it fell silent may not be whole",
         2,
         [](RunBench& b) { b.fake.FallSilent(kForGood); },
         Closing(1, 1, 5),
         {kSilent, u"Program forced to abort."}},
        {"no database: of look-alikes the records are counted, which fails as well",
         5,
         [](RunBench& b) { b.saved.database.reset(); },
         Closing(3, 6, 1),
         {u"Database error: "}},
        {"a stop between two e-mails",
         2,
         [](RunBench& b) { b.Stop(); },
         Closing(2, 2, 4),
         {u"User aborted on email export."}},
        {"a stop between two folders",
         1,
         [](RunBench& b) { b.StopAfterFolder(); },
         Closing(3, 3, 3),
         {u"User aborted folder export."}},
        {"folders that are gone again take nothing from what is left of the others",
         2,
         [](RunBench& b) { b.fake.folders[3].rows.clear(); },
         Closing(4, 4, 0),
         {}},
        {"no other folder is shown any more",
         1,
         [](RunBench& b) { b.fake.refreshAfter = 100'000; },
         Closing(3, 3, 3),
         {u"Outlook Express failed to change folders.", u"Program forced to abort."}},
    };
    for (const auto& c : cases) {
        RunBench bench(3);
        auto& other = bench.fake.folders[3].rows;
        if (c.afterSaves == 5) other.insert(other.begin() + 1, other[0]);
        bench.AfterSave(c.afterSaves, [&] { c.disturb(bench); });
        bench.SaveAll();
        EXPECT_EQ(bench.view.log.back(), c.closing) << c.why;
        EXPECT_EQ(bench.view.summaryLines.back(), c.closing) << c.why;
        bench.ExpectLog(c.why, c.says);
        EXPECT_LE(bench.Count(kSilent) + bench.Count(u"Database error: "), 1) << c.why;
        EXPECT_EQ(bench.Count(u"e-mail(s) handled"), 1) << c.why << ": at the end, and not for each folder";
        EXPECT_EQ(bench.view.stopButtons, StopButtons::shown) << c.why << ": not over with a folder";
        EXPECT_TRUE(bench.flags.runCompleted) << c.why << ": kept: however it ended";
    }
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

TEST(DisturbedAllFolders, AFolderThatHasBecomeEmptyHoldsUpNoRun)
{
    RunBench bench(3);
    bench.SaveAll([&] { bench.Mail().clear(); });
    EXPECT_EQ(bench.Count(u"No emails to export."), 1);
    EXPECT_EQ(bench.view.briefBoxes, Texts{u"No emails to export."});
    EXPECT_TRUE(bench.view.boxes.empty());
    EXPECT_EQ(bench.view.log.back(), Closing(3, 3, 0));
}

TEST(DisturbedAllFolders, NewMailAboveTheRowThatAJumpBeginsWithIsTold)
{
    RunBench bench(3);
    bench.AfterSave(2, [&] { bench.Stop(); });
    bench.Export();
    bench.view.options.jumpRemain = true;
    bench.SaveAll([&] { bench.Mail().insert(bench.Mail().begin(), MailRow(u"New")); });
    bench.ExpectLog("jump", {u"-- Exporting 2 to 3 messages."});
    EXPECT_EQ(bench.view.log.back(), Closing(5, 5, 2));
}
