// DisturbedCheckTest.cpp: checks of a folder beside mail that comes in, lists that are empty for a moment and
// a client that falls silent. No check calls a folder saved that is not, and none ends without telling.
#include "tests/support/RunBench.h"

namespace {

const Text kAllSaved = u"All emails have been saved.", kOnceMore = u"; it is read once more.",
           kGoesOn = u"what has come counts as not saved";

bool HasGreenMark(const RunBench& bench)
{
    return std::any_of(bench.view.marks.begin(), bench.view.marks.end(),
                       [](const auto& mark) { return mark.second == u"green"; });
}

// With another e-mail, but empty from the second count to the last given.
void EmptyUntil(RunBench& bench, int last)
{
    bench.Mail().push_back(MailRow(u"New"));
    bench.fake.onMessage = AtEach(message::kListItemCount, [&bench, last, mail = bench.Mail()](int counts) {
        bench.Mail() = counts >= 2 && counts <= last ? Mails(0) : mail;
    });
}

} // namespace

TEST(DisturbedCheck, AListThatMovesIsReadOnceMoreAndInDoubtNotSaved)
{
    using Disturb = std::function<void(RunBench&)>;
    const Disturb mailComesIn = [](RunBench& b) {
        b.fake.onMessage = At(message::kListItemW, 10, [&b] { b.Mail().push_back(MailRow(u"New")); });
    };
    const struct {
        const char* why;
        Disturb disturb; // when all six are saved
        Texts says;
        ComparisonType type = ComparisonType::database;
    } cases[] = {
        {"mail comes in", mailComesIn, {kOnceMore, u"Not saved 6 - New"}},
        {"while files are compared", mailComesIn, {kOnceMore, u"Not saved 6 - New"}, ComparisonType::file},
        {"it never comes to rest",
         [](RunBench& b) {
             b.fake.onMessage = AtEach(message::kListItemW,
                                       [&b](int) { b.Mail().insert(b.Mail().begin(), MailRow(u"New")); });
         },
         {kGoesOn}},
        {"sorted anew",
         [](RunBench& b) {
             b.Mail().push_back(MailRow(u"New"));
             b.fake.onMessage =
                 At(message::kListItemW, 24, [&b] { std::reverse(b.Mail().begin(), b.Mail().end()); });
         },
         {kOnceMore, u"Not saved 0 - New"}},
        {"it fills slowly",
         [](RunBench& b) {
             b.fake.onMessage = AtEach(message::kListItemW, [&b](int cells) {
                 if (cells % 40 == 0) b.Mail().push_back(MailRow(u"New"));
             });
         },
         {kGoesOn}},
        {"behind the second reading: nor is the first row certain",
         [](RunBench& b) {
             b.fake.onMessage = AtEach(message::kListItemCount, [&b](int counts) {
                 if (counts == 3) std::reverse(b.Mail().begin(), b.Mail().end());
                 if (counts == 5) b.Mail().push_back(MailRow(u"New"));
             });
         },
         {kGoesOn, u"Inbox has 5 saved email(s). 2 email(s) not saved."}},
        {"empty for a moment", [](RunBench& b) { EmptyUntil(b, 3); }, {}},
        {"empty for longer", [](RunBench& b) { EmptyUntil(b, 8); }, {}},
        {"another folder's",
         [](RunBench& b) {
             b.fake.keepsList = true;
             b.fake.onMessage = At(message::kListItemW, 5, [&b] { b.fake.ShowFolder(3); });
         },
         {u"Outlook Express shows another folder meanwhile; this one has no result."}},
    };
    for (const auto& c : cases) {
        RunBench bench;
        bench.Export();
        c.disturb(bench);
        bench.Check(c.type);
        bench.ExpectLog(c.why, c.says, {kAllSaved});
        EXPECT_FALSE(HasGreenMark(bench)) << c.why;
    }
    for (int nth = 1; nth < 60; nth += 2) {
        RunBench bench;
        bench.Export();
        bench.Mail().insert(bench.Mail().begin() + 3, MailRow(u"New")); // 0 1 2 New 3 4 5
        bench.fake.onMessage =
            At(message::kListItemW, nth, [&] { std::swap(bench.Mail()[2], bench.Mail()[3]); });
        bench.Check();
        bench.ExpectLog("swapped at cell " + std::to_string(nth), {}, {kAllSaved});
    }
}

TEST(DisturbedCheck, ACountOfNothingIsNotBelievedAtOnce)
{
    RunBench bench;
    const auto fillSoon = [&bench, mail = bench.Mail()] {
        bench.Mail().clear();
        bench.view.onEvents = [&bench, mail, began = bench.fake.sleptMilliseconds] {
            if (bench.fake.sleptMilliseconds - began > 600) bench.Mail() = mail;
        };
    };
    fillSoon();
    bench.Export();
    EXPECT_EQ(bench.rows.size(), 6u);
    EXPECT_TRUE(bench.view.boxes.empty());
    fillSoon();
    bench.Check(ComparisonType::simple); // by nothing but the count
    bench.ExpectLog("count", {u"Inbox has 6 saved email(s). All emails have been saved."});
    fillSoon();
    bench.CheckAll();
    bench.ExpectLog("all", {u"1 folder(s) saved, 2 folder(s) not saved, 0 empty folder(s)."});
    bench.view.onEvents = nullptr;
    EmptyUntil(bench, 3);
    bench.view.options.comparison = ComparisonType::database;
    bench.SaveAll();
    EXPECT_TRUE(bench.rows.size() == 10 || bench.Logged(u" more were not looked at.") ||
                bench.Logged(u" folder(s) were not checked."));
}

TEST(DisturbedCheck, AClientThatIsSilentHoldsUpNoClosing)
{
    RunBench bench;
    bench.Export();
    const int before = bench.fake.sleptMilliseconds;
    bench.fake.onMessage = [&, cells = 0, met = false](WindowHandle, std::uint32_t message) mutable {
        if (message == message::kListItemW) ++cells;
        if (message != 0 || cells == 0 || std::exchange(met, true)) return;
        bench.Stop();
        bench.flags.closing = true;
        bench.fake.FallSilent(kForGood);
    };
    bench.Check();
    EXPECT_LT(bench.fake.sleptMilliseconds - before, 3'000);
    bench.ExpectLog("closing", {u"User aborted on email export."});
}

TEST(DisturbedCheck, LookAlikesAndMissingColumnsAreNamed)
{
    RunBench bench(3);
    bench.Mail().push_back(MailRow(u"Mail1"));
    bench.Export();
    bench.Check();
    bench.ExpectLog("alike", {u"1 look exactly like another e-mail of this folder, the first like row 1"});
    bench.fake.columnTitles[4] = u"Gesendet";
    bench.Check();
    bench.ExpectLog("column", {u"The message list has no column titled: Sent",
                               u"Its columns are titled: \"!\", \"From\", \"Subject\", \"Received\", "
                               u"\"Gesendet\", \"To\"",
                               u"The extra \"Any Language\" is made for what was left out here."});
    bench.fake.silentHeader = true;
    bench.Check();
    bench.ExpectLog("those that could not be read look like nothing", {}, {u"look exactly like"});
    EXPECT_EQ(bench.Count(u"Not saved "), 4);
}
