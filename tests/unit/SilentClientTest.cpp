// SilentClientTest.cpp: an export from a client that is slow or silent, that ends or shows boxes. What is
// said of it is what has happened, and no e-mail is lost or mislabelled by it (RunBench).
#include "tests/support/RunBench.h"

TEST(SilentClient, ThatFallsSilentOverEveryEmailIsGivenUp)
{
    RunBench bench;
    bench.fake.onMessage = AtEach(kSetText, [&](int) { bench.fake.FallSilent(61'000); });
    bench.Export();
    bench.ExpectLog("every time", {kSilent});
    EXPECT_EQ(bench.fake.Asks(), 4u) << "tried, and three times more";
    EXPECT_TRUE(bench.fake.saved.empty());
}

TEST(SilentClient, KeepsWhatAnUnansweredMessageWasLent)
{
    // The fake client handles the message when it is back, and fails the test when its memory has gone.
    RunBench bench;
    bench.fake.onMessage = At(message::kListItemW, 4, [&] { bench.fake.FallSilent(70'000); });
    bench.Export();
    const std::size_t left = bench.fake.LiveBlocks();
    EXPECT_GT(left, 0u);
    SweepRemoteMemory(bench.client.memory);
    EXPECT_EQ(bench.fake.LiveBlocks(), left);
}

TEST(SilentClient, HoldsUpNoStopAndNoClosing)
{
    const struct {
        std::uint32_t silentOver; // its third
        int limit;                // milliseconds from the wish to the end
    } cases[] = {{message::kKeyDown, 10'000},
                 {message::kTreeSelectItem, 10'000},
                 {message::kListItemW, 70'000}, // a question under way has its minute
                 {0, 10'000}};
    for (const auto& c : cases) {
        RunBench bench;
        int asked = 0;
        bench.fake.onMessage = At(c.silentOver, 3, [&] { bench.fake.FallSilent(kForGood); });
        bench.view.onEvents = [&] {
            if (asked != 0 || bench.fake.sleptMilliseconds < 5'000) return;
            asked = bench.fake.sleptMilliseconds;
            bench.Stop();
            bench.flags.closing = bench.flags.stopAfterFolder = true;
        };
        if (c.silentOver == message::kTreeSelectItem)
            bench.SaveAll();
        else
            bench.Export();
        EXPECT_LT(bench.fake.sleptMilliseconds - asked, c.limit) << c.silentOver;
        EXPECT_TRUE(bench.view.boxes.empty()) << c.silentOver;
    }
    for (const bool closing : {false, true}) { // while an earlier dialog is awaited
        RunBench bench;
        bench.fake.dialogDelays = {50'000};
        bench.view.onEvents = [&] {
            if (bench.fake.sleptMilliseconds < 10'000) return;
            bench.Stop();
            bench.flags.closing = closing;
        };
        bench.Export();
        EXPECT_LE(bench.fake.sleptMilliseconds, 10'200);
        bench.ExpectLog("awaited", {u"User aborted on email export."}, {kSilent});
        EXPECT_EQ(bench.view.log.back(), Closing(0, 1, 5)) << "the e-mail that waited was not handled";
    }
}

TEST(SilentClient, IsLetFinishTheEmailUnderWayBeforeTheProgramCloses)
{
    RunBench bench;
    bench.fake.onMessage = AtEach(0, [&](int) {
        if (bench.fake.Asks() == 0 || bench.flags.closing) return;
        bench.Stop();
        bench.flags.closing = true;
        bench.fake.FallSilent(1'500); // less than the two seconds that are still waited for
    });
    bench.Export();
    EXPECT_TRUE(bench.flags.closing);
    EXPECT_EQ(bench.Records().size(), 1u);
}

TEST(SilentClient, IsNotWhatMakesItsListAnew)
{
    const struct {
        const char* why;
        std::function<void(RunBench&)> what;
        int seconds; // that are waited at the most
        bool isThere;
    } cases[] = {
        {"for a moment", [](RunBench& bench) { bench.fake.MakeListAnew(3'000); }, 4, true},
        {"for good", [](RunBench& bench) { bench.fake.MakeListAnew(kForGood); }, 12, false},
        {"it has ended", [](RunBench& bench) { bench.fake.End(); }, 2, false},
        {"Quillbox is to close",
         [](RunBench& bench) {
             bench.fake.MakeListAnew(3'000);
             bench.flags.closing = bench.flags.stopAfterEmail = true;
         },
         2, false},
    };
    for (const auto& [why, what, seconds, isThere] : cases) {
        RunBench bench;
        ASSERT_TRUE(SelectShownFolder(bench.run, Refusal::inLog)) << why;
        FindOeHandles(bench.client);
        const int began = bench.fake.sleptMilliseconds;
        what(bench);
        EXPECT_EQ(CountEmails(bench.run), isThere ? std::optional(6) : std::nullopt) << why;
        EXPECT_LE(bench.fake.sleptMilliseconds - began, 1'000 * seconds) << why;
    }
}

TEST(ClientBoxes, AreAnsweredAndTold)
{
    using Box = FakeClient::Box;
    const struct {
        const char* why;
        std::vector<Box> boxes;
        Texts pressed; // behind "Save"
    } cases[] = {
        {"replace?", {{u"0000.eml already exists. Replace?", {u"&Yes", u"&No"}}}, {u"&No", u"Cancel"}},
        {"a bad name", {{u"The path does not exist.", {u"OK"}}}, {u"OK", u"Cancel"}},
        {"cancel before OK", {{u"Disk full", {u"OK", u"Cancel"}}}, {u"Cancel", u"Cancel"}},
        {"one after the other", {{u"One", {u"&No"}}, {u"Two", {u"OK"}}}, {u"&No", u"OK", u"Cancel"}},
        {"the dialog has gone", {{.words = u"Disk full", .buttons = {u"OK"}, .ofMainWindow = true}}, {u"OK"}},
        {"no before cancel", {{u"Replace?", {u"Cancel", u"&No"}}}, {u"&No", u"Cancel"}},
        {"a part of the file is there",
         {{.words = u"Disk full", .buttons = {u"OK"}, .leavesPart = true}},
         {u"OK", u"Cancel"}},
        {"one over the other",
         {{u"One", {u"&No"}}, {.words = u"Two", .buttons = {u"OK"}, .over = true}},
         {u"OK", u"&No", u"Cancel"}},
        {"a moment later", {{.words = u"Disk full", .buttons = {u"OK"}, .late = true}}, {u"OK", u"Cancel"}},
        {"its buttons come a moment after it",
         {{.words = u"Disk full", .buttons = {u"OK"}, .late = true, .fillsAfter = 600}},
         {u"OK", u"Cancel"}},
        {"its words come last",
         {{.words = u"Disk full", .buttons = {u"OK"}, .wordsAfter = 600}},
         {u"OK", u"Cancel"}},
        {"never another button, and no click behind it", {{u"Sure?", {u"&Yes", u"Notes"}}}, {}},
    };
    for (const auto& c : cases) {
        RunBench bench(2);
        bench.fake.boxes = c.boxes;
        bench.fake.selected = {1};
        bench.Export();
        Texts pressed = {u"&Save"};
        pressed.insert(pressed.end(), c.pressed.begin(), c.pressed.end());
        EXPECT_EQ(bench.fake.pressed, pressed) << c.why;
        bench.ExpectLog(c.why,
                        {u"Outlook Express says: Save Message As - " + c.boxes[0].words, u"FAIL: 1 Mail1"});
        EXPECT_TRUE(bench.Records().empty() && bench.files.files.empty()) << c.why;
        EXPECT_LE(bench.fake.sleptMilliseconds, 2'100) << c.why;
        bench.fake.boxes.clear();
        if (!c.pressed.empty()) bench.ExpectRestIsSaved(c.why); // else that box stands for ever
    }
}

TEST(ClientBoxes, GoWithTheirDialogThoughTheyAreSlowOrMissClicks)
{
    // stays: until the next e-mail
    const std::tuple<int, int, bool> cases[] = {
        {1'500, 0, false}, {0, 1, false}, {0, 2, false}, {0, 3, true}};
    for (const auto& [boxesStay, lostClicks, stays] : cases) {
        const std::string why = std::to_string(boxesStay) + " ms, " + std::to_string(lostClicks);
        RunBench bench(1);
        bench.fake.boxes = {{u"Disk full", {u"OK"}}};
        bench.fake.boxesStay = boxesStay;
        bench.fake.lostClicks = lostClicks;
        bench.Export();
        EXPECT_EQ(FindSaveDialog(bench.client) != 0, stays) << why;
        bench.fake.boxes.clear();
        bench.ExpectRestIsSaved(why);
    }
}

TEST(ClientBoxes, OverTheMainWindowEndTheRunWhenTheyStandForTenInARow)
{
    RunBench bench(30);
    bench.AfterSave(3, [&] { bench.fake.blocked = true; });
    bench.Export();
    bench.ExpectLog("blocked", {kSilent});
    EXPECT_EQ(bench.Count(u"No dialog found"), 10);
    EXPECT_EQ(bench.view.log.back(), Closing(3, 13, 17));
    bench.fake.blocked = false;
    bench.ExpectRestIsSaved("forgotten by the next run");

    RunBench tenth(30);
    tenth.fake.onMessage = AtEach(message::kKeyDown, [&](int keys) { tenth.fake.blocked = keys % 10 != 0; });
    tenth.Export();
    tenth.ExpectLog("not in a row", {}, {kSilent});
    EXPECT_EQ(tenth.fake.saved.size(), 3u);
}
