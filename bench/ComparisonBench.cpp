// ComparisonBench.cpp: what a check computes: the CRC of an e-mail's identity beside zlib's, and which file
// is an e-mail of the list beside the plain search through all.
//   bench-comparison [--emails=N] [options of Google Benchmark]
#include "bench/Bench.h"
#include "bench/Mailbox.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "store/Identity.h"
#include "tests/support/PlainSearch.h"

#include <zlib.h>

namespace {

CodePage1252 codePage;
EnglishLocale locale;

std::vector<EmlSummary> EveryOther(const std::vector<EmlSummary>& records)
{
    std::vector<EmlSummary> half;
    for (std::size_t i = 0; i < records.size(); i += 2) half.push_back(records[i]);
    return half;
}

// So few that the first cache holds them, as it does one that was just made.
std::vector<Text> Identities(const Mailbox& mailbox)
{
    std::vector<Text> identities;
    for (std::size_t i = 0; i < std::min<std::size_t>(64, mailbox.entries.size()); ++i)
        identities.push_back(IdentityString(mailbox.entries[i], locale));
    return identities;
}

std::uint32_t ZlibCrc(const std::string& bytes)
{
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

void RegisterCrcs(const std::vector<Text>& identities, const std::vector<std::string>& bytes)
{
    clsCRC crc(codePage);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (CrcText(crc.CalculateString(identities[i])) !=
            CrcText(static_cast<std::int32_t>(ZlibCrc(bytes[i]))))
            Fail("zlib has another CRC");
    Register(
        "crc/quillbox",
        [&](benchmark::State& state) {
            clsCRC mine(codePage);
            for (auto _ : state)
                for (const Text& identity : identities)
                    benchmark::DoNotOptimize(CrcText(mine.CalculateString(identity)));
        },
        benchmark::kMicrosecond);
    Register(
        "crc/zlib",
        [&](benchmark::State& state) {
            for (auto _ : state)
                for (const std::string& identity : bytes) benchmark::DoNotOptimize(ZlibCrc(identity));
        },
        benchmark::kMicrosecond);
}

// So many stretches of the list, evenly apart, stand for the whole, where the plain search would take
// minutes; it begins each as it would come there.
constexpr std::size_t kStretches = 20, kStretch = 10;

// What it finds is compared on the way.
void AskPlainly(const Mailbox& mailbox, const std::vector<EmlSummary>& records, std::size_t filesOf,
                benchmark::State& state)
{
    const std::size_t step = mailbox.entries.size() / kStretches / 2 * 2; // saved ones are even
    for (auto _ : state) {
        PlainSearch search(records);
        for (std::size_t start = 0; start + kStretch <= mailbox.entries.size(); start += step) {
            search.BeginAt(static_cast<int>(start / filesOf) - 100);
            for (std::size_t i = start; i < start + kStretch; ++i) {
                const int found = search.Match(mailbox.entries[i]);
                if (found != (i % filesOf == 0 ? static_cast<int>(i / filesOf) : -1))
                    Fail("the plain search finds another file");
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kStretches * kStretch));
}

// filesOf: 1 when each e-mail has its file, 2 when every other has.
void RegisterSearches(const std::string& name, const Mailbox& mailbox, const std::vector<EmlSummary>& records,
                      std::size_t filesOf)
{
    Register(name + "/quillbox", [&, filesOf](benchmark::State& state) {
        for (auto _ : state) {
            RecordSearch search(records);
            for (std::size_t i = 0; i < mailbox.entries.size(); ++i) {
                const std::int32_t found = search.Match(mailbox.entries[i]);
                if (found != (i % filesOf == 0 ? static_cast<std::int32_t>(i / filesOf) : -1))
                    Fail("another file was found");
            }
        }
        state.SetItemsProcessed(state.iterations() * std::ssize(mailbox.entries));
    });
    Register(name + "/plain-search",
             [&, filesOf](benchmark::State& state) { AskPlainly(mailbox, records, filesOf, state); });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const Mailbox mailbox = MadeMailbox(SizeOption(argc, argv, "--emails=", 100000));
    const std::vector<EmlSummary> half = EveryOther(mailbox.records);
    const std::vector<Text> identities = Identities(mailbox);
    std::vector<std::string> bytes;
    for (const Text& identity : identities) bytes.push_back(codePage.ToAnsi(identity));

    RegisterCrcs(identities, bytes);
    RegisterSearches("same-order", mailbox, mailbox.records, 1);
    RegisterSearches("half-unsaved", mailbox, half, 2);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
