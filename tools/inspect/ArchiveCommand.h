// ArchiveCommand.h: the commands `verify`, `mbox` and `index`: what can be done with a store that is there.
#pragma once
#include <string>
#include <vector>

// 0: done, and nothing is wrong; 1: something is wrong, which was said, or wrong arguments; 2: failed, with
// the reason on standard error.
int VerifyCommand(const std::vector<std::string>& args);
int MboxCommand(const std::vector<std::string>& args);
int IndexCommand(const std::vector<std::string>& args);
int VerifyUsage(); // answers 1, like the next
int MboxUsage();
int IndexUsage();
