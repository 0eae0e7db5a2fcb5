#include "jet/Table.h"

#include "jet/Display.h"

namespace jet {

namespace {

constexpr std::size_t kMostMoves = 8;

bool IsRow(const Slot& slot)
{
    return slot.flags == 0 || slot.flags == kLookup;
}

} // namespace

ByteView Table::RowsView(PageNumber page, const std::string& bytes) const
{
    const ByteView view(bytes, page);
    NeedDataPage(view, definition_.page);
    return view;
}

std::vector<RowId> Table::RowsOn(PageNumber page) const
{
    std::vector<RowId> rows;
    const PageRef hold = file_.Read(page);
    ForEachSlot(RowsView(page, *hold), kMostSlots, [&](std::size_t slot, const Slot& found) {
        if (IsRow(found)) rows.push_back({page, static_cast<std::uint8_t>(slot)});
    });
    return rows;
}

std::vector<RowId> Table::Rows() const
{
    std::vector<RowId> rows;
    for (const PageNumber page : Pages())
        for (const RowId row : RowsOn(page)) rows.push_back(row);
    return rows;
}

bool Table::Fetch(RowId row, StoredRow& stored) const
{
    stored.id = row;
    stored.moves.clear();
    ByteView page = file_.View(row.page, stored.hold);
    NeedDataPage(page, definition_.page);
    Slot slot = SlotAt(page, row.slot);
    if (!IsRow(slot)) return false;
    stored.bytes = page.Sub(slot.start, slot.end - slot.start);
    while (slot.flags & kLookup) {
        const RowId next = FromPointer(stored.bytes.U32(0));
        if (stored.moves.size() >= kMostMoves) ThrowDamaged(row.page, u"a moved row runs in a circle");
        page = file_.View(next.page, stored.hold);
        NeedDataPage(page, definition_.page);
        slot = SlotAt(page, next.slot);
        if (!(slot.flags & kTarget)) ThrowDamaged(next.page, u"a moved row leads to another row");
        stored.bytes = page.Sub(slot.start, slot.end - slot.start);
        stored.moves.push_back(next);
    }
    return true;
}

Text Table::ColumnText(const Row& row, const Column& column) const
{
    Text text;
    ReadColumn(row, column, text);
    return text;
}

void Table::ReadColumn(const Row& row, const Column& column, Text& text) const
{
    text.clear();
    LongValue held;
    const std::optional<ByteView> bytes = Value(row, column, held);
    if (!bytes) return;
    if (column.IsText())
        DecodeText(*bytes, text);
    else
        text = DisplayText(column, *bytes);
}

} // namespace jet
