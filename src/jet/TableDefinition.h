// TableDefinition.h: what a table consists of, as its definition pages say.
// Fails by: DatabaseError for a definition that cannot be followed.
#pragma once
#include "jet/DataPage.h"

#include <vector>

namespace jet {

enum class ColumnType : std::uint8_t {
    boolean = 1,
    byte = 2,
    int16 = 3,
    int32 = 4,
    money = 5, // ten-thousandths in 64 bits
    float32 = 6,
    float64 = 7,
    date = 8, // day count, a double
    binary = 9,
    text = 10,
    ole = 11,
    memo = 12,
    guid = 15,
    decimal = 16,
    raw = 17, // system tables only
};

struct Column {
    Text name;
    ColumnType type{};
    std::uint16_t number = 0;        // its bit in a row's null mask
    std::uint16_t variableIndex = 0; // its place among the columns of varying length
    std::uint16_t fixedOffset = 0;
    std::uint16_t length = 0; // most bytes; 0 for long values
    bool fixed = false, mayBeNull = false, autoNumber = false;
    bool compressed = false; // texts; memos are compressed without it, too
    RowId ownedMap, freeMap; // of a long-value column; page 0: none

    bool IsText() const { return type == ColumnType::text || type == ColumnType::memo; }
    bool IsLong() const { return type == ColumnType::memo || type == ColumnType::ole; }
};

inline constexpr std::size_t kMostColumns = 255;

struct TableDefinition {
    PageNumber page = 0; // the first one; it names the table in the table's data pages
    std::uint32_t rowCount = 0;
    bool system = false;
    std::uint16_t mostColumns = 0;     // a new row has so many, deleted ones included
    std::uint16_t variableColumns = 0; // likewise
    std::uint32_t indexes = 0;         // real ones, which an added row would have to enter
    RowId ownedMap, freeMap;
    std::vector<Column> columns; // by number

    const Column* Find(TextView name) const; // without regard to case; null: no such column
};

TableDefinition ReadTableDefinition(PageFile& file, PageNumber page);
void WriteRowCount(WriteSet& writes, PageNumber definition, std::uint32_t rows, Phase phase);

} // namespace jet
