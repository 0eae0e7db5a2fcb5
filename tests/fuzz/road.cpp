// road.cpp: folder names and cells of any characters, down to directory, file name and identity: nothing may
// lead out of the store folder, or be called what Windows cannot hold.
#include "folders/StoreFolders.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "store/Identity.h"
#include "store/StoreNames.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace {

constexpr std::size_t kLongestPath = 259;

// Windows' own rule for one name: no reserved character, no device, no blank or full stop at its end.
bool IsLegalName(TextView name)
{
    const auto isBad = [](char16_t unit) {
        return unit < u' ' || TextView(u"<>:\"/\\|?*").find(unit) != TextView::npos;
    };
    if (name.empty() || name.back() == u' ' || name.back() == u'.') return false;
    if (std::any_of(name.begin(), name.end(), isBad)) return false;
    const Text stem = FoldCase(TrimSpaces(name.substr(0, name.find(u'.'))));
    for (const TextView device : {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"})
        if (stem == device) return false;
    const bool isPort = stem.starts_with(u"com") || stem.starts_with(u"lpt");
    const TextView numbers = u"123456789\u00B9\u00B2\u00B3";
    return !(isPort && stem.size() == 4 && numbers.find(stem[3]) != TextView::npos);
}

} // namespace

// The first byte nests the folders; then UTF-16 as it comes, parts divided by U+0000: subject, sender, and a
// folder each.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1) return 0;
    Text units((size - 1) / sizeof(char16_t), u'\0');
    if (!units.empty()) std::memcpy(units.data(), data + 1, units.size() * sizeof(char16_t));
    std::vector<Text> parts = SplitAt(units, TextView(u"\0", 1));
    parts.resize(std::clamp<std::size_t>(parts.size(), 4, 40));

    CodePage1252 codePage;
    std::vector<FolderNode> nodes = {{u"Local Folders", 1}};
    for (std::size_t i = 2; i < parts.size(); ++i)
        nodes.push_back(
            {parts[i], std::min(nodes.back().level + 1, 2 + (data[0] >> (i % 8) & 1) * static_cast<int>(i))});
    const std::vector<Text> directories = StoreDirectories(nodes, codePage);
    Require(directories.size() == nodes.size(), "a directory for each folder");
    std::set<Text> taken;
    for (const Text& directory : directories) {
        for (const Text& name : SplitAt(directory, u"\\")) Require(IsLegalName(name), "a directory's name");
        Require(taken.insert(FoldCase(directory)).second, "no two folders share a directory");
    }

    const Text folder = ExportFolderOf(u"C:\\Store", directories.back());
    const Text name = MakeFileName({parts[0], 7, folder, (data[0] & 1) != 0}, codePage);
    if (!name.empty()) {
        Require(IsLegalName(name) && name.ends_with(u".eml"), "a file's name");
        Require(folder.size() + name.size() <= kLongestPath, "a path that old calls take");
        Require(codePage.FromAnsi(codePage.ToAnsi(name)) == name, "the client's dialog can be told");
    }

    EnglishLocale locale;
    clsCRC crc(codePage);
    const EmailEntry entry{{parts[1]}, parts[0], {Text()}, kNoListDate, kNoListDate, {}, 7};
    const Text first = EmailCrc(entry, locale, crc);
    Require(first == EmailCrc(EmailEntry(entry), locale, crc), "an identity stays the same");
    Require(!first.empty() && first.size() <= 8, "eight digits at the most");
    return 0;
}
