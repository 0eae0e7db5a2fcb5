#include "folders/ExportTally.h"

#include <algorithm>

namespace {

std::int32_t SizeOf(std::size_t size)
{
    return static_cast<std::int32_t>(size);
}

// Of the handled e-mails. Those that look alike have one record together as a rule, and one file.
std::int32_t SavedOf(FolderRun& run, const FolderTally& tally)
{
    std::map<Text, std::int32_t> savedOfCrc;
    for (const auto& [email, saved] : tally.emails)
        if (saved) ++savedOfCrc[email.second];
    std::int32_t saved = 0;
    for (const auto& [crc, count] : savedOfCrc)
        saved += count == 1 ? 1 : std::min(count, CountRecords(run.saved, crc, run.currentFolder));
    return std::min(saved, SizeOf(run.client.files.ListEmlFiles(run.exportFolder).size()));
}

} // namespace

void NoteHandled(FolderTally& tally, std::int32_t row, const Text& crc, bool saved)
{
    bool& known = tally.emails[{row, crc}];
    known = known || saved;
    tally.firstRows.emplace(crc, row);
}

void NoteSkipped(FolderTally& tally, SkipReason reason)
{
    ++tally.skipped[reason];
}

void NoteRecorded(FolderTally& tally, std::int32_t row, const Text& crc)
{
    const auto first = tally.firstRows.find(crc);
    const bool isLookAlike = first != tally.firstRows.end() && first->second != row;
    if (isLookAlike && tally.firstLookAlike < 0) tally.firstLookAlike = first->second;
    NoteSkipped(tally, isLookAlike ? SkipReason::lookAlike : SkipReason::recorded);
    NoteHandled(tally, row, crc, true);
}

void LogLookAlikes(FolderRun& run, std::int32_t count, std::int32_t firstRow)
{
    run.Log(DecimalText(count) + u" look exactly like another e-mail of this folder, the first like row " +
            DecimalText(firstRow));
}

void LogSkipReasons(FolderRun& run, const FolderTally& tally)
{
    for (const auto& [reason, count] : tally.skipped) {
        const Text number = DecimalText(count);
        switch (reason) {
        case SkipReason::recorded:
            run.Log(number + u" skipped: recorded as saved before");
            break;
        case SkipReason::lookAlike:
            LogLookAlikes(run, count, tally.firstLookAlike);
            break;
        case SkipReason::nameTaken:
            run.Log(number + u" skipped: the file name is taken");
            break;
        case SkipReason::unread:
            run.Log(number + u" skipped: could not be read");
            break;
        }
    }
    const auto recorded = tally.skipped.find(SkipReason::recorded);
    if (recorded != tally.skipped.end() && recorded->second >= SizeOf(tally.firstRows.size()) &&
        run.client.files.ListEmlFiles(run.exportFolder).empty())
        run.Log(u"All of them are recorded as saved, but there is no .eml file in " + run.exportFolder +
                u" - another or emptied store folder?");
}

std::int32_t NotReached(const FolderTally& tally)
{
    std::set<std::int32_t> read;
    for (const auto& [email, saved] : tally.emails)
        if (email.first >= tally.firstRow && email.first < tally.rows) read.insert(email.first);
    return std::max(tally.rows - tally.firstRow - SizeOf(read.size()), 0);
}

void AddToTotals(FolderRun& run, const FolderTally& tally, Extent extent)
{
    const std::int32_t handled = SizeOf(tally.emails.size());
    const std::int32_t rows = extent == Extent::wholeList ? tally.rows : tally.rows - tally.firstRow;
    run.exported.handled += handled;
    run.exported.notLookedAt += std::max(rows - handled, 0);
    try {
        run.exported.saved += SavedOf(run, tally);
    } catch (const DatabaseError&) {
        // Without an answer none of them is known to be saved.
    }
}

void SayClosingLine(FolderRun& run)
{
    const ExportTotals& totals = run.exported;
    if (totals.handled == 0 && totals.notLookedAt == 0) return;
    Text line = DecimalText(totals.saved) + u" of " + DecimalText(totals.handled) +
                u" e-mail(s) handled in this run are saved; " + DecimalText(totals.handled - totals.saved) +
                u" are not.";
    if (totals.notLookedAt > 0) line += u" " + DecimalText(totals.notLookedAt) + u" more were not looked at.";
    run.Log(line);
    run.view.AppendSummary(line);
}
