// DisturbedRunsTest.cpp: checks, and runs over all folders, beside mail that comes in, a client that falls
// silent and a disk that refuses. No check calls a folder saved that is not, and no run ends without telling.
#include "folders/AllFolders.h"
#include "folders/CheckFolder.h"
#include "folders/ExportFolder.h"
#include "folders/Synchronise.h"
#include "oe/RemoteControls.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/JetSamples.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

const Text kSilent = u"Outlook Express has stopped responding - please restart Outlook Express.";
const Text kInboxFolder = u"c:\\store\\local folders\\inbox";

struct Runs : OeBench {
    Runs()
        : OeBench({{u"Outlook Express", 0, {}},
                   {u"Local Folders", 1, {MailRow(u"never seen")}},
                   {u"Inbox", 2, {MailRow(u"One"), MailRow(u"Two"), MailRow(u"Three")}},
                   {u"Folders", 2, {MailRow(u"Letter"), MailRow(u"Reply")}},
                   {u"Last", 2, {MailRow(u"Note")}}})
    {
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        view.options.systemFolders = u"|local folders|";
        CreateSaved(databaseFiles);
        saved.database = OpenJetDatabase(databaseFiles, kSavedPath);
        fake.ShowFolder(2);
        Synchronise(run);
    }
    void Check(ComparisonType type = ComparisonType::database)
    {
        view.options.comparison = type;
        Forget();
        CheckFolder(run);
    }
    // As the button does that exports all folders.
    void SaveAll()
    {
        Forget();
        run.exportList.clear();
        RunAllFolders(run, AllFoldersMode::check);
        run.runTotalSaved = 0;
        flags.runCompleted = false;
        const auto check = view.log;
        RunAllFolders(run, AllFoldersMode::exportEmails);
        view.log.insert(view.log.begin(), check.begin(), check.end());
    }
    void Forget()
    {
        flags = {};
        view.log.clear();
        view.boxes.clear();
        view.marks.clear();
        view.statistics.clear();
        view.percentages.clear();
        view.summaryLines.clear();
    }
    int Logged(TextView words) const
    {
        return static_cast<int>(std::count_if(view.log.begin(), view.log.end(), [words](const Text& line) {
            return line.find(words) != Text::npos;
        }));
    }
    std::vector<std::vector<Text>>& Inbox() { return fake.folders[2].rows; }

    MemoryFiles databaseFiles;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};
};

} // namespace

TEST(DisturbedCheck, GoesByTheRowsThatItRead)
{
    const ComparisonType types[] = {ComparisonType::database, ComparisonType::file};
    for (const ComparisonType type : types) {
        Runs runs;
        ExportFolder(runs.run, false);
        int cells = 0;
        runs.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
            if (message == message::kListItemW && ++cells == 10) {
                runs.Inbox().push_back(MailRow(u"New"));
                runs.Inbox().push_back(MailRow(u"Newer"));
            }
        };
        runs.Check(type);
        EXPECT_EQ(runs.Logged(u"The message list has changed while it was read; it is "
                              u"read once more."),
                  1);
        EXPECT_EQ(runs.Logged(u"Not saved 3 - New"), 1);
        EXPECT_EQ(runs.Logged(u"All emails have been saved."), 0);
        EXPECT_NE(runs.view.marks.back().second, u"green");
    }
    Runs runs; // a list that never comes to rest
    ExportFolder(runs.run, false);
    runs.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kListItemW) runs.Inbox().insert(runs.Inbox().begin(), MailRow(u"New"));
    };
    runs.Check();
    EXPECT_EQ(runs.Logged(u"what has come counts as not saved"), 1);
    EXPECT_EQ(runs.Logged(u"All emails have been saved."), 0);
}

TEST(DisturbedCheck, ASilentClientIsNoEmptyFolder)
{
    struct Case {
        std::uint32_t kind;
        int nth;
        bool stored;
    };
    const Case cases[] = {{0, 1, true},
                          {message::kListItemCount, 1, true},
                          {message::kListItemCount, 1, false},
                          {message::kListItemCount, 3, true}, // when all rows are read
                          {message::kListItemW, 1, true}};
    for (const auto& [kind, nth, stored] : cases) {
        for (const bool inAllFolders : {false, true}) {
            Runs runs;
            if (stored) ExportFolder(runs.run, false);
            runs.fake.onMessage = [&, left = nth](WindowHandle, std::uint32_t message) mutable {
                if (message == kind && --left == 0) runs.fake.FallSilent(2'000'000'000);
            };
            if (inAllFolders) {
                runs.Forget();
                RunAllFolders(runs.run, AllFoldersMode::check);
                EXPECT_EQ(runs.Logged(u"Program forced to abort."), 1) << kind;
                EXPECT_LE(runs.Logged(u"-> "), 1) << kind << ": no further folder is asked for";
            } else {
                runs.Check();
            }
            EXPECT_EQ(runs.Logged(kSilent), 1) << kind;
            EXPECT_EQ(std::count(runs.view.boxes.begin(), runs.view.boxes.end(), kSilent), 1) << kind;
            EXPECT_EQ(runs.Logged(u"saved email(s)"), 0) << kind;
            for (const auto& [status, image] : runs.view.marks) EXPECT_NE(image, u"green") << kind;
        }
    }
}

TEST(DisturbedCheck, AFolderWithFilesIsNotEmptyAtTheFirstWord)
{
    for (const bool inAllFolders : {false, true}) {
        Runs runs;
        ExportFolder(runs.run, false);
        const std::vector<std::vector<Text>> mail = runs.Inbox();
        runs.Inbox().clear(); // the list is being rebuilt
        runs.fake.onMessage = [&, counts = 0](WindowHandle, std::uint32_t message) mutable {
            if (message == message::kListItemCount && ++counts == 2) runs.Inbox() = mail;
        };
        if (inAllFolders) {
            runs.view.options.comparison = ComparisonType::simple;
            RunAllFolders(runs.run, AllFoldersMode::check);
            EXPECT_EQ(runs.Logged(u"1 folder(s) saved, 2 folder(s) not saved, 0 empty folder(s)."), 1);
        } else {
            runs.Check(ComparisonType::simple); // by nothing but the count
            EXPECT_EQ(runs.view.boxes.back(), u"Inbox has 3 saved email(s). All emails have been saved.");
        }
    }
}

TEST(DisturbedCheck, AClientThatIsSilentHoldsUpNoClosing)
{
    Runs runs;
    ExportFolder(runs.run, false);
    const int before = runs.fake.sleptMilliseconds;
    runs.fake.onMessage = [&, cells = 0, met = false](WindowHandle, std::uint32_t message) mutable {
        if (message == message::kListItemW) ++cells;
        if (message != 0 || cells == 0 || std::exchange(met, true)) return;
        runs.flags.closing = runs.flags.stopRequested = runs.flags.stopAfterEmail = true;
        runs.fake.FallSilent(2'000'000'000);
    };
    runs.Check();
    EXPECT_LT(runs.fake.sleptMilliseconds - before, 3'000);
    EXPECT_EQ(runs.Logged(u"User aborted on email export."), 1);
}

TEST(DisturbedSynchronise, APartOfTheFoldersIsNoList)
{
    Runs runs;
    const std::vector<Text> paths = runs.run.folderPaths;
    runs.fake.folders.push_back({u"New", 2, {}, 0x00360000});
    runs.fake.onMessage = [&, items = 0](WindowHandle, std::uint32_t message) mutable {
        if (message == message::kTreeItemW && ++items == 3) runs.fake.FallSilent(2'000'000'000);
    };
    runs.Forget();
    runs.view.unlocked = false;
    Synchronise(runs.run);
    EXPECT_EQ(runs.run.folderPaths, paths);
    EXPECT_EQ(runs.client.lstTree.size() + 1, paths.size()) << "those that were known stay";
    EXPECT_EQ(runs.view.boxes, std::vector<Text>{kSilent});
    EXPECT_FALSE(runs.view.unlocked);

    // Back in time, the item is read again.
    Runs back;
    back.fake.onMessage = [&, items = 0](WindowHandle, std::uint32_t message) mutable {
        if (message == message::kTreeItemW && ++items == 3) back.fake.FallSilent(90'000);
    };
    Synchronise(back.run);
    EXPECT_EQ(back.run.folderPaths, paths);
}

TEST(DisturbedCheck, LookAlikesAndMissingColumnsAreNamed)
{
    Runs runs;
    runs.Inbox().push_back(MailRow(u"Two"));
    ExportFolder(runs.run, false);
    runs.Check();
    EXPECT_EQ(runs.Logged(u"1 look exactly like another e-mail of this folder, the first like row 1"), 1);
    runs.fake.columnTitles[4] = u"Gesendet";
    runs.Check();
    EXPECT_EQ(runs.Logged(u"The message list has no column titled: Sent"), 1);
    runs.fake.silentHeader = true;
    runs.Check();
    EXPECT_EQ(runs.Logged(u"look exactly like"), 0) << "those that could not be read look like nothing";
    EXPECT_EQ(runs.Logged(u"Not saved "), 4);
}

TEST(DisturbedCheck, ADatabaseFaultIsToldInARunOverAllFolders)
{
    Runs runs;
    ExportFolder(runs.run, false);
    CloseSavedEmails(runs.saved);
    runs.Forget();
    RunAllFolders(runs.run, AllFoldersMode::check);
    const Text words = u"Database error: the database of saved emails is not open";
    EXPECT_EQ(runs.Logged(words), 1);
    EXPECT_EQ(runs.view.boxes, std::vector<Text>{words});
    EXPECT_EQ(runs.Logged(u"-> "), 1) << "it ends the run";
}

TEST(DisturbedAllFolders, ASilentClientEndsTheExportAndTheRestIsCounted)
{
    Runs runs;
    runs.fake.onSave = [&](int saves) {
        if (saves == 2) runs.fake.FallSilent(2'000'000'000);
    };
    runs.SaveAll();
    EXPECT_EQ(runs.Logged(kSilent), 1);
    EXPECT_EQ(runs.Logged(u"Program forced to abort."), 1);
    EXPECT_EQ(runs.view.log.back(),
              u"1 of 1 e-mail(s) handled in this run are saved; 0 are not. 5 more were not looked at.")
        << "the file over which it fell silent may not be whole";
    EXPECT_EQ(runs.view.summaryLines.back(), runs.view.log.back());
    EXPECT_TRUE(runs.flags.runCompleted) << "kept: however it ended";
}

TEST(DisturbedAllFolders, ADatabaseFaultEndsTheExportAndTheRestIsCounted)
{
    Runs runs;
    auto& mail = runs.fake.folders[3].rows;
    mail.insert(mail.begin() + 1, mail[0]); // of look-alikes the records are counted, which fails as well
    runs.fake.onSave = [&](int saves) {
        if (saves == 5) runs.saved.database.reset();
    };
    runs.SaveAll();
    EXPECT_EQ(runs.Logged(u"Database error: "), 1);
    EXPECT_EQ(runs.Logged(u"-> Local Folders\\Last"), 1) << "by the check alone";
    EXPECT_EQ(runs.view.log.back(),
              u"3 of 6 e-mail(s) handled in this run are saved; 3 are not. 1 more were not looked at.");
}

TEST(DisturbedAllFolders, StopsAreCounted)
{
    Runs runs;
    runs.fake.onSave = [&](int saves) {
        if (saves == 2) runs.flags.stopAfterEmail = runs.flags.stopRequested = true;
    };
    runs.SaveAll();
    EXPECT_EQ(runs.view.log.back(),
              u"2 of 2 e-mail(s) handled in this run are saved; 0 are not. 4 more were not looked at.");
    runs.fake.onSave = nullptr;
    runs.SaveAll();
    EXPECT_EQ(runs.view.log.back(), u"6 of 6 e-mail(s) handled in this run are saved; 0 are not.");
    EXPECT_EQ(runs.Logged(u"e-mail(s) handled"), 1) << "at the end, and not for each folder";
    EXPECT_EQ(runs.view.stopButtons, StopButtons::shown) << "the run is not over with a folder";
    runs.SaveAll();
    EXPECT_EQ(runs.Logged(u"e-mail(s) handled"), 0) << "nothing was there to do";

    for (const std::size_t folder : {2, 3}) runs.fake.folders[folder].rows.push_back(MailRow(u"New"));
    runs.fake.onSave = [&](int) { runs.flags.stopAfterFolder = runs.flags.stopRequested = true; };
    runs.SaveAll();
    EXPECT_EQ(runs.view.log.back(),
              u"4 of 4 e-mail(s) handled in this run are saved; 0 are not. 3 more were not looked at.")
        << "nothing is to be looked at in the folder that is complete";
}

TEST(DisturbedAllFolders, FoldersThatCannotBeMadeCostOneLineEachAndOneBox)
{
    Runs runs;
    runs.files.refused = {kInboxFolder, u"c:\\store\\local folders\\last"};
    runs.fake.onSave = [&](int saves) { // one that goes again takes nothing from what is left of the others
        if (saves == 2) runs.fake.folders[3].rows.pop_back();
    };
    runs.SaveAll();
    EXPECT_EQ(runs.Logged(u"The export folder could not be made: "), 2);
    EXPECT_EQ(runs.view.boxes,
              std::vector<Text>{u"2 export folder(s) could not be made; the log names them."});
    EXPECT_EQ(runs.view.log.back(),
              u"2 of 2 e-mail(s) handled in this run are saved; 0 are not. 4 more were not looked at.");
    runs.files.refused.clear();
    runs.SaveAll();
    EXPECT_TRUE(runs.view.boxes.empty()) << "those of the run before are told no more";

    Runs unshown; // the client shows no other folder any more
    unshown.Forget();
    RunAllFolders(unshown.run, AllFoldersMode::check);
    unshown.fake.refreshAfter = 100'000;
    RunAllFolders(unshown.run, AllFoldersMode::exportEmails);
    EXPECT_EQ(unshown.view.log.back(),
              u"0 of 0 e-mail(s) handled in this run are saved; 0 are not. 6 more were not looked at.");

    Runs gone;
    gone.files.directories.erase(u"c:\\store");
    gone.files.refused = {u"c:\\store"};
    gone.SaveAll();
    EXPECT_EQ(gone.view.boxes.size(), 1u) << "the store folder itself: the run ends";
    EXPECT_EQ(gone.Logged(u"Exporting emails from"), 1);
    EXPECT_EQ(gone.view.log.back(),
              u"0 of 0 e-mail(s) handled in this run are saved; 0 are not. 6 more were not looked at.");
}

TEST(DisturbedAllFolders, AFolderThatHasBecomeEmptyHoldsUpNoRun)
{
    Runs runs;
    RunAllFolders(runs.run, AllFoldersMode::check);
    runs.Inbox().clear();
    runs.Forget();
    RunAllFolders(runs.run, AllFoldersMode::exportEmails);
    EXPECT_EQ(runs.Logged(u"No emails to export."), 1);
    EXPECT_EQ(runs.view.briefBoxes, std::vector<Text>{u"No emails to export."});
    EXPECT_TRUE(runs.view.boxes.empty());
    EXPECT_EQ(runs.view.log.back(), u"3 of 3 e-mail(s) handled in this run are saved; 0 are not.");
}

TEST(DisturbedAllFolders, NewMailAboveTheRowThatAJumpBeginsWithIsTold)
{
    Runs runs;
    runs.fake.onSave = [&](int saves) {
        if (saves == 2) runs.flags.stopAfterEmail = runs.flags.stopRequested = true;
    };
    ExportFolder(runs.run, false);
    runs.fake.onSave = nullptr;
    runs.Forget();
    RunAllFolders(runs.run, AllFoldersMode::check);
    runs.Inbox().insert(runs.Inbox().begin(), MailRow(u"New"));
    runs.view.options.jumpRemain = true;
    RunAllFolders(runs.run, AllFoldersMode::exportEmails);
    EXPECT_EQ(runs.Logged(u"-- Exporting 2 to 3 messages."), 1);
    EXPECT_EQ(runs.view.log.back(),
              u"5 of 5 e-mail(s) handled in this run are saved; 0 are not. 2 more were not looked at.");
}

TEST(DisturbedAllFolders, TheFiguresOfARunAreThoseOfThatRun)
{
    Runs runs;
    std::vector<Text> totalsLeft;
    std::vector<int> bar, checkBar;
    runs.fake.onSave = [&](int) {
        totalsLeft.push_back(runs.view.statistics[Statistic::totalLeft]);
        bar.push_back(runs.view.percentages.back().second);
        EXPECT_EQ(runs.view.percentages.back().first, Bar::allFolders);
    };
    CountFoldersToCheck(runs.run);
    runs.view.onEvents = [&] {
        if (runs.fake.Asks() > 0 || runs.view.percentages.empty()) return;
        const auto& [which, percent] = runs.view.percentages.back();
        if (which == Bar::allFolders && (checkBar.empty() || checkBar.back() != percent))
            checkBar.push_back(percent);
    };
    runs.view.percentages.emplace_back(Bar::allFolders, 100); // of the run before
    runs.SaveAll();
    EXPECT_EQ(checkBar, (std::vector<int>{50, 75, 100, 0})) << "and empty when the export begins";
    EXPECT_EQ(runs.view.statistics[Statistic::totalCount], u"6");
    EXPECT_EQ(totalsLeft, (std::vector<Text>{u"6", u"5", u"4", u"3", u"2", u"1"}));
    EXPECT_EQ(bar, (std::vector<int>{0, 17, 33, 50, 67, 83}));
    EXPECT_EQ(runs.run.runTotalSaved, 6);
    runs.Inbox().push_back(MailRow(u"New"));
    runs.SaveAll();
    EXPECT_EQ(runs.view.statistics[Statistic::totalCount], u"1") << "not added to the run before";

    // A folder whose name is a part of a system folder's is none.
    Runs parts;
    EXPECT_EQ(parts.run.folderPaths[3], u"Local Folders\\Folders");
    parts.view.options.systemFolders =
        u"|Local Folders|Local Folders\\Folders and more|My Local Folders\\Last|";
    parts.SaveAll();
    EXPECT_EQ(parts.fake.saved.size(), 6u);
}

TEST(DisturbedAllFolders, TheWindowsAreFoundAnewForEachFolder)
{
    // The client makes its list anew while nobody looks: the handles of the folder before are dead.
    Runs runs;
    runs.fake.ShowFolder(3);
    ExportFolder(runs.run, false);
    EXPECT_EQ(runs.fake.saved.size(), 2u);
    runs.fake.ShowFolder(2);
    runs.files.directories.insert(kInboxFolder);
    runs.files.AddFile(kInboxFolder + u"\\0000.eml");
    runs.Check();
    EXPECT_EQ(runs.Logged(u"Inbox has 0 saved email(s). 3 email(s) not saved."), 1);
    runs.fake.ShowFolder(2);
    runs.Forget();
    RunAllFolders(runs.run, AllFoldersMode::check);
    EXPECT_EQ(runs.Logged(kSilent), 0) << "in the folder that is shown already, too";
}

TEST(DisturbedCheck, AFileCheckRecordsUnderTheFolderThatItChecks)
{
    Runs runs;
    ExportFolder(runs.run, false);
    for (auto& [path, bytes] : runs.files.files)
        bytes = "From: Ann Archer <ann@example.com>\r\nTo: bob@example.com\r\nSubject: " +
                std::string(path.find(u"_one") != Text::npos ? "One" : "Two") +
                "\r\nReceived: from a by b; Tue, 3 Apr 2007 10:16:00 +0000\r\nDate: Tue, 3 Apr 2007 10:15:30 "
                "+0000\r\n\r\nText\r\n";
    // Known in another folder alone.
    const std::vector<std::vector<Text>> rows = RowsOf(*runs.saved.database);
    CreateSaved(runs.databaseFiles = {});
    runs.saved.database = OpenJetDatabase(runs.databaseFiles, kSavedPath);
    for (const auto& row : rows) AddRow(*runs.saved.database, {u"Elsewhere", row[1], row[2]});
    runs.Check(ComparisonType::file);
    EXPECT_EQ(
        RowsOf(*runs.saved.database, u"SELECT * FROM saved WHERE efolder='Local Folders\\Inbox'").size(), 2u);
}
