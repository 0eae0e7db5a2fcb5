// Faults.h: what may go wrong beside an export or a check, one row each, and what is promised of it. The
// tests run each row at each of its steps; docs/reliability.md shows the same rows.
#pragma once
#include "tests/support/FaultBench.h"

// Where it strikes: before the command, at one of the messages to the client, or behind a file.
struct Step {
    const char* name;
    std::uint32_t message;
};
inline constexpr std::uint32_t kBeforehand = 0xF000, kWritten = 0xF001;
std::span<const Step> Steps();

// What is not held against a row.
enum Unheld : unsigned {
    kWindowAnswers = 1, // the system's own file calls take their time
    kFilesStay =
        2, // others change the files in the store, the half-written one of a client that ends included
    kRowsMove = 4, // rows come, go or change places, so that an e-mail may be handled in two
    kSubjects = 8, // the list does not tell them
};

struct Fault {
    const char* name;
    std::set<std::uint32_t> at; // messages of the steps
    std::function<void(FaultBench&)> strike;
    // One of these is said by each run that has left something, and each by some run. Empty: it never leaves
    // anything.
    std::vector<Text> says{};
    unsigned unheld = 0;
    const char* underWine = ""; // the scenario of tests/demo/disturbed.sh, or the test of tests/windows
};
std::span<const Fault> Faults();
