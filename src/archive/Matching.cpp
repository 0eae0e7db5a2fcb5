#include "archive/Matching.h"

#include "store/StoreNames.h"

#include <algorithm>
#include <map>

namespace {

constexpr TextView kDigits = u"0123456789";
constexpr std::size_t kLongestSuffix = 3; // letters behind a name that was taken: enough for 15,000 files
constexpr std::size_t kLikelyCut = 20;    // of a subject in a name: shorter ones were never cut to fit a path

// Siblings that would meet in one directory get "_2", "_3" and so on behind; without it they share a key.
Text WithoutNumbers(TextView folder)
{
    Text joined;
    for (const Text& level : SplitAt(folder, u"\\")) {
        const std::size_t digits = level.find_last_not_of(kDigits) + 1; // npos + 1 is 0
        const bool numbered = digits > 1 && digits < level.size() && level[digits - 1] == u'_';
        joined.append(joined.empty() ? u"" : u"\\").append(level, 0, numbered ? digits - 1 : level.npos);
    }
    return joined;
}

// What of the subject a saved file's name holds; nothing for one named by its ID only, or by somebody else.
Text SubjectInName(TextView name)
{
    const std::size_t digits = name.find_first_not_of(kDigits);
    if (digits == TextView::npos || digits < 4 || name[digits] != u'_') return {};
    return Text(name.substr(digits + 1, name.rfind(u'.') - digits - 1));
}

// The records of one mail folder that have no file yet, by what a file's name keeps of their subjects.
class Unmatched {
public:
    void Add(const Text& subject, std::size_t record) { records_.emplace(SanitiseFileText(subject), record); }
    bool TakeExact(const Text& subject) { return Take(records_.find(subject)); }
    bool TakeBeginning(const Text& subject)
    {
        const auto found = records_.lower_bound(subject);
        return found != records_.end() && found->first.starts_with(subject) && Take(found);
    }
    void Append(std::vector<std::size_t>& records) const
    {
        for (const auto& [subject, record] : records_) records.push_back(record);
    }

private:
    using Records = std::multimap<Text, std::size_t>;
    bool Take(Records::iterator found)
    {
        if (found == records_.end()) return false;
        records_.erase(found);
        return true;
    }
    Records records_;
};

// Whether one takes the name without one, two or three of the letters that stand behind a name that was
// taken.
bool TakeWithoutSuffix(const Text& name, const std::function<bool(const Text&)>& take)
{
    for (std::size_t length = 1; length <= kLongestSuffix && length <= name.size(); ++length) {
        const char16_t letter = name[name.size() - length];
        if (letter < u'a' || letter > u'y') return false; // NextLetterSuffix
        if (take(name.substr(0, name.size() - length))) return true;
    }
    return false;
}

struct Group {
    Unmatched records;
    std::vector<std::size_t> files;
};

// From the surest sign to the least: each gives way to all files that have a surer one.
void MatchGroup(Group& group, const std::vector<ReadEmail>& emails)
{
    Unmatched& records = group.records;
    const auto exact = [&](const Text& subject) { return records.TakeExact(subject); };
    const auto beginning = [&](const Text& subject) {
        return subject.size() >= kLikelyCut && records.TakeBeginning(subject);
    };
    using Sign = std::function<bool(const ReadEmail&, const Text& name)>;
    const Sign signs[] = {
        [&](const ReadEmail&, const Text& name) { return !name.empty() && exact(name); },
        [&](const ReadEmail&, const Text& name) { return TakeWithoutSuffix(name, exact); },
        [&](const ReadEmail&, const Text& name) {
            return beginning(name) || TakeWithoutSuffix(name, beginning);
        },
        [&](const ReadEmail& email, const Text&) { return exact(SanitiseFileText(email.subject)); },
        [&](const ReadEmail&, const Text& name) { return exact(name); }, // a subject of which nothing is kept
    };
    for (const Sign& sign : signs)
        std::erase_if(group.files,
                      [&](std::size_t file) { return sign(emails[file], SubjectInName(emails[file].name)); });
}

// An e-mail's record that stands twice lacks no second file, unless there are e-mails that look alike: then
// more of them than one have a file.
void LeaveOutDoubles(std::vector<std::size_t>& recordsAlone, const std::vector<SavedRecord>& records)
{
    std::map<std::pair<Text, Text>, std::size_t> filesOf;
    const auto files = [&](const SavedRecord& record) -> std::size_t& {
        return filesOf[{record.folder, record.crc}];
    };
    for (const SavedRecord& record : records) ++files(record);
    for (const std::size_t i : recordsAlone) --files(records[i]);
    std::erase_if(recordsAlone, [&](std::size_t i) {
        std::size_t& count = files(records[i]);
        const bool isDouble = count == 1;
        count = std::max<std::size_t>(count, 1); // without a file it is missed once
        return isDouble;
    });
}

} // namespace

Text FolderKey(TextView folder, CodePage& codePage)
{
    Text key;
    for (const Text& level : SplitAt(folder, u"\\")) {
        if (!key.empty()) key += u'_';
        if (!level.empty()) key += FoldCase(DirectoryNameFor(level, codePage));
    }
    return key;
}

Matching MatchRecords(const std::vector<SavedRecord>& records, const std::vector<Text>& folders,
                      const Store& store, const std::vector<ReadEmail>& emails, CodePage& codePage)
{
    std::map<Text, Group> groups;
    for (const Text& folder : folders) groups[FolderKey(folder, codePage)];
    for (std::size_t i = 0; i < records.size(); ++i)
        groups[FolderKey(records[i].folder, codePage)].records.Add(records[i].subject, i);

    Matching matching;
    std::vector<Group*> groupOf;
    for (std::size_t i = 0; i < store.directories.size(); ++i) {
        const StoreDirectory& directory = store.directories[i];
        auto group = groups.find(FolderKey(directory.folder, codePage));
        if (group == groups.end()) group = groups.find(FolderKey(WithoutNumbers(directory.folder), codePage));
        groupOf.push_back(group == groups.end() ? nullptr : &group->second);
        if (group == groups.end() && !directory.emails.empty()) matching.strayDirectories.push_back(i);
    }
    for (std::size_t i = 0; i < emails.size(); ++i)
        if (Group* const group = groupOf[emails[i].directory]) group->files.push_back(i);
    for (auto& [key, group] : groups) {
        MatchGroup(group, emails);
        group.records.Append(matching.recordsAlone);
        matching.filesAlone.insert(matching.filesAlone.end(), group.files.begin(), group.files.end());
    }
    std::sort(matching.recordsAlone.begin(), matching.recordsAlone.end());
    LeaveOutDoubles(matching.recordsAlone, records);
    std::sort(matching.filesAlone.begin(), matching.filesAlone.end());
    return matching;
}
