// FaultPairsTest.cpp: two or three faults at once, over 300 e-mails. Each seed is a test of its own, so that
// --gtest_filter=*FaultPairs*/17 does again what seed 17 did. QUILLBOX_SOAK=1 makes it 500 of them.
#include "tests/support/Faults.h"

#include <random>

namespace {

class FaultPairs : public testing::TestWithParam<int> {};

bool IsTold(const std::string& said)
{
    return std::any_of(Faults().begin(), Faults().end(), [&](const Fault& fault) {
        return std::any_of(fault.says.begin(), fault.says.end(),
                           [&](const Text& words) { return said.find(ToUtf8(words)) != std::string::npos; });
    });
}

} // namespace

TEST_P(FaultPairs, LoseNothingAndTellWhatTheyLeave)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    const auto below = [&](std::size_t count) { return random() % count; };
    FaultBench bench(Commands()[below(Commands().size())], 300);
    std::vector<Strike> strikes;
    testing::Message message;
    message << bench.command.name;
    for (std::size_t left = 2 + below(2); left > 0; --left) {
        const Fault& fault = Faults()[below(Faults().size())];
        const std::uint32_t step =
            *std::next(fault.at.begin(), static_cast<std::ptrdiff_t>(below(fault.at.size())));
        strikes.push_back({fault, step, 1 + static_cast<int>(below(1 + below(400)))});
        message << "; " << fault.name << ", step " << std::hex << step << std::dec << ", at "
                << strikes.back().nth;
    }
    SCOPED_TRACE(message);
    bench.Run(strikes);
    EXPECT_TRUE(!bench.left || IsTold(bench.said)) << bench.said;
}

INSTANTIATE_TEST_SUITE_P(Seed, FaultPairs, testing::Range(0, std::getenv("QUILLBOX_SOAK") ? 500 : 20));
