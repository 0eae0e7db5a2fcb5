#include "archive/Verify.h"

#include "archive/Matching.h"
#include "archive/Wholeness.h"
#include "mail/ReadableText.h"
#include "store/clsCRC.h"

#include <algorithm>
#include <map>
#include <new>
#include <stdexcept>

namespace {

// One look through a store.
class Verifier {
public:
    Verifier(Files& files, CodePage& codePage, const Text& path)
        : files_(files), codePage_(codePage), crc_(codePage), store_(ReadStore(files, path))
    {
    }

    // False: stopped.
    bool ReadFiles(const GoOn& goOn)
    {
        std::size_t done = 0;
        for (here_ = 0; here_ < store_.directories.size(); ++here_) {
            const StoreDirectory& directory = store_.directories[here_];
            seen_.clear();
            if (directory.isLink)
                Find(Trouble::unreadable, {}, u"a link to another directory is not followed");
            if (directory.error != FileError::none) Find(Trouble::unreadable, {}, Describe(directory.error));
            for (const DirectoryEntry& email : directory.emails) {
                if (!goOn(done++, store_.emails)) return false;
                ReadEmailOf(directory, email);
            }
        }
        return goOn(done, store_.emails);
    }

    void HoldAgainst(const std::vector<SavedRecord>& records, const std::vector<Text>& folders)
    {
        const Matching matching = MatchRecords(records, folders, store_, emails_, codePage_);
        for (const std::size_t directory : matching.strayDirectories) {
            here_ = directory;
            const auto count = static_cast<std::int64_t>(store_.directories[directory].emails.size());
            Find(Trouble::strayDirectory, {}, DecimalText(count));
        }
        for (const std::size_t file : matching.filesAlone) {
            here_ = emails_[file].directory;
            Find(Trouble::fileAlone, emails_[file].name, emails_[file].subject);
        }
        std::map<Text, std::size_t> places;
        for (std::size_t i = store_.directories.size(); i-- > 0;)
            places[FolderKey(store_.directories[i].folder, codePage_)] = i;
        for (const std::size_t i : matching.recordsAlone) {
            const auto place = places.find(FolderKey(records[i].folder, codePage_));
            here_ = place == places.end() ? store_.directories.size() : place->second;
            found_.push_back(
                {here_, {Trouble::recordAlone, records[i].folder, {}, records[i].subject, records[i].crc}});
        }
    }

    Verification Result()
    {
        std::stable_sort(found_.begin(), found_.end(), [this](const Found& a, const Found& b) {
            const bool lacksDirectory = a.directory == store_.directories.size();
            if (a.directory != b.directory || !lacksDirectory) return a.directory < b.directory;
            return a.finding.folder < b.finding.folder;
        });
        Verification result;
        for (Found& each : found_) result.findings.push_back(std::move(each.finding));
        result.directories = store_.directories.size();
        result.files = store_.emails;
        return result;
    }

private:
    struct Found {
        std::size_t directory; // its place in the store
        Finding finding;
    };

    void Find(Trouble trouble, const Text& file, const Text& detail)
    {
        found_.push_back({here_, {trouble, store_.directories[here_].folder, file, detail, {}}});
    }

    void ReadEmailOf(const StoreDirectory& directory, const DirectoryEntry& email)
    {
        emails_.push_back({here_, email.name, {}});
        if (email.kind != EntryKind::file) return Find(Trouble::unreadable, email.name, u"it is no file");
        FileError error = FileError::none;
        try {
            std::string bytes;
            error = files_.ReadWhole(PathOf(directory, email.name), bytes);
            if (error == FileError::none) Look(directory, email.name, bytes);
        } catch (const std::bad_alloc&) {
            error = FileError::outOfMemory;
        } catch (const std::length_error&) { // more characters than a text can have
            error = FileError::outOfMemory;
        }
        if (error != FileError::none) Find(Trouble::unreadable, email.name, Describe(error));
    }

    void Look(const StoreDirectory& directory, const Text& name, const std::string& bytes)
    {
        const MessageFields fields = ReadMessageFields(bytes);
        emails_.back().subject = ReadableText(FieldValue(fields, "subject"), {}, codePage_);
        Text why;
        switch (WholenessOf(bytes, fields, why)) {
        case Wholeness::whole:
            break;
        case Wholeness::empty:
            return Find(Trouble::empty, name, {}); // empty files are not alike
        case Wholeness::cutShort:
            Find(Trouble::cutShort, name, why);
            break;
        case Wholeness::noHeaders:
            Find(Trouble::noHeaders, name, {});
            break;
        }
        const auto sameSum = seen_.equal_range({bytes.size(), crc_.CalculateBytes(bytes)});
        for (auto each = sameSum.first; each != sameSum.second; ++each) {
            std::string other;
            if (files_.ReadWhole(PathOf(directory, each->second), other) != FileError::none || other != bytes)
                continue;
            return Find(Trouble::sameContent, name, each->second);
        }
        seen_.emplace(std::pair(bytes.size(), crc_.Value()), name);
    }

    Files& files_;
    CodePage& codePage_;
    clsCRC crc_;
    const Store store_;
    std::size_t here_ = 0;                                           // the directory under way
    std::multimap<std::pair<std::size_t, std::int32_t>, Text> seen_; // its files by size and checksum
    std::vector<ReadEmail> emails_;
    std::vector<Found> found_;
};

} // namespace

Text NameOf(Trouble trouble)
{
    switch (trouble) {
    case Trouble::empty:
        return u"empty";
    case Trouble::cutShort:
        return u"cut-short";
    case Trouble::noHeaders:
        return u"no-headers";
    case Trouble::unreadable:
        return u"unreadable";
    case Trouble::sameContent:
        return u"same-content";
    case Trouble::recordAlone:
        return u"record-alone";
    case Trouble::fileAlone:
        return u"file-alone";
    case Trouble::strayDirectory:
        return u"stray-directory";
    }
    return {};
}

Text SentenceOf(const Finding& finding)
{
    const Text name = finding.file.empty() ? finding.detail : finding.file;
    switch (finding.trouble) {
    case Trouble::empty:
        return u"The file is empty: " + name;
    case Trouble::cutShort:
        return u"The file is cut short: " + name + u" (" + finding.detail + u")";
    case Trouble::noHeaders:
        return u"The file is no e-mail, it has no header: " + name;
    case Trouble::unreadable:
        return finding.file.empty()
                   ? u"The directory cannot be looked into: " + finding.detail
                   : u"The file cannot be looked into: " + name + u" (" + finding.detail + u")";
    case Trouble::sameContent:
        return u"The file has the same content as another one: " + name + u" (" + finding.detail + u")";
    case Trouble::recordAlone:
        return u"Recorded as saved, but no file seems to be it: " + name;
    case Trouble::fileAlone:
        return u"Not recorded as saved: " + name;
    case Trouble::strayDirectory:
        return u"No folder of the records has this directory, which holds e-mails: " + finding.detail;
    }
    return {};
}

std::vector<SavedRecord> ReadRecords(SavedEmails& saved)
{
    std::vector<SavedRecord> records;
    const auto rows = OpenedDatabase(saved).OpenRecordset(u"SELECT efolder, esubject, ecrc FROM saved");
    const std::size_t folder = rows->Column(u"efolder"), subject = rows->Column(u"esubject"),
                      crc = rows->Column(u"ecrc");
    for (; !rows->AtEnd(); rows->MoveNext())
        records.push_back({rows->Field(folder), rows->Field(subject), rows->Field(crc)});
    return records;
}

Verification VerifyStore(Files& files, CodePage& codePage, const Text& store,
                         const std::vector<SavedRecord>* records, const std::vector<Text>& folders,
                         const GoOn& goOn)
{
    Verifier verifier(files, codePage, store);
    const bool finished = verifier.ReadFiles(goOn);
    if (finished && records) verifier.HoldAgainst(*records, folders);
    Verification result = verifier.Result();
    result.stopped = !finished;
    result.records = records ? records->size() : 0;
    return result;
}
