#include "folders/FolderPaths.h"

std::vector<FolderNode> FolderNodesOf(const std::vector<OeFolder>& lstTree)
{
    std::vector<FolderNode> nodes;
    nodes.reserve(lstTree.size());
    for (const OeFolder& folder : lstTree) nodes.push_back({Text(folder.Name()), folder.level + 1});
    return nodes;
}

std::vector<std::size_t> ParentsOf(const std::vector<FolderNode>& nodes)
{
    std::vector<std::size_t> parents, above; // above: from the first level down to the node met last
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        while (!above.empty() && nodes[above.back()].level >= nodes[i].level) above.pop_back();
        const bool isTop = above.empty() || nodes[above.back()].level < 2;
        parents.push_back(isTop ? kNoParent : above.back());
        above.push_back(i);
    }
    return parents;
}

Text FolderPathOf(const std::vector<FolderNode>& nodes, const std::vector<std::size_t>& parents,
                  std::size_t index)
{
    if (index >= nodes.size()) return {};
    Text path = nodes[index].name;
    for (std::size_t above = parents[index]; above != kNoParent; above = parents[above])
        path = nodes[above].name + u'\\' + path;
    return path;
}

std::vector<Text> BuildFolderPaths(const std::vector<FolderNode>& nodes)
{
    const std::vector<std::size_t> parents = ParentsOf(nodes);
    std::vector<Text> paths;
    for (std::size_t i = 0; i <= nodes.size(); ++i) paths.push_back(FolderPathOf(nodes, parents, i));
    return paths;
}

Text MarkedNodeText(TextView nodeText, TextView treeSeparator, TextView status)
{
    if (status.empty()) return Text(nodeText);
    const TextView name = treeSeparator.empty() ? nodeText : nodeText.substr(0, nodeText.find(treeSeparator));
    return Text(name).append(treeSeparator).append(status);
}
