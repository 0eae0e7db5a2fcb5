#include "app/CommandSwitches.h"

#include <set>

namespace {

struct Argument {
    Text name, value; // "/folder", "Inbox"
    bool hasValue;
};

Argument Split(const Text& argument)
{
    const std::size_t colon = argument.find(u':');
    Text name = FoldCase(argument.substr(0, colon));
    if (colon == Text::npos) return {name, u"", false};
    return {name, Text(TrimSpaces(argument.substr(colon + 1))), true};
}

bool SetComparison(const Text& name, std::optional<ComparisonType>& comparison)
{
    constexpr const char16_t* kNames[] = {u"simple", u"database", u"file"}; // by type
    for (int type = 0; type < 3; ++type)
        if (EqualNoCase(name, kNames[type])) comparison = static_cast<ComparisonType>(type);
    return comparison.has_value();
}

// False for a switch that there is not, and for a value too much, too little or that cannot be.
bool Take(const Argument& argument, CommandSwitches& switches)
{
    const auto& [name, value, hasValue] = argument;
    if (name == u"/folder") return !(switches.folder = value).empty();
    if (name == u"/store") return !(switches.store = value).empty();
    if (name == u"/comparison") return SetComparison(value, switches.comparison);
    if (hasValue) return false;
    if (name == u"/all") return switches.allFolders = true;
    if (name == u"/jump") return switches.jump = true;
    if (name == u"/close") return switches.close = true;
    if (name == u"/captions") return switches.captions = true;
    if (name == u"/check") switches.run = UnattendedRun::check;
    if (name == u"/export") switches.run = UnattendedRun::exportEmails;
    return name == u"/sync" || name == u"/check" || name == u"/export";
}

} // namespace

CommandSwitches ParseSwitches(const std::vector<std::string>& arguments)
{
    CommandSwitches switches;
    std::set<Text> seen;
    const auto refuse = [&switches](const Text& reason) {
        if (switches.wrong.empty()) switches.wrong = reason;
    };
    for (const std::string& bytes : arguments) {
        const Text argument = FromUtf8(bytes);
        const Argument split = Split(argument);
        if (!Take(split, switches)) refuse(u"This switch cannot be: " + argument);
        if (!seen.insert(split.name).second) refuse(u"This switch is there twice: " + argument);
    }
    if (switches.captions && seen.size() > 1) refuse(u"/captions stands alone");
    if (seen.empty() || switches.captions) return switches;
    if (!seen.count(u"/sync")) refuse(u"/sync is missing");
    if (seen.count(u"/check") == seen.count(u"/export")) refuse(u"Either /check or /export must be there");
    if (switches.allFolders && !switches.folder.empty()) refuse(u"/folder and /all exclude each other");
    return switches;
}
