// Claims.cpp: what a stored file says it is, and what it is.
#include "demo/mailbox/Claims.h"

#include "demo/mailbox/Headers.h"
#include "demo/mailbox/LoadMailbox.h"
#include "demo/mailbox/Names.h"

#include <algorithm>
#include <map>
#include <optional>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kShown = 128;    // characters of a subject that the program reads
constexpr std::size_t kCompared = 100; // and of those that are compared: a long path cuts names

// The row that a file name begins with: all its digits count, and there are at least four.
void ReadName(StoredFile& file)
{
    const std::string& name = file.name;
    const std::size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
    if (digits < 4 || digits > 9 || (digits > 4 && name[0] == '0')) return;
    if (name.size() < 4 || !EqualNoCase(name.substr(name.size() - 4), ".eml")) return;
    file.row = static_cast<std::size_t>(std::stoul(name.substr(0, digits)));
    file.subject = name.substr(digits, name.size() - 4 - digits);
    if (file.subject.starts_with('_')) file.subject.erase(0, 1);
    file.isExport = true;
}

// As a file name shows it: letters, digits and a few signs.
std::string NameForm(std::string_view subject)
{
    constexpr std::string_view kAllowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_%$&!#~@'";
    std::string form;
    for (const char c : subject)
        if (kAllowed.find(c) != std::string_view::npos) form += c;
    return form.substr(0, kCompared);
}

// Nothing when it is encoded, not ASCII or has runs of blanks: who cleans it may do so in more than one way.
std::optional<std::string> PlainSubject(const MailMessage& message)
{
    const std::string subject = HeaderValue(HeaderBlock(message.bytes), "Subject");
    const bool ascii = std::all_of(subject.begin(), subject.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    for (const char* run : {"=?", "  ", "\t"})
        if (!ascii || subject.find(run) != std::string::npos) return std::nullopt;
    return NameForm(subject.substr(0, kShown));
}

bool HoldsBytes(const fs::path& file, const std::string& bytes)
{
    std::error_code error;
    return fs::file_size(file, error) == bytes.size() && !error && ReadFileBytes(file) == bytes;
}

// The messages by the subject of their names. A name that meets one that is there gets letters behind it.
class Subjects {
public:
    explicit Subjects(const MailFolder& folder)
    {
        for (std::size_t row = 0; row < folder.messages.size(); ++row)
            if (const auto subject = PlainSubject(folder.messages[row]))
                if (!rows_.emplace(*subject, row).second) repeated_.push_back(*subject);
    }

    std::size_t Find(std::string subject) const
    {
        for (subject.resize(std::min(subject.size(), kCompared)); !subject.empty(); subject.pop_back()) {
            if (const auto found = rows_.find(subject); found != rows_.end()) return found->second;
            if (subject.back() < 'a' || subject.back() > 'y') break;
        }
        return kNoMessage;
    }

    const std::vector<std::string>& Repeated() const { return repeated_; }

private:
    std::map<std::string, std::size_t> rows_;
    std::vector<std::string> repeated_;
};

std::string WhatItHolds(const MailFolder& folder, const StoredFile& file)
{
    for (std::size_t row = 0; row < folder.messages.size(); ++row)
        if (HoldsBytes(file.path, folder.messages[row].bytes))
            return file.name + " holds another e-mail than its name says: that of row " + std::to_string(row);
    return file.name + " holds no e-mail of the folder";
}

} // namespace

std::vector<StoredFile> ListStoredFiles(const fs::path& directory)
{
    std::vector<StoredFile> files;
    std::error_code error;
    if (directory.empty()) return files;
    for (auto entry = fs::directory_iterator(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (!entry->is_regular_file()) continue;
        StoredFile file;
        file.path = entry->path();
        const std::u8string name = file.path.filename().u8string();
        file.name.assign(name.begin(), name.end());
        ReadName(file);
        files.push_back(file);
    }
    std::sort(files.begin(), files.end(),
              [](const StoredFile& a, const StoredFile& b) { return a.name < b.name; });
    return files;
}

FolderClaims HoldFilesAgainst(const MailFolder& folder, const std::vector<StoredFile>& files, Rows rows)
{
    FolderClaims claims;
    claims.exported.assign(folder.messages.size(), false);
    const Subjects subjects(folder);
    if (rows == Rows::move)
        for (const std::string& subject : subjects.Repeated())
            claims.problems.push_back("two messages with the subject \"" + subject +
                                      "\": their files cannot be told apart");
    for (const StoredFile& file : files) {
        std::size_t message = kNoMessage;
        if (file.isExport) message = rows == Rows::stay ? file.row : subjects.Find(file.subject);
        if (message >= folder.messages.size()) message = kNoMessage;
        claims.claimed.push_back(message);
        if (message == kNoMessage)
            claims.problems.push_back(file.name + " is no e-mail of the folder by its name");
        else if (HoldsBytes(file.path, folder.messages[message].bytes))
            claims.exported[message] = true;
        else
            claims.problems.push_back(WhatItHolds(folder, file));
    }
    return claims;
}

std::vector<std::string> HoldRecordsAgainst(const MailFolder& folder, const std::vector<StoredFile>& files,
                                            const FolderClaims& claims,
                                            const std::vector<std::u16string>& recordedSubjects)
{
    std::vector<std::string> problems;
    std::multimap<std::string, std::string> records; // by the form that names have
    for (const std::u16string& subject : recordedSubjects) {
        const std::string shown = NameToUtf8(subject);
        records.emplace(NameForm(shown), shown);
    }
    std::size_t unknown = 0; // files whose record cannot be told by its subject
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::size_t message = claims.claimed[i];
        const auto subject = message == kNoMessage ? std::nullopt : PlainSubject(folder.messages[message]);
        if (!subject) {
            ++unknown;
            continue;
        }
        const auto found = records.find(*subject);
        if (found != records.end())
            records.erase(found);
        else
            problems.push_back(files[i].name + " has no record");
    }
    for (; unknown > 0 && !records.empty(); --unknown) records.erase(records.begin());
    if (unknown > 0) problems.push_back(std::to_string(unknown) + " more files have no record");
    for (const auto& record : records)
        problems.push_back("the record of \"" + record.second + "\" has no file");
    return problems;
}
