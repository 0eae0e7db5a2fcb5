// EmlCommand.h: "quillbox-inspect eml", what the folder check sees of saved message files.
#pragma once
#include <string>
#include <vector>

// eml [--first-folder NAME] FILE...: one JSON object per file, on a line of its own. A file that cannot be
// read gives its name and "error", and the next one follows. Returns 1 for bad usage, otherwise 0.
int EmlCommand(const std::vector<std::string>& args);
int EmlUsage(); // answers 1
