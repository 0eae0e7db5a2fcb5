// PowerCut.h: what a disk may hold when the power goes: all that was written before the last flush, and of
// what was written since then any part, down to single sectors, in any order.
#pragma once
#include "tests/support/MemoryFiles.h"

#include <random>

class PowerCuts {
public:
    // start: the file before the first write that was recorded.
    PowerCuts(MemoryImage start, const MemoryFiles& files) : start_(std::move(start)), files_(files) {}

    // look(image, flushed) for each state; the first `flushed` changes are on the disk for sure, and in the
    // first state of so many nothing else is. Every subset of up to nine writes, a sample of more; and a
    // sample with half-written pages.
    template <class Look>
    void ForEach(Look look)
    {
        std::vector<std::size_t> flushes = files_.flushedAt;
        flushes.push_back(files_.written.size());
        MemoryImage flushed = start_;
        std::size_t first = 0;
        for (const std::size_t last : flushes) {
            look(flushed, first);
            for (const Choice& choice : Choices(last - first)) {
                MemoryImage image = flushed;
                for (std::size_t i = 0; i < choice.size(); ++i)
                    Write(image, files_.written[first + i], choice[i]);
                look(image, first);
            }
            for (; first < last; ++first) Write(flushed, files_.written[first], {});
        }
    }

private:
    static constexpr std::size_t kSector = 512, kMostInFull = 9, kSampled = 64, kHalfWritten = 24;
    static constexpr unsigned kAllSectors = 0xFF;
    struct Part {
        unsigned sectors = kAllSectors; // of the page, a bit for each
        bool lengthFirst = false;       // the file is as long as with all of them
    };
    using Choice = std::vector<Part>; // for each write

    static void Write(MemoryImage& image, const MemoryFiles::Written& write, Part part)
    {
        const std::uint64_t end = write.offset + write.bytes.size();
        if (part.lengthFirst && image.Size() < end) image.Resize(end);
        for (std::size_t at = 0; at < write.bytes.size(); at += kSector)
            if (part.sectors >> at / kSector & 1)
                image.Write(write.offset + at, write.bytes.data() + at, kSector);
    }

    std::vector<Choice> Choices(std::size_t writes)
    {
        std::vector<Choice> choices;
        const auto add = [&](auto partOf) {
            Choice& choice = choices.emplace_back();
            for (std::size_t i = 0; i < writes; ++i) choice.push_back(partOf(i));
        };
        const auto isIn = [&](std::size_t bits) {
            add([bits](std::size_t i) { return Part{bits >> i & 1 ? kAllSectors : 0}; });
        };
        if (writes <= kMostInFull) {
            for (std::size_t bits = 1; bits < std::size_t{1} << writes; ++bits) isIn(bits);
        } else {
            for (std::size_t count = 1; count <= writes; ++count) // as the program alone would be stopped
                add([count](std::size_t i) { return Part{i < count ? kAllSectors : 0}; });
            for (std::size_t sample = 0; sample < kSampled; ++sample)
                add([&](std::size_t) { return Part{random_() & 1 ? kAllSectors : 0}; });
        }
        for (std::size_t sample = 0; writes > 0 && sample < kHalfWritten; ++sample) {
            add([this](std::size_t) {
                const unsigned chosen = random_();
                const unsigned whole = chosen & 0x100 ? kAllSectors : 0;
                return Part{chosen & 0x200 ? whole : chosen & kAllSectors, (chosen & 0x400) != 0};
            });
        }
        return choices;
    }

    MemoryImage start_;
    const MemoryFiles& files_;
    std::mt19937 random_{1};
};
