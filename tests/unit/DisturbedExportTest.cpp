// DisturbedExportTest.cpp: an export beside a user who clicks and mail that comes and goes. Whatever happens,
// every file holds the e-mail that its name and record say (RunBench), what was missed is told, and one more,
// undisturbed run completes the folder.
#include "tests/support/RunBench.h"

namespace {

using Disturb = std::function<void(RunBench&)>;

void SelectSubject(RunBench& bench, const Text& subject)
{
    for (std::size_t row = 0; row < bench.Mail().size(); ++row)
        if (bench.Mail()[row][2] == subject) bench.fake.selected = {static_cast<int>(row)};
}

// The selection stays with its e-mail.
void SortAnew(RunBench& bench)
{
    const int row = bench.fake.selected.empty() ? 0 : *bench.fake.selected.begin();
    std::reverse(bench.Mail().begin(), bench.Mail().end());
    bench.fake.selected = {static_cast<int>(bench.Mail().size()) - 1 - row};
}

} // namespace

TEST(DisturbedExport, WhatALoopMissedIsFoundByWhatTheRowsHold)
{
    const struct {
        const char* why;
        int begin;
        Disturb disturb; // behind the third e-mail
    } cases[] = {
        {"one goes and one comes on top", 0,
         [](RunBench& b) {
             b.Mail().pop_back();
             b.Mail().insert(b.Mail().begin(), MailRow(u"NewTop"));
             SelectSubject(b, u"Mail2");
         }},
        {"the selected one goes", 0, [](RunBench& b) { b.Mail().erase(b.Mail().begin() + 2); }},
        {"sorted anew", 0, SortAnew},
        {"sorted anew in a run that began in the middle", 1, SortAnew},
    };
    for (const auto& c : cases) {
        RunBench bench;
        bench.fake.selected = {c.begin};
        bench.fake.onMessage = At(message::kKeyDown, 3, [&] { c.disturb(bench); });
        bench.Export();
        const auto missing =
            std::count_if(bench.Mail().begin() + c.begin, bench.Mail().end(),
                          [&](const std::vector<Text>& mail) { return !bench.IsStored(mail[2]); });
        const Text number = DecimalText(missing);
        EXPECT_EQ(bench.Logged(number + u" e-mail(s) were not reached."), missing > 0) << c.why;
        EXPECT_EQ(bench.Logged(number + u" more were not looked at."), missing > 0) << c.why;
        EXPECT_EQ(bench.flags.runCompleted, missing == 0) << c.why;
        bench.ExpectLog(c.why, {}, {u"look exactly like"});
    }
}

TEST(DisturbedExport, AListThatGrewBeforeAStopIsCountedAgain)
{
    RunBench bench;
    bench.fake.onMessage = At(message::kKeyDown, 2, [&] {
        bench.Mail().push_back(MailRow(u"Late"));
        bench.Stop();
    });
    bench.Export();
    EXPECT_EQ(bench.view.log.back(), Closing(2, 2, 5));
    bench.ExpectLog("a stop is no miss", {}, {u"were not reached"});
}

TEST(DisturbedExport, ASelectionThatNeverRestsIsNotRead)
{
    RunBench bench;
    bench.fake.onMessage = AtEach(
        message::kListItemW, [&](int) { bench.fake.selected = {(*bench.fake.selected.begin() + 1) % 6}; });
    bench.Export();
    bench.ExpectLog("none is tried", {u" skipped: could not be read"});
    EXPECT_EQ(bench.fake.Asks(), 0u);
}

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

TEST(DisturbedExport, WhatReadingLeavesBehindIsSweptOnTheWay)
{
    RunBench bench(300);
    std::size_t most = 0;
    bench.fake.onMessage =
        AtEach(message::kKeyDown, [&](int) { most = std::max(most, bench.fake.LiveBlocks()); });
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 300u);
    EXPECT_LT(most, 64u * 10) << "64 KB each in a client of 32 bits";
}

TEST(DisturbedExport, AHeaderThatDoesNotAnswerIsNoListOfOneColumn)
{
    RunBench bench;
    bench.fake.silentHeader = true;
    bench.Export();
    EXPECT_TRUE(bench.fake.saved.empty() && !bench.flags.runCompleted);
    bench.ExpectLog("not known to lack one", {u"6 skipped: could not be read"}, {u"has no column titled"});
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) { // its order is answered, its titles not
        if (message == message::kListColumnOrder) bench.fake.silentHeader = false;
        if (message == message::kHeaderItemA) bench.fake.silentHeader = true;
    };
    bench.fake.selected = {0};
    bench.Export();
    bench.ExpectLog("no titles", {u"6 skipped: could not be read"});
    bench.fake.onMessage = nullptr;
    bench.fake.silentHeader = false;
    bench.fake.columnTitles.assign(6, u"");
    bench.fake.selected = {0};
    ExportFolder(bench.run, false); // without a subject in the file's name
    bench.ExpectLog("empty titles",
                    {u"The message list has no column titled: From, Subject, Received, Sent, To"});
    EXPECT_EQ(bench.fake.saved.size(), 1u) << "column 0 for each, so all look alike";

    for (int nth = 1; nth < 12; ++nth) { // no column for a moment makes no other identity
        RunBench moment;
        const Texts titles = moment.fake.columnTitles;
        moment.fake.onMessage = AtEach(message::kHeaderItemCount, [&](int count) {
            moment.fake.columnTitles = count == nth ? Texts() : titles;
        });
        moment.Export();
        moment.fake.columnTitles = titles;
        moment.ExpectRestIsSaved(std::to_string(nth));
    }
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
    bench.rows.push_back(bench.rows[1]); // two records: both look-alikes are known to be saved
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
