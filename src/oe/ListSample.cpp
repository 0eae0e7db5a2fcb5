#include "oe/ListSample.h"

#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteListView.h"

#include <algorithm>

namespace {
constexpr std::int32_t kEnd = 12; // rows at either end
} // namespace

std::vector<Text> SampleList(OeClient& client, std::int32_t count)
{
    if (count < 1 || !Patiently(client, [&] { return ReadListColumns(client); })) return {};
    std::vector<Text> sample;
    for (std::int32_t row = 0; row < count; ++row) {
        if (row == kEnd) row = std::max(row, count - kEnd);
        sample.push_back(ReadEntry(client, row).Crc);
        if (sample.back().empty()) return {};
    }
    if (ListItemCount(client) != count) return {};
    std::sort(sample.begin(), sample.end());
    return sample;
}

bool AreOfTwoLists(const std::vector<Text>& before, const std::vector<Text>& now)
{
    if (before.empty() || now.empty()) return false;
    std::vector<Text> common;
    std::set_intersection(before.begin(), before.end(), now.begin(), now.end(), std::back_inserter(common));
    return common.size() * 2 < now.size();
}
