// DisturbedFoldersTest.cpp: the list that is not what it was, the folder that is not the one that was asked
// for, the client that was started anew: no e-mail is stored in a wrong folder, and none is missed without a
// word.
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/ExportBench.h"

namespace {

struct Bench : FoldersBench {
    explicit Bench(int emails = 6)
        : FoldersBench(emails, {{u"Other", 2, {MailRow(u"Letter"), MailRow(u"Reply")}},
                                {u"Last", 2, {MailRow(u"Note")}}})
    {
    }
    bool IsGreen() const
    {
        return std::any_of(view.marks.begin(), view.marks.end(),
                           [](const auto& mark) { return mark.second == u"green"; });
    }
    // Every file lies in the directory of the folder that its e-mail is in.
    bool AllInTheirFolders() const
    {
        return std::all_of(contents.begin(), contents.end(), [this](const auto& file) {
            const bool mail = file.second.starts_with(u"Mail") || file.second.starts_with(u"New");
            return mail == (file.first.find(u"\\Inbox\\") != Text::npos);
        });
    }
};

} // namespace

TEST(DisturbedFolders, AFolderThatIsNotKnownIsNotTheRoot)
{
    for (const int nth : {1, 2, 3}) {
        Bench bench;
        bench.fake.onMessage = At(message::kTreeNextItem, nth, [&] { bench.fake.folders[2].item = 0x123; });
        bench.Export();
        EXPECT_TRUE(bench.AllInTheirFolders()) << nth;
        for (const auto& row : bench.rows) EXPECT_EQ(row.at(u"efolder"), u"Local Folders\\Inbox") << nth;
    }
    // Another client, whose items have the same numbers for other folders.
    Bench restarted;
    restarted.client.treeProcessId += 1;
    restarted.Export();
    EXPECT_TRUE(restarted.fake.saved.empty());
    EXPECT_EQ(restarted.view.boxes.back(), u"Please ensure a folder has been selected in Outlook Express");
}

TEST(DisturbedFolders, AnotherFolderInTheSameListIsNotThisOnes)
{
    Bench bench;
    bench.fake.keepsList = true;
    const auto note = bench.fake.onSave;
    bench.fake.onSave = [&](int saves) {
        note(saves);
        if (saves == 1) bench.fake.ShowFolder(3);
    };
    bench.Export();
    EXPECT_TRUE(bench.AllInTheirFolders());
    EXPECT_EQ(bench.rows.size(), 1u);
    EXPECT_FALSE(bench.Logged(u"; 0 are not."));

    Bench checked;
    checked.Export();
    checked.fake.keepsList = true;
    checked.fake.onMessage = At(message::kListItemW, 5, [&] { checked.fake.ShowFolder(3); });
    checked.Check();
    EXPECT_TRUE(checked.Logged(u"Outlook Express shows another folder meanwhile; this one has no result."));
    EXPECT_FALSE(checked.Logged(u"saved email(s)"));
    EXPECT_FALSE(checked.IsGreen());
}

TEST(DisturbedFolders, AClickOnAnotherFolderRightAfterTheChange)
{
    Bench bench;
    bench.SaveAll([&] { bench.fake.onMessage = At(message::kKeyUp, 1, [&] { bench.fake.ShowFolder(4); }); });
    EXPECT_TRUE(bench.AllInTheirFolders());
    EXPECT_TRUE(bench.Logged(u"Outlook Express shows another folder meanwhile; this one was not exported."));
    EXPECT_TRUE(bench.Logged(u"more were not looked at."));
    bench.fake.onMessage = nullptr;
    bench.SaveAll();
    EXPECT_EQ(bench.rows.size(), 9u);
}

TEST(DisturbedFolders, WhereADialogWasWrittenOffTheFileTellsWhoseItIs)
{
    // The dialog of the first e-mail comes after 70 s, just when the second one of another is waited for.
    for (int third = 3500; third <= 4500; third += 100) {
        Bench bench(5);
        bench.fake.dialogDelays = {70'000, 1000, third, 1000, third};
        bench.Export();
        EXPECT_EQ(bench.Mislabelled(), 0) << third;
        for (const auto& row : bench.rows)
            EXPECT_TRUE(std::any_of(bench.contents.begin(), bench.contents.end(), [&](const auto& file) {
                return file.second == row.at(u"esubject") && bench.files.FileExists(file.first);
            })) << third;
        bench.client.saveDialog = {};
        bench.fake.selected = {0};
        bench.Export();
        EXPECT_EQ(bench.rows.size(), 5u) << third;
    }
}

TEST(DisturbedFolders, AHeaderThatCountsNothingMakesNoIdentity)
{
    for (int nth = 1; nth < 12; ++nth) {
        Bench bench;
        bench.fake.onMessage = [&, count = 0](WindowHandle, std::uint32_t message) mutable {
            if (message != message::kHeaderItemCount) return;
            static const std::vector<Text> titles = bench.fake.columnTitles;
            bench.fake.columnTitles = ++count == nth ? std::vector<Text>() : titles;
        };
        bench.Export();
        bench.fake.onMessage = nullptr;
        bench.fake.columnTitles = {u"!", u"From", u"Subject", u"Received", u"Sent", u"To"};
        bench.fake.selected = {0};
        bench.Export();
        EXPECT_EQ(bench.rows.size(), 6u) << nth << ": each once, under one identity";
    }
}

TEST(DisturbedFolders, WhatALoopMissedIsFoundByWhatTheRowsHold)
{
    struct Case {
        const char* why;
        int begin;
        std::function<void(Bench&)> disturb; // behind the third e-mail
    };
    const auto select = [](Bench& b, const Text& subject) {
        for (std::size_t row = 0; row < b.Mail().size(); ++row)
            if (b.Mail()[row][2] == subject) b.fake.selected = {static_cast<int>(row)};
    };
    const Case cases[] = {
        {"one goes and one comes on top", 0,
         [select](Bench& b) {
             b.Mail().pop_back();
             b.Mail().insert(b.Mail().begin(), MailRow(u"NewTop"));
             select(b, u"Mail2");
         }},
        {"the selected one goes", 0, [](Bench& b) { b.Mail().erase(b.Mail().begin() + 2); }},
        {"sorted anew", 0,
         [select](Bench& b) {
             std::reverse(b.Mail().begin(), b.Mail().end());
             select(b, u"Mail2");
         }},
        {"sorted anew in a run that began in the middle", 1,
         [select](Bench& b) {
             std::reverse(b.Mail().begin(), b.Mail().end());
             select(b, u"Mail3");
         }},
    };
    for (const Case& c : cases) {
        Bench bench;
        bench.fake.selected = {c.begin};
        bench.fake.onMessage = At(message::kKeyDown, 3, [&] { c.disturb(bench); });
        bench.Export();
        bench.fake.onMessage = nullptr;
        int missing = 0;
        for (std::size_t row = static_cast<std::size_t>(c.begin); row < bench.Mail().size(); ++row)
            missing += std::none_of(bench.contents.begin(), bench.contents.end(),
                                    [&](const auto& file) { return file.second == bench.Mail()[row][2]; });
        EXPECT_EQ(bench.Logged(DecimalText(missing) + u" e-mail(s) were not reached."), missing > 0) << c.why;
        EXPECT_EQ(bench.Logged(DecimalText(missing) + u" more were not looked at."), missing > 0) << c.why;
        EXPECT_EQ(bench.flags.runCompleted, missing == 0) << c.why;
        EXPECT_FALSE(bench.Logged(u"look exactly like")) << c.why;
    }
}

TEST(DisturbedFolders, ALookAlikeAboveTheFirstRowHasTheRecord)
{
    Bench bench(3);
    bench.Mail().push_back(MailRow(u"Mail1"));
    bench.Export();
    bench.fake.selected = {2};
    bench.Export();
    EXPECT_EQ(bench.view.log.back(), u"1 of 2 e-mail(s) handled in this run are saved; 1 are not.");
}

TEST(DisturbedFolders, ACheckOfAListThatWasSortedAnewIsReadOnceMore)
{
    Bench bench;
    bench.Export();
    bench.Mail().push_back(MailRow(u"New"));
    bench.fake.onMessage =
        At(message::kListItemW, 24, [&] { std::reverse(bench.Mail().begin(), bench.Mail().end()); });
    bench.Check();
    EXPECT_TRUE(bench.Logged(u"it is read once more"));
    EXPECT_TRUE(bench.Logged(u"Not saved 0 - New"));

    Bench filling; // and is not read when it has been read twice
    filling.Export();
    int cells = 0;
    filling.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kListItemW && ++cells % 40 == 0) filling.Mail().push_back(MailRow(u"New"));
    };
    filling.Check();
    EXPECT_FALSE(filling.Logged(u"All emails have been saved."));
    EXPECT_FALSE(filling.IsGreen());
}

TEST(DisturbedFolders, FoldersThatTheCheckDidNotComeToAreNamed)
{
    Bench stopped;
    stopped.view.onEvents = [&] {
        if (stopped.Logged(u"Inbox - has all 6 emails to be exported.") && !stopped.Logged(u"Exporting"))
            stopped.flags.stopAfterFolder = stopped.flags.stopRequested = true;
    };
    stopped.SaveAll([&] { stopped.view.onEvents = nullptr; });
    EXPECT_TRUE(stopped.Logged(u"2 folder(s) were not checked."));
    EXPECT_EQ(stopped.view.log.back(), u"6 of 6 e-mail(s) handled in this run are saved; 0 are not.");

    Bench failed; // the second folder is never shown
    failed.SaveAll([&] { failed.view.log.clear(); });
    failed.rows.clear();
    failed.files.files.clear();
    failed.fake.onMessage = At(message::kTreeSelectItem, 4, [&] { failed.fake.refreshAfter = 100'000; });
    failed.SaveAll();
    EXPECT_TRUE(failed.Logged(u"Outlook Express failed to change folders."));
    EXPECT_TRUE(failed.Logged(u"folder(s) were not checked."));
    EXPECT_TRUE(failed.view.log.back().find(u" e-mail(s) handled in this run") != Text::npos);

    Bench lost; // the client does not come back: no second box
    lost.fake.onMessage = At(message::kListItemCount, 1, [&] { lost.fake.FallSilent(2'000'000'000); });
    lost.SaveAll();
    EXPECT_EQ(lost.view.boxes, std::vector<Text>{kSilent});
    EXPECT_TRUE(lost.Logged(u"3 folder(s) were not checked."));
}

TEST(DisturbedFolders, AFolderWhoseExportEndsBeforeItWasCountedIsNotLookedAt)
{
    for (const std::uint32_t kind : {message::kTreeNextItem, message::kListItemCount})
        for (int nth = 1; nth < 16; ++nth) {
            Bench bench;
            bench.SaveAll(
                [&] { bench.fake.onMessage = At(kind, nth, [&] { bench.fake.FallSilent(2'000'000'000); }); });
            if (!bench.Logged(kSilent)) continue;
            int saved = -1, handled = -1, unsaved = -1, rest = 0;
            const std::string line = ToUtf8(bench.view.log.back());
            EXPECT_GE(std::sscanf(line.c_str(),
                                  "%d of %d e-mail(s) handled in this run are saved; %d are not. %d more",
                                  &saved, &handled, &unsaved, &rest),
                      3)
                << line;
            EXPECT_EQ(handled + rest, 9) << line;
            EXPECT_EQ(std::count(bench.view.boxes.begin(), bench.view.boxes.end(), kSilent), 1);
        }
}

TEST(DisturbedFolders, ACountOfNothingIsNotBelievedAtOnce)
{
    Bench bench;
    const auto mail = bench.Mail();
    const auto fillSoon = [&] {
        bench.Mail().clear();
        bench.view.onEvents = [&, began = bench.fake.sleptMilliseconds] {
            if (bench.fake.sleptMilliseconds - began > 600) bench.Mail() = mail;
        };
    };
    fillSoon();
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 6u);
    EXPECT_TRUE(bench.view.boxes.empty());
    fillSoon();
    bench.Check(ComparisonType::simple);
    EXPECT_TRUE(bench.Logged(u"Inbox has 6 saved email(s). All emails have been saved."));
}

TEST(DisturbedFolders, ABoxThatStoodInTheWayIsForgottenByTheNextRun)
{
    Bench bench(30);
    const auto note = bench.fake.onSave;
    bench.fake.onSave = [&](int saves) {
        note(saves);
        bench.fake.blocked = saves == 3;
    };
    bench.Export();
    EXPECT_TRUE(bench.Logged(kSilent));
    bench.fake.blocked = false;
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 30u);
}

TEST(DisturbedFolders, AClientThatComesBackInAFolderChangeDoesNotEndTheRun)
{
    for (int nth = 1; nth < 20; ++nth) {
        Bench bench;
        bench.fake.onMessage = [&, count = 0](WindowHandle, std::uint32_t) mutable {
            if (++count == 40 + nth * 3) bench.fake.FallSilent(61'000);
        };
        EXPECT_TRUE(ChangeFolder(bench.client, 3, u"Other"));
        bench.fake.ShowFolder(2);
        FindOeHandles(bench.client);
        bench.flags = {};
        bench.fake.onMessage = At(nth % 2 ? message::kTreeSelectItem : message::kListHeader, 1 + nth % 3,
                                  [&] { bench.fake.FallSilent(61'000); });
        EXPECT_TRUE(ChangeFolder(bench.client, 3, u"Other")) << nth;
    }
}

TEST(DisturbedFolders, ClosingIsNotHeldUpByAClientThatIsSilent)
{
    for (const std::uint32_t kind :
         {message::kKeyDown, message::kTreeSelectItem, message::kListItemW, std::uint32_t{0}}) {
        Bench bench;
        int asked = 0;
        bench.fake.onMessage = At(kind, 3, [&] { bench.fake.FallSilent(2'000'000'000); });
        bench.view.onEvents = [&] {
            if (asked != 0 || bench.fake.sleptMilliseconds < 5'000) return;
            asked = bench.fake.sleptMilliseconds;
            bench.flags.closing = bench.flags.stopAfterEmail = bench.flags.stopAfterFolder = true;
            bench.flags.stopRequested = true;
        };
        if (kind == message::kTreeSelectItem)
            bench.SaveAll();
        else
            bench.Export();
        if (asked == 0) continue;
        const int limit =
            kind == message::kListItemW ? 70'000 : 10'000; // a question under way has its minute
        EXPECT_LT(bench.fake.sleptMilliseconds - asked, limit) << kind;
        EXPECT_TRUE(bench.view.boxes.empty()) << kind;
    }
}
