// FaultMatrixTest.cpp: every fault at each of its steps of each command, and several at once.
#include "tests/support/Faults.h"

#include <fstream>
#include <random>
#include <sstream>

namespace {

constexpr int kEmails = 9;

// Two or three faults at once, over 300 e-mails. Each seed is a test of its own, so that
// --gtest_filter=*FaultPairs*/17 does again what seed 17 did. QUILLBOX_SOAK=1 makes it 500 of them.
class FaultPairs : public testing::TestWithParam<int> {};

bool IsTold(const std::string& said)
{
    return std::any_of(Faults().begin(), Faults().end(), [&](const Fault& fault) {
        return std::any_of(fault.says.begin(), fault.says.end(),
                           [&](const Text& words) { return said.find(ToUtf8(words)) != std::string::npos; });
    });
}

class FaultMatrix : public testing::TestWithParam<const Fault*> {};

// How often each step is met in peace.
const std::map<std::uint32_t, int>& StepsOf(const Command& command)
{
    static std::map<const Command*, std::map<std::uint32_t, int>> known;
    auto& met = known[&command];
    if (met.empty()) {
        FaultBench bench(command, kEmails);
        bench.Run({});
        EXPECT_FALSE(bench.left) << command.name;
        met = bench.met;
    }
    return met;
}

} // namespace

TEST_P(FaultMatrix, LosesNothingAndTellsWhatItLeaves)
{
    const Fault& fault = *GetParam();
    std::set<Text> unsaid(fault.says.begin(), fault.says.end());
    for (const Command& command : Commands())
        for (const auto& [step, times] : StepsOf(command)) {
            if (!fault.at.count(step)) continue;
            for (const int nth : std::set<int>{1, (times + 1) / 2, times}) {
                FaultBench bench(command, kEmails);
                const Strike strike{fault, step, nth};
                SCOPED_TRACE(testing::Message()
                             << command.name << ", step " << std::hex << step << std::dec << ", at " << nth);
                bench.Run({&strike, 1});
                if (!bench.left) continue;
                bool told = false;
                for (const Text& words : fault.says)
                    if (bench.said.find(ToUtf8(words)) != std::string::npos) {
                        told = true;
                        unsaid.erase(words);
                    }
                EXPECT_TRUE(told) << "nothing is said of what it left:\n" << bench.said;
                if (HasFailure()) return;
            }
        }
    for (const Text& words : unsaid) ADD_FAILURE() << "never said: " << ToUtf8(words);
}

INSTANTIATE_TEST_SUITE_P(Fault, FaultMatrix, testing::ValuesIn([] {
                             std::vector<const Fault*> all;
                             for (const Fault& each : Faults()) all.push_back(&each);
                             return all;
                         }()),
                         [](const auto& row) {
                             std::string name = row.param->name;
                             for (char& each : name)
                                 if (!std::isalnum(static_cast<unsigned char>(each))) each = '_';
                             return name;
                         });

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

#ifndef _WIN32 // the checkout is another system's
namespace {

std::string TableOfFaults()
{
    std::string table =
        "| Fault | Strikes | Where it leaves something, the log says | Real windows |\n|---|---|---|---|\n";
    for (const Fault& fault : Faults()) {
        std::string at, says;
        for (const Step& step : Steps())
            if (fault.at.count(step.message)) at += (at.empty() ? "" : ", ") + std::string(step.name);
        if (fault.at.size() == Steps().size()) at = "anywhere";
        for (const Text& words : fault.says)
            says += (says.empty() ? "" : ", ") + ("\"" + std::string(ToUtf8(TrimSpaces(words)))) + "\"";
        table += std::string("| ") + fault.name + " | " + at + " | " +
                 (says.empty() ? "it leaves nothing" : says) + " | " + fault.underWine + " |\n";
    }
    return table;
}

} // namespace

TEST(FaultTable, StandsInTheDocument)
{
    const std::string path = QUILLBOX_SOURCE "/docs/reliability.md", end = "<!-- end of faults -->";
    std::stringstream read;
    read << std::ifstream(path).rdbuf();
    const std::string page = read.str();
    const std::size_t begin = page.find("<!-- faults");
    ASSERT_NE(begin, std::string::npos);
    const std::size_t from = page.find('\n', begin) + 1, to = page.find(end);
    if (std::getenv("QUILLBOX_UPDATE_DOCS"))
        std::ofstream(path) << page.substr(0, from) + TableOfFaults() + page.substr(to);
    else
        EXPECT_EQ(page.substr(from, to - from), TableOfFaults()) << "QUILLBOX_UPDATE_DOCS=1 writes it anew";
}
#endif
