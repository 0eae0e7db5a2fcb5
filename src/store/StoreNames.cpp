#include "store/StoreNames.h"

#include "platform/FileNames.h"

#include <algorithm>

namespace {

constexpr TextView kExtension = u".eml";

bool IsDeviceName(TextView name)
{
    // Windows takes these for devices whatever extension follows.
    const Text base = FoldCase(TrimSpaces(name.substr(0, name.find(u'.'))));
    for (const TextView device : {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"})
        if (base == device) return true;
    const bool numbered = base.size() == 4 && (base.starts_with(u"com") || base.starts_with(u"lpt"));
    constexpr TextView kDigits = u"123456789\u00B9\u00B2\u00B3";
    return numbered && kDigits.find(base.back()) != TextView::npos;
}

bool IsAllowed(char16_t unit, CodePage& codePage)
{
    constexpr TextView kForbidden = u"\\/:*?\"<>|";
    if (unit < 0x20 || kForbidden.find(unit) != TextView::npos) return false;
    if (unit < 0x80) return true;
    return SurvivesAnsi(codePage, {&unit, 1});
}

// Of the name: the ID and, with a subject to come, the "_" behind it.
Text FixedPart(const EmailFile& file)
{
    Text digits = DecimalText(file.id);
    if (digits.size() < 4) digits.insert(0, 4 - digits.size(), u'0');
    return file.idOnly ? digits : digits + u'_';
}

} // namespace

Text DirectoryNameFor(TextView folderName, CodePage& codePage)
{
    Text name(folderName);
    for (char16_t& unit : name)
        if (!IsAllowed(unit, codePage)) unit = u'_';
    for (std::size_t i = name.size(); i > 0 && (name[i - 1] == u'.' || name[i - 1] == u' '); --i)
        name[i - 1] = u'_';
    if (name.empty()) name = u"_";
    if (IsDeviceName(name)) name.insert(std::min(name.find(u'.'), name.size()), 1, u'_');
    return name;
}

Text MakeFileName(const EmailFile& file, CodePage& codePage)
{
    const std::size_t room = kLongestPath - kExtension.size(), used = FixedLength(file);
    if (used > room) return {};
    Text name = FixedPart(file);
    if (!file.idOnly) {
        Text subject = SanitiseFileText(file.subject);
        // The pound sign is not in every code page.
        std::erase_if(subject, [&](char16_t unit) { return !SurvivesAnsi(codePage, {&unit, 1}); });
        name.append(subject, 0, room - used);
    }
    return name.append(kExtension);
}

std::size_t FixedLength(const EmailFile& file)
{
    return file.exportFolder.size() + FixedPart(file).size();
}

Text SanitiseFileText(TextView text)
{
    constexpr TextView kAllowed =
        u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_\u00A3%$&!#~@'";
    Text kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                 [&](char16_t unit) { return kAllowed.find(unit) != TextView::npos; });
    return kept;
}

Text NextFreeFileName(Files& files, const Text& path, std::size_t fixed)
{
    const std::size_t dot = std::min(path.rfind(u'.'), path.size());
    const Text base = path.substr(0, dot), extension = path.substr(dot);
    Text candidate = path, suffix;
    while (files.FileExists(candidate)) {
        suffix = NextLetterSuffix(suffix);
        const std::size_t ending = suffix.size() + extension.size();
        if (fixed + ending > kLongestPath) return {};
        candidate = base.substr(0, kLongestPath - ending) + suffix + extension;
    }
    return candidate;
}

Text NextLetterSuffix(const Text& suffix)
{
    if (suffix.empty()) return u"a";
    Text rest = suffix.substr(0, suffix.size() - 1);
    auto last = static_cast<char16_t>(suffix.back() + 1);
    if (last == u'z' || last == u'Z') {
        rest = NextLetterSuffix(rest);
        last = u'a';
    }
    return rest + last;
}
