// main.cpp: quillbox-inspect, what the portable core sees, for support, scripts and checks.
#include "platform/CommandLine.h"
#include "tools/inspect/ArchiveCommand.h"
#include "tools/inspect/DbCommand.h"
#include "tools/inspect/EmlCommand.h"
#include "tools/inspect/NameCommand.h"

#include <cstdio>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

struct Command {
    const char* name;
    int (*run)(const std::vector<std::string>& args); // the arguments behind the name, as UTF-8
    int (*usage)();
};

constexpr Command kCommands[] = {
    {"db", DbCommand, DbUsage},
    {"eml", EmlCommand, EmlUsage},
    {"name", NameCommand, NameUsage},
    {"crc", CrcCommand, CrcUsage},
    {"verify", VerifyCommand, VerifyUsage},
    {"mbox", MboxCommand, MboxUsage},
    {"index", IndexCommand, IndexUsage},
};

int Usage()
{
    for (const Command& command : kCommands) (void)command.usage();
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY); // the same bytes on every system
#endif
    std::vector<std::string> args = CommandLineArguments(argc, argv);
    if (args.empty()) return Usage();
    const std::string name = args.front();
    args.erase(args.begin());
    for (const Command& command : kCommands)
        if (name == command.name) return command.run(args);
    return Usage();
}
