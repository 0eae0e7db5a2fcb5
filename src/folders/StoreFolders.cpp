#include "folders/StoreFolders.h"

#include "folders/FolderPaths.h"
#include "store/StoreNames.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

// The names of one folder's children, made different from each other.
class NameSpace {
public:
    bool Take(const Text& name) { return taken_.insert(FoldCase(name)).second; }

    Text TakeVariant(const Text& name)
    {
        if (Take(name)) return name;
        // All that are in another script may have one name here.
        for (int& number = numbers_.try_emplace(FoldCase(name), 1).first->second;;) {
            Text variant = name + u'_' + DecimalText(++number);
            if (Take(variant)) return variant;
        }
    }

private:
    std::set<Text> taken_;
    std::map<Text, int> numbers_; // by name: the last that a variant was tried with
};

} // namespace

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
        directories[i] = parents[i] == kNoParent ? names[i] : directories[parents[i]] + u'\\' + names[i];
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
