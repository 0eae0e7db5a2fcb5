// Check.cpp: finds each folder's directory in the store and compares the messages.
#include "demo/mailbox/Check.h"

#include "demo/mailbox/Headers.h"
#include "demo/mailbox/Names.h"

#include <algorithm>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kNameLimit = 128; // of a folder's name as the program reads it

std::string Shown(const fs::path& path)
{
    const std::u8string name = path.filename().u8string();
    return std::string(name.begin(), name.end());
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
        const std::vector<bool> exported =
            HoldFilesAgainst(folder, ListStoredFiles(directory), Rows::stay).exported;
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
    const CheckInput& input;
    bool isIgnoring = false;
    CheckResult result{};
    std::set<std::u16string> foldersMet{};
    std::set<fs::path> directoriesMet{};

    // fullName: the names of all levels joined by "\\", as records have it.
    void Folder(const MailFolder& folder, const std::string& path, const std::u16string& fullName,
                const fs::path& directory)
    {
        const std::vector<StoredFile> files = ListStoredFiles(directory);
        const FolderClaims claims = HoldFilesAgainst(folder, files, input.rows);
        AddProblems(path, claims.problems);
        const std::u16string folded = FoldAscii(fullName);
        foldersMet.insert(folded);
        directoriesMet.insert(directory);
        if (input.records) {
            const auto found = input.records->find(folded);
            AddProblems(path, HoldRecordsAgainst(folder, files, claims,
                                                 found == input.records->end() ? std::vector<std::u16string>()
                                                                               : found->second));
        }
        Messages(folder, path, claims.exported);
    }

    void AddProblems(const std::string& path, const std::vector<std::string>& problems)
    {
        for (const std::string& problem : problems) result.problems.push_back(path + ": " + problem);
    }

    void Messages(const MailFolder& folder, const std::string& path, const std::vector<bool>& exported)
    {
        const auto saved = static_cast<std::size_t>(std::count(exported.begin(), exported.end(), true));
        const std::size_t unsaved = exported.size() - saved;
        const std::size_t skipped =
            unsaved == 0 ? 0 : SkippedForGood(input.log, folder.name, exported.size());
        result.messages += exported.size();
        result.exported += saved;
        for (std::size_t row = 0; row < exported.size(); ++row) {
            if (exported[row]) continue;
            const std::string what =
                path + ": row " + std::to_string(row) + " (" + NameToUtf8(folder.messages[row].source) + ") ";
            if (unsaved > skipped)
                result.problems.push_back(what + "is not stored");
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

    void Tree(const MailFolder& folder, const std::u16string& fullName, const fs::path& directory)
    {
        std::string path = NameToUtf8(fullName);
        isIgnoring = isIgnoring || (!input.ignored.empty() && EqualNoCase(path, input.ignored));
        std::replace(path.begin(), path.end(), '\\', '/');
        if (!isIgnoring)
            Folder(folder, path, fullName, directory);
        else if (!folder.messages.empty())
            result.notes.push_back(path + ": " + std::to_string(folder.messages.size()) +
                                   " messages left out, as the first folder to ignore wants it");
        DirectoryFinder below(directory, folder);
        for (const MailFolder& child : folder.folders)
            Tree(child, fullName + u"\\" + child.name.substr(0, kNameLimit),
                 directory.empty() ? fs::path() : below.Take(child).directory);
    }

    // Files and records of no folder that there is.
    void Strays()
    {
        std::error_code error;
        for (auto entry = fs::recursive_directory_iterator(input.store, error);
             !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
            if (entry->is_regular_file() && !directoriesMet.count(entry->path().parent_path()))
                result.problems.push_back(Shown(entry->path().parent_path()) + "/" + Shown(entry->path()) +
                                          ": in no folder's directory");
        for (const auto& [folder, subjects] : input.records.value_or(SavedRecords()))
            if (!foldersMet.count(folder))
                result.problems.push_back(NameToUtf8(folder) + ": " + std::to_string(subjects.size()) +
                                          " records, but there is no such folder");
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

CheckResult CheckAll(const MailFolder& root, const CheckInput& input)
{
    Check check{input};
    check.Tree(root, std::u16string(kRootFolderName), RootDirectory(input.store));
    if (!check.isIgnoring) check.Strays();
    return check.result;
}

CheckResult CheckFolder(const MailFolder& root, std::u16string_view path, const CheckInput& input)
{
    const MailFolder* const wanted = FindFolder(root, path);
    if (!wanted) throw MailboxError(NameToUtf8(path) + ": no such folder");
    // Down from the root: of each level's folders one is or holds the wanted one.
    const MailFolder* folder = &root;
    std::u16string fullName(kRootFolderName);
    fs::path directory = RootDirectory(input.store);
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
        fullName += u"\\" + folder->name.substr(0, kNameLimit);
        directory = found;
    }
    Check check{input};
    check.Folder(*wanted, NameToUtf8(path), fullName, directory);
    return check.result;
}
