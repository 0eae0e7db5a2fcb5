#include "oe/RemoteListView.h"

#include "oe/RemoteControls.h"

#include <numeric>

namespace {

constexpr std::uint32_t kHeaderTextBytes = 255;
constexpr std::uint32_t kListItemText = 1, kListItemState = 8, kHeaderItemText = 2; // mask bits
constexpr std::uint32_t kFocused = 1, kSelected = 2;

WindowHandle HeaderOf(OeClient& client)
{
    return client.desktop.Send(client.handles.listView, message::kListHeader, 0, 0);
}

std::int32_t ColumnCountOf(OeClient& client, WindowHandle header)
{
    return header < 1 ? 0 : client.desktop.Send(header, message::kHeaderItemCount, 0, 0);
}

std::int32_t Param(RemoteAddress address)
{
    return static_cast<std::int32_t>(address);
}

std::vector<std::int32_t> ReadColumnOrder(OeClient& client, std::int32_t count)
{
    std::vector<std::int32_t> order(static_cast<std::size_t>(count));
    const auto bytes = static_cast<std::uint32_t>(order.size() * sizeof order[0]);
    const RemoteAddress block = RemoteAlloc(client.memory, client.handles.listView, bytes);
    (void)RemoteWrite(client.memory, block, order.data(), bytes); // zeros either way
    client.desktop.Send(client.handles.listView, message::kListColumnOrder, count, Param(block));
    (void)RemoteRead(client.memory, block, order.data(), bytes);
    RemoteFree(client.memory, block);
    return order;
}

} // namespace

std::int32_t ListItemCount(OeClient& client)
{
    return client.desktop.Send(client.handles.listView, message::kListItemCount, 0, 0);
}

std::int32_t ListColumnCount(OeClient& client)
{
    return ColumnCountOf(client, HeaderOf(client));
}

std::int32_t SelectedIndex(OeClient& client)
{
    constexpr std::int32_t kOfSelected = 2; // LVNI_SELECTED
    return client.desktop.Send(client.handles.listView, message::kListNextItem, -1, kOfSelected);
}

std::int32_t SelectedCount(OeClient& client)
{
    return client.desktop.Send(client.handles.listView, message::kListSelectedCount, 0, 0);
}

void ReadListColumns(OeClient& client)
{
    client.columnsKnown = false;
    const WindowHandle header = HeaderOf(client);
    const std::int32_t count = ColumnCountOf(client, header);
    if (count < 1) return;
    client.columns.resize(static_cast<std::size_t>(count));
    const std::vector<std::int32_t> order = ReadColumnOrder(client, count);
    // Kept: the order of a single column is just 0, which looks like an order that could not be read.
    if (std::accumulate(order.begin(), order.end(), std::int64_t{0}) <= 0) return;

    RemoteMemory& memory = client.memory;
    const RemoteAddress itemBlock = RemoteAlloc(memory, header, sizeof(RemoteHeaderItem));
    const RemoteAddress textBlock = RemoteAlloc(memory, header, kHeaderTextBytes);
    std::size_t total = 0;
    for (std::size_t place = 0; place < order.size(); ++place) {
        RemoteHeaderItem item{};
        item.mask = kHeaderItemText;
        item.text = textBlock;
        item.textMax = kHeaderTextBytes;
        const bool answered =
            RemoteWrite(memory, itemBlock, &item, sizeof item) &&
            client.desktop.Send(header, message::kHeaderItemA, order[place], Param(itemBlock)) != 0;
        std::array<char, kHeaderTextBytes> title{};
        if (answered) (void)RemoteRead(memory, textBlock, title.data(), kHeaderTextBytes);
        ListColumn& column = client.columns[place];
        column.title = CutAtNul(client.codePage.FromAnsi({title.data(), title.size()}));
        column.index = static_cast<std::int16_t>(order[place]);
        total += column.title.size();
    }
    RemoteFree(memory, textBlock);
    RemoteFree(memory, itemBlock);
    client.columnsKnown = total >= 1;
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
    const std::int32_t count = ListColumnCount(client);
    if (count < 1) return {};
    std::vector<Text> texts(static_cast<std::size_t>(count) + 1);
    if (item < 0) return texts;

    RemoteMemory& memory = client.memory;
    const WindowHandle list = client.handles.listView;
    const RemoteAddress itemBlock = RemoteAlloc(memory, list, sizeof(RemoteListItem));
    const RemoteAddress textBlock = RemoteAlloc(memory, list, kTextBytes);
    TextBuffer buffer;
    bool complete = true; // but for the text beyond the last column, which a list need not answer
    for (std::size_t column = 0; column < texts.size(); ++column) {
        RemoteListItem request{};
        request.mask = kListItemText;
        request.item = static_cast<std::uint32_t>(item);
        request.subItem = static_cast<std::uint32_t>(column);
        request.text = textBlock;
        request.textMax = kTextBytes;
        // The text block needs no clearing: it is zero when fresh, and later a list that answers fills it. If
        // it is not asked or does not answer, the block holds the cell before, which must not pass for this.
        const bool isRead = RemoteWrite(memory, itemBlock, &request, sizeof request) &&
                            client.desktop.Send(list, message::kListItemW, 0, Param(itemBlock)) != 0 &&
                            buffer.Receive(memory, textBlock, texts[column]);
        complete = complete && (isRead || column + 1 == texts.size());
    }
    RemoteFree(memory, textBlock);
    RemoteFree(memory, itemBlock);
    if (!complete) texts.clear();
    return texts;
}

void SelectListItem(OeClient& client, std::int32_t item, OtherItems others)
{
    if (!client.handles.listViewFound || client.handles.listView <= 0) return;
    // Kept: a count compared with an index. With one row selected, row 1 is never selected by this.
    if (SelectedCount(client) == item) return;
    if (others == OtherItems::clear) SetListItemState(client, -1, 0);
    SetListItemState(client, item, kFocused | kSelected);
}

void SetListItemState(OeClient& client, std::int32_t item, std::uint32_t state)
{
    const WindowHandle list = client.handles.listView;
    const RemoteAddress block = RemoteAlloc(client.memory, list, sizeof(RemoteListItem));
    RemoteListItem request{};
    request.mask = kListItemState;
    request.state = state;
    request.stateMask = kFocused | kSelected;
    const bool done = RemoteWrite(client.memory, block, &request, sizeof request) &&
                      client.desktop.Send(list, message::kListSetItemState, item, Param(block)) != 0;
    RemoteFree(client.memory, block);
    client.desktop.Send(list, message::kListEnsureVisible, item, 0);
    if (!done) client.reporter.LogLine(u"Listview select failed", Record::no);
}

void SendKey(OeClient& client, WindowHandle window, std::int32_t virtualKey, WithCharacter character)
{
    client.desktop.Send(window, message::kKeyDown, virtualKey, 0);
    if (character == WithCharacter::yes) client.desktop.Send(window, message::kChar, virtualKey, 0);
    client.desktop.Send(window, message::kKeyUp, virtualKey, 0);
}

void SendClick(OeClient& client, WindowHandle window, MouseButton button)
{
    const bool left = button == MouseButton::left;
    client.desktop.Send(window, left ? message::kLeftDown : message::kRightDown, 0, 0);
    client.desktop.Send(window, left ? message::kLeftUp : message::kRightUp, 0, 0);
}
