#include "folders/LookAlikes.h"

#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"

#include <algorithm>

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
    return IsInOrder(tally, list.crcs) ? OwnRecord::none : OwnRecord::inDoubt;
}
