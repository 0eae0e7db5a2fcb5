#include "oe/ListSample.h"

#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"

#include <algorithm>

namespace {

constexpr std::int32_t kEnd = 12; // rows at either end

std::vector<Text> ReadRows(OeClient& client, std::int32_t count, std::int32_t end)
{
    if (count < 1 || !Patiently(client, [&] { return ReadListColumns(client); })) return {};
    std::vector<Text> crcs;
    for (std::int32_t row = 0; row < count; ++row) {
        if (row == end) row = std::max(row, count - end);
        crcs.push_back(ReadEntry(client, row).Crc);
        if (crcs.back().empty() || client.flags.closing) return {};
        SweepNowAndThen(client.memory, row + 1);
    }
    if (ListItemCount(client) != count) return {};
    std::sort(crcs.begin(), crcs.end());
    return crcs;
}

// Of the rows before less than half is there now.
bool AreOthers(const std::vector<Text>& before, const std::vector<Text>& now)
{
    std::vector<Text> common;
    std::set_intersection(before.begin(), before.end(), now.begin(), now.end(), std::back_inserter(common));
    return !now.empty() && common.size() * 2 < before.size();
}

} // namespace

ListSample::ListSample(OeClient& client, std::int32_t count)
    : client_(client), before_(ReadRows(client, count, kEnd))
{
}

bool ListSample::IsRebuilt(std::int32_t count)
{
    const std::vector<Text> now = ReadRows(client_, count, kEnd);
    if (!AreOthers(before_, now) || now == sortedAnew_) return false;
    // A long list that is sorted anew shows other rows at its ends.
    if (count <= 2 * kEnd || AreOthers(before_, ReadRows(client_, count, count))) return true;
    sortedAnew_ = now;
    return false;
}
