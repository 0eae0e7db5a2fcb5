#include "folders/FolderPaths.h"

std::vector<FolderNode> FolderNodesOf(const std::vector<OeFolder>& lstTree)
{
    std::vector<FolderNode> nodes;
    nodes.reserve(lstTree.size());
    for (const OeFolder& folder : lstTree) nodes.push_back({Text(folder.Name()), folder.level + 1});
    return nodes;
}

Text FolderPathOf(const std::vector<FolderNode>& nodes, std::size_t index)
{
    if (index >= nodes.size()) return {};
    Text path = nodes[index].name;
    int level = nodes[index].level;
    while (level > 2 && index > 0) {
        const FolderNode& above = nodes[--index];
        if (above.level >= level) continue;
        level = above.level;
        if (level > 1) path = above.name + u'\\' + path;
    }
    return path;
}

std::vector<Text> BuildFolderPaths(const std::vector<FolderNode>& nodes)
{
    std::vector<Text> paths;
    for (std::size_t i = 0; i <= nodes.size(); ++i) paths.push_back(FolderPathOf(nodes, i));
    return paths;
}

Text MarkedNodeText(TextView nodeText, TextView treeSeparator, TextView status)
{
    if (status.empty()) return Text(nodeText);
    const TextView name = treeSeparator.empty() ? nodeText : nodeText.substr(0, nodeText.find(treeSeparator));
    return Text(name).append(treeSeparator).append(status);
}
