// SelectRowsTest.cpp: the extra "Select Rows": every e-mail of the list is read once, wherever it goes.
#include "tests/support/RunBench.h"

#include <gtest/gtest.h>

namespace {

int Selected(const RunBench& bench)
{
    return *bench.fake.selected.begin();
}

void Reverse(RunBench& bench)
{
    std::reverse(bench.Mail().begin(), bench.Mail().end());
    bench.fake.selected = {static_cast<int>(bench.Mail().size()) - 1 - Selected(bench)};
}

TEST(SelectRows, EveryEmailIsReadOnce)
{
    const struct {
        const char* why;
        std::function<void(RunBench&)> what; // behind the file of the third
    } cases[] = {
        {"nothing", [](RunBench&) {}},
        {"the Down key does nothing", [](RunBench& bench) { bench.fake.ignoreDownKey = true; }},
        {"a click above", [](RunBench& bench) { bench.fake.selected = {0}; }},
        {"a click below", [](RunBench& bench) { bench.fake.selected = {7}; }},
        {"two are selected",
         [](RunBench& bench) {
             bench.fake.selected = {2, 5};
         }},
        {"nothing is selected", [](RunBench& bench) { bench.fake.selected = {}; }},
        {"the list is turned round", Reverse},
        {"... and back",
         [](RunBench& bench) {
             Reverse(bench);
             bench.AfterSave(6, [&] { Reverse(bench); });
         }},
        {"the list is turned round, and the first is selected",
         [](RunBench& bench) {
             Reverse(bench);
             bench.fake.selected = {0};
         }},
        {"mail comes on top",
         [](RunBench& bench) {
             bench.fake.selected = {Selected(bench) + 2};
             for (const char16_t* subject : {u"NewA", u"NewB"})
                 bench.Mail().insert(bench.Mail().begin(), MailRow(subject));
         }},
        {"two are grouped below another",
         [](RunBench& bench) { bench.Mail().erase(bench.Mail().begin() + 4, bench.Mail().begin() + 6); }},
    };
    for (const auto& [why, what] : cases) {
        SCOPED_TRACE(why);
        for (const bool extra : {true, false}) {
            RunBench bench(8);
            bench.view.options.selectRows = extra;
            bench.AfterSave(3, [&, action = what] { action(bench); });
            bench.Export();
            std::set<Text> saved;
            for (const auto& email : bench.fake.saved)
                EXPECT_TRUE(saved.insert(email.subject).second) << ToUtf8(email.subject);
            if (!extra) continue;
            for (const auto& mail : bench.Mail()) EXPECT_TRUE(saved.count(mail[2])) << ToUtf8(mail[2]);
            EXPECT_TRUE(bench.flags.runCompleted);
            EXPECT_EQ(bench.Records().size(), saved.size());
        }
    }
}

TEST(SelectRows, AListThatTakesNoSelectionEndsTheRun)
{
    RunBench bench(8);
    bench.view.options.selectRows = true;
    bench.fake.ignoreDownKey = true;
    bench.fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message != message::kListItemW) bench.fake.selected = {0};
    };
    bench.Export();
    EXPECT_EQ(bench.Records().size(), 1u);
    EXPECT_TRUE(bench.Logged(u"7 e-mail(s) were not reached."));
}

} // namespace
