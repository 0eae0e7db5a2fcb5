// Table.h: the rows of one table, read in the order of its pages.
// Fails by: DatabaseError for damaged pages.
#pragma once
#include "jet/RowCodec.h"

namespace jet {

struct StoredRow {
    PageRef hold;
    ByteView bytes;
    std::vector<RowId> places; // where the row's directory entry is, then where it has moved
};

class Table {
public:
    Table(PageFile& file, PageNumber definition)
        : file_(file), definition_(ReadTableDefinition(file, definition))
    {
    }

    PageFile& File() const { return file_; }
    const TableDefinition& Definition() const { return definition_; }
    std::vector<PageNumber> Pages() const; // all data pages, each one checked to be the table's
    std::vector<RowId> Rows() const;
    std::vector<RowId> RowsOn(PageNumber page) const;

    // Nothing when the place holds no row any more.
    std::optional<StoredRow> Fetch(RowId row) const;
    Text ColumnText(const Row& row, const Column& column) const; // null is empty

private:
    PageFile& file_;
    TableDefinition definition_;
};

} // namespace jet
