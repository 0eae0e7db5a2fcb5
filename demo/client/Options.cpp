// Options.cpp: reads the command line of the stand-in client.
#include "demo/client/Options.h"

#include <algorithm>
#include <cwchar>

const wchar_t kUsage[] = L"usage: demo-client --mail DIRECTORY_OR_PACK [--select Projects/Alpha]\n"
                         L"  --system-dialog  --dialog-delays=MS,MS,..  --take-at-command  --slow=MS\n"
                         L"  --no-dialog  --no-combo  --no-edit  --careless-dialog  --save-nothing\n"
                         L"  --no-columns  --one-column  --column-titles=A,B,..  --no-list  --no-tree\n"
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
    {L"--hold-back", &Options::holdBack},
};

// A short form of a mishap; what it takes as its value is the count, for --slow the milliseconds.
struct ShortForm {
    const wchar_t* name;
    bool takesValue;
    Mishap mishap;
};
const ShortForm kShortForms[] = {
    {L"--no-dialog", false, {Event::command, 0, Action::lose}},
    {L"--save-nothing", false, {Event::save, 0, Action::noFile}},
    {L"--ignore-down-key", false, {Event::down, 0, Action::lose}},
    {L"--close-after", true, {Event::saved, 0, Action::close}},
    {L"--hang-after", true, {Event::saved, 0, Action::silent}},
    {L"--slow", true, {Event::save, 0, Action::late}},
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
    for (const ShortForm& form : kShortForms) {
        if (name != form.name || form.takesValue) continue;
        options.mishaps.push_back(form.mishap);
        return true;
    }
    return false;
}

bool SetShortForm(Mishap mishap, const std::wstring& value, Options& options)
{
    int number = 0;
    if (!ParseNumber(value, number)) return false;
    const bool slow = mishap.action == Action::late;
    if (slow) options.dialogDelays = {number};
    (slow ? mishap.value : mishap.at) = number;
    if (number > 0) options.mishaps.push_back(mishap); // 0: never
    return true;
}

bool SetDelays(const std::wstring& value, Options& options)
{
    options.dialogDelays.clear();
    for (const std::wstring& part : SplitAtCommas(value)) {
        options.dialogDelays.push_back(0);
        if (!ParseNumber(part, options.dialogDelays.back())) return false;
    }
    return true;
}

enum class ValueResult { taken, unknownName, badValue };

ValueResult SetValue(const std::wstring& name, const std::wstring& value, Options& options)
{
    const auto result = [](bool good) { return good ? ValueResult::taken : ValueResult::badValue; };
    for (const Number& number : kNumbers)
        if (name == number.name) return result(ParseNumber(value, options.*number.field));
    for (const ShortForm& form : kShortForms)
        if (name == form.name && form.takesValue) return result(SetShortForm(form.mishap, value, options));
    if (name == L"--dialog-delays") return result(SetDelays(value, options));
    if (name == L"--at") {
        const std::optional<Mishap> mishap = ParseMishap(value);
        if (mishap) options.mishaps.push_back(*mishap);
        return result(mishap.has_value());
    }
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
            return name + L": \"" + value + L"\" is no value for it";
        }
    }
    return options.mail.empty() ? L"--mail is missing" : L"";
}
