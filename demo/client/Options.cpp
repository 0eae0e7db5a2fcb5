// Options.cpp: reads the command line of the stand-in client.
#include "demo/client/Options.h"

#include <cwchar>

const wchar_t kUsage[] = L"usage: demo-client --mail DIRECTORY_OR_PACK [--select Projects/Alpha]\n"
                         L"  --slow=MS  --close-after=N  --hang-after=N  --column-titles=A,B,..\n"
                         L"  --no-dialog  --no-combo  --no-edit  --careless-dialog  --save-nothing\n"
                         L"  --no-columns  --one-column  --no-list  --no-tree  --ignore-down-key\n";

namespace {

struct Flag {
    const wchar_t* name;
    bool Options::*field;
};
const Flag kFlags[] = {
    {L"--no-dialog", &Options::noDialog},
    {L"--no-combo", &Options::noCombo},
    {L"--no-edit", &Options::noEdit},
    {L"--no-columns", &Options::noColumns},
    {L"--one-column", &Options::oneColumn},
    {L"--no-list", &Options::noList},
    {L"--no-tree", &Options::noTree},
    {L"--save-nothing", &Options::saveNothing},
    {L"--careless-dialog", &Options::carelessDialog},
    {L"--ignore-down-key", &Options::ignoreDownKey},
};

struct Number {
    const wchar_t* name;
    int Options::*field;
};
const Number kNumbers[] = {
    {L"--slow", &Options::slow},
    {L"--close-after", &Options::closeAfter},
    {L"--hang-after", &Options::hangAfter},
};

bool ParseNumber(const std::wstring& text, int& number)
{
    wchar_t* end = nullptr;
    const long value = std::wcstol(text.c_str(), &end, 10);
    number = static_cast<int>(value);
    return !text.empty() && *end == 0 && value >= 0 && value <= 3600000;
}

std::vector<std::wstring> SplitAtCommas(const std::wstring& text)
{
    std::vector<std::wstring> parts(1);
    for (const wchar_t c : text) {
        if (c == L',')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

bool SetFlag(const std::wstring& name, Options& options)
{
    for (const Flag& flag : kFlags)
        if (name == flag.name) return options.*flag.field = true;
    return false;
}

enum class ValueResult { taken, unknownName, badValue };

ValueResult SetValue(const std::wstring& name, const std::wstring& value, Options& options)
{
    for (const Number& number : kNumbers)
        if (name == number.name)
            return ParseNumber(value, options.*number.field) ? ValueResult::taken : ValueResult::badValue;
    if (name == L"--mail")
        options.mail = value;
    else if (name == L"--select")
        options.select = value;
    else if (name == L"--column-titles")
        options.columnTitles = SplitAtCommas(value);
    else
        return ValueResult::unknownName;
    return ValueResult::taken;
}

} // namespace

std::wstring ParseOptions(const std::vector<std::wstring>& arguments, Options& options)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::size_t equals = arguments[i].find(L'=');
        const std::wstring name = arguments[i].substr(0, equals);
        std::wstring value;
        if (equals != std::wstring::npos)
            value = arguments[i].substr(equals + 1);
        else if (SetFlag(name, options))
            continue;
        else if (i + 1 < arguments.size())
            value = arguments[++i];
        switch (SetValue(name, value, options)) {
        case ValueResult::taken:
            break;
        case ValueResult::unknownName:
            return L"unknown option " + name;
        case ValueResult::badValue:
            return name + L" needs a number";
        }
    }
    return options.mail.empty() ? L"--mail is missing" : L"";
}
