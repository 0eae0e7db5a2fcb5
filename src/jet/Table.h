// Table.h: the rows of one table, read in the order of its pages.
// Fails by: DatabaseError for damaged pages.
#pragma once
#include "jet/LongValue.h"
#include "jet/RowCodec.h"
#include "jet/UsageMap.h"

namespace jet {

struct StoredRow {
    PageRef hold;
    ByteView bytes{{}, 0};
    RowId id;
    std::vector<RowId> moves; // where it has moved, the last of them being where the bytes are
};

class Table {
public:
    Table(PageFile& file, PageNumber definition)
        : file_(file), definition_(ReadTableDefinition(file, definition))
    {
    }

    PageFile& File() const { return file_; }
    const TableDefinition& Definition() const { return definition_; }
    std::vector<PageNumber> Pages() const { return PagesOf(file_, definition_.ownedMap); }
    std::vector<RowId> RowsOn(PageNumber page) const;
    std::vector<RowId> Rows() const; // of all pages
    // visit(StoredRow) for each row, without seeking each of them; visitPage(ByteView) before the rows of a
    // page.
    template <class VisitPage, class Visit>
    void ForEachRow(VisitPage visitPage, Visit visit) const
    {
        StoredRow stored, moved;
        for (const PageNumber page : Pages()) {
            const ByteView view = RowsView(page, stored.hold);
            visitPage(view);
            ForEachSlot(view, kMostSlots, [&](std::size_t slot, const Slot& found) {
                const RowId id{page, static_cast<std::uint8_t>(slot)};
                if (found.flags == kLookup) {
                    (void)Fetch(id, moved);
                    visit(std::as_const(moved));
                } else if (found.flags == 0) {
                    stored.id = id;
                    stored.bytes = view.Sub(found.start, found.end - found.start);
                    visit(std::as_const(stored));
                }
            });
        }
    }

    template <class Visit>
    void ForEachRow(Visit visit) const
    {
        ForEachRow([](ByteView) {}, visit);
    }

    bool Fetch(RowId row, StoredRow& stored) const; // false when the place holds no row any more
    // A value as it is stored; nothing for null. A long one is read into `held`, which must outlive it.
    std::optional<ByteView> Value(const Row& row, const Column& column, LongValue& held) const
    {
        const std::optional<std::string_view> cell = row.Cell(column);
        if (!cell) return std::nullopt;
        const ByteView bytes(*cell, row.Page());
        if (!column.IsLong()) return bytes;
        if (cell->empty()) return std::nullopt; // it may lack even its header
        held.Read(file_, bytes);
        return held.Bytes();
    }
    // As a text, in place of what it held; null is empty.
    void ReadColumn(const Row& row, const Column& column, LongValue& held, Text& text) const;

private:
    ByteView RowsView(PageNumber page, PageRef& hold) const; // of a page checked to be the table's
    Slot Take(RowId place, StoredRow& stored) const;         // its bytes, whatever is there

    PageFile& file_;
    TableDefinition definition_;
};

} // namespace jet
