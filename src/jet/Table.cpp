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

ByteView Table::RowsView(PageNumber page, PageRef& hold) const
{
    const ByteView view = file_.View(page, hold);
    NeedDataPage(view, definition_.page);
    return view;
}

Slot Table::Take(RowId place, StoredRow& stored) const
{
    const ByteView page = RowsView(place.page, stored.hold);
    const Slot slot = SlotAt(page, place.slot);
    stored.bytes = page.Sub(slot.start, slot.end - slot.start);
    return slot;
}

std::vector<RowId> Table::RowsOn(PageNumber page) const
{
    std::vector<RowId> rows;
    PageRef hold;
    ForEachSlot(RowsView(page, hold), kMostSlots, [&](std::size_t slot, const Slot& found) {
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
    Slot slot = Take(row, stored);
    if (!IsRow(slot)) return false;
    while (slot.flags & kLookup) {
        const RowId next = FromPointer(stored.bytes.U32(0));
        if (stored.moves.size() >= kMostMoves) ThrowDamaged(row.page, u"a moved row runs in a circle");
        slot = Take(next, stored);
        if (!(slot.flags & kTarget)) ThrowDamaged(next.page, u"a moved row leads to another row");
        stored.moves.push_back(next);
    }
    return true;
}

void Table::ReadColumn(const Row& row, const Column& column, LongValue& held, Text& text) const
{
    const std::optional<ByteView> bytes = Value(row, column, held);
    if (!bytes)
        text.clear();
    else if (column.IsText())
        DecodeText(*bytes, text);
    else
        text = DisplayText(column, *bytes);
}

} // namespace jet
