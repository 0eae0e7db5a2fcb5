// Check.cpp: finds each folder's directory in the store and compares the messages.
#include "demo/mailbox/Check.h"

#include "demo/mailbox/Headers.h"
#include "demo/mailbox/Names.h"

#include <algorithm>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

using FilesByRow = std::multimap<std::size_t, fs::path>;

std::string Shown(const fs::path& path)
{
    const std::u8string name = path.filename().u8string();
    return std::string(name.begin(), name.end());
}

// The row that a file name begins with: all its digits count, and there are at least four.
bool ReadRow(const std::string& name, std::size_t& row)
{
    const std::size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
    if (digits < 4 || digits > 9 || (digits > 4 && name[0] == '0')) return false;
    if (name.size() < 4 || !EqualNoCase(name.substr(name.size() - 4), ".eml")) return false;
    row = static_cast<std::size_t>(std::stoul(name.substr(0, digits)));
    return true;
}

FilesByRow ListFiles(const fs::path& directory)
{
    FilesByRow files;
    std::error_code error;
    for (auto entry = fs::directory_iterator(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::size_t row = 0;
        if (entry->is_regular_file() && ReadRow(Shown(entry->path()), row)) files.emplace(row, entry->path());
    }
    return files;
}

std::vector<fs::path> ListDirectories(const fs::path& directory)
{
    std::vector<fs::path> found;
    std::error_code error;
    for (auto entry = fs::directory_iterator(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->is_directory()) found.push_back(entry->path());
    std::sort(found.begin(), found.end());
    return found;
}

bool HoldsBytes(const fs::path& file, const std::string& bytes)
{
    std::error_code error;
    return fs::file_size(file, error) == bytes.size() && !error && ReadFileBytes(file) == bytes;
}

bool IsExported(const FilesByRow& files, std::size_t row, const std::string& bytes)
{
    const auto [first, last] = files.equal_range(row);
    return std::any_of(first, last, [&](const auto& file) { return HoldsBytes(file.second, bytes); });
}

std::vector<bool> ExportedRows(const MailFolder& folder, const FilesByRow& files)
{
    std::vector<bool> exported;
    for (std::size_t row = 0; row < folder.messages.size(); ++row)
        exported.push_back(IsExported(files, row, folder.messages[row].bytes));
    return exported;
}

struct Found {
    fs::path directory;    // empty: none
    std::size_t score = 0; // messages of the folder and of those below it that are stored there
};

std::u16string FoldedName(const fs::path& directory)
{
    return FoldAscii(NameFromUtf8(Shown(directory)));
}

// The directories of a folder's sub-folders. The program maps names that Windows cannot hold, and gives those
// that meet a suffix of its own. So of the directories that belong to no other name the one that holds most
// of a folder's mail is taken, of equals the one with the expected name.
class DirectoryFinder {
public:
    DirectoryFinder(const fs::path& parent, const MailFolder& folder) : directories_(ListDirectories(parent))
    {
        for (const MailFolder& child : folder.folders)
            expected_.insert(FoldAscii(DirectoryNameOf(child.name)));
    }

    // A directory that holds mail of a folder is given out once.
    Found Take(const MailFolder& folder)
    {
        const std::u16string wanted = FoldAscii(DirectoryNameOf(folder.name));
        std::stable_partition(directories_.begin(), directories_.end(),
                              [&](const fs::path& directory) { return FoldedName(directory) == wanted; });
        const std::size_t whole = CountMessages(folder);
        Found best;
        for (const fs::path& directory : directories_) {
            const std::u16string name = FoldedName(directory);
            if (name != wanted && expected_.count(name)) continue;
            const std::size_t score = Score(folder, directory);
            if (score <= best.score && !(name == wanted && best.directory.empty())) continue;
            best = {directory, score};
            if (score == whole) break;
        }
        if (best.score > 0)
            directories_.erase(std::remove(directories_.begin(), directories_.end(), best.directory),
                               directories_.end());
        return best;
    }

private:
    static std::size_t Score(const MailFolder& folder, const fs::path& directory)
    {
        const std::vector<bool> exported = ExportedRows(folder, ListFiles(directory));
        auto score = static_cast<std::size_t>(std::count(exported.begin(), exported.end(), true));
        if (folder.folders.empty()) return score;
        DirectoryFinder below(directory, folder);
        for (const MailFolder& child : folder.folders) score += below.Take(child).score;
        return score;
    }

    std::vector<fs::path> directories_;
    std::set<std::u16string> expected_;
};

// A date as the list shows it: without seconds.
std::string WithoutSeconds(std::string date)
{
    const std::size_t hour = date.find(':');
    const std::size_t minute = hour == std::string::npos ? hour : date.find(':', hour + 1);
    if (minute != std::string::npos) date.erase(minute, 3);
    return date;
}

// What the list shows of addresses: names, or the addresses of those without one.
std::string ShownNames(const std::string& addresses)
{
    std::string names;
    bool inBrackets = false;
    for (const char c : addresses) {
        if (c == '<') inBrackets = true;
        if (!inBrackets && c != '"' && c != ' ') names += c;
        if (c == '>') inBrackets = false;
    }
    return names.empty() ? addresses : names;
}

// Two moments are told apart for certain only when both are times in the same zone.
bool MayShowSameDate(const std::string& a, const std::string& b)
{
    const auto zone = [](const std::string& date) {
        const std::string last = date.substr(date.rfind(' ') + 1);
        return last.find(':') == std::string::npos ? last : std::string();
    };
    const bool times = a.find(':') != std::string::npos && b.find(':') != std::string::npos;
    return WithoutSeconds(a) == WithoutSeconds(b) || !times || zone(a) != zone(b);
}

// Whether the message list may show the two alike, so that the second one rightly counts as saved.
bool MayLookAlike(const MailMessage& a, const MailMessage& b)
{
    constexpr std::size_t kShown = 128; // characters of a cell that are read
    const std::string_view headersA = HeaderBlock(a.bytes), headersB = HeaderBlock(b.bytes);
    const auto received = [](std::string_view headers) {
        const std::string value = HeaderValue(headers, "Received"); // a hop's text, ";", its date
        return value.substr(value.rfind(';') + 1);
    };
    return HeaderValue(headersA, "Subject").substr(0, kShown) ==
               HeaderValue(headersB, "Subject").substr(0, kShown) &&
           ShownNames(HeaderValue(headersA, "From")) == ShownNames(HeaderValue(headersB, "From")) &&
           ShownNames(HeaderValue(headersA, "To")) == ShownNames(HeaderValue(headersB, "To")) &&
           MayShowSameDate(HeaderValue(headersA, "Date"), HeaderValue(headersB, "Date")) &&
           MayShowSameDate(received(headersA), received(headersB));
}

struct Check {
    const std::vector<ExportRecord>& log;
    std::string ignored{}; // with "/" between the names; empty: none
    bool isIgnoring = false;
    CheckResult result{};

    void Folder(const MailFolder& folder, const std::string& path, const fs::path& directory)
    {
        const FilesByRow files = directory.empty() ? FilesByRow() : ListFiles(directory);
        const std::vector<bool> exported = ExportedRows(folder, files);
        const auto saved = static_cast<std::size_t>(std::count(exported.begin(), exported.end(), true));
        const std::size_t unsaved = exported.size() - saved;
        const std::size_t skipped = unsaved == 0 ? 0 : SkippedForGood(log, folder.name, exported.size());
        result.messages += exported.size();
        result.exported += saved;
        for (std::size_t row = 0; row < exported.size(); ++row) {
            if (exported[row]) continue;
            const std::string what =
                path + ": row " + std::to_string(row) + " (" + NameToUtf8(folder.messages[row].source) + ") ";
            if (unsaved > skipped)
                result.problems.push_back(what + (files.count(row) ? "differs from its file" : "is missing"));
            else if (HasTwin(folder, row, exported))
                result.notes.push_back(what + "was skipped: a stored one looks the same in the list");
            else
                result.problems.push_back(what + "was skipped, but no stored one looks the same in the list");
        }
        if (unsaved > skipped)
            result.problems.push_back(path + ": " + std::to_string(unsaved) + " not stored, " +
                                      std::to_string(skipped) + " reported as skipped for good");
    }

    static bool HasTwin(const MailFolder& folder, std::size_t row, const std::vector<bool>& exported)
    {
        for (std::size_t i = 0; i < exported.size(); ++i)
            if (exported[i] && MayLookAlike(folder.messages[i], folder.messages[row])) return true;
        return false;
    }

    void Tree(const MailFolder& folder, const std::string& path, const fs::path& directory)
    {
        isIgnoring = isIgnoring || (!ignored.empty() && EqualNoCase(path, ignored));
        if (!isIgnoring)
            Folder(folder, path, directory);
        else if (!folder.messages.empty())
            result.notes.push_back(path + ": " + std::to_string(folder.messages.size()) +
                                   " messages left out, as the first folder to ignore wants it");
        DirectoryFinder below(directory, folder);
        for (const MailFolder& child : folder.folders)
            Tree(child, path + "/" + NameToUtf8(child.name),
                 directory.empty() ? fs::path() : below.Take(child).directory);
    }
};

bool Contains(const MailFolder& folder, const MailFolder* wanted)
{
    if (&folder == wanted) return true;
    return std::any_of(folder.folders.begin(), folder.folders.end(),
                       [&](const MailFolder& child) { return Contains(child, wanted); });
}

fs::path RootDirectory(const fs::path& store)
{
    return store / fs::path(kRootFolderName);
}

} // namespace

CheckResult CheckAll(const MailFolder& root, const fs::path& store, const std::vector<ExportRecord>& log,
                     const std::string& ignored)
{
    Check check{log, ignored};
    std::replace(check.ignored.begin(), check.ignored.end(), '\\', '/');
    check.Tree(root, NameToUtf8(kRootFolderName), RootDirectory(store));
    return check.result;
}

CheckResult CheckFolder(const MailFolder& root, std::u16string_view path, const fs::path& store,
                        const std::vector<ExportRecord>& log)
{
    const MailFolder* const wanted = FindFolder(root, path);
    if (!wanted) throw MailboxError(NameToUtf8(path) + ": no such folder");
    // Down from the root: of each level's folders one is or holds the wanted one.
    const MailFolder* folder = &root;
    fs::path directory = RootDirectory(store);
    while (folder != wanted) {
        DirectoryFinder below(directory, *folder);
        fs::path found;
        const MailFolder* next = nullptr;
        for (const MailFolder& child : folder->folders) {
            found = directory.empty() ? fs::path() : below.Take(child).directory;
            if (!Contains(child, wanted)) continue;
            next = &child;
            break;
        }
        folder = next;
        directory = found;
    }
    Check check{log};
    check.Folder(*wanted, NameToUtf8(path), directory);
    return check.result;
}
