#include "jet/TableDefinition.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kRowCountAt = 16, kFixedPart = 63, kDistinctKeys = 12, kColumnRecord = 25,
                      kIndexRecord = 52, kLogicalIndexRecord = 28, kLongValueEntry = 10;
constexpr std::size_t kMostIndexes = 4096;
constexpr std::uint16_t kEndMark = 0xFFFF;

// The definition's bytes: the first page whole, of its continuations what follows their header.
std::string ReadChain(PageFile& file, PageNumber first)
{
    std::string bytes;
    PageRef hold;
    PageNumber page = first;
    for (PageNumber hops = 0; page != 0; ++hops) {
        const ByteView view = file.View(page, hold);
        if (view.U8(0) != 2) ThrowDamaged(page, u"a table definition was expected here");
        if (hops > kMostIndexes) ThrowDamaged(first, u"the pages of a table definition run in a circle");
        bytes += view.Bytes().substr(hops == 0 ? 0 : 8);
        page = view.U32(4);
    }
    return bytes;
}

ColumnType TypeOf(std::uint8_t number)
{
    return static_cast<ColumnType>(number);
}

Column ReadColumn(ByteView record)
{
    Column column;
    const unsigned flags = record.U8(15);
    column.type = TypeOf(record.U8(0));
    column.number = record.U16(5);
    column.variableIndex = record.U16(7);
    column.fixed = (flags & 1) != 0;
    column.mayBeNull = (flags & 2) != 0;
    column.autoNumber = (flags & 4) != 0;
    column.compressed = (record.U8(16) & 1) != 0;
    column.fixedOffset = record.U16(21);
    column.length = record.U16(23);
    return column;
}

Text ReadName(ByteView bytes, std::size_t& at)
{
    const ByteView name = bytes.Sub(at + 2, bytes.U16(at));
    Text text;
    for (std::size_t i = 0; i + 1 < name.Size(); i += 2) text += static_cast<char16_t>(name.U16(i));
    at += 2 + name.Size();
    return text;
}

void CheckColumns(const TableDefinition& table)
{
    const std::vector<Column>& columns = table.columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].number >= table.mostColumns || (i > 0 && columns[i].number == columns[i - 1].number))
            ThrowDamaged(table.page, u"the columns of a table are not numbered as they should be");
        if (columns[i].IsLong() && columns[i].fixed)
            ThrowDamaged(table.page, u"a column of long values has a fixed place");
    }
}

} // namespace

const Column* TableDefinition::Find(TextView name) const
{
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [name](const Column& column) { return EqualNoCase(column.name, name); });
    return found == columns.end() ? nullptr : &*found;
}

TableDefinition ReadTableDefinition(PageFile& file, PageNumber page)
{
    const std::string chain = ReadChain(file, page);
    const ByteView all(chain, page);
    const ByteView bytes = all.Sub(0, all.U32(8));

    TableDefinition table;
    table.page = page;
    table.rowCount = bytes.U32(kRowCountAt);
    table.system = bytes.U8(40) == 0x53;
    table.mostColumns = bytes.U16(41);
    table.variableColumns = bytes.U16(43);
    const std::size_t columns = bytes.U16(45), logicalIndexes = bytes.U32(47);
    table.indexes = bytes.U32(51);
    table.ownedMap = FromPointer(bytes.U32(55));
    table.freeMap = FromPointer(bytes.U32(59));
    if (table.mostColumns > kMostColumns || columns > table.mostColumns ||
        table.variableColumns > table.mostColumns || logicalIndexes > kMostIndexes ||
        table.indexes > kMostIndexes)
        ThrowDamaged(page, u"a table has more columns or indexes than is possible");

    std::size_t at = kFixedPart + kDistinctKeys * table.indexes;
    for (std::size_t i = 0; i < columns; ++i, at += kColumnRecord)
        table.columns.push_back(ReadColumn(bytes.Sub(at, kColumnRecord)));
    for (Column& column : table.columns) column.name = ReadName(bytes, at);
    at += kIndexRecord * table.indexes + kLogicalIndexRecord * logicalIndexes;
    for (std::size_t i = 0; i < logicalIndexes; ++i) (void)ReadName(bytes, at);
    for (; bytes.U16(at) != kEndMark; at += kLongValueEntry) {
        // A deleted column leaves its entry behind.
        for (Column& column : table.columns) {
            if (column.number != bytes.U16(at) || !column.IsLong()) continue;
            column.ownedMap = FromPointer(bytes.U32(at + 2));
            column.freeMap = FromPointer(bytes.U32(at + 6));
        }
    }
    std::sort(table.columns.begin(), table.columns.end(),
              [](const Column& a, const Column& b) { return a.number < b.number; });
    CheckColumns(table);
    return table;
}

void WriteRowCount(WriteSet& writes, PageNumber definition, std::uint32_t rows, Phase phase)
{
    Put32(writes.Edit(definition, phase), kRowCountAt, rows);
}

} // namespace jet
