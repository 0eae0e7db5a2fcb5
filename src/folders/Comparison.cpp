#include "folders/Comparison.h"

#include "folders/ExportStatistics.h"
#include "folders/ExportTally.h"
#include "folders/MatchScore.h"
#include "folders/ThoroughSearch.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"
#include "oe/WindowDiscovery.h"
#include "store/SavedMaintenance.h"
#include "text/Numbers.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace {

// Asked before each e-mail and each file: some folders take an hour.
bool IsStopped(FolderRun& run)
{
    return run.Flags().stopAfterEmail;
}

void ShowProgress(FolderRun& run, std::size_t index, std::int64_t count)
{
    run.view.ShowPercentage(Bar::currentFolder, Percentage(static_cast<std::int64_t>(index), count - 1));
    run.view.ProcessEvents();
}

// The e-mail's number that a file's name begins with. It has four digits, more from 10000 on.
std::int32_t NumberOfFile(const Text& name)
{
    const std::size_t digits = std::min(name.find_first_not_of(u"0123456789"), name.size());
    const double number = LeadingNumber(TextView(name).substr(0, std::clamp<std::size_t>(digits, 4, 9)));
    return number >= 0 && number <= 999999999 ? static_cast<std::int32_t>(number) : -1;
}

// The counts alone decide: a missing file and a surplus one cancel out.
std::optional<ComparisonResult> CompareCounts(FolderRun& run, std::int32_t total,
                                              std::span<const Text> emlFiles)
{
    ComparisonResult result;
    result.total = total;
    result.saved = static_cast<std::int32_t>(emlFiles.size());
    result.unsaved = total - result.saved;
    if (result.unsaved <= 0) return result;
    std::unordered_set<std::int32_t> numbers;
    for (const Text& name : emlFiles) numbers.insert(NumberOfFile(name));
    for (std::int32_t row = 0; row < total; ++row) {
        if (IsStopped(run)) return std::nullopt;
        if (result.firstUnsaved < 0 && !numbers.count(row)) result.firstUnsaved = row;
        ShowProgress(run, static_cast<std::size_t>(row), total);
    }
    return result;
}

// Rows beyond those that were read, and the first one, of which nothing is certain.
void AddUnread(std::vector<EmailEntry>& entries, std::int32_t count)
{
    for (auto row = static_cast<std::int32_t>(entries.size()); row < count; ++row) {
        entries.emplace_back();
        entries.back().row = row;
    }
    for (EmailEntry& entry : entries)
        if (entry.row == 0) entry.Crc.clear();
}

// A list that is still filling, that mail comes into or that is sorted anew is read once more. What could not
// be read by then counts as not saved. False as ReadEntries.
bool ReadWholeList(FolderRun& run, std::int32_t expected)
{
    const auto show = [&run](int percent) { run.view.ShowPercentage(Bar::currentFolder, percent); };
    for (int reading = 1; reading <= 2; ++reading) {
        if (!ReadFolderEntries(run.client, show) || IsStopped(run)) return false;
        const std::optional<std::int32_t> count = CountEmails(run);
        if (!count) return false;
        const std::vector<Text> crcs = CrcsByRow(run.client);
        const bool asRead =
            std::ssize(crcs) == *count && IsListAsRead(run.client, crcs) && (*count > 0 || expected == 0);
        if (run.client.silent) return false;
        if (asRead) return true;
        run.Log(reading == 1 ? u"The message list has changed while it was read; it is read once more."
                             : u"The message list goes on changing; what has come counts as not saved.");
        if (reading == 2) AddUnread(run.client.folderEntries, *count > 0 ? *count : expected);
    }
    return true;
}

// The client's e-mails in the order of its list. False when they are not all there. When the client is gone,
// what was not read would pass for e-mails without any detail.
bool ReadEntries(FolderRun& run, std::int32_t expected, std::vector<const EmailEntry*>& entries)
{
    run.view.ShowText(u"[1 of 3] Reading Outlook Express emails...");
    WindowHandle mainWindow = 0;
    if (!ReadWholeList(run, expected) || !IsOeRunning(run.client.desktop, mainWindow)) return false;
    LogMissingColumns(run);
    for (const EmailEntry& entry : run.client.folderEntries) entries.push_back(&entry);
    std::sort(entries.begin(), entries.end(),
              [](const EmailEntry* a, const EmailEntry* b) { return a->row < b->row; });
    return true;
}

// Of those that look the same only one can be saved, but by the user's choice.
void SayLookAlikes(FolderRun& run, const std::vector<const EmailEntry*>& entries)
{
    if (run.view.Options().lookAlikes) return;
    std::vector<TextView> crcs;
    for (const EmailEntry* entry : entries) crcs.push_back(entry->Crc);
    LogLookAlikes(run, crcs);
}

ResultsRow ResultsRowOf(const Text& folder, const EmailEntry& entry, Locale& locale)
{
    const double date = entry.Received > entry.Sent ? entry.Received : entry.Sent;
    return {folder, DecimalText(entry.row), entry.Subject, locale.DateText(date), entry.Crc};
}

// Asks of each e-mail whether it is saved, and reports those that are not.
template <class IsSavedEntry>
std::optional<ComparisonResult> CompareEntries(FolderRun& run, const std::vector<const EmailEntry*>& entries,
                                               IsSavedEntry isSaved)
{
    run.view.ShowText(u"[3 of 3] Comparing emails...");
    ComparisonResult result;
    result.total = result.unsaved = static_cast<std::int32_t>(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (IsStopped(run)) return std::nullopt;
        const EmailEntry& entry = *entries[i];
        // A row that could not be read is no e-mail that a record or a file could be of.
        if (!entry.Crc.empty() && isSaved(entry)) {
            --result.unsaved;
            ++result.saved;
        } else {
            run.Log(u"Not saved " + DecimalText(entry.row) + u" - " + entry.Subject);
            run.view.AddResultsRow(ResultsRowOf(run.currentFolder, entry, run.locale));
            if (result.firstUnsaved < 0) result.firstUnsaved = entry.row;
        }
        ShowProgress(run, i, result.total);
    }
    SayLookAlikes(run, entries);
    return result;
}

std::optional<ComparisonResult> CompareWithDatabase(FolderRun& run, std::int32_t expected)
{
    (void)OpenedDatabase(run.saved); // or it throws, before all is read for nothing
    std::vector<const EmailEntry*> entries;
    if (!ReadEntries(run, expected, entries)) return std::nullopt;
    run.view.ShowText(u"[2 of 3] Caching database...");
    const CrcCounts recorded =
        FolderCrcCounts(run.saved, run.currentFolder, [&run] { run.view.ProcessEvents(); });
    const bool eachCounts = run.view.Options().lookAlikes;
    CrcCounts met;
    return CompareEntries(run, entries, [&](const EmailEntry& entry) {
        const auto found = recorded.find(entry.Crc);
        return found != recorded.end() && (!eachCounts || ++met[entry.Crc] <= found->second);
    });
}

bool HasNoDate(const EmlSummary& summary)
{
    return summary.DeliveryDate == kNoListDate && summary.ReceivedDate == kNoListDate &&
           summary.SentDate == kNoListDate;
}

// What a match is made of, and no more: there may be very many.
EmlSummary ComparedPartOf(EmlSummary&& whole)
{
    EmlSummary part;
    part.Subject = std::move(whole.Subject);
    part.SubjectKey = std::move(whole.SubjectKey);
    part.FromKey = std::move(whole.FromKey);
    part.ToKey = std::move(whole.ToKey);
    part.DeliveryDateText = std::move(whole.DeliveryDateText);
    part.ReceivedDateText = std::move(whole.ReceivedDateText);
    part.SentDateText = std::move(whole.SentDateText);
    return part;
}

void LogUnreadable(FolderRun& run, const Text& file, const Text& fault)
{
    run.Log(u"Ignoring unreadable email: " + file + u" (" + fault + u")");
}

// Takes one after the other, as far as it gets before it is stopped.
template <class Take>
void VisitFiles(FolderRun& run, std::span<const Text> emlFiles, Take take)
{
    run.view.ShowText(u"[2 of 3] Reading saved emails...");
    for (std::size_t i = 0; i < emlFiles.size() && !IsStopped(run); ++i) {
        take(emlFiles[i]);
        ShowProgress(run, i, static_cast<std::int64_t>(emlFiles.size()));
    }
}

std::vector<EmlSummary> ReadRecords(FolderRun& run, std::span<const Text> emlFiles)
{
    const EmlContext context{run.files, run.codePage, run.locale, run.view.Options().firstFolder};
    std::vector<EmlSummary> records;
    records.reserve(emlFiles.size());
    VisitFiles(run, emlFiles, [&](const Text& file) {
        EmlSummary summary;
        const Text fault = ReadEmlSummary(run.exportFolder + file, context, summary);
        if (!fault.empty())
            LogUnreadable(run, file, fault);
        else if (HasNoDate(summary))
            run.Log(u"Ignoring dateless email: " + file);
        else
            records.push_back(ComparedPartOf(std::move(summary)));
    });
    return records;
}

void LogDifference(FolderRun& run, std::size_t entryCount, std::size_t recordCount)
{
    const auto difference = static_cast<std::int64_t>(entryCount) - static_cast<std::int64_t>(recordCount);
    if (difference > 0)
        run.Log(run.currentFolder + u" - " + DecimalText(difference) + u" unsaved email(s).");
    else if (difference == 0)
        run.Log(run.currentFolder + u" - count matches the number of saved emails.");
    else // Kept: the number has its minus sign
        run.Log(run.currentFolder + u" - there are " + DecimalText(difference) + u" more saved emails.");
}

// Those of the entries whose file was found by the extra's rules.
std::unordered_set<const EmailEntry*>
FindThoroughly(FolderRun& run, const std::vector<const EmailEntry*>& entries, std::span<const Text> emlFiles)
{
    std::vector<ShownEmail> files;
    VisitFiles(run, emlFiles, [&](const Text& file) {
        std::string message;
        const FileError error = run.files.ReadWhole(run.exportFolder + file, message);
        if (error == FileError::none)
            files.push_back(ShownOf(message, run.codePage));
        else
            LogUnreadable(run, file, Describe(error));
    });
    LogDifference(run, entries.size(), files.size());
    std::unordered_set<const EmailEntry*> found;
    const std::vector<std::int32_t> places =
        SearchThoroughly(run.client, entries, files, [&run] { run.view.ProcessEvents(); });
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (places[i] >= 0) found.insert(entries[i]);
    return found;
}

std::optional<ComparisonResult> CompareWithFiles(FolderRun& run, std::int32_t expected,
                                                 std::span<const Text> emlFiles)
{
    std::vector<const EmailEntry*> entries;
    if (!ReadEntries(run, expected, entries)) return std::nullopt;
    const bool thorough = run.view.Options().thoroughComparison;
    std::vector<EmlSummary> records;
    std::unordered_set<const EmailEntry*> found;
    if (thorough)
        found = FindThoroughly(run, entries, emlFiles);
    else
        records = ReadRecords(run, emlFiles);
    if (IsStopped(run)) return std::nullopt;
    if (!thorough) LogDifference(run, entries.size(), records.size());
    RecordSearch search(records);
    std::optional<HeldCrcs> held;
    if (run.saved.IsWritable())
        held.emplace(run.saved, run.currentFolder, [&run] { run.view.ProcessEvents(); });
    else
        run.Log(u"Nothing is recorded: " + WhyNotWritable(run.saved));
    const bool eachCounts = run.view.Options().lookAlikes;
    std::unordered_map<Text, RecordSearch::Places> taken; // by the CRC of those that look the same
    CrcCounts files;                                      // likewise
    const auto hasFile = [&](const EmailEntry& entry) {
        if (thorough) return found.count(&entry) != 0;
        RecordSearch::Places& places = taken[entry.Crc];
        const std::int32_t place = search.Match(entry, places);
        if (place >= 0 && eachCounts) places.insert(place);
        return place >= 0;
    };
    return CompareEntries(run, entries, [&](const EmailEntry& entry) {
        if (!hasFile(entry)) return false;
        // The file is there: the database learns of it.
        const std::int32_t needed = eachCounts ? ++files[entry.Crc] : 1;
        if (run.saved.IsWritable() && !IsSaved(run.saved, entry.Crc, run.currentFolder, needed))
            AddSavedEmail(run.saved, run.currentFolder, entry);
        return true;
    });
}

} // namespace

std::optional<ComparisonResult> CompareFolder(FolderRun& run, std::int32_t count,
                                              std::span<const Text> emlFiles)
{
    switch (run.view.Options().comparison) {
    case ComparisonType::simple:
        return CompareCounts(run, count, emlFiles);
    case ComparisonType::database:
        return CompareWithDatabase(run, count);
    case ComparisonType::file:
        break;
    }
    return CompareWithFiles(run, count, emlFiles);
}
