// TableWriter.h: adds rows to a table and deletes rows from it, in an order of page writes in which a stop
// at any point loses no row that was added, and leaves a row count that is right or too small. So a count
// that is too large tells of rows that something else has lost.
// Fails by: DatabaseError. After a write that failed (PageFile::WriteFailures) the writer does not know
// what the file holds and must be made anew.
#pragma once
#include "jet/LongValue.h"
#include "jet/Table.h"
#include "platform/Database.h"

#include <map>
#include <set>
#include <span>

namespace jet {

// The pages that take new rows.
struct TableSpaces {
    FreeSpaces rows;
    std::map<std::uint16_t, FreeSpaces> longValues; // by column number
};

class TableWriter {
public:
    // Looks the whole table through and changes nothing. What is found that speaks against writing is kept
    // and said by each Append or Delete: such a table can still be read.
    explicit TableWriter(Table& table);

    // Why no row with values in these columns, and no other, can be added; empty: it can.
    Text RefusalOf(const std::vector<ColumnNeed>& needs) const;
    // Mends what a stop has left, and says what it was. Append and Delete do not need it.
    std::vector<Text> Mend();

    // Values by position in the definition's columns; nothing and empty text are stored as null.
    RowId Append(const std::vector<std::optional<Text>>& values);
    // The count first, then the rows: two flushes, however many they are, and two more where a map of pages
    // with room has to grow. Rows that have moved, which only other programs make, take two each.
    void Delete(std::span<const RowId> rows);

private:
    struct Inspected {
        std::map<std::uint16_t, std::vector<PageNumber>> longValuePages; // by column number, as the maps say
        LongValue value;                                                 // the last one
        std::vector<std::uint32_t> places; // outside their row, each of which only one row may use
        std::set<std::pair<std::uint16_t, PageNumber>> unlisted; // missing in longValuePages
    };
    void Inspect();
    void InspectTail() const;
    void InspectMaps() const;
    void InspectRow(const StoredRow& stored, Inspected& inspected) const;
    TableSpaces ReadSpaces() const;
    TableSpaces TakeSpaces(); // to be put back when the operation is done
    void NeedWritable() const;
    void DeleteTogether(std::span<const StoredRow> rows);

    Table& table_;
    Text refusal_; // why the table cannot be written; empty: it can
    std::uint32_t rowCount_ = 0;
    bool mended_ = false;
    // Pages of long values that are not in the map of their column, by its number.
    std::set<std::pair<std::uint16_t, PageNumber>> unlisted_;
    // Nothing where an operation has failed over it.
    std::optional<TableSpaces> spaces_;
};

} // namespace jet
