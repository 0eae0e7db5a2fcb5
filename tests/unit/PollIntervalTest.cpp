// PollIntervalTest.cpp: the extra "Poll Interval": the waits look more often, and give up no sooner or later.
#include "oe/Conversation.h"
#include "tests/support/RunBench.h"

#include <gtest/gtest.h>

namespace {

TEST(PollInterval, LooksAsOftenAsChosenForAsLong)
{
    // By the rule of the wait: a look, then as many as fit into its time, the last one at its end. With the
    // extra the first pauses are 1, 2, 4, 8 ... milliseconds.
    const std::tuple<int, int, int, int> cases[] = {
        {20, 100, 100, 21}, {20, 100, 10, 204}, {5, 200, 100, 6},
        {5, 200, 10, 104},  {3, 100, 40, 14}, // 1 to 63 and 100, then 40, 80 and 100 of each
        {20, 10, 100, 21},  {20, 10, 10, 21},
    };
    for (const auto& [tries, interval, chosen, looks] : cases) {
        SCOPED_TRACE(chosen);
        OeBench bench({});
        bench.settings.pollInterval = static_cast<std::int16_t>(chosen);
        int looked = 0;
        EXPECT_FALSE(WaitUntil(bench.client, tries, interval, [&] { return ++looked < 0; }));
        EXPECT_EQ(looked, looks);
        EXPECT_EQ(bench.fake.sleptMilliseconds, tries * interval);
    }
}

TEST(PollInterval, DoesNotAddUpWhatLookingTakes)
{
    OeBench bench({});
    bench.settings.pollInterval = 10;
    EXPECT_FALSE(WaitUntil(bench.client, 20, 100, [&] {
        bench.fake.Sleep(5);
        return false;
    }));
    EXPECT_LE(bench.fake.sleptMilliseconds, 20 * 105 + 5);
}

} // namespace
