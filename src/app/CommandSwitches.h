// CommandSwitches.h: what the program is told on its command line.
// Fails by: the answer; switches that cannot be say why.
#pragma once
#include "folders/RunView.h"

#include <optional>
#include <string>

enum class UnattendedRun { none, check, exportEmails };

struct CommandSwitches {
    Text wrong; // what cannot be about them; empty: nothing
    UnattendedRun run = UnattendedRun::none;
    bool allFolders = false;
    Text folder; // full name; empty: all, or the one that the client shows
    Text store;  // empty: that of the settings
    std::optional<ComparisonType> comparison;
    bool jump = false;
    bool captions = false; // asks what the list's columns are, and that is all
    bool close = false;    // when the run has ended; nobody is there to press OK
};

// arguments: UTF-8, without the program's name. Letter case does not matter but in values. Without any the
// program waits for its buttons.
CommandSwitches ParseSwitches(const std::vector<std::string>& arguments);

// How a run ended, for whoever started the program.
enum class ExitCode {
    allSaved = 0, // of what the switches name: seen, and none is missing
    unsaved = 1,  // something is not saved, or was not looked at
    unusable = 2, // nothing could be begun: no client, no folders, or no database
    wrongSwitches = 3,
};
