// DisturbedClientTest.cpp: an export from a client that is slow or silent, or that shows boxes. What is said
// of it is what has happened, and no e-mail is lost or mislabelled by it.
#include "tests/support/ExportBench.h"

namespace {
using Bench = ExportBench;
} // namespace

TEST(DisturbedClient, AClientThatIsBackIsFoundByTheNextRun)
{
    Bench bench;
    bench.fake.onMessage = At(message::kListItemW, 10, [&] { bench.fake.FallSilent(600'000); });
    bench.Export();
    EXPECT_TRUE(bench.Logged(kSilent));
    bench.fake.onMessage = nullptr;
    bench.fake.Sleep(600'000);
    bench.fake.selected = {0};
    bench.Export();
    EXPECT_EQ(bench.view.log.back(), u"6 of 6 e-mail(s) handled in this run are saved; 0 are not.");
}

TEST(DisturbedClient, AStopWhileAnEarlierDialogIsAwaitedEndsTheRunAtOnce)
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

TEST(DisturbedClient, AClientThatFallsSilentOverEveryEmailIsGivenUp)
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

TEST(DisturbedClient, AClientThatFallsSilent)
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
                bench.view.options.sendKeys = kind == 0 && nth > 3; // silent while they are typed
                bool met = false;
                bench.fake.onMessage = At(kind, nth, [&] {
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
                    EXPECT_FALSE(bench.Logged(u"No dialog found")) << where;
                } else {
                    EXPECT_EQ(bench.rows.size(), 6u) << where << ": the row is read again";
                }
            }
        }
    }
}

TEST(DisturbedClient, WhatAnUnansweredMessageWasLentStaysWithTheClient)
{
    // The fake client handles the message when it is back, and fails the test when its memory has gone.
    Bench bench;
    bench.fake.onMessage = At(message::kListItemW, 4, [&] { bench.fake.FallSilent(70'000); });
    bench.Export();
    EXPECT_GT(bench.fake.LiveBlocks(), 0u);
    const std::size_t left = bench.fake.LiveBlocks();
    SweepRemoteMemory(bench.client.memory);
    EXPECT_EQ(bench.fake.LiveBlocks(), left);
}

TEST(DisturbedClient, AnActMayTakeLongAndTheWindowLives)
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

TEST(DisturbedClient, AnEmailUnderWayIsFinishedBeforeTheProgramCloses)
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

TEST(DisturbedClient, BoxesOfTheClientAreAnsweredAndTold)
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
         {{u"Disk full", {u"OK"}, false, true, false, false, 600}},
         {u"&Save", u"OK", u"Cancel"}},
        {"never another button, and no click behind it", {{u"Sure?", {u"&Yes", u"Notes"}}}, {u"&Save"}},
    };
    for (const Case& c : cases) {
        Bench bench(2);
        bench.fake.boxes = c.boxes;
        bench.fake.selected = {1};
        bench.Export();
        EXPECT_EQ(bench.fake.pressed, c.pressed) << c.why;
        EXPECT_TRUE(bench.Logged(u"Outlook Express says: Save Message As - " + c.boxes[0].words)) << c.why;
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

TEST(DisturbedClient, ABoxOverTheClientsWindowEndsTheRunInTheEnd)
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

TEST(DisturbedClient, OnlyTenInARowAreTooMany)
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

TEST(DisturbedClient, OtherWindowsArePassedOver)
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
