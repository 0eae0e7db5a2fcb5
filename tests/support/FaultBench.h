// FaultBench.h: the program beside whatever goes wrong, command by command. Each run is held against what the
// list holds, what is on the disk and in the database, and how long the window did not answer.
#pragma once
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

#include <span>

struct Fault;

// A fault and where it strikes: at the nth message of a step, counted from 1.
struct Strike {
    const Fault& fault;
    std::uint32_t step;
    int nth;
};

struct Command {
    const char* name;
    void (Program::*press)();
    ComparisonType comparison;
    bool exports, ofAll;
};
std::span<const Command> Commands();

struct FaultBench : ProgramBench {
    // Three folders with so many e-mails in all. For a check the first of them is stored but for one e-mail.
    FaultBench(const Command& command, int emails);

    // Presses the button beside the faults. Then all goes well again, and another run completes the store.
    void Run(std::span<const Strike> strikes);

    // What the user and the mail do, in the folder that is shown.
    std::vector<std::vector<Text>>& Mail();
    int Row() const { return fake.selected.empty() ? 0 : *fake.selected.begin(); }
    bool CanClick() const { return fake.Find(u"#32770") == 0; } // not behind a dialog, which is modal
    void Arrive(std::size_t place); // new mail; the selection stays with its e-mail
    void Go(int row);

    const Command& command;
    std::map<std::uint32_t, int> met;        // messages of each kind in the run
    std::string said;                        // the log of the run
    bool left = false;                       // something for another run
    std::vector<std::function<void()>> undo; // of what goes well again
    std::vector<Text> others;                // files of another program, which hold "another's"

private:
    int Rows(bool onlyLeft = false) const; // that the command is about
    void ExpectTruth();
    void ExpectClosingLine();
    void ExpectVerdict();
    void Recover();

    int arrived_ = 0;
    unsigned unheld_ = 0;
    std::map<int, int> counted_; // rows of each folder when they were counted last
};
