// SelectRowsTest.cpp: the extra "Select Rows": every e-mail of the list is read once, wherever it goes.
#include "tests/support/RunBench.h"

#include <gtest/gtest.h>

namespace {

TEST(SelectRows, EveryEmailIsReadOnce)
{
    // what: behind the file of the third
    const std::pair<const char*, std::function<void(RunBench&)>> cases[] = {
        {"nothing", [](RunBench&) {}},
        {"the Down key does nothing", [](RunBench& bench) { bench.fake.ignoreDownKey = true; }},
        {"a click above", [](RunBench& bench) { bench.fake.selected = {0}; }},
        {"a click below", [](RunBench& bench) { bench.fake.selected = {7}; }},
        {"two are selected",
         [](RunBench& bench) {
             bench.fake.selected = {2, 5};
         }},
        {"nothing is selected", [](RunBench& bench) { bench.fake.selected = {}; }},
        {"the list is turned round", [](RunBench& bench) { bench.fake.Reverse(); }},
        {"... and back",
         [](RunBench& bench) {
             bench.fake.Reverse();
             bench.AfterSave(6, [&] { bench.fake.Reverse(); });
         }},
        {"the list is turned round, and the first is selected",
         [](RunBench& bench) {
             bench.fake.Reverse();
             bench.fake.selected = {0};
         }},
        {"mail comes on top",
         [](RunBench& bench) {
             for (const char16_t* subject : {u"NewA", u"NewB"}) bench.fake.Arrive(MailRow(subject));
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
