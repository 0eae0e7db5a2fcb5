#include "folders/LookAlikes.h"

#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"

#include <algorithm>
#include <unordered_map>

namespace {

bool IsAt(const AlikeList& list, const EmailEntry& entry)
{
    const auto row = static_cast<std::size_t>(entry.row);
    return row < list.crcs.size() && list.crcs[row] == entry.Crc;
}

bool Read(FolderRun& run, AlikeList& list)
{
    const bool isRead = ReadFolderEntries(run.client, [](int) {});
    list.crcs = isRead && !run.Flags().stopAfterEmail ? CrcsByRow(run.client) : std::vector<Text>();
    return !list.crcs.empty();
}

// Whether the e-mails that this export has handled stand in the list in the order of their rows. Of those
// that look the same nothing can be said.
bool IsInOrder(const AlikeList& list, const FolderTally& tally)
{
    std::unordered_map<Text, std::size_t> rowOf;
    for (std::size_t row = 0; row < list.crcs.size(); ++row)
        if (const auto [place, isNew] = rowOf.emplace(list.crcs[row], row); !isNew)
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

} // namespace

OwnRecord FindOwnRecord(FolderRun& run, AlikeList& list, const FolderTally& tally, const EmailEntry& entry)
{
    const std::int32_t recorded = CountRecords(run.saved, entry.Crc, run.currentFolder);
    if (recorded == 0) return OwnRecord::none;
    const auto alike = [&] { return std::count(list.crcs.begin(), list.crcs.end(), entry.Crc); };
    // Only where there are several does it matter that the list is still as it was read.
    const auto rows = static_cast<std::int32_t>(list.crcs.size());
    const bool isKnown =
        IsAt(list, entry) &&
        (alike() == 1 || (ListItemCount(run.client) == rows && IsListAsRead(run.client, list.crcs)));
    if (!isKnown && (!Read(run, list) || !IsAt(list, entry))) return OwnRecord::inDoubt;
    const auto place = std::count(list.crcs.begin(), list.crcs.begin() + entry.row + 1, entry.Crc);
    if (recorded >= place) return OwnRecord::there;
    return IsInOrder(list, tally) ? OwnRecord::none : OwnRecord::inDoubt;
}
