#include "oe/RemoteListView.h"

#include "oe/Conversation.h"
#include "oe/RemoteControls.h"
#include "oe/RemoteText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <tuple>
#include <utility>

namespace {

constexpr std::uint32_t kTitleBytes = 255;
constexpr std::uint32_t kListItemText = 1, kListItemState = 8, kHeaderItemText = 2; // mask bits
constexpr std::uint32_t kFocused = 1, kSelected = 2;
// For a text, of which about half is read. Who writes more than it was told must not run into another's.
constexpr std::size_t kRoomBytes = 512;

WindowHandle HeaderOf(OeClient& client)
{
    return Ask(client, client.handles.listView, message::kListHeader).value_or(0);
}

std::optional<std::int32_t> ColumnCountOf(OeClient& client, WindowHandle header)
{
    constexpr std::int32_t kMost = 1000; // what claims more gives no answer to rely on
    if (header < 1) return 0;
    const std::optional<std::int32_t> count = Ask(client, header, message::kHeaderItemCount);
    return count > kMost ? std::nullopt : count;
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

Text TextOf(OeClient&, const std::array<char16_t, kRoomBytes / sizeof(char16_t)>& units)
{
    return Text(CutAtNul({units.data(), kTextBytes / sizeof(char16_t)}));
}

Text TextOf(OeClient& client, const std::array<char, kRoomBytes>& bytes)
{
    return Text(CutAtNul(client.codePage.FromAnsi({bytes.data(), kTitleBytes})));
}

// A control's item and the room for its text.
template <class Item, class Unit>
struct RemoteCell {
    Item item;
    std::array<Unit, kRoomBytes / sizeof(Unit)> text;
};
using ListCell = RemoteCell<RemoteListItem, char16_t>;
using TitleCell = RemoteCell<RemoteHeaderItem, char>;
static_assert(sizeof(ListCell) == 552 && sizeof(TitleCell) == 548);
constexpr std::size_t kCellsAtOnce = 14; // two pages of the client at most

// Asks the window for texts, each by one message, whose item and wParam `question` tells; through one block,
// which is written and read once for as many as it has room for. What was not answered is nothing. The block
// is written whole: what is answered without being written is empty, and not what stood there before.
template <class Cell, class Question>
std::vector<std::optional<Text>> AskForTexts(OeClient& client, WindowHandle window, std::uint32_t message,
                                             std::size_t count, Question question)
{
    std::vector<std::optional<Text>> texts(count);
    std::vector<Cell> cells(std::min(count, kCellsAtOnce));
    const auto bytesOf = [](std::size_t some) { return static_cast<std::uint32_t>(some * sizeof(Cell)); };
    const RemoteBlock block = RemoteAlloc(client.memory, window, bytesOf(cells.size()));
    for (std::size_t first = 0; first < count && !client.silent; first += cells.size()) {
        cells.assign(std::min(count - first, kCellsAtOnce), Cell());
        std::vector<std::int32_t> wParams(cells.size());
        const auto placeOf = [&block, &bytesOf](std::size_t cell) {
            return static_cast<std::uint32_t>(block.address) + bytesOf(cell);
        };
        for (std::size_t cell = 0; cell < cells.size(); ++cell) {
            std::tie(cells[cell].item, wParams[cell]) = question(first + cell);
            cells[cell].item.text = static_cast<RemoteAddress>(placeOf(cell) + offsetof(Cell, text));
        }
        std::vector<bool> answered(cells.size());
        const bool isWritten = RemoteWrite(client.memory, block, cells.data(), bytesOf(cells.size()));
        for (std::size_t cell = 0; isWritten && cell < cells.size(); ++cell)
            answered[cell] =
                Ask(client, window, message, wParams[cell], static_cast<std::int32_t>(placeOf(cell)))
                    .value_or(0) != 0;
        const bool isRead =
            isWritten && RemoteRead(client.memory, block, cells.data(), bytesOf(cells.size()));
        for (std::size_t cell = 0; isRead && cell < cells.size(); ++cell)
            if (answered[cell]) texts[first + cell] = TextOf(client, cells[cell].text);
    }
    RemoteFree(client.memory, block);
    return texts;
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
    client.columns.clear(); // nobody is told those of before
    const WindowHandle header = HeaderOf(client);
    const std::int32_t count = ColumnCountOf(client, header).value_or(0);
    if (count < 1) return false;
    client.columns.assign(static_cast<std::size_t>(count), ListColumn());
    const std::vector<std::int32_t> order = ReadColumnOrder(client, count);
    if (order.empty()) return false;
    // Kept: the order of a single column is just 0, which looks like an order that could not be read.
    if (std::accumulate(order.begin(), order.end(), std::int64_t{0}) <= 0) return true;

    const auto question = [&order](std::size_t place) {
        RemoteHeaderItem item{};
        item.mask = kHeaderItemText;
        item.textMax = kTitleBytes;
        return std::pair(item, order[place]);
    };
    const auto titles = AskForTexts<TitleCell>(client, header, message::kHeaderItemA, order.size(), question);
    std::size_t total = 0;
    bool answered = true;
    for (std::size_t place = 0; place < order.size(); ++place) {
        client.columns[place] = {titles[place].value_or(Text()), static_cast<std::int16_t>(order[place])};
        answered = answered && titles[place];
        total += client.columns[place].title.size();
    }
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
    return ReadItemTexts(client, item, AllColumns(static_cast<std::size_t>(count)));
}

ColumnChoice AllColumns(std::size_t count)
{
    ColumnChoice choice{std::vector<std::uint32_t>(count + 1), count};
    std::iota(choice.columns.begin(), choice.columns.end(), 0u);
    return choice;
}

std::vector<Text> ReadItemTexts(OeClient& client, std::int32_t item, const ColumnChoice& choice)
{
    const std::vector<std::uint32_t>& columns = choice.columns;
    std::vector<Text> texts(*std::max_element(columns.begin(), columns.end()) + 1);
    if (item < 0) return texts;

    const auto question = [item, &columns](std::size_t place) {
        RemoteListItem cell{};
        cell.mask = kListItemText;
        cell.item = static_cast<std::uint32_t>(item);
        cell.subItem = columns[place];
        cell.textMax = kRoomBytes / sizeof(char16_t);
        return std::pair(cell, 0);
    };
    const WindowHandle list = client.handles.listView;
    auto cells = AskForTexts<ListCell>(client, list, message::kListItemW, columns.size(), question);
    if (client.silent) return {};
    for (std::size_t place = 0; place < columns.size(); ++place) {
        // But for the text beyond the last column, which a list need not answer.
        if (!cells[place] && columns[place] < choice.count) return {};
        if (cells[place]) texts[columns[place]] = std::move(*cells[place]);
    }
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
