#include "folders/ExportTally.h"

#include "folders/StoredFiles.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace {

using Counts = std::map<Text, std::int32_t>;

std::int32_t SizeOf(std::size_t size)
{
    return static_cast<std::int32_t>(size);
}

Counts HandledOfCrc(const FolderTally& tally)
{
    Counts counts;
    for (const auto& [email, saved] : tally.emails) ++counts[email.second];
    return counts;
}

Counts ListedOfCrc(const FolderTally& tally, std::int32_t from)
{
    Counts counts;
    if (!tally.listAtEnd) return counts;
    for (std::size_t row = static_cast<std::size_t>(from); row < tally.listAtEnd->size(); ++row)
        if (const Text& crc = (*tally.listAtEnd)[row]; !crc.empty()) ++counts[crc];
    return counts;
}

std::set<std::int32_t> RowsRead(const FolderTally& tally)
{
    std::set<std::int32_t> rows;
    for (const auto& [email, saved] : tally.emails) rows.insert(email.first);
    return rows;
}

// Of the handled e-mails; none, and the log says so, when the directory cannot be read. Those that look alike
// have one record together as a rule, and one file; it may be that of one that this run has not handled.
std::int32_t SavedOf(FolderRun& run, const FolderTally& tally)
{
    const Counts handled = HandledOfCrc(tally), listed = ListedOfCrc(tally, 0);
    Counts savedOfCrc;
    for (const auto& [email, isSaved] : tally.emails)
        if (isSaved) ++savedOfCrc[email.second];
    std::int32_t saved = 0;
    for (const auto& [crc, count] : savedOfCrc) {
        const std::int32_t own = handled.at(crc);
        const auto inList = listed.find(crc);
        const std::int32_t others = inList == listed.end() ? 0 : std::max(inList->second - own, 0);
        if (own == 1 && others == 0)
            ++saved;
        else
            saved += std::clamp(CountRecords(run.saved, crc, run.currentFolder) - others, 0, count);
    }
    if (saved == 0) return 0;
    std::vector<Text> files;
    if (const Text reason = ListStoredFiles(run, files); !reason.empty()) {
        run.Log(reason);
        run.Flags().runCompleted = false;
    }
    return std::min(saved, SizeOf(files.size()));
}

// Of the e-mails that were met again: those of which the list does have more than one.
std::vector<Text> TrueLookAlikes(const FolderTally& tally)
{
    const Counts listed = ListedOfCrc(tally, 0);
    std::vector<Text> alike;
    std::copy_if(tally.metAgain.begin(), tally.metAgain.end(), std::back_inserter(alike),
                 [&](const Text& crc) {
                     const auto found = listed.find(crc);
                     return !tally.listAtEnd || (found != listed.end() && found->second > 1);
                 });
    return alike;
}

Text LookAlikeText(std::int32_t firstRow)
{
    return u"look exactly like another e-mail of this folder, the first like row " + DecimalText(firstRow);
}

void NoteLookAlikes(FolderRun& run, bool areSaved)
{
    NoteMissedExtra(run.client, u"Look-alikes", areSaved);
}

void LogMetAgain(FolderRun& run, const FolderTally& tally)
{
    const std::vector<Text> alike = TrueLookAlikes(tally);
    if (!alike.empty()) {
        run.Log(DecimalText(SizeOf(alike.size())) + u" skipped: " +
                LookAlikeText(tally.firstRows.at(alike.front())));
        NoteLookAlikes(run, tally.savesLookAlikes);
    }
    if (const std::size_t moved = tally.metAgain.size() - alike.size(); moved > 0)
        run.Log(DecimalText(SizeOf(moved)) +
                u" skipped: met a second time, as the list or the selection moved");
}

} // namespace

void NoteHandled(FolderTally& tally, std::int32_t row, const Text& crc, bool saved)
{
    bool& known = tally.emails[{row, crc}];
    known = known || saved;
    tally.firstRows.emplace(crc, row);
    const bool isNext = row == tally.lastRow || row == tally.lastRow + 1 || tally.lastRow < 0;
    tally.hasMoved = tally.hasMoved || !isNext;
    tally.lastRow = row;
}

void NoteSkipped(FolderTally& tally, SkipReason reason)
{
    ++tally.skipped[reason];
    if (reason == SkipReason::unread) tally.hasMoved = true;
}

void NoteRecorded(FolderTally& tally, std::int32_t row, const Text& crc)
{
    const bool isMetAgain =
        tally.savesLookAlikes ? tally.emails.count({row, crc}) != 0 : tally.firstRows.count(crc) != 0;
    NoteSkipped(tally, isMetAgain ? SkipReason::metAgain : SkipReason::recorded);
    if (isMetAgain) tally.metAgain.push_back(crc);
    if (row == tally.lastRow) tally.hasMoved = true; // the Down key did not lead on
    NoteHandled(tally, row, crc, true);
}

void NoteInDoubt(FolderTally& tally, std::int32_t row, const Text& crc)
{
    NoteSkipped(tally, SkipReason::metAgain);
    tally.metAgain.push_back(crc);
    tally.hasMoved = true;
    NoteHandled(tally, row, crc, false);
}

bool NeedsListAtEnd(const FolderTally& tally, std::int32_t passed)
{
    const bool mayHaveLookAlikesAbove = tally.firstRow > 0 && tally.skipped.count(SkipReason::recorded) != 0;
    const bool countFits = tally.rows - tally.firstRow == SizeOf(tally.emails.size());
    return passed > 0 || tally.hasMoved || mayHaveLookAlikesAbove || !countFits;
}

bool IsInOrder(const FolderTally& tally, const std::vector<Text>& crcs)
{
    std::unordered_map<Text, std::size_t> rowOf;
    for (std::size_t row = 0; row < crcs.size(); ++row)
        if (const auto [place, isNew] = rowOf.emplace(crcs[row], row); !isNew)
            place->second = Text::npos; // one of several
    std::size_t last = 0;
    for (const auto& [email, saved] : tally.emails) {
        const auto found = rowOf.find(email.second);
        if (found == rowOf.end() || found->second == Text::npos) continue;
        if (found->second < last) return false;
        last = found->second;
    }
    return true;
}

std::vector<std::int32_t> MissedRows(const FolderTally& tally)
{
    if (!tally.listAtEnd) return {};
    const std::vector<Text>& crcs = *tally.listAtEnd;
    const std::set<std::int32_t> read = RowsRead(tally);
    Counts left = HandledOfCrc(tally);
    std::vector<std::int32_t> unknown, missed;
    for (std::int32_t row = IsInOrder(tally, crcs) ? tally.firstRow : 0; row < SizeOf(crcs.size()); ++row) {
        const Text& crc = crcs[static_cast<std::size_t>(row)];
        if (tally.emails.count({row, crc}) != 0)
            --left[crc];
        else if (!crc.empty() || !read.count(row))
            unknown.push_back(row);
    }
    // Those that have moved: of several that look the same one for each that was handled.
    for (const std::int32_t row : unknown) {
        const auto handled = left.find(crcs[static_cast<std::size_t>(row)]);
        if (handled != left.end() && handled->second > 0)
            --handled->second;
        else
            missed.push_back(row);
    }
    return missed;
}

void LogSkipReasons(FolderRun& run, const FolderTally& tally)
{
    for (const auto& [reason, count] : tally.skipped) {
        if (reason == SkipReason::recorded)
            run.Log(DecimalText(count) + u" skipped: recorded as saved before");
        if (reason == SkipReason::metAgain) LogMetAgain(run, tally);
        if (reason == SkipReason::nameTaken)
            run.Log(DecimalText(count) + u" skipped: the file name is taken");
        if (reason == SkipReason::unread) run.Log(DecimalText(count) + u" skipped: could not be read");
    }
    const auto recorded = tally.skipped.find(SkipReason::recorded);
    if (recorded == tally.skipped.end() || recorded->second < SizeOf(tally.firstRows.size())) return;
    std::vector<Text> files;
    if (ListStoredFiles(run, files).empty() && files.empty())
        run.Log(u"All of them are recorded as saved, but there is no .eml file in " + run.exportFolder +
                u" - another or emptied store folder?");
}

void LogLookAlikes(FolderRun& run, const std::vector<TextView>& crcs)
{
    std::map<TextView, std::size_t> firstRows;
    std::int32_t count = 0;
    std::size_t firstRow = 0;
    for (std::size_t row = 0; row < crcs.size(); ++row) {
        if (crcs[row].empty()) continue;
        const auto [first, isNew] = firstRows.emplace(crcs[row], row);
        if (!isNew && ++count == 1) firstRow = first->second;
    }
    if (count == 0) return;
    run.Log(DecimalText(count) + u' ' + LookAlikeText(SizeOf(firstRow)));
    NoteLookAlikes(run, false);
}

std::int32_t NotLookedAt(const FolderTally& tally, Extent extent)
{
    const std::int32_t from = extent == Extent::wholeList ? 0 : tally.firstRow;
    const std::set<std::int32_t> read = RowsRead(tally);
    if (!tally.listAtEnd) {
        const auto inList = std::count_if(read.begin(), read.end(),
                                          [&](std::int32_t row) { return row >= from && row < tally.rows; });
        return std::max(tally.rows - from - static_cast<std::int32_t>(inList), 0);
    }
    // By what the rows hold: they may have moved since.
    const Counts handled = HandledOfCrc(tally);
    std::int32_t missed = 0;
    for (const auto& [crc, count] : ListedOfCrc(tally, from)) {
        const auto own = handled.find(crc);
        missed += std::max(count - (own == handled.end() ? 0 : own->second), 0);
    }
    for (std::size_t row = static_cast<std::size_t>(from); row < tally.listAtEnd->size(); ++row)
        if ((*tally.listAtEnd)[row].empty() && !read.count(SizeOf(row))) ++missed;
    // A row that could not be read may have held what has gone since.
    if (tally.skipped.count(SkipReason::unread))
        missed = std::max(missed, tally.rowsAtStart - from - SizeOf(read.size()));
    return missed;
}

void AddToTotals(FolderRun& run, const FolderTally& tally, Extent extent)
{
    run.exported.handled += SizeOf(tally.emails.size());
    run.exported.notLookedAt += NotLookedAt(tally, extent);
    try {
        run.exported.saved += SavedOf(run, tally);
    } catch (const DatabaseError&) {
        // Without an answer none of them is known to be saved.
    }
}

void SayClosingLine(FolderRun& run)
{
    const ExportTotals& totals = run.exported;
    SayMissedExtras(run);
    if (totals.handled == 0 && totals.notLookedAt == 0 && run.uncheckedFolders == 0) return;
    if (const Text unchecked = NotCheckedText(run); !unchecked.empty()) run.Log(unchecked);
    Text line = DecimalText(totals.saved) + u" of " + DecimalText(totals.handled) +
                u" e-mail(s) handled in this run are saved; " + DecimalText(totals.handled - totals.saved) +
                u" are not.";
    if (totals.notLookedAt > 0) line += u" " + DecimalText(totals.notLookedAt) + u" more were not looked at.";
    run.Log(line);
    run.view.AppendSummary(line);
}
