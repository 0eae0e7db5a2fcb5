// LookAlikesTest.cpp: the extra "Look-alikes": of e-mails that look the same each is saved, once.
#include "tests/support/ProgramBench.h"
#include "tests/support/RunBench.h"

#include <gtest/gtest.h>

namespace {

// A list of these subjects. Behind the columns of a row stands which e-mail it is, which the list never
// shows.
std::vector<std::vector<Text>> Listed(const Texts& subjects)
{
    std::vector<std::vector<Text>> rows;
    for (const Text& subject : subjects) {
        rows.push_back(MailRow(subject));
        rows.back().push_back(u"#" + DecimalText(std::ssize(rows)));
    }
    return rows;
}

const Texts kThree = {u"A", u"Twin", u"B", u"Twin", u"Twin", u"C"},
            kTwo = {u"A", u"Twin", u"B", u"C", u"Twin", u"D"};

struct AlikeBench : RunBench {
    explicit AlikeBench(const Texts& subjects = kThree, bool extra = true)
        : RunBench(Listed(subjects), kFurther)
    {
        view.options.lookAlikes = extra;
        fake.onSave = [this](int saves) {
            stored.push_back(Mail()[static_cast<std::size_t>(fake.saved.back().row)][6]);
            if (then) then(saves);
        };
    }
    void ExpectEachOnce(std::size_t count)
    {
        EXPECT_EQ(std::set<Text>(stored.begin(), stored.end()).size(), stored.size()) << "saved twice";
        EXPECT_EQ(stored.size(), count);
        EXPECT_EQ(Records().size(), count);
        EXPECT_EQ(files.files.size(), count) << "one was overwritten";
    }
    void ExportFrom(int row)
    {
        fake.selected = {row};
        Export();
    }

    Texts stored; // which e-mails
    std::function<void(int saves)> then;
};

TEST(LookAlikes, EachIsSavedOnlyWithTheExtra)
{
    for (const bool extra : {false, true}) {
        AlikeBench bench(kThree, extra);
        bench.Export();
        bench.ExpectEachOnce(extra ? 6 : 4);
        const Text named = u"The extra \"Look-alikes\" is made for what was left out here.";
        const Texts& summary = bench.view.summaryLines;
        EXPECT_EQ(bench.Logged(named), !extra);
        EXPECT_EQ(std::count(summary.begin(), summary.end(), named), extra ? 0 : 1);
        EXPECT_EQ(bench.view.log.back(), extra ? Closing(6, 6) : Closing(4, 6));
        bench.ExportFrom(0);
        bench.ExpectEachOnce(extra ? 6 : 4);
        EXPECT_EQ(bench.Logged(u"6 skipped: recorded as saved before"), extra);
    }
}

TEST(LookAlikes, ChecksSeeTheSecondAndTheThird)
{
    for (const auto type : {ComparisonType::database, ComparisonType::file}) {
        for (const bool extra : {false, true}) {
            SCOPED_TRACE(extra);
            AlikeBench bench(kThree, false);
            bench.Export(); // without the second and the third
            bench.view.options.lookAlikes = extra;
            bench.view.options.comparison = type;
            bench.view.options.jumpRemain = true;
            bench.CheckAll();
            EXPECT_EQ(bench.Count(u"Not saved"), extra ? 2 : 0);
            EXPECT_EQ(bench.Logged(u"look exactly like"), !extra);
            if (!extra) continue;
            ASSERT_FALSE(bench.run.exportList.empty());
            EXPECT_EQ(bench.run.exportList.begin()->second, 3);
            bench.then = {};
            bench.ExportAll();
            EXPECT_EQ(bench.Records().size(), 9u);
            bench.CheckAll();
            EXPECT_EQ(bench.Count(u"Not saved"), 0);
        }
    }
}

// What looks the same must not be taken for one another when the list moves, whatever that costs.
TEST(LookAlikes, NoneIsSavedTwiceInAListThatMoves)
{
    const struct {
        const char* why;
        std::function<void(AlikeBench&)> what;
        bool allInTheEnd = true; // by one more run
    } cases[] = {
        {"mail comes on top",
         [](AlikeBench& bench) {
             bench.fake.Arrive(MailRow(u"New"));
             bench.Mail().front().push_back(u"#new");
         }},
        {"the list is turned round", [](AlikeBench& bench) { bench.fake.Reverse(); }, false},
        {"the e-mail above goes", [](AlikeBench& bench) { bench.fake.Remove(0); }},
    };
    for (const auto& [why, what, allInTheEnd] : cases) {
        for (int nth = 4; nth < 12; ++nth) {
            SCOPED_TRACE(std::string(why) + ", behind e-mail " + std::to_string(nth / 2));
            AlikeBench bench(nth % 2 ? kTwo : kThree);
            bench.then = [&, action = what](int saves) {
                if (saves == nth / 2) action(bench);
            };
            bench.Export();
            EXPECT_EQ(std::set<Text>(bench.stored.begin(), bench.stored.end()).size(), bench.stored.size());
            if (!allInTheEnd) continue;
            bench.then = {};
            bench.ExportFrom(0);
            EXPECT_TRUE(bench.Logged(u"; 0 are not.")) << ToUtf8(bench.view.log.back());
        }
    }
}

TEST(LookAlikes, AnotherRowOfTheSameLooksIsNotSavedInItsPlace)
{
    AlikeBench bench({u"Twin", u"Twin", u"B"});
    // Between reading the first and its dialog the selection goes to the second.
    bench.fake.dialogDelays = {100};
    bench.view.onEvents = [&, done = false]() mutable {
        if (done || bench.fake.Asks() == 0) return;
        done = true;
        bench.fake.selected = {1};
    };
    bench.Export();
    EXPECT_TRUE(bench.Logged(u"FAIL: 0 Twin"));
    bench.view.onEvents = nullptr;
    bench.ExportFrom(0);
    bench.ExpectEachOnce(3);
}

TEST(LookAlikes, CondensingStaysOffAndSaysWhy)
{
    for (const bool extra : {false, true}) {
        ProgramBench bench;
        if (extra) bench.profile.values[u"Extras/Look-alikes"] = u"1";
        bench.Start();
        bench.Press(&Program::mnCondenseDB);
        EXPECT_EQ(bench.Logged(u"Condensing stays off while the extra \"Look-alikes\" is chosen"), extra);
    }
}

} // namespace
