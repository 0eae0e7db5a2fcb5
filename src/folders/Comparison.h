// Comparison.h: compares the folder that the client shows with what has been saved of it.
// Fails by: DatabaseError from the comparisons that ask the database.
#pragma once
#include "folders/FolderRun.h"

#include <optional>
#include <span>

struct ComparisonResult {
    std::int32_t total =
        0; // e-mails that were gone through, unread ones included; by "Simple (fast)" the count
    std::int32_t saved = 0;
    std::int32_t unsaved = 0;       // below 0: more is saved than the client lists
    std::int32_t firstUnsaved = -1; // row in the client's list
};

// By the type that the window's choice says. count: e-mails in the client's list, by which "Simple (fast)"
// goes; the others go by the rows that they read. emlFiles: names of the files in run.exportFolder. Each
// e-mail that is not saved gets a line in the log and in the results table, except with "Simple (fast)",
// which looks at no e-mail. Nothing when it was not finished: stopAfterEmail is set then, or the client went
// away while it was read.
std::optional<ComparisonResult> CompareFolder(FolderRun& run, std::int32_t count,
                                              std::span<const Text> emlFiles);
