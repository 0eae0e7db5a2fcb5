#include "oe/RemoteListView.h"

#include "oe/Conversation.h"
#include "oe/RemoteControls.h"
#include "oe/RemoteText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

namespace {

constexpr std::uint32_t kHeaderTextBytes = 255;
constexpr std::uint32_t kListItemText = 1, kListItemState = 8, kHeaderItemText = 2; // mask bits
constexpr std::uint32_t kFocused = 1, kSelected = 2;
constexpr std::uint32_t kCellUnits = 256; // that a list may write; the first 128 are read

WindowHandle HeaderOf(OeClient& client)
{
    return Ask(client, client.handles.listView, message::kListHeader).value_or(0);
}

std::optional<std::int32_t> ColumnCountOf(OeClient& client, WindowHandle header)
{
    return header < 1 ? 0 : Ask(client, header, message::kHeaderItemCount);
}

std::int32_t Param(const RemoteBlock& block)
{
    return static_cast<std::int32_t>(block.address);
}

// Nothing when it was not answered.
std::vector<std::int32_t> ReadColumnOrder(OeClient& client, std::int32_t count)
{
    std::vector<std::int32_t> order(static_cast<std::size_t>(count));
    const auto bytes = static_cast<std::uint32_t>(order.size() * sizeof order[0]);
    const RemoteBlock block = RemoteAlloc(client.memory, client.handles.listView, bytes);
    const WindowHandle list = client.handles.listView;
    const bool answered =
        RemoteWrite(client.memory, block, order.data(), bytes) &&
        Ask(client, list, message::kListColumnOrder, count, Param(block)).value_or(0) != 0 &&
        RemoteRead(client.memory, block, order.data(), bytes);
    RemoteFree(client.memory, block);
    if (!answered) order.clear();
    return order;
}

// The blocks for one header item and its text, in the client.
struct HeaderBlocks {
    RemoteBlock item, text;
};

bool ReadTitle(OeClient& client, WindowHandle header, std::int32_t index, const HeaderBlocks& blocks,
               Text& title)
{
    RemoteHeaderItem item{};
    item.mask = kHeaderItemText;
    item.text = blocks.text.address;
    item.textMax = kHeaderTextBytes;
    std::array<char, kHeaderTextBytes> bytes{};
    const bool answered =
        RemoteWrite(client.memory, blocks.item, &item, sizeof item) &&
        Ask(client, header, message::kHeaderItemA, index, Param(blocks.item)).value_or(0) != 0 &&
        RemoteRead(client.memory, blocks.text, bytes.data(), kHeaderTextBytes);
    if (answered) title = CutAtNul(client.codePage.FromAnsi({bytes.data(), bytes.size()}));
    return answered;
}

// A question for a cell and the room for its text. A list may write twice as much as is read: that must not
// run into another cell's.
struct RemoteCell {
    RemoteListItem question;
    std::array<char16_t, kCellUnits> text;
};
static_assert(sizeof(RemoteCell) == 552);
constexpr std::size_t kCellsAtOnce = 14; // two pages of the client, however many columns a header claims

std::uint32_t BytesOf(std::size_t cells)
{
    return static_cast<std::uint32_t>(cells * sizeof(RemoteCell));
}

// Reads the row's texts from a column on, as many as the block has room for; false when one of a column was
// not answered. The block is written whole: what is answered without being written is empty, and not what
// stood there before.
bool ReadCells(OeClient& client, const RemoteBlock& block, std::int32_t item, std::size_t first,
               std::vector<Text>& texts)
{
    std::vector<RemoteCell> cells(std::min(texts.size() - first, kCellsAtOnce));
    const auto placeOf = [&block](std::size_t cell) {
        return static_cast<std::uint32_t>(block.address) + BytesOf(cell);
    };
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        RemoteListItem& question = cells[cell].question;
        question.mask = kListItemText;
        question.item = static_cast<std::uint32_t>(item);
        question.subItem = static_cast<std::uint32_t>(first + cell);
        question.text = static_cast<RemoteAddress>(placeOf(cell) + offsetof(RemoteCell, text));
        question.textMax = kCellUnits;
    }
    std::vector<bool> answered(cells.size());
    const bool isWritten = RemoteWrite(client.memory, block, cells.data(), BytesOf(cells.size()));
    for (std::size_t cell = 0; isWritten && cell < cells.size(); ++cell)
        answered[cell] = Ask(client, client.handles.listView, message::kListItemW, 0,
                             static_cast<std::int32_t>(placeOf(cell)))
                             .value_or(0) != 0;
    const bool isRead = isWritten && RemoteRead(client.memory, block, cells.data(), BytesOf(cells.size()));
    bool complete = true; // but for the text beyond the last column, which a list need not answer
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        if (isRead && answered[cell])
            texts[first + cell] = CutAtNul({cells[cell].text.data(), kTextBytes / sizeof(char16_t)});
        else
            complete = complete && first + cell + 1 == texts.size();
    }
    return complete;
}

} // namespace

std::optional<std::int32_t> ListItemCount(OeClient& client)
{
    return Patiently(client, [&] { return Ask(client, client.handles.listView, message::kListItemCount); });
}

std::optional<std::int32_t> ListColumnCount(OeClient& client)
{
    return ColumnCountOf(client, HeaderOf(client));
}

std::optional<std::int32_t> SelectedIndex(OeClient& client)
{
    constexpr std::int32_t kOfSelected = 2; // LVNI_SELECTED
    return Ask(client, client.handles.listView, message::kListNextItem, -1, kOfSelected);
}

std::optional<std::int32_t> SelectedCount(OeClient& client)
{
    return Ask(client, client.handles.listView, message::kListSelectedCount);
}

bool ReadListColumns(OeClient& client)
{
    client.columnsKnown = false;
    const WindowHandle header = HeaderOf(client);
    const std::int32_t count = ColumnCountOf(client, header).value_or(0);
    if (count < 1) return false;
    client.columns.assign(static_cast<std::size_t>(count), ListColumn());
    const std::vector<std::int32_t> order = ReadColumnOrder(client, count);
    if (order.empty()) return false;
    // Kept: the order of a single column is just 0, which looks like an order that could not be read.
    if (std::accumulate(order.begin(), order.end(), std::int64_t{0}) <= 0) return true;

    const HeaderBlocks blocks{RemoteAlloc(client.memory, header, sizeof(RemoteHeaderItem)),
                              RemoteAlloc(client.memory, header, kHeaderTextBytes)};
    std::size_t total = 0;
    bool answered = true;
    for (std::size_t place = 0; answered && place < order.size(); ++place) {
        ListColumn& column = client.columns[place];
        column.index = static_cast<std::int16_t>(order[place]);
        answered = ReadTitle(client, header, order[place], blocks, column.title);
        total += column.title.size();
    }
    RemoteFree(client.memory, blocks.text);
    RemoteFree(client.memory, blocks.item);
    client.columnsKnown = answered && total >= 1;
    return answered;
}

int ColumnIndexByTitle(const OeClient& client, TextView title)
{
    if (!client.columnsKnown) return 0;
    for (const ListColumn& column : client.columns)
        if (!column.title.empty() && EqualNoCase(column.title, title)) return column.index;
    return -1;
}

std::vector<Text> ReadItemTexts(OeClient& client, std::int32_t item)
{
    const std::int32_t count = ListColumnCount(client).value_or(0);
    if (count < 1) return {};
    std::vector<Text> texts(static_cast<std::size_t>(count) + 1);
    if (item < 0) return texts;

    const RemoteBlock block =
        RemoteAlloc(client.memory, client.handles.listView, BytesOf(std::min(texts.size(), kCellsAtOnce)));
    bool complete = true;
    for (std::size_t first = 0; first < texts.size() && !client.silent; first += kCellsAtOnce)
        complete = ReadCells(client, block, item, first, texts) && complete;
    RemoteFree(client.memory, block);
    if (!complete || client.silent) texts.clear();
    return texts;
}

void SelectListItem(OeClient& client, std::int32_t item, OtherItems others)
{
    if (!client.handles.listViewFound || client.handles.listView <= 0 || !AwaitClient(client)) return;
    // Kept: a count compared with an index. With one row selected, row 1 is never selected by this.
    if (SelectedCount(client) == item) return;
    if (others == OtherItems::clear) SetListItemState(client, -1, 0);
    SetListItemState(client, item, kFocused | kSelected);
}

bool SelectOnly(OeClient& client, std::int32_t item)
{
    const auto isSelected = [&] { return SelectedIndex(client) == item && SelectedCount(client) == 1; };
    if (Patiently(client, isSelected) || !AwaitClient(client)) return false;
    SetListItemState(client, -1, 0);
    SetListItemState(client, item, kFocused | kSelected);
    return true;
}

void SetListItemState(OeClient& client, std::int32_t item, std::uint32_t state)
{
    const WindowHandle list = client.handles.listView;
    const RemoteBlock block = RemoteAlloc(client.memory, list, sizeof(RemoteListItem));
    RemoteListItem request{};
    request.mask = kListItemState;
    request.state = state;
    request.stateMask = kFocused | kSelected;
    const bool done = RemoteWrite(client.memory, block, &request, sizeof request) &&
                      Ask(client, list, message::kListSetItemState, item, Param(block)).value_or(0) != 0;
    RemoteFree(client.memory, block);
    Act(client, list, message::kListEnsureVisible, item);
    if (!done) client.reporter.LogLine(u"Listview select failed", Record::no);
}
