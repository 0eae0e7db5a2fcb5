// Options.cpp: reads the command line of the stand-in client.
#include "demo/client/Options.h"

#include "demo/client/Words.h"

#include <cwchar>
#include <optional>

const wchar_t kUsage[] = L"usage: demo-client --mail DIRECTORY_OR_PACK [--select Projects/Alpha]\n"
                         L"  --system-dialog  --dialog-delays=MS,MS,..  --take-at-command  --slow=MS\n"
                         L"  --no-dialog  --no-combo  --no-edit  --careless-dialog  --save-nothing\n"
                         L"  --no-columns  --one-column  --column-titles=A,B,..  --no-list  --no-tree\n"
                         L"  --language=en|de|fr|pl|ja  --keep-list=MS\n"
                         L"  --fill=MS  --hold-back=N  --ignore-down-key  --close-after=N  --hang-after=N\n"
                         L"  --at=EVENT:N:ACTION[:VALUE]  (see Mishaps.h)\n";

namespace {

struct Flag {
    const wchar_t* name;
    bool Options::*field;
};
const Flag kFlags[] = {
    {L"--no-combo", &Options::noCombo},
    {L"--no-edit", &Options::noEdit},
    {L"--no-columns", &Options::noColumns},
    {L"--one-column", &Options::oneColumn},
    {L"--no-list", &Options::noList},
    {L"--no-tree", &Options::noTree},
    {L"--careless-dialog", &Options::carelessDialog},
    {L"--system-dialog", &Options::systemDialog},
    {L"--take-at-command", &Options::takeAtCommand},
};

struct Number {
    const wchar_t* name;
    int Options::*field;
};
const Number kNumbers[] = {
    {L"--fill", &Options::fill},
    {L"--keep-list", &Options::keepList},
    {L"--hold-back", &Options::holdBack},
};

// A short form of a mishap: "#" stands for the number that it takes as its value.
struct ShortForm {
    const wchar_t* name;
    const wchar_t* mishap;
};
const ShortForm kShortForms[] = {
    {L"--no-dialog", L"command:0:lose"},    {L"--save-nothing", L"save:0:no-file"},
    {L"--ignore-down-key", L"down:0:lose"}, {L"--close-after", L"saved:#:close"},
    {L"--hang-after", L"saved:#:silent"},   {L"--slow", L"save:0:late:#"},
};

// Counts, and milliseconds up to an hour.
bool ParseAmount(const std::wstring& text, int& number)
{
    return ParseNumber(text, number) && number >= 0 && number <= 3600000;
}

bool AddMishap(const std::wstring& text, Options& options)
{
    const std::optional<Mishap> mishap = ParseMishap(text);
    if (mishap) options.mishaps.push_back(*mishap);
    return mishap.has_value();
}

bool SetFlag(const std::wstring& name, Options& options)
{
    if (const Flag* flag = FindName(kFlags, name)) return options.*flag->field = true;
    const ShortForm* form = FindName(kShortForms, name);
    return form && !std::wcschr(form->mishap, L'#') && AddMishap(form->mishap, options);
}

bool SetShortForm(const ShortForm& form, const std::wstring& value, Options& options)
{
    int number = 0;
    if (!ParseAmount(value, number)) return false;
    if (form.name == std::wstring(L"--slow")) options.dialogDelays = {number};
    if (number == 0) return true; // never
    std::wstring mishap = form.mishap;
    return AddMishap(mishap.replace(mishap.find(L'#'), 1, std::to_wstring(number)), options);
}

bool SetDelays(const std::wstring& value, Options& options)
{
    options.dialogDelays.clear();
    for (const std::wstring& part : SplitAt(L',', value)) {
        options.dialogDelays.push_back(0);
        if (!ParseAmount(part, options.dialogDelays.back())) return false;
    }
    return true;
}

enum class ValueResult { taken, unknownName, badValue };

ValueResult SetValue(const std::wstring& name, const std::wstring& value, Options& options)
{
    const auto result = [](bool good) { return good ? ValueResult::taken : ValueResult::badValue; };
    if (const Number* number = FindName(kNumbers, name))
        return result(ParseAmount(value, options.*number->field));
    if (const ShortForm* form = FindName(kShortForms, name))
        return result(SetShortForm(*form, value, options));
    if (name == L"--dialog-delays") return result(SetDelays(value, options));
    if (name == L"--at") return result(AddMishap(value, options));
    if (name == L"--language") {
        const auto language =
            std::ranges::find_if(Languages(), [&](const Language& each) { return value == each.name; });
        if (language == Languages().end()) return ValueResult::badValue;
        options.language = &*language;
    } else if (name == L"--mail")
        options.mail = value;
    else if (name == L"--select")
        options.select = value;
    else if (name == L"--column-titles")
        options.columnTitles = SplitAt(L',', value);
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
            return name + L": \"" + value + L"\" is no value for it";
        }
    }
    return options.mail.empty() ? L"--mail is missing" : L"";
}
