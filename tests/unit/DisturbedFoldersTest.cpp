// DisturbedFoldersTest.cpp: the folder that is not the one that was asked for, the client that was started
// anew: no e-mail is stored in a wrong folder (RunBench), and none is missed without a word.
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/RunBench.h"

namespace {

const Text kMeanwhile = u"Outlook Express shows another folder meanwhile; this one ";
const Text kRest = u" more were not looked at.";

// The mark is on the Inbox, caption and list are another's.
void MarkInboxAlone(RunBench& bench)
{
    bench.fake.folders[2].name = u"Other";
    bench.fake.folders[2].rows = bench.fake.folders[3].rows;
    bench.fake.ShowFolder(2);
    bench.fake.folders[2].name = u"Inbox";
}

} // namespace

TEST(DisturbedFolders, AFolderThatIsLeftInMidRunIsNotDone)
{
    const struct {
        const char* why;
        bool keepsList;
        int afterSaves;
        std::function<void(RunBench&)> leave;
        std::size_t saved;
    } cases[] = {
        {"another in the same list", true, 1, [](RunBench& b) { b.fake.ShowFolder(3); }, 1},
        {"a list of its own", false, 3, [](RunBench& b) { b.fake.ShowFolder(3); }, 3},
        {"an empty one", false, 3,
         [](RunBench& b) {
             b.fake.folders[4].rows.clear();
             b.fake.ShowFolder(4);
         },
         3},
        {"behind the same mark", true, 1, MarkInboxAlone, 1},
    };
    for (const auto& c : cases) {
        RunBench bench;
        bench.fake.keepsList = c.keepsList;
        bench.AfterSave(c.afterSaves, [&] { c.leave(bench); });
        bench.Export();
        EXPECT_EQ(bench.rows.size(), c.saved) << c.why;
        EXPECT_EQ(bench.fake.saved.size(), c.saved) << c.why;
        EXPECT_FALSE(bench.flags.runCompleted && bench.Logged(u"; 0 are not.")) << c.why;
        EXPECT_TRUE(bench.Logged(kRest) || !bench.Logged(u"; 0 are not.")) << c.why;
    }
    RunBench late; // the list comes later than the mark
    MarkInboxAlone(late);
    late.Export();
    EXPECT_TRUE(late.fake.saved.empty());
}

TEST(DisturbedFolders, AFolderThatIsNotKnownIsNotTheRoot)
{
    for (const int nth : {1, 2, 3}) {
        RunBench bench;
        bench.fake.onMessage = At(message::kTreeNextItem, nth, [&] { bench.fake.folders[2].item = 0x123; });
        bench.Export();
        for (const auto& row : bench.rows) EXPECT_EQ(row.at(u"efolder"), kInbox) << nth;
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

TEST(DisturbedFolders, AClickOnAnotherFolderRightAfterTheChange)
{
    const struct {
        const char* why;
        bool inCheck;
        std::function<void(RunBench&)> click;
        Texts says, saysNot;
    } cases[] = {
        {"before the export",
         false,
         [](RunBench& b) { b.fake.ShowFolder(4); },
         {kMeanwhile + u"was not exported.", kRest},
         {}},
        {"before the check: the folder is not empty",
         true,
         [](RunBench& b) {
             b.fake.folders[4].rows.clear();
             b.fake.ShowFolder(4);
         },
         {u" folder(s) were not checked."},
         {u"Inbox - empty."}},
        {"on one that was made since",
         false,
         [](RunBench& b) {
             b.fake.folders.push_back({u"Made since", 2, {}, 0x00370000});
             b.fake.ShowFolder(5);
         },
         {},
         {}},
    };
    for (const auto& c : cases) {
        RunBench bench;
        bench.fake.ShowFolder(3);
        FindOeHandles(bench.client);
        const auto click = [&] { bench.fake.onMessage = At(message::kKeyUp, 1, [&] { c.click(bench); }); };
        if (c.inCheck) click();
        bench.SaveAll([&] {
            if (!c.inCheck) click();
        });
        bench.ExpectLog(c.why, c.says, c.saysNot);
        EXPECT_TRUE(bench.view.boxes.empty()) << c.why << ": the run stands until it is pressed";
        bench.fake.onMessage = nullptr;
        bench.SaveAll();
        std::size_t all = 0;
        for (const std::size_t folder : {2, 3, 4}) all += bench.fake.folders[folder].rows.size();
        EXPECT_EQ(bench.rows.size(), all) << c.why;
    }
}

TEST(DisturbedFolders, AListThatWasMadeAnewWhileNobodyLookedIsFound)
{
    RunBench bench; // the handles of the folder before are dead
    bench.fake.ShowFolder(3);
    bench.Export();
    EXPECT_EQ(bench.fake.saved.size(), 2u);
    bench.fake.ShowFolder(2);
    bench.files.AddFile(kDirectory + u"0000.eml");
    bench.files.directories.insert(FakeFiles::Key(kDirectory));
    bench.Check();
    bench.ExpectLog("check", {u"Inbox has 0 saved email(s). 6 email(s) not saved."});
    bench.fake.ShowFolder(2);
    bench.CheckAll();
    bench.ExpectLog("in the folder that is shown already, too", {}, {kSilent});
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
