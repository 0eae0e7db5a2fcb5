#include "folders/StoreFolders.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

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
    const Text text(1, unit);
    return codePage.FromAnsi(codePage.ToAnsi(text)) == text;
}

// The names of one folder's children, made different from each other.
class NameSpace {
public:
    bool Take(const Text& name) { return taken_.insert(FoldCase(name)).second; }

    Text TakeVariant(const Text& name)
    {
        if (Take(name)) return name;
        for (int number = 2;; ++number) {
            Text variant = name + u'_' + DecimalText(number);
            if (Take(variant)) return variant;
        }
    }

private:
    std::set<Text> taken_;
};

// For each node the index of the node whose directory holds its own; npos: the store folder itself.
std::vector<std::size_t> ParentsOf(const std::vector<FolderNode>& nodes)
{
    std::vector<std::size_t> parents, last; // last[level]: the last node met at that level
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const auto level = static_cast<std::size_t>(std::max(nodes[i].level, 1));
        parents.push_back(level > 2 && last.size() >= level ? last[level - 1] : Text::npos);
        last.resize(level + 1, Text::npos);
        last[level] = i;
    }
    return parents;
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

std::vector<Text> StoreDirectories(const std::vector<FolderNode>& nodes, CodePage& codePage)
{
    const std::vector<std::size_t> parents = ParentsOf(nodes);
    std::map<std::size_t, NameSpace> spaces;
    std::vector<Text> names(nodes.size());
    std::vector<bool> kept(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        names[i] = DirectoryNameFor(nodes[i].name, codePage);
        kept[i] = names[i] == nodes[i].name && spaces[parents[i]].Take(names[i]);
    }
    std::vector<Text> directories(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!kept[i]) names[i] = spaces[parents[i]].TakeVariant(names[i]);
        directories[i] = parents[i] == Text::npos ? names[i] : directories[parents[i]] + u'\\' + names[i];
    }
    return directories;
}

Text ExportFolderOf(const Text& storeFolder, const Text& directory)
{
    Text path = storeFolder;
    while (!path.empty() && path.back() == u'\\') path.pop_back();
    return path + u'\\' + directory + u'\\';
}

bool MakeFolders(Files& files, const Text& path)
{
    if (files.DirectoryExists(path)) return true;
    // The drive ("C:\") or the share ("\\server\share\") cannot be made.
    std::size_t at = 0;
    if (path.starts_with(u"\\\\"))
        at = path.find(u'\\', std::min(path.find(u'\\', 2), path.size() - 1) + 1);
    else
        at = path.find(u'\\');
    while (at != Text::npos) {
        at = path.find(u'\\', at + 1);
        if (at == Text::npos) break;
        const Text level = path.substr(0, at);
        if (!files.DirectoryExists(level) && !files.MakeDirectory(level)) return false;
    }
    return files.DirectoryExists(path);
}
