// LoadMailbox.cpp: reads a mailbox from a directory, or has a pack read.
#include "demo/mailbox/LoadMailbox.h"

#include "demo/mailbox/Names.h"
#include "demo/mailbox/Pack.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

enum class FileKind { other, message, mbox, unmarked };

struct Entry {
    std::u16string name;
    fs::path path;
};

std::u16string NameOf(const fs::path& path)
{
#ifdef _WIN32
    return path.filename().u16string();
#else
    return NameFromBytes(path.filename().native());
#endif
}

std::string Shown(const fs::path& path)
{
#ifdef _WIN32
    return NameToUtf8(path.u16string());
#else
    return NameToUtf8(NameFromBytes(path.native()));
#endif
}

[[noreturn]] void Fail(const fs::path& path, const std::string& reason)
{
    throw MailboxError(Shown(path) + ": " + reason);
}

FileKind KindOf(std::u16string_view name)
{
    const std::u16string folded = FoldAscii(name);
    const std::size_t dot = folded.rfind(u'.');
    if (dot == std::u16string::npos) return FileKind::unmarked;
    const std::u16string extension = folded.substr(dot);
    if (extension == u".eml") return FileKind::message;
    return extension == u".mbox" || extension == u".mbx" ? FileKind::mbox : FileKind::other;
}

bool BeginsWithFrom(const fs::path& path)
{
    char start[5] = {};
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) Fail(path, "cannot be read");
    file.read(start, sizeof start);
    return std::string_view(start, static_cast<std::size_t>(file.gcount())) == "From ";
}

void AddFile(MailFolder& folder, const Entry& file)
{
    FileKind kind = KindOf(file.name);
    if (kind == FileKind::unmarked && BeginsWithFrom(file.path)) kind = FileKind::mbox;
    if (kind == FileKind::message) folder.messages.push_back({file.name, ReadFileBytes(file.path)});
    if (kind != FileKind::mbox) return;
    const std::string bytes = ReadFileBytes(file.path);
    std::size_t number = 0;
    for (const std::string_view message : SplitMbox(bytes)) {
        const std::u16string source = file.name + u"#" + NameFromUtf8(std::to_string(++number));
        folder.messages.push_back({source, std::string(message)});
    }
}

// Two names that are the same text (different bytes that read alike) keep the order of their paths.
bool EntryLess(const Entry& a, const Entry& b)
{
    return NameLess(a.name, b.name) || (a.name == b.name && a.path.native() < b.path.native());
}

MailFolder LoadDirectory(const fs::path& directory, std::u16string name)
{
    std::error_code error;
    std::vector<Entry> files, folders;
    auto entry = fs::directory_iterator(directory, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::file_status status = entry->status(error);
        if (error && error != std::errc::no_such_file_or_directory) break;
        error.clear(); // a dangling link is not mail
        Entry found{NameOf(entry->path()), entry->path()};
        if (fs::is_regular_file(status))
            files.push_back(std::move(found));
        else if (fs::is_directory(status) && !entry->is_symlink(error))
            folders.push_back(std::move(found));
    }
    if (error) Fail(directory, error.message());
    std::sort(files.begin(), files.end(), EntryLess);
    std::sort(folders.begin(), folders.end(), EntryLess);

    MailFolder folder{std::move(name), {}, {}};
    for (const Entry& file : files) AddFile(folder, file);
    for (Entry& child : folders) folder.folders.push_back(LoadDirectory(child.path, std::move(child.name)));
    return folder;
}

// The start of the next separator at or after from, npos when there is none.
std::size_t FindSeparator(std::string_view file, std::size_t from)
{
    for (std::size_t at = file.find("From ", from); at != std::string_view::npos;
         at = file.find("From ", at + 1)) {
        const std::string_view before = file.substr(0, at);
        if (before.empty() || before == "\n" || before == "\r\n" || before.ends_with("\n\n") ||
            before.ends_with("\n\r\n"))
            return at;
    }
    return std::string_view::npos;
}

} // namespace

std::string ReadFileBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad()) Fail(path, "cannot be read");
    return bytes;
}

std::vector<std::string_view> SplitMbox(std::string_view file)
{
    std::vector<std::string_view> messages;
    std::size_t separator = FindSeparator(file, 0);
    const std::string_view head = file.substr(0, separator);
    if (head.find_first_not_of("\r\n") != std::string_view::npos) messages.push_back(head);
    while (separator != std::string_view::npos) {
        const std::size_t lineEnd = file.find('\n', separator);
        const std::size_t start = lineEnd == std::string_view::npos ? file.size() : lineEnd + 1;
        separator = FindSeparator(file, start);
        messages.push_back(
            file.substr(start, separator == std::string_view::npos ? separator : separator - start));
    }
    return messages;
}

MailFolder LoadMailbox(const fs::path& path)
{
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error && status.type() != fs::file_type::not_found) Fail(path, error.message());
    if (fs::is_directory(status)) return LoadDirectory(path, std::u16string(kRootFolderName));
    if (!fs::is_regular_file(status)) Fail(path, "no such mail directory or pack");
    try {
        return ReadPack(ReadFileBytes(path));
    } catch (const MailboxError& damage) {
        Fail(path, damage.what());
    }
}
