// DisturbedExportTest.cpp: an export beside a user who clicks and mail that comes and goes. Whatever happens:
// every file holds the e-mail that its name and record say, the closing line agrees with the disk, and one
// more, undisturbed run completes the folder.
#include "tests/support/ExportBench.h"

namespace {
using Bench = ExportBench;
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
                bench.fake.onMessage = At(kind, nth, [&] {
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
             b.fake.onMessage = At(message::kKeyDown, 3, [&b] { b.fake.ignoreDownKey = true; });
             b.view.onEvents = [&b] {
                 b.fake.ignoreDownKey = b.fake.ignoreDownKey && b.fake.keys.size() < 3;
             };
         },
         u"1 e-mail(s) were not reached.",
         u"5 of 5 e-mail(s) handled in this run are saved; 0 are not. 1 more were not looked at."},
        {"the list grows while it is exported",
         [](Bench& b) {
             b.fake.onMessage = At(message::kKeyDown, 2, [&b] { b.Mail().push_back(MailRow(u"Late")); });
         },
         u"1 e-mail(s) were not reached.",
         u"6 of 6 e-mail(s) handled in this run are saved; 0 are not. 1 more were not looked at."},
        {"rows above the first one are none of those that were asked for",
         [](Bench& b) {
             b.fake.selected = {4};
             b.fake.onMessage = At(message::kKeyDown, 1, [&b] { b.fake.selected = {0}; });
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

TEST(DisturbedExport, AListThatGrewBeforeAStopIsCountedAgain)
{
    Bench bench;
    bench.fake.onMessage = At(message::kKeyDown, 2, [&] {
        bench.Mail().push_back(MailRow(u"Late"));
        bench.flags.stopAfterEmail = bench.flags.stopRequested = true;
    });
    bench.Export();
    EXPECT_EQ(bench.view.log.back(),
              u"2 of 2 e-mail(s) handled in this run are saved; 0 are not. 5 more were not looked at.");
    EXPECT_FALSE(bench.Logged(u"were not reached")) << "a stop is no miss";
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
    EXPECT_TRUE(bench.Logged(u"All of them are recorded as saved, but there is no .eml file in " + kFolder +
                             u" - another or emptied store folder?"));
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
