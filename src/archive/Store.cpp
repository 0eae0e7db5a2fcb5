#include "archive/Store.h"

#include "platform/FileNames.h"

namespace {

// With the separator that the path itself has.
Text PathIn(const Text& directory, TextView name)
{
    const char16_t separator =
        directory.starts_with(u'/') || directory.find(u'\\') == Text::npos ? u'/' : u'\\';
    const bool ended = directory.ends_with(u'/') || directory.ends_with(separator);
    return Text(directory).append(ended ? 0 : 1, separator).append(name);
}

void Read(Files& files, Store& store, StoreDirectory directory)
{
    std::vector<DirectoryEntry> entries;
    if (!directory.isLink) directory.error = files.ListAll(directory.path, entries);
    std::vector<StoreDirectory> below;
    for (DirectoryEntry& entry : entries) {
        if (entry.kind == EntryKind::directory || entry.kind == EntryKind::directoryLink) {
            // Where a name may hold a backslash it leads nowhere else.
            const Text name = ReplaceAll(entry.name, u"\\", u"_");
            const Text folder = directory.folder.empty() ? name : directory.folder + u'\\' + name;
            below.push_back({PathIn(directory.path, entry.name), folder});
            below.back().isLink = entry.kind == EntryKind::directoryLink;
        } else if (IsEmlName(entry.name)) {
            directory.emails.push_back(std::move(entry));
        }
    }
    store.emails += directory.emails.size();
    store.directories.push_back(std::move(directory));
    for (StoreDirectory& each : below) Read(files, store, std::move(each));
}

} // namespace

Store ReadStore(Files& files, const Text& path)
{
    Store store{path, {}};
    Read(files, store, {path, {}});
    return store;
}

Text PathOf(const StoreDirectory& directory, TextView name)
{
    return PathIn(directory.path, name);
}

Text ShownFolder(const Text& folder)
{
    return folder.empty() ? u"(the store itself)" : folder;
}
