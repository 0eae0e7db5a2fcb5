#include "jet/Table.h"

#include "jet/Display.h"
#include "jet/LongValue.h"
#include "jet/UsageMap.h"

namespace jet {

namespace {

constexpr std::size_t kMostMoves = 8;

bool IsRow(const Slot& slot)
{
    return slot.flags == 0 || slot.flags == kLookup;
}

} // namespace

std::vector<PageNumber> Table::Pages() const
{
    std::vector<PageNumber> pages = PagesOf(file_, definition_.ownedMap);
    PageRef hold;
    for (PageNumber page : pages) NeedDataPage(file_.View(page, hold), definition_.page);
    return pages;
}

std::vector<RowId> Table::RowsOn(PageNumber page) const
{
    PageRef hold;
    const ByteView view = file_.View(page, hold);
    NeedDataPage(view, definition_.page);
    std::vector<RowId> rows;
    const std::size_t count = std::min(SlotCount(view), kMostSlots);
    for (std::size_t slot = 0; slot < count; ++slot)
        if (IsRow(SlotAt(view, slot))) rows.push_back({page, static_cast<std::uint8_t>(slot)});
    return rows;
}

std::vector<RowId> Table::Rows() const
{
    std::vector<RowId> rows;
    for (PageNumber page : PagesOf(file_, definition_.ownedMap)) {
        const std::vector<RowId> found = RowsOn(page);
        rows.insert(rows.end(), found.begin(), found.end());
    }
    return rows;
}

std::optional<StoredRow> Table::Fetch(RowId row) const
{
    StoredRow stored{nullptr, ByteView({}, row.page), {row}};
    ByteView page = file_.View(row.page, stored.hold);
    NeedDataPage(page, definition_.page);
    Slot slot = SlotAt(page, row.slot);
    if (!IsRow(slot)) return std::nullopt;
    stored.bytes = RowAt(page, row.slot);
    while (slot.flags & kLookup) {
        const RowId next = FromPointer(stored.bytes.U32(0));
        if (stored.places.size() > kMostMoves) ThrowDamaged(row.page, u"a moved row runs in a circle");
        page = file_.View(next.page, stored.hold);
        NeedDataPage(page, definition_.page);
        slot = SlotAt(page, next.slot);
        if (!(slot.flags & kTarget)) ThrowDamaged(next.page, u"a moved row leads to another row");
        stored.bytes = RowAt(page, next.slot);
        stored.places.push_back(next);
    }
    return stored;
}

Text Table::ColumnText(const Row& row, const Column& column) const
{
    const std::optional<std::string_view> cell = row.Cell(column);
    if (!cell) return {};
    const ByteView bytes(*cell, row.Page());
    if (!column.IsLong()) return DisplayText(column, bytes);
    if (cell->empty()) return {}; // an empty long value may lack even its header
    return DisplayText(column, ByteView(ReadLongValue(file_, bytes).bytes, row.Page()));
}

} // namespace jet
