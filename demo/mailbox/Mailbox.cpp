// Mailbox.cpp: finds folders.
#include "demo/mailbox/Mailbox.h"

#include "demo/mailbox/Names.h"

namespace {

// Adds to path the names down to the first folder that has messages; false when there is none.
bool DescendToMessages(const MailFolder& folder, std::u16string& path)
{
    if (!folder.messages.empty()) return true;
    const std::size_t length = path.size();
    for (const MailFolder& child : folder.folders) {
        path += u"/" + child.name;
        if (DescendToMessages(child, path)) return true;
        path.resize(length);
    }
    return false;
}

} // namespace

const MailFolder* FindFolder(const MailFolder& root, std::u16string_view path)
{
    if (path.empty()) return &root;
    const std::size_t slash = path.find(u'/');
    const std::u16string_view first = path.substr(0, slash);
    const std::u16string_view rest = slash == std::u16string_view::npos ? u"" : path.substr(slash + 1);
    for (const MailFolder& folder : root.folders)
        if (folder.name == first)
            if (const MailFolder* found = FindFolder(folder, rest)) return found;
    return first == kRootFolderName && root.name == kRootFolderName ? FindFolder(root, rest) : nullptr;
}

std::u16string DefaultFolderPath(const MailFolder& root)
{
    for (const MailFolder& folder : root.folders)
        if (FoldAscii(folder.name) == u"inbox") return folder.name;
    std::u16string path(kRootFolderName);
    return DescendToMessages(root, path) ? path : std::u16string(kRootFolderName);
}

std::size_t CountMessages(const MailFolder& folder)
{
    std::size_t count = folder.messages.size();
    for (const MailFolder& child : folder.folders) count += CountMessages(child);
    return count;
}
