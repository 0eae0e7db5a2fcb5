// check.cpp: demo-check: tells whether an export is whole: every message stored byte for byte, or reported;
// every file and every record what it says it is.
#include "demo/mailbox/Check.h"
#include "demo/mailbox/LoadMailbox.h"
#include "demo/mailbox/Names.h"

#include <iostream>
#include <map>

namespace {

constexpr char kUsage[] =
    "usage: demo-check --mail DIRECTORY_OR_PACK --store DIRECTORY (--folder PATH | --all)\n"
    "                  [--log LOGFILE] [--records FILE] [--moving]\n"
    "  --records FILE  the rows of saved.mdb, as quillbox-inspect lists them\n"
    "  --moving        rows moved during the export: a file's message is told by the subject in its name, "
    "and\n"
    "                  no two messages of a folder have the same\n";

using Arguments = std::map<std::string, std::string>;

bool ReadArguments(int argc, char** argv, Arguments& arguments)
{
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--all" || name == "--moving")
            arguments[name];
        else if ((name == "--mail" || name == "--store" || name == "--folder" || name == "--log" ||
                  name == "--records") &&
                 i + 1 < argc)
            arguments[name] = argv[++i];
        else
            return false;
    }
    return arguments.count("--mail") && arguments.count("--store") &&
           arguments.count("--all") != arguments.count("--folder");
}

std::size_t CountFiles(const std::filesystem::path& store)
{
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(store))
        count += entry.is_regular_file() ? 1 : 0;
    return count;
}

// What the whole log tells beside what there is: after runs that nobody disturbed the three are equal.
bool CompareTotals(const std::vector<ExportRecord>& log, std::size_t files, std::size_t rows)
{
    ExportRecord all{};
    for (const ExportRecord& record : log) {
        all.passed += record.passed;
        all.failed += record.failed;
        all.skipped += record.skipped;
    }
    const bool agree = all.passed == files && files == rows;
    std::cout << "log: " << all.passed << " passed, " << all.failed << " failed, " << all.skipped
              << " skipped; store: " << files << " files; saved.mdb: " << rows
              << " rows: " << (agree ? "they agree" : "THEY DIFFER") << "\n";
    return agree;
}

int Run(const Arguments& arguments)
{
    const MailFolder root = LoadMailbox(arguments.at("--mail"));
    const std::string logBytes = arguments.count("--log") ? ReadFileBytes(arguments.at("--log")) : "";
    CheckInput input;
    input.store = arguments.at("--store");
    input.log = ReadExportLog(logBytes);
    input.ignored = IgnoredFolder(logBytes);
    if (arguments.count("--records")) input.records = ReadRecords(ReadFileBytes(arguments.at("--records")));
    if (arguments.count("--moving")) input.rows = Rows::move;
    CheckResult result = arguments.count("--all")
                             ? CheckAll(root, input)
                             : CheckFolder(root, NameFromUtf8(arguments.at("--folder")), input);
    if (arguments.count("--log")) {
        const std::u16string path = arguments.count("--all") ? u"" : NameFromUtf8(arguments.at("--folder"));
        const MailFolder* folder = arguments.count("--all") ? nullptr : FindFolder(root, path);
        // Where rows move, there may be fewer rows in the list at the end than messages in the mailbox.
        const std::size_t listed = arguments.count("--moving") ? result.exported : result.messages;
        for (const std::string& problem : HoldClosingLinesAgainst(
                 ReadClosingLines(logBytes), folder ? &folder->name : nullptr, listed, result.exported))
            result.problems.push_back("log: " + problem);
    }
    for (const std::string& note : result.notes) std::cout << "note: " << note << "\n";
    for (const std::string& problem : result.problems) std::cout << "PROBLEM: " << problem << "\n";
    std::cout << result.exported << " of " << result.messages << " messages exported\n";
    const bool agree = !input.records || !arguments.count("--log") ||
                       CompareTotals(input.log, CountFiles(input.store), CountRecords(*input.records));
    return result.problems.empty() && agree ? 0 : 1;
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
