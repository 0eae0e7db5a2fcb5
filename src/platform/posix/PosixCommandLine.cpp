#include "platform/CommandLine.h"

std::vector<std::string> CommandLineArguments(int argc, char** argv)
{
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}
