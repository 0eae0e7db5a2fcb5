// RemoteTreeViewTest.cpp: changing the folder that the client shows.
#include "oe/RemoteControls.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {
struct RemoteTreeView : testing::Test, TreeBench {};
} // namespace

TEST_F(RemoteTreeView, AFolderChangeWaitsForCountAndCaption)
{
    const struct {
        const char* why;
        int from, to, refreshAfter;
        bool want;
        int sleeps;
        bool keepsList = false;
        int mailAfter = 0;
    } cases[] = {
        {"at once", 2, 3, 0, true, 0},
        {"a list that is rebuilt: the old one counts nothing", 3, 5, 0, true, 0},
        {"after a while", 2, 3, 5, true, 5},
        {"just in time", 2, 3, 30, true, 30},
        {"too late", 2, 3, 31, false, 31},
        {"an empty folder after an empty one: the first wait", 1, 4, 0, true, 1},
        {"kept: the same count in the same list never passes", 3, 5, 0, false, 31, true},
        {"already there", 2, 2, 0, true, 0},
        {"the caption has the name in it before, and mail comes", 6, 7, 20, true, 20, true, 5},
    };
    for (const auto& c : cases) {
        TreeBench bench({{u"Other", 2, {MailRow(u"Single")}},
                         {u"E-Mail", 2, {MailRow(u"One"), MailRow(u"Two")}},
                         {u"Mail", 2, {MailRow(u"Single")}}});
        bench.fake.ShowFolder(c.from);
        FindOeHandles(bench.client);
        if (c.mailAfter > 0)
            bench.fake.Later(100 * c.mailAfter,
                             [&] { bench.fake.folders[6].rows.push_back(MailRow(u"New")); });
        bench.fake.keepsList = c.keepsList;
        bench.fake.refreshAfter = 100 * c.refreshAfter;
        bench.fake.keys.clear();
        const Text name(bench.client.lstTree[static_cast<std::size_t>(c.to)].Name());
        EXPECT_EQ(ChangeFolder(bench.client, c.to, name), c.want) << c.why;
        EXPECT_EQ(bench.fake.Sleeps(), c.sleeps) << c.why;
        EXPECT_EQ(bench.flags.stopAfterEmail && bench.flags.stopAfterFolder, !c.want) << c.why;
        EXPECT_FALSE(bench.flags.stopRequested) << c.why << ": the program's own abort";
        const bool home = !bench.fake.keys.empty() && bench.fake.keys.back().second == 0x24;
        EXPECT_EQ(home, c.want && c.from != c.to) << c.why;
        const Text failed = u"Outlook Express failed to change folders.";
        EXPECT_EQ(bench.view.log, c.want ? std::vector<Text>{} : std::vector<Text>{failed}) << c.why;
    }
}

TEST_F(RemoteTreeView, TheSettleTimeIsSleptInFull)
{
    settings.settleTime = 1.25f;
    ChangeFolder(client, 3, u"Work");
    EXPECT_EQ(fake.sleptMilliseconds, 1250);

    // A stop is told what it waits for, and does not shorten it.
    int events = 0;
    view.shown.clear();
    view.onEvents = [&] { flags.stopRequested = ++events > 5; };
    ChangeFolder(client, 2, u"Inbox");
    EXPECT_EQ(fake.sleptMilliseconds, 2500);
    EXPECT_GE(events, 25) << "the window lives";
    std::vector<Text> told;
    std::copy_if(view.shown.begin(), view.shown.end(), std::back_inserter(told),
                 [](const Text& line) { return line.starts_with(u"Stopping"); });
    EXPECT_EQ(told, (std::vector<Text>{u"Stopping when Outlook Express has settled, in 2 s",
                                       u"Stopping when Outlook Express has settled, in 1 s"}));
    settings.settleTime = 1500; // somebody meant milliseconds
    view.onEvents = [this] {
        flags.stopAfterFolder = flags.stopRequested = true;
        flags.closing = fake.sleptMilliseconds >= 22'500;
    };
    EXPECT_FALSE(ChangeFolder(client, 3, u"Work"));
    EXPECT_EQ(fake.sleptMilliseconds, 22'500) << "only closing ends it";
}

TEST_F(RemoteTreeView, AFolderThatTheClientCannotShowEndsTheRun)
{
    const Text silent = u"Outlook Express has stopped responding - please restart Outlook Express.";
    const Text again = u"Waiting for Outlook Express to answer again";
    const struct {
        const char* why;
        std::function<void(FakeClient&)> spoil; // when the folder is selected
        bool want;
        int atMost; // milliseconds
        std::vector<Text> log;
    } cases[] = {
        {"silent for good",
         [](FakeClient& f) { f.FallSilent(2'000'000'000); },
         false,
         122'000,
         {again, silent}},
        {"back in time", [](FakeClient& f) { f.FallSilent(80'000); }, true, 84'000, {again}},
        {"a list without columns", [](FakeClient& f) { f.columnTitles.clear(); }, false, 0, {silent}},
    };
    for (const auto& c : cases) {
        TreeBench bench;
        bench.fake.onMessage = [&, selects = 0](WindowHandle, std::uint32_t message) mutable {
            if (message == message::kTreeSelectItem && ++selects == 2) c.spoil(bench.fake);
        };
        EXPECT_EQ(ChangeFolder(bench.client, 3, u"Work"), c.want) << c.why;
        EXPECT_EQ(bench.flags.stopAfterEmail && bench.flags.stopAfterFolder, !c.want) << c.why;
        EXPECT_LE(bench.fake.sleptMilliseconds, c.atMost) << c.why;
        EXPECT_EQ(bench.view.log, c.log) << c.why;
    }
}
