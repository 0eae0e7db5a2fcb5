// CommandLine.h: the arguments of a program as UTF-8, whatever the system hands to main.
#pragma once
#include <string>
#include <vector>

// Without the program's name. argc and argv are those of main; Windows knows better ones.
std::vector<std::string> CommandLineArguments(int argc, char** argv);
