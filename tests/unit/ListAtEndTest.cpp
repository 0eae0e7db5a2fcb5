// ListAtEndTest.cpp: an export reads the list once more behind its last e-mail, to see what it has missed.
#include "tests/support/RunBench.h"

namespace {

bool LooksForMissed(const RunBench& bench)
{
    return !bench.view.shown.empty() && bench.view.shown.back() == u"Looking for e-mails that were missed...";
}

} // namespace

TEST(ListAtEnd, AStopOnTheLastEmailHidesNothingThatWasMissed)
{
    enum When { onLast, onReading };
    const Text aborted = u"User aborted on email export.", missed = u"3 e-mail(s) were not reached.";
    const struct {
        const char* why;
        bool isSortedAnew;
        std::vector<When> stops;
        bool isClosing;
        Texts logged, notLogged;
    } cases[] = {
        {"undisturbed", false, {onLast}, false, {}, {aborted, missed}},
        {"sorted anew", true, {onLast}, false, {missed}, {aborted}},
        {"asked twice", true, {onLast, onReading}, false, {aborted}, {missed}},
        {"asked while the list is read", true, {onReading}, false, {aborted}, {missed}},
        {"closed", true, {onLast}, true, {aborted}, {missed}},
    };
    for (const auto& c : cases) {
        RunBench bench;
        if (c.isSortedAnew)
            bench.AfterSave(3, [&] { std::reverse(bench.Mail().begin(), bench.Mail().end()); });
        bench.view.onEvents = [&, stops = c.stops]() mutable {
            if (bench.Count(u"- Exporting Mail") < 6) return;
            if (std::erase(stops, LooksForMissed(bench) ? onReading : onLast) == 0) return;
            bench.Stop();
            bench.flags.closing = c.isClosing;
        };
        bench.Export();
        bench.ExpectLog(c.why, c.logged, c.notLogged);
        EXPECT_EQ(bench.flags.runCompleted, !c.isSortedAnew) << c.why;
    }
    RunBench all(2);
    all.AfterSave(2, [&] { all.Stop(); });
    all.SaveAll();
    all.ExpectLog("all folders", {aborted});
    EXPECT_EQ(all.fake.saved.size(), 2u) << "the stop is for what comes behind";
}

TEST(ListAtEnd, AListThatChangesWhileItIsReadAtTheEndProvesNothing)
{
    const struct {
        const char* why;
        std::function<void(RunBench&)> what;
    } cases[] = {
        {"another folder is shown", [](RunBench& bench) { bench.fake.ShowFolder(3); }},
        {"an empty folder is shown", [](RunBench& bench) { bench.fake.ShowFolder(5); }},
        {"an e-mail goes", [](RunBench& bench) { bench.Mail().pop_back(); }},
        {"the list is filled anew",
         [](RunBench& bench) {
             bench.fake.Later(0, [&bench, mail = bench.Mail()] { bench.Mail() = mail; });
             bench.Mail().resize(1);
         }},
    };
    for (const auto& [why, what] : cases)
        for (const auto& [selectRows, ofAll] :
             {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
            SCOPED_TRACE(why);
            RunBench bench(
                6,
                {{u"Other", 2, {MailRow(u"Letter")}}, {u"Last", 2, {MailRow(u"Note")}}, {u"Empty", 2, {}}});
            bench.view.options.selectRows = selectRows;
            bench.AfterSave(3, [&] { std::reverse(bench.Mail().begin(), bench.Mail().end()); });
            bench.fake.onMessage = [&, what = what, done = false](WindowHandle,
                                                                  std::uint32_t message) mutable {
                const bool isRead = LooksForMissed(bench) && message == message::kListItemW;
                if (isRead && !std::exchange(done, true)) what(bench);
            };
            ofAll ? bench.SaveAll() : bench.Export();
            const ExportTotals& totals = bench.run.exported;
            const bool isCalledWhole =
                ofAll ? bench.run.uncheckedFolders == 0 && totals.notLookedAt == 0 : bench.flags.runCompleted;
            const bool isWhole = std::all_of(bench.Mail().begin(), bench.Mail().end(),
                                             [&](const auto& row) { return bench.fake.IsStored(row[2]); });
            EXPECT_TRUE(isWhole || !isCalledWhole) << ofAll;
            EXPECT_TRUE(isWhole || bench.Logged(u"were not reached.") ||
                        bench.Logged(u"could not be read once more"));
        }
}
