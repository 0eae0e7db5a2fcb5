// DisturbedExportTest.cpp: an export beside a user who clicks, mail that comes and goes, and a client that is
// slow or silent. Whatever happens: every file holds the e-mail that its name and record say, the closing
// line agrees with the disk, and one more, undisturbed run completes the folder.
#include "folders/ExportFolder.h"
#include "folders/Synchronise.h"
#include "oe/RemoteControls.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/MemoryDatabase.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

const Text kSilent = u"Outlook Express has stopped responding - please restart Outlook Express.";
constexpr std::uint32_t kSetText = 0x000C;
const Text kFolder = u"C:\\Store\\Local Folders\\Inbox\\";

struct Bench : OeBench {
    explicit Bench(int emails = 6)
        : OeBench({{u"Outlook Express", 0, {}}, {u"Local Folders", 1, {}}, {u"Inbox", 2, {}}})
    {
        for (int i = 0; i < emails; ++i) Mail().push_back(MailRow(u"Mail" + DecimalText(i)));
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        saved.database = std::make_unique<MemoryDatabase>(rows);
        fake.ShowFolder(2);
        // The e-mail that a Save dialog has taken, as its file's bytes.
        fake.onSave = [this](int) { NoteSaved(); };
        Synchronise(run);
        view.log.clear();
    }
    std::vector<std::vector<Text>>& Mail() { return fake.folders[2].rows; }

    void Export()
    {
        view.log.clear();
        flags = {};
        flags.runCompleted = true;
        ExportFolder(run, false);
        CheckClosingLine();
    }
    bool Logged(TextView words) const
    {
        return std::any_of(view.log.begin(), view.log.end(),
                           [words](const Text& line) { return line.find(words) != Text::npos; });
    }
    // Files whose name says another subject than the e-mail that was saved into them.
    int Mislabelled() const
    {
        return static_cast<int>(std::count_if(contents.begin(), contents.end(), [](const auto& file) {
            return file.first.find(u"_" + file.second) == Text::npos;
        }));
    }
    // A record for each file and a file for each record.
    void ExpectRecordsAgree() const
    {
        std::multiset<Text> recorded, stored;
        for (const auto& row : rows) recorded.insert(row.at(u"esubject"));
        for (const auto& [path, subject] : contents) stored.insert(subject);
        EXPECT_EQ(recorded, stored);
    }

    MemoryRows rows;
    SavedEmails saved;
    FolderRun run{client, saved, view};
    std::vector<std::pair<Text, Text>> contents; // path, subject of the e-mail in it

private:
    void NoteSaved()
    {
        const auto& [path, row] = fake.saved.back();
        contents.emplace_back(path, Mail()[static_cast<std::size_t>(row)][2]);
    }
    // N of M saved, K not, U not looked at: held against disk, records and list by other means.
    void CheckClosingLine()
    {
        int saves = -1, handled = -1, unsaved = -1, rest = 0;
        const std::string line = ToUtf8(view.log.empty() ? Text() : view.log.back());
        const int read = std::sscanf(
            line.c_str(), "%d of %d e-mail(s) handled in this run are saved; %d are not. %d more were not",
            &saves, &handled, &unsaved, &rest);
        if (read < 3) {
            EXPECT_FALSE(Logged(u"-- Exporting")) << "no closing line: " << line;
            return;
        }
        EXPECT_EQ(saves + unsaved, handled) << line;
        EXPECT_LE(static_cast<std::size_t>(saves), rows.size()) << line;
        EXPECT_LE(static_cast<std::size_t>(saves), files.files.size()) << line;
        if (rest > 0 || unsaved > 0 || handled < static_cast<int>(Mail().size())) return;
        for (const auto& mail : Mail()) EXPECT_TRUE(IsStored(mail[2])) << line << ": " << ToUtf8(mail[2]);
    }
    bool IsStored(const Text& subject) const
    {
        return std::any_of(contents.begin(), contents.end(),
                           [&](const auto& file) { return file.second == subject; });
    }
};

// Does something at the n-th message of a kind that reaches the list (0: at none).
std::function<void(WindowHandle, std::uint32_t)> At(Bench& bench, std::uint32_t kind, int nth,
                                                    std::function<void()> what)
{
    auto count = std::make_shared<int>(0);
    return [&bench, kind, nth, what = std::move(what), count](WindowHandle, std::uint32_t message) {
        if (message == kind && ++*count == nth) what();
        (void)bench;
    };
}

} // namespace

TEST(DisturbedExport, WhateverMovesInTheListNoEmailIsMislabelled)
{
    struct Case {
        const char* why;
        std::function<void(Bench&)> disturb;
    };
    const Case cases[] = {
        {"a click on another row", [](Bench& b) { b.fake.selected = {4}; }},
        {"two rows selected",
         [](Bench& b) {
             b.fake.selected = {1, 4};
         }},
        {"none selected", [](Bench& b) { b.fake.selected.clear(); }},
        {"mail arrives on top",
         [](Bench& b) {
             b.Mail().insert(b.Mail().begin(), MailRow(u"New"));
             const int row = b.fake.selected.empty() ? 0 : *b.fake.selected.begin() + 1;
             b.fake.selected = {row};
         }},
        {"the e-mail above goes",
         [](Bench& b) {
             const int row = b.fake.selected.empty() ? 0 : *b.fake.selected.begin();
             if (row == 0) return;
             b.Mail().erase(b.Mail().begin());
             b.fake.selected = {row - 1};
         }},
        {"the list is sorted anew, the selection stays with its e-mail",
         [](Bench& b) {
             std::reverse(b.Mail().begin(), b.Mail().end());
             const int row = b.fake.selected.empty() ? 0 : *b.fake.selected.begin();
             b.fake.selected = {static_cast<int>(b.Mail().size()) - 1 - row};
         }},
    };
    const std::uint32_t kinds[] = {message::kListNextItem,  message::kListItemW,
                                   message::kHeaderItemA,   message::kKeyDown,
                                   message::kListItemCount, message::kListSelectedCount};
    for (const Case& c : cases) {
        for (const std::uint32_t kind : kinds) {
            for (int nth = 1; nth < 40; ++nth) {
                Bench bench;
                // Not behind the dialog: it is modal.
                bench.fake.onMessage = At(bench, kind, nth, [&] {
                    if (bench.fake.Find(u"#32770") == 0) c.disturb(bench);
                });
                bench.Export();
                bench.fake.onMessage = nullptr;
                EXPECT_EQ(bench.Mislabelled(), 0) << c.why << ", message " << kind << " for the " << nth;
                EXPECT_FALSE(bench.Logged(u"FAIL: -1 ")) << c.why << ": no row is none to be saved";
                bench.ExpectRecordsAgree();
                bench.fake.selected = {0};
                bench.Export();
                EXPECT_TRUE(bench.flags.runCompleted);
                EXPECT_TRUE(bench.Logged(u"; 0 are not."))
                    << c.why << ", message " << kind << " for the " << nth;
                EXPECT_EQ(bench.Mislabelled(), 0) << c.why;
            }
        }
    }
}

TEST(DisturbedExport, ASelectionThatNeverRestsIsNotRead)
{
    Bench bench;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kListItemW) bench.fake.selected = {(*bench.fake.selected.begin() + 1) % 6};
    };
    bench.Export();
    EXPECT_TRUE(bench.Logged(u" skipped: could not be read"));
    EXPECT_EQ(bench.fake.Asks(), 0u) << "none is tried";
}

TEST(DisturbedExport, AClickWhileTheDialogIsOnItsWaySavesNothingUnderAnothersName)
{
    struct Case {
        std::set<std::int32_t> clicked;
        bool takesAtOpening;
    };
    for (const auto& [clicked, takesAtOpening] :
         {Case{{4}, false}, Case{{4}, true}, Case{{1, 4}, false}, Case{{1, 4}, true}}) {
        Bench bench;
        bench.fake.dialogDelays = {0, 900};
        bench.fake.takesAtOpening = takesAtOpening;
        bench.view.onEvents = [&] {
            if (bench.fake.Asks() == 2 && bench.fake.saved.size() == 1 && bench.fake.Find(u"#32770") == 0)
                bench.fake.selected = clicked;
        };
        bench.Export();
        bench.view.onEvents = nullptr;
        EXPECT_EQ(bench.Mislabelled(), 0);
        EXPECT_TRUE(bench.Logged(u"FAIL: "));
    }
}

TEST(DisturbedExport, RowsThatWereNotReachedAreTold)
{
    struct Case {
        const char* why;
        std::function<void(Bench&)> spoil;
        Text notReached, closing; // empty: whatever it is
    };
    const Case cases[] = {
        {"a client that ignores the Down key", [](Bench& b) { b.fake.ignoreDownKey = true; },
         u"5 e-mail(s) were not reached.",
         u"1 of 1 e-mail(s) handled in this run are saved; 0 are not. 5 more were not looked at."},
        {"one Down key is lost",
         [](Bench& b) {
             b.fake.onMessage = At(b, message::kKeyDown, 3, [&b] { b.fake.ignoreDownKey = true; });
             b.view.onEvents = [&b] {
                 b.fake.ignoreDownKey = b.fake.ignoreDownKey && b.fake.keys.size() < 3;
             };
         },
         u"1 e-mail(s) were not reached.",
         u"5 of 5 e-mail(s) handled in this run are saved; 0 are not. 1 more were not looked at."},
        {"the list grows while it is exported",
         [](Bench& b) {
             b.fake.onMessage = At(b, message::kKeyDown, 2, [&b] { b.Mail().push_back(MailRow(u"Late")); });
         },
         u"1 e-mail(s) were not reached.",
         u"6 of 6 e-mail(s) handled in this run are saved; 0 are not. 1 more were not looked at."},
        {"rows above the first one are none of those that were asked for",
         [](Bench& b) {
             b.fake.selected = {4};
             b.fake.onMessage = At(b, message::kKeyDown, 1, [&b] { b.fake.selected = {0}; });
         },
         u"1 e-mail(s) were not reached.", u""},
        {"an e-mail behind two skipped ones is read and goes",
         [](Bench& b) {
             b.fake.onMessage = [&b, keys = 0](WindowHandle, std::uint32_t message) mutable {
                 if (message != message::kKeyDown) return;
                 if (++keys == 2) b.fake.selected = {3};
                 if (keys == 6) b.Mail().pop_back();
             };
         },
         u"2 e-mail(s) were not reached.", u""},
    };
    for (const Case& c : cases) {
        Bench bench;
        c.spoil(bench);
        bench.Export();
        EXPECT_TRUE(bench.Logged(c.notReached)) << c.why;
        EXPECT_TRUE(c.closing.empty() || bench.view.log.back() == c.closing) << c.why;
        EXPECT_FALSE(bench.flags.runCompleted) << c.why << ": it has not ended after the last e-mail";
        EXPECT_FALSE(bench.Logged(u"look exactly like")) << c.why << ": no row looks like itself";
    }
    Bench middle;
    middle.fake.selected = {4};
    middle.Export();
    EXPECT_TRUE(middle.flags.runCompleted) << "begun in the middle it has reached all that it was asked to";
    EXPECT_EQ(middle.view.log.back(), u"2 of 2 e-mail(s) handled in this run are saved; 0 are not.");
    Bench none;
    none.fake.selected.clear();
    none.Export();
    EXPECT_FALSE(none.Logged(u"were not reached")) << "the Down key leads to the first row";
    EXPECT_EQ(none.view.log.back(), u"6 of 6 e-mail(s) handled in this run are saved; 0 are not.");
}

TEST(DisturbedExport, AClientThatIsBackIsFoundByTheNextRun)
{
    Bench bench;
    bench.fake.onMessage = At(bench, message::kListItemW, 10, [&] { bench.fake.FallSilent(600'000); });
    bench.Export();
    EXPECT_TRUE(bench.Logged(kSilent));
    bench.fake.onMessage = nullptr;
    bench.fake.Sleep(600'000);
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_EQ(bench.view.log.back(), u"6 of 6 e-mail(s) handled in this run are saved; 0 are not.");
}

TEST(DisturbedExport, AListThatGrewBeforeAStopIsCountedAgain)
{
    Bench bench;
    bench.fake.onMessage = At(bench, message::kKeyDown, 2, [&] {
        bench.Mail().push_back(MailRow(u"Late"));
        bench.flags.stopAfterEmail = bench.flags.stopRequested = true;
    });
    bench.Export();
    EXPECT_EQ(bench.view.log.back(),
              u"2 of 2 e-mail(s) handled in this run are saved; 0 are not. 5 more were not looked at.");
    EXPECT_FALSE(bench.Logged(u"were not reached")) << "a stop is no miss";
}

TEST(DisturbedExport, AStopWhileAnEarlierDialogIsAwaitedEndsTheRunAtOnce)
{
    for (const bool closing : {false, true}) {
        Bench bench;
        bench.fake.dialogDelays = {50'000};
        int stoppedAt = 0;
        bench.view.onEvents = [&] {
            if (stoppedAt != 0 || bench.fake.sleptMilliseconds < 10'000) return;
            stoppedAt = bench.fake.sleptMilliseconds;
            bench.flags.stopAfterEmail = bench.flags.stopRequested = true;
            bench.flags.closing = closing;
        };
        bench.Export();
        EXPECT_LE(bench.fake.sleptMilliseconds - stoppedAt, 200);
        EXPECT_TRUE(bench.Logged(u"User aborted on email export."));
        EXPECT_FALSE(bench.Logged(kSilent)) << "it was no client that did not answer";
        EXPECT_EQ(bench.view.log.back(),
                  u"0 of 1 e-mail(s) handled in this run are saved; 1 are not. 5 more were not looked at.")
            << "the e-mail that waited was not handled";
    }
}

TEST(DisturbedExport, AClientThatFallsSilentOverEveryEmailIsGivenUp)
{
    Bench bench;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == kSetText) bench.fake.FallSilent(61'000);
    };
    bench.Export();
    EXPECT_TRUE(bench.Logged(kSilent));
    EXPECT_EQ(bench.fake.Asks(), 4u) << "tried, and three times more";
    EXPECT_TRUE(bench.fake.saved.empty());
}

TEST(DisturbedExport, WhatReadingLeavesBehindIsSweptOnTheWay)
{
    Bench bench(300);
    std::size_t most = 0;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kKeyDown) most = std::max(most, bench.fake.LiveBlocks());
    };
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 300u);
    EXPECT_LT(most, 64u * 10) << "64 KB each in a client of 32 bits";
}

TEST(DisturbedExport, AClientThatFallsSilent)
{
    struct Case {
        const char* why;
        int milliseconds;
        bool ended;
    };
    const Case cases[] = {{"10 s", 10'000, false},
                          {"just within the limit", 59'000, false},
                          {"beyond it", 61'000, false},
                          {"back within a minute more", 115'000, false},
                          {"for good", 2'000'000'000, true}};
    const std::uint32_t kinds[] = {0,
                                   message::kListNextItem,
                                   message::kListItemW,
                                   message::kListColumnOrder,
                                   message::kHeaderItemA,
                                   message::kKeyDown,
                                   message::kLeftUp,
                                   message::kListItemCount,
                                   kSetText};
    for (const Case& c : cases) {
        for (const std::uint32_t kind : kinds) {
            for (const int nth : {1, 2, 3, 6, 9}) {
                Bench bench;
                bool met = false;
                bench.fake.onMessage = At(bench, kind, nth, [&] {
                    met = true;
                    bench.fake.FallSilent(c.milliseconds);
                });
                bench.Export();
                bench.fake.onMessage = nullptr;
                const std::string where = std::string(c.why) + ", message " + std::to_string(kind) +
                                          " for the " + std::to_string(nth);
                if (!met) continue;
                EXPECT_EQ(bench.Logged(kSilent), c.ended) << where;
                EXPECT_EQ(bench.flags.runCompleted, !c.ended) << where;
                EXPECT_EQ(bench.Logged(u"Waiting for Outlook Express to answer again"),
                          c.milliseconds > 60'000)
                    << where;
                EXPECT_EQ(std::count(bench.view.boxes.begin(), bench.view.boxes.end(), kSilent), c.ended)
                    << where;
                EXPECT_EQ(bench.Mislabelled(), 0) << where;
                bench.ExpectRecordsAgree();
                if (c.ended) {
                    EXPECT_LT(bench.fake.sleptMilliseconds, 130'000) << where << ": no further row is tried";
                    EXPECT_FALSE(bench.Logged(u"could not be read")) << where;
                } else {
                    EXPECT_EQ(bench.rows.size(), 6u) << where << ": the row is read again";
                }
            }
        }
    }
}

TEST(DisturbedExport, WhatAnUnansweredMessageWasLentStaysWithTheClient)
{
    // The fake client handles the message when it is back, and fails the test when its memory has gone.
    Bench bench;
    bench.fake.onMessage = At(bench, message::kListItemW, 4, [&] { bench.fake.FallSilent(70'000); });
    bench.Export();
    EXPECT_GT(bench.fake.LiveBlocks(), 0u);
    const std::size_t left = bench.fake.LiveBlocks();
    SweepRemoteMemory(bench.client.memory);
    EXPECT_EQ(bench.fake.LiveBlocks(), left);
}

TEST(DisturbedExport, AnActMayTakeLongAndTheWindowLives)
{
    for (const bool pumps : {false, true}) {
        Bench bench(3);
        bench.fake.actTakes = 20'000;
        bench.fake.pumps = pumps;
        int longest = 0, last = 0;
        bench.view.onEvents = [&] {
            longest = std::max(longest, bench.fake.sleptMilliseconds - last);
            last = bench.fake.sleptMilliseconds;
        };
        last = bench.fake.sleptMilliseconds;
        bench.Export();
        EXPECT_LE(longest, 200) << "milliseconds between two looks at what the user does";
        EXPECT_EQ(bench.rows.size(), 3u);
        EXPECT_EQ(bench.Mislabelled(), 0);
        EXPECT_EQ(bench.fake.keys.size(), 3u) << "no key is sent twice";

        bench.Mail().push_back(MailRow(u"Last"));
        bench.view.shown.clear();
        bench.view.onEvents = [&] {
            if (bench.fake.sleptMilliseconds > last + 30'000) bench.flags.stopRequested = true;
        };
        bench.Export();
        const auto told = std::count(bench.view.shown.begin(), bench.view.shown.end(),
                                     u"Stopping as soon as Outlook Express has answered");
        EXPECT_TRUE(told > 0 && told < 10) << told << " times, for each act once";
    }
}

TEST(DisturbedExport, AnEmailUnderWayIsFinishedBeforeTheProgramCloses)
{
    Bench bench;
    bool met = false;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message != 0 || bench.fake.Asks() == 0 || std::exchange(met, true)) return;
        bench.flags.closing = bench.flags.stopRequested = bench.flags.stopAfterEmail = true;
        bench.fake.FallSilent(1'500); // less than the two seconds that are still waited for
    };
    bench.Export();
    EXPECT_TRUE(met);
    EXPECT_EQ(bench.rows.size(), 1u);
}

TEST(DisturbedExport, BoxesOfTheClientAreAnsweredAndTold)
{
    struct Case {
        const char* why;
        std::vector<FakeClient::Box> boxes;
        std::vector<Text> pressed;
    };
    const Case cases[] = {
        {"replace?",
         {{u"0000.eml already exists. Replace?", {u"&Yes", u"&No"}}},
         {u"&Save", u"&No", u"Cancel"}},
        {"a bad name", {{u"The path does not exist.", {u"OK"}}}, {u"&Save", u"OK", u"Cancel"}},
        {"cancel before OK", {{u"Disk full", {u"OK", u"Cancel"}}}, {u"&Save", u"Cancel", u"Cancel"}},
        {"one after the other",
         {{u"One", {u"&No"}}, {u"Two", {u"OK"}}},
         {u"&Save", u"&No", u"OK", u"Cancel"}},
        {"the dialog has gone", {{u"Disk full", {u"OK"}, true}}, {u"&Save", u"OK"}},
        {"no before cancel", {{u"Replace?", {u"Cancel", u"&No"}}}, {u"&Save", u"&No", u"Cancel"}},
        {"a part of the file is there",
         {{u"Disk full", {u"OK"}, false, false, true}},
         {u"&Save", u"OK", u"Cancel"}},
        {"one over the other",
         {{u"One", {u"&No"}}, {u"Two", {u"OK"}, false, false, false, true}},
         {u"&Save", u"OK", u"&No", u"Cancel"}},
        {"a moment later", {{u"Disk full", {u"OK"}, false, true}}, {u"&Save", u"OK", u"Cancel"}},
        {"its buttons come a moment after it",
         {{u"Disk full", {u"OK"}, false, true, 600}},
         {u"&Save", u"OK", u"Cancel"}},
        {"never another button, and no click behind it", {{u"Sure?", {u"&Yes", u"Notes"}}}, {u"&Save"}},
    };
    for (const Case& c : cases) {
        Bench bench(2);
        bench.fake.boxes = c.boxes;
        bench.fake.selected = {1};
        bench.Export();
        EXPECT_EQ(bench.fake.pressed, c.pressed) << c.why;
        EXPECT_TRUE(bench.Logged(c.boxes[0].words)) << c.why;
        EXPECT_TRUE(bench.Logged(u"FAIL: 1 Mail1")) << c.why;
        EXPECT_TRUE(bench.rows.empty()) << c.why;
        EXPECT_LT(bench.fake.sleptMilliseconds, 1'500) << c.why;
        bench.fake.boxes.clear();
        if (c.pressed.size() == 1) continue; // that box stands for ever
        bench.fake.selected = {0};
        bench.Export();
        EXPECT_EQ(bench.rows.size(), 2u) << c.why << ": the next e-mails are saved";
    }
}

TEST(DisturbedExport, ABoxOverTheClientsWindowEndsTheRunInTheEnd)
{
    Bench bench(30);
    bench.fake.blocked = true;
    bench.Export();
    EXPECT_EQ(std::count(bench.view.log.begin(), bench.view.log.end(), u"No dialog found"), 10);
    EXPECT_TRUE(bench.Logged(kSilent));
    EXPECT_EQ(bench.fake.dialogDelays.size(), 0u);
    EXPECT_TRUE(bench.fake.saved.empty());
    EXPECT_EQ(bench.view.log.back(),
              u"0 of 10 e-mail(s) handled in this run are saved; 10 are not. 20 more were not looked at.");
}

TEST(DisturbedExport, OnlyTenInARowAreTooMany)
{
    Bench bench(30);
    int keys = 0;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kKeyDown) bench.fake.blocked = ++keys % 10 != 0;
    };
    bench.Export();
    EXPECT_FALSE(bench.Logged(kSilent));
    EXPECT_EQ(bench.fake.saved.size(), 3u);
}

TEST(DisturbedExport, OtherWindowsArePassedOver)
{
    Bench bench;
    const WindowHandle others[] = {bench.fake.AddForeignDialog(), bench.fake.AddModeless(u"#32770")};
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kLeftUp) bench.fake.AddModeless(u"tooltips_class32");
    };
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 6u);
    for (const WindowHandle other : others) EXPECT_TRUE(bench.fake.IsThere(other)) << "and left alone";
}

TEST(DisturbedExport, AHeaderThatDoesNotAnswerIsNoListOfOneColumn)
{
    Bench bench;
    bench.fake.silentHeader = true;
    bench.Export();
    EXPECT_TRUE(bench.fake.saved.empty());
    EXPECT_TRUE(bench.Logged(u"6 skipped: could not be read"));
    EXPECT_FALSE(bench.Logged(u"has no column titled")) << "not known to lack one";
    EXPECT_FALSE(bench.flags.runCompleted);
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) { // its order is answered, its titles not
        if (message == message::kListColumnOrder) bench.fake.silentHeader = false;
        if (message == message::kHeaderItemA) bench.fake.silentHeader = true;
    };
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_TRUE(bench.Logged(u"6 skipped: could not be read"));
    bench.fake.onMessage = nullptr;
    bench.fake.silentHeader = false;
    bench.fake.columnTitles.assign(6, u"");
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_EQ(bench.fake.saved.size(), 1u) << "answered empty titles: column 0 for each, so all look alike";
    EXPECT_TRUE(bench.Logged(u"The message list has no column titled: From, Subject, Received, Sent, To"));
}

TEST(DisturbedExport, SkippedIsNotAlwaysWell)
{
    Bench bench(3);
    bench.Mail().push_back(MailRow(u"Mail1"));
    bench.Mail().push_back(MailRow(u"Mail2"));
    for (const Text name : {u"a.eml", u"b.eml"}) bench.files.AddFile(kFolder + name); // somebody's own
    bench.Export();
    EXPECT_TRUE(
        bench.Logged(u"2 skipped: look exactly like another e-mail of this folder, the first like row 1"));
    EXPECT_EQ(bench.view.log.back(), u"3 of 5 e-mail(s) handled in this run are saved; 2 are not.");

    bench.fake.selected = {0};
    bench.Export();
    EXPECT_TRUE(bench.Logged(u"3 skipped: recorded as saved before"));
    EXPECT_FALSE(bench.Logged(u"no .eml file"));
    EXPECT_EQ(bench.view.log.back(), u"3 of 5 e-mail(s) handled in this run are saved; 2 are not.");

    bench.rows.push_back(bench.rows[1]); // two records: both look-alikes are known to be saved
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_EQ(bench.view.log.back(), u"4 of 5 e-mail(s) handled in this run are saved; 1 are not.");

    bench.files.files.clear(); // another store folder, or an emptied one
    bench.contents.clear();
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_TRUE(bench.Logged(u"there is no .eml file in " + kFolder));
    EXPECT_EQ(bench.view.log.back(), u"0 of 5 e-mail(s) handled in this run are saved; 5 are not.");
    bench.Mail().push_back(MailRow(u"New"));
    bench.fake.saveNothing = true;
    bench.fake.onSave = nullptr;
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_FALSE(bench.Logged(u"All of them are recorded")) << "one was tried and failed";

    Bench taken(2);
    taken.files.AddFile(kFolder + u"0000_mail0.eml");
    taken.view.options.skipFiles = true;
    taken.Export();
    EXPECT_TRUE(taken.Logged(u"1 skipped: the file name is taken"));
    EXPECT_EQ(taken.view.log.back(), u"1 of 2 e-mail(s) handled in this run are saved; 1 are not.");
}

TEST(DisturbedExport, AClientOfHigherRightsIsNamedBesideTheBox)
{
    Bench bench;
    bench.fake.elevated = true;
    bench.Export();
    EXPECT_EQ(bench.view.boxes.back(), u"Please ensure a folder has been selected in Outlook Express");
    EXPECT_TRUE(bench.Logged(u"Outlook Express runs with higher rights than Quillbox"));
    bench.fake.elevated = false; // started anew
    Synchronise(bench.run);
    bench.client.lstTree.clear();
    bench.Export();
    EXPECT_EQ(bench.view.boxes.back(), u"Please ensure a folder has been selected in Outlook Express");
    EXPECT_FALSE(bench.Logged(u"higher rights"));
}
