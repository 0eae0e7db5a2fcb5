#include "app/DirectoryList.h"

namespace {

// Length of the part that cannot be gone up from: "C:\" or "\\server\share".
std::size_t RootLength(TextView path)
{
    if (!DriveOf(path).empty()) return path.size() > 2 ? 3 : 2;
    if (path.substr(0, 2) != u"\\\\") return 0;
    const std::size_t server = path.find(u'\\', 2);
    return server == TextView::npos ? path.size() : std::min(path.find(u'\\', server + 1), path.size());
}

} // namespace

Text PathInDirectory(const Text& directory, TextView name)
{
    const bool separated = !directory.empty() && directory.back() == u'\\';
    return directory + (separated ? u"" : u"\\") + Text(name);
}

Text DriveOf(TextView path)
{
    if (path.size() < 2 || path[1] != u':') return {};
    const char16_t letter = FoldCase(path[0]);
    return letter >= u'a' && letter <= u'z' ? Text(path.substr(0, 2)) : Text();
}

Text NormalDirectoryPath(TextView path)
{
    Text normal = ReplaceAll(path, u"/", u"\\");
    if (normal.size() == 2 && !DriveOf(normal).empty()) normal += u'\\';
    while (normal.size() > 1 && normal.size() > RootLength(normal) && normal.back() == u'\\')
        normal.pop_back();
    return normal;
}

bool IsFullPath(TextView path)
{
    if (!DriveOf(path).empty()) return path.size() > 2 && path[2] == u'\\';
    if (path.substr(0, 2) != u"\\\\") return false;
    const std::size_t server = path.find(u'\\', 2); // the end of the server's name
    return server > 2 && server != TextView::npos && server + 1 < path.size() && path[server + 1] != u'\\';
}

std::vector<DirectoryLine> DirectoryLines(TextView path, const std::vector<Text>& subdirectories)
{
    const Text whole = NormalDirectoryPath(path);
    if (whole.empty()) return {};
    std::vector<DirectoryLine> lines;
    const auto add = [&lines](TextView name, const Text& full) {
        lines.push_back({Text(2 * lines.size(), u' ') + Text(name), full});
    };
    const std::size_t root = RootLength(whole);
    if (root > 0) add(TextView(whole).substr(0, root), whole.substr(0, root));
    for (const Text& name : SplitAt(TextView(whole).substr(root), u"\\")) {
        if (!name.empty()) add(name, lines.empty() ? name : PathInDirectory(lines.back().path, name));
    }
    const Text indent(2 * lines.size(), u' ');
    for (const Text& name : subdirectories) lines.push_back({indent + name, PathInDirectory(whole, name)});
    return lines;
}

std::size_t OwnLine(const std::vector<DirectoryLine>& lines, std::size_t subdirectoryCount)
{
    return lines.size() - subdirectoryCount - 1;
}
