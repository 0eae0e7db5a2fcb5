#include "jet/NewDefinition.h"

#include "platform/Database.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::uint32_t kDefinitionMark = 1625, kIndexMark = 1923, kGeneralOrder = 0x0409;
constexpr std::size_t kIndexColumns = 10, kLengthAt = 8, kFreeAt = 2, kPageHeader = 8;
constexpr std::size_t kEntryMask = 0x1B, kFirstEntry = 0x1E0;

void AppendName(std::string& bytes, TextView name)
{
    Append16(bytes, name.size() * 2);
    for (char16_t unit : name) Append16(bytes, unit);
}

// Columns of the system's tables that hold accounts have a flag of their own.
bool NamesAccount(const TableDefinition& table, const Column& column)
{
    return table.system && (column.name == u"Owner" || column.name == u"SID");
}

void AppendColumn(std::string& bytes, const TableDefinition& table, const Column& column)
{
    unsigned flags = column.fixed ? 0x01 : 0;
    if (column.mayBeNull) flags |= 0x02;
    if (table.system) flags |= NamesAccount(table, column) ? 0x30 : 0x10;
    Append(bytes, static_cast<std::uint8_t>(column.type), 1);
    Append32(bytes, kDefinitionMark);
    Append16(bytes, column.number);
    Append16(bytes, column.variableIndex);
    Append16(bytes, table.system ? 0 : column.number);
    Append32(bytes, kGeneralOrder);
    Append(bytes, flags, 1);
    Append(bytes, column.compressed ? 1 : 0, 1);
    Append32(bytes, 0);
    Append16(bytes, column.fixedOffset);
    Append16(bytes, column.length);
}

void AppendIndex(std::string& bytes, const NewIndex& index)
{
    Append32(bytes, kIndexMark);
    for (std::size_t i = 0; i < kIndexColumns; ++i) {
        Append16(bytes, i < index.columns.size() ? index.columns[i] : 0xFFFF);
        Append(bytes, i < index.columns.size() ? 1 : 0, 1);
    }
    Append32(bytes, ToPointer(index.map));
    Append32(bytes, index.leaf);
    Append32(bytes, 0);
    Append(bytes, index.flags, 1);
    Append(bytes, 0, 5);
}

// Logical indexes stand in the order of their names and know by number which real one they are.
void AppendLogicalIndexes(std::string& bytes, const std::vector<NewIndex>& indexes)
{
    std::vector<std::size_t> order(indexes.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return FoldCase(indexes[a].name) < FoldCase(indexes[b].name);
    });
    for (std::size_t i : order) {
        Append32(bytes, kDefinitionMark);
        Append32(bytes, static_cast<std::uint32_t>(i));
        Append32(bytes, static_cast<std::uint32_t>(i));
        Append(bytes, 0, 1);
        Append32(bytes, 0xFFFFFFFF);
        Append32(bytes, 0);
        Append(bytes, 0x0404, 2);
        Append(bytes, indexes[i].primary ? 1 : 0, 1);
        Append32(bytes, 0);
    }
    for (std::size_t i : order) AppendName(bytes, indexes[i].name);
}

} // namespace

std::string NewDefinitionPage(const TableDefinition& table, const std::vector<NewIndex>& indexes)
{
    std::string bytes;
    Append32(bytes, 0x0102);
    Append32(bytes, 0);
    Append32(bytes, 0); // length, set below
    Append32(bytes, kDefinitionMark);
    Append32(bytes, table.rowCount);
    Append32(bytes, 0);
    Append32(bytes, 1);
    bytes.append(12, '\0');
    Append(bytes, table.system ? 0x53 : 0x4E, 1);
    Append16(bytes, table.mostColumns);
    Append16(bytes, table.variableColumns);
    Append16(bytes, table.columns.size());
    Append32(bytes, static_cast<std::uint32_t>(indexes.size()));
    Append32(bytes, static_cast<std::uint32_t>(indexes.size()));
    Append32(bytes, ToPointer(table.ownedMap));
    Append32(bytes, ToPointer(table.freeMap));
    for (const NewIndex& index : indexes) {
        Append32(bytes, 0);
        Append32(bytes, index.distinctKeys);
        Append32(bytes, 0);
    }
    for (const Column& column : table.columns) AppendColumn(bytes, table, column);
    for (const Column& column : table.columns) AppendName(bytes, column.name);
    for (const NewIndex& index : indexes) AppendIndex(bytes, index);
    AppendLogicalIndexes(bytes, indexes);
    for (const Column& column : table.columns) {
        if (!column.IsLong()) continue;
        Append16(bytes, column.number);
        Append32(bytes, ToPointer(column.ownedMap));
        Append32(bytes, ToPointer(column.freeMap));
    }
    Append16(bytes, 0xFFFF);
    if (bytes.size() > kPageSize - kPageHeader) throw DatabaseError(u"The new table has too many columns");
    Put32(bytes, kLengthAt, static_cast<std::uint32_t>(bytes.size()));
    Put16(bytes, kFreeAt, kPageSize - kPageHeader - bytes.size());
    bytes.resize(kPageSize, '\0');
    return bytes;
}

std::string KeyOf(std::uint32_t number)
{
    std::string key = "\x7F"; // not null, ascending
    for (int shift = 24; shift >= 0; shift -= 8)
        key += static_cast<char>((number ^ 0x80000000u) >> shift & 0xFF);
    return key;
}

std::string KeyOf(TextView name)
{
    // Weights of the sort order "General", A to Z; digits have every second one before them.
    static constexpr unsigned char kWeights[] = {0x4A, 0x4C, 0x4D, 0x4F, 0x51, 0x53, 0x55, 0x57, 0x59,
                                                 0x5B, 0x5C, 0x5E, 0x60, 0x62, 0x64, 0x66, 0x68, 0x69,
                                                 0x6B, 0x6D, 0x6F, 0x71, 0x73, 0x75, 0x76, 0x78};
    constexpr unsigned kDigitWeight = 0x36;
    std::string key = "\x7F";
    for (char16_t unit : name) {
        const char16_t letter = FoldCase(unit);
        if (letter >= u'a' && letter <= u'z')
            key += static_cast<char>(kWeights[letter - u'a']);
        else if (unit >= u'0' && unit <= u'9')
            key += static_cast<char>(kDigitWeight + 2 * (unit - u'0'));
        else
            throw DatabaseError(u"The name " + Text(name) +
                                u" of the new table has other characters than letters");
    }
    return key + std::string("\1\0", 2);
}

std::string NewIndexLeaf(PageNumber definition, const std::vector<IndexEntry>& entries)
{
    std::vector<std::string> sorted;
    for (const IndexEntry& entry : entries) {
        std::string bytes = entry.key;
        for (int shift = 16; shift >= 0; shift -= 8)
            bytes += static_cast<char>(entry.row.page >> shift & 0xFF);
        bytes += static_cast<char>(entry.row.slot);
        sorted.push_back(std::move(bytes));
    }
    std::sort(sorted.begin(), sorted.end(), [](const std::string& a, const std::string& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
            return static_cast<unsigned char>(x) < static_cast<unsigned char>(y);
        });
    });
    std::string page(kPageSize, '\0');
    Put16(page, 0, 0x0104);
    Put32(page, 4, definition);
    std::size_t used = 0;
    for (const std::string& entry : sorted) {
        page.replace(kFirstEntry + used, entry.size(), entry);
        used += entry.size();
        char& mask = page.at(kEntryMask + used / 8);
        mask = static_cast<char>(mask | 1 << (used % 8));
    }
    Put16(page, 2, kPageSize - kFirstEntry - used);
    return page;
}

std::uint32_t DistinctKeys(std::vector<IndexEntry> entries)
{
    std::vector<std::string> keys;
    for (IndexEntry& entry : entries) keys.push_back(std::move(entry.key));
    std::sort(keys.begin(), keys.end());
    return static_cast<std::uint32_t>(std::unique(keys.begin(), keys.end()) - keys.begin());
}

} // namespace jet
