// DisturbedListsTest.cpp: lists that are empty for a moment, late or left, files that are cut short, and
// clients of another process.
#include "oe/WindowDiscovery.h"
#include "tests/support/ExportBench.h"

namespace {

struct Bench : FoldersBench {
    explicit Bench(int emails = 6)
        : FoldersBench(emails, {{u"Other", 2, {MailRow(u"Letter"), MailRow(u"Reply")}}, {u"Empty", 2, {}}})
    {
    }
    bool TellsOfARest() const
    {
        return Logged(u" more were not looked at.") || Logged(u" folder(s) were not checked.");
    }
};

} // namespace

TEST(DisturbedLists, AFolderThatIsLeftInMidRunIsNotDone)
{
    for (const int other : {3, 4}) {
        Bench bench;
        const auto note = bench.fake.onSave;
        bench.fake.onSave = [&](int saves) {
            note(saves);
            if (saves == 3) bench.fake.ShowFolder(other);
        };
        bench.Export();
        EXPECT_TRUE(bench.TellsOfARest()) << ToUtf8(bench.view.log.back());
        EXPECT_FALSE(bench.flags.runCompleted);
    }
}

TEST(DisturbedLists, AFolderThatIsNotShownIsNotEmpty)
{
    Bench bench;
    bench.fake.ShowFolder(3);
    FindOeHandles(bench.client);
    bench.fake.onMessage = At(message::kKeyUp, 1, [&] { bench.fake.ShowFolder(4); });
    bench.SaveAll();
    EXPECT_FALSE(bench.Logged(u"Inbox - empty."));
    EXPECT_TRUE(bench.TellsOfARest()) << ToUtf8(bench.view.log.back());
}

TEST(DisturbedLists, ACheckOfAListThatIsEmptyForAMomentFindsNotAllSaved)
{
    for (const auto& [all, last] : {std::pair{false, 3}, {false, 8}, {true, 3}}) {
        Bench bench;
        bench.Export();
        bench.Mail().push_back(MailRow(u"New"));
        const auto mail = bench.Mail();
        bench.fake.onMessage = [&, until = last, counts = 0](WindowHandle, std::uint32_t message) mutable {
            if (message != message::kListItemCount) return;
            ++counts;
            bench.Mail() = counts >= 2 && counts <= until ? std::vector<std::vector<Text>>() : mail;
        };
        bench.view.options.comparison = ComparisonType::database;
        if (all) {
            bench.SaveAll();
            EXPECT_TRUE(bench.TellsOfARest() || bench.rows.size() == 9) << ToUtf8(bench.view.log.back());
        } else {
            bench.view.log.clear();
            CheckFolder(bench.run);
            EXPECT_FALSE(bench.Logged(u"All emails have been saved.")) << ToUtf8(bench.view.log.back());
        }
    }
}

TEST(DisturbedLists, AListThatComesLaterThanTheTreesMarkIsNotThatFolders)
{
    Bench bench;
    bench.fake.folders[2].name = u"Other"; // caption and list of the folder before, mark on the new one
    bench.fake.folders[2].rows = bench.fake.folders[3].rows;
    bench.fake.ShowFolder(2);
    bench.fake.folders[2].name = u"Inbox";
    bench.Export();
    EXPECT_TRUE(bench.contents.empty()) << ToUtf8(bench.contents[0].first) << " holds a letter of Other";
}

TEST(DisturbedLists, AClientThatEndsInTheMiddleOfAFileHasNotSavedIt)
{
    for (const bool closes : {true, false}) {
        Bench bench(3);
        bench.fake.onSave = [&](int saves) {
            if (saves != 2) return;
            bench.files.AddFile(bench.fake.saved.back().first, ""); // made, and not a byte written
            if (closes)
                bench.fake.Close();
            else
                bench.fake.FallSilent(2'000'000'000);
        };
        bench.Export();
        EXPECT_EQ(bench.rows.size(), 1u);
    }
}

TEST(DisturbedLists, AnotherClientsItemsAreNotSelectedAndNoBoxStandsForEachFolder)
{
    Bench bench;
    bench.client.treeProcessId += 1;
    int selects = 0;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        selects += message == message::kTreeSelectItem;
    };
    bench.SaveAll();
    EXPECT_EQ(selects, 0) << "items are addresses in the other process";
    EXPECT_LE(bench.view.boxes.size(), 1u);

    Bench unknown; // a folder that was made since is clicked
    unknown.fake.ShowFolder(3);
    FindOeHandles(unknown.client);
    unknown.SaveAll([&] {
        unknown.fake.onMessage = At(message::kKeyUp, 1, [&] {
            unknown.fake.folders.push_back({u"Made since", 2, {}, 0x00370000});
            unknown.fake.ShowFolder(5);
        });
    });
    EXPECT_TRUE(unknown.view.boxes.empty()) << "the run stands until it is pressed";
}

TEST(DisturbedLists, ThePartOfAFileThatAFullDiskLeavesIsNoSavedEmail)
{
    Bench bench(1);
    bench.fake.boxes = {{u"Disk full", {u"OK"}, false, false, true}};
    bench.Export();
    EXPECT_TRUE(bench.files.files.empty());
    bench.view.options.comparison = ComparisonType::simple;
    CheckFolder(bench.run);
    EXPECT_FALSE(bench.Logged(u"All emails have been saved."));
}

TEST(DisturbedLists, AListThatChangesInItsMiddleIsReadOnceMore)
{
    for (int nth = 1; nth < 60; ++nth) {
        Bench bench;
        bench.Export();
        bench.Mail().insert(bench.Mail().begin() + 3, MailRow(u"New")); // 0 1 2 New 3 4 5
        bench.fake.onMessage =
            At(message::kListItemW, nth, [&] { std::swap(bench.Mail()[2], bench.Mail()[3]); });
        bench.view.options.comparison = ComparisonType::database;
        bench.view.log.clear();
        CheckFolder(bench.run);
        EXPECT_FALSE(bench.Logged(u"All emails have been saved.")) << nth;
    }
}

TEST(DisturbedLists, WhatComesBehindTheSecondReadingCountsAsNotSaved)
{
    Bench bench;
    bench.Export();
    bench.fake.onMessage = [&, counts = 0](WindowHandle, std::uint32_t message) mutable {
        if (message != message::kListItemCount) return;
        if (++counts == 3) std::reverse(bench.Mail().begin(), bench.Mail().end());
        if (counts == 5) bench.Mail().push_back(MailRow(u"New"));
    };
    bench.Check();
    EXPECT_TRUE(bench.Logged(u"what has come counts as not saved"));
    EXPECT_TRUE(bench.Logged(u"Inbox has 5 saved email(s). 2 email(s) not saved."))
        << "nor does the first row";
}

TEST(DisturbedLists, AListThatIsAnothersBehindTheSameMarkIsNotSaved)
{
    Bench bench;
    const auto note = bench.fake.onSave;
    bench.fake.keepsList = true;
    bench.fake.onSave = [&](int saves) {
        note(saves);
        if (saves != 1) return;
        bench.fake.folders[2].name = u"Other"; // the mark is on the Inbox again, caption and list are not
        bench.fake.folders[2].rows = bench.fake.folders[3].rows;
        bench.fake.ShowFolder(2);
        bench.fake.folders[2].name = u"Inbox";
    };
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 1u);
}

TEST(DisturbedLists, AnUnreadRowThatHasGoneWasNotReached)
{
    Bench bench;
    bench.fake.unread = {2};
    bench.fake.onMessage = At(message::kKeyDown, 6, [&] {
        bench.Mail().erase(bench.Mail().begin() + 2);
        bench.fake.unread.clear();
    });
    bench.Export();
    EXPECT_TRUE(bench.Logged(u"1 e-mail(s) were not reached."));
}
