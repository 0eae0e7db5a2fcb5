// check.cpp: demo-check: tells whether an export is whole: every message stored byte for byte, or reported.
#include "demo/mailbox/Check.h"
#include "demo/mailbox/Names.h"

#include <iostream>
#include <map>

namespace {

constexpr char kUsage[] =
    "usage: demo-check --mail DIRECTORY_OR_PACK --store DIRECTORY (--folder PATH | --all)\n"
    "                  [--log LOGFILE] [--rows N]\n";

using Arguments = std::map<std::string, std::string>;

bool ReadArguments(int argc, char** argv, Arguments& arguments)
{
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--all")
            arguments[name];
        else if ((name == "--mail" || name == "--store" || name == "--folder" || name == "--log" ||
                  name == "--rows") &&
                 i + 1 < argc)
            arguments[name] = argv[++i];
        else
            return false;
    }
    return arguments.count("--mail") && arguments.count("--store") &&
           arguments.count("--all") != arguments.count("--folder");
}

int Run(const Arguments& arguments)
{
    const MailFolder root = LoadMailbox(arguments.at("--mail"));
    std::vector<ExportRecord> log;
    if (arguments.count("--log")) log = ReadExportLog(ReadFileBytes(arguments.at("--log")));
    const std::filesystem::path store = arguments.at("--store");
    const CheckResult result = arguments.count("--all")
                                   ? CheckAll(root, store, log)
                                   : CheckFolder(root, NameFromUtf8(arguments.at("--folder")), store, log);
    for (const std::string& note : result.notes) std::cout << "note: " << note << "\n";
    for (const std::string& problem : result.problems) std::cout << "PROBLEM: " << problem << "\n";
    std::cout << result.exported << " of " << result.messages << " messages exported";
    if (arguments.count("--rows")) std::cout << ", " << arguments.at("--rows") << " rows in saved.mdb";
    std::cout << "\n";
    return result.problems.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    if (!ReadArguments(argc, argv, arguments)) {
        std::cerr << kUsage;
        return 2;
    }
    try {
        return Run(arguments);
    } catch (const std::exception& error) {
        std::cerr << "demo-check: " << error.what() << "\n";
        return 1;
    }
}
