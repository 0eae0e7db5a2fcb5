// TableWriter.h: adds rows to a table and deletes rows from it, in an order of page writes in which a stop
// at any point loses no row that was added.
// Fails by: DatabaseError. After a write that failed (PageFile::WriteFailures) the writer does not know
// what the file holds and must be made anew.
#pragma once
#include "jet/LongValue.h"
#include "jet/Table.h"

#include <map>

namespace jet {

// The pages that take new rows.
struct TableRooms {
    std::vector<Room> rows;
    std::map<std::uint16_t, std::vector<Room>> longValues; // by column number
};

class TableWriter {
public:
    // Looks the whole table through, and corrects its row count if a stop left it wrong. What is found
    // that speaks against writing is kept and said by the first Append or Delete: such a table can still
    // be read.
    explicit TableWriter(Table& table);

    // Values by position in the definition's columns; nothing and empty text are stored as null.
    RowId Append(const std::vector<std::optional<Text>>& values);
    void Delete(RowId row);

private:
    void Inspect();
    void InspectMaps() const;
    void InspectRow(const StoredRow& stored, std::vector<std::uint32_t>& referred) const;
    void NeedWritable() const;

    Table& table_;
    Text refusal_; // why the table cannot be written; empty: it can
    std::uint32_t rowCount_ = 0;
    TableRooms rooms_;
};

} // namespace jet
