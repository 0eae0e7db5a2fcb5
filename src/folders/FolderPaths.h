// FolderPaths.h: the folders of the client's tree by level and full name.
#pragma once
#include "folders/RunView.h"
#include "oe/OeClient.h"

std::vector<FolderNode> FolderNodesOf(const std::vector<OeFolder>& lstTree);

// For each node the index of the nearest one above it of a lower level; kNoParent where that is the root,
// which is part of no other folder's path.
inline constexpr std::size_t kNoParent = Text::npos;
std::vector<std::size_t> ParentsOf(const std::vector<FolderNode>& nodes);

// The folder's name behind the names of its ancestors down to level 2, joined by backslashes. Empty for an
// index beyond the end.
Text FolderPathOf(const std::vector<FolderNode>& nodes, const std::vector<std::size_t>& parents,
                  std::size_t index);

// One path for each node and an empty one more.
std::vector<Text> BuildFolderPaths(const std::vector<FolderNode>& nodes);

// A node's text with a new status: "Inbox" or "Inbox - 3/7" becomes "Inbox - 5/7". An empty status leaves it
// as it is. A name that contains the separator itself loses what stands behind it.
Text MarkedNodeText(TextView nodeText, TextView treeSeparator, TextView status);
