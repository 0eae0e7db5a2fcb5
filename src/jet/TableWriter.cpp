#include "jet/TableWriter.h"

#include "jet/UsageMap.h"
#include "platform/Database.h"

#include <algorithm>

namespace jet {

namespace {

bool IsKnown(ColumnType type)
{
    const int number = static_cast<int>(type);
    return (number >= 1 && number <= 12) || type == ColumnType::guid || type == ColumnType::decimal;
}

// What cannot be kept consistent, whatever the table's pages hold.
Text RefusalOfTable(const TableDefinition& table)
{
    if (table.system) return u"Tables of the database system are not written";
    if (table.indexes > 0) return u"The table has an index or a key, which would not be kept up to date";
    std::vector<bool> taken(table.variableColumns, false);
    for (const Column& column : table.columns) {
        if (column.autoNumber)
            return u"The column " + column.name + u" numbers its rows itself, which is not supported";
        if (!IsKnown(column.type)) return u"The column " + column.name + u" is of an unknown type";
        if (column.IsLong() && column.ownedMap.page == 0)
            return u"The column " + column.name + u" has no map of its pages";
        if (column.fixed) continue;
        if (column.variableIndex >= taken.size() || taken[column.variableIndex])
            return u"The column " + column.name + u" has no place of its own in a row";
        taken[column.variableIndex] = true;
    }
    return {};
}

Text NeedsValue(const Column& column)
{
    return u"The column " + column.name + u" needs a value";
}

std::optional<std::string> EncodeCell(WriteSet& writes, const Column& column,
                                      const std::optional<Text>& value, TableSpaces& spaces)
{
    if (!value || value->empty()) {
        if (!column.mayBeNull && column.type != ColumnType::boolean) throw DatabaseError(NeedsValue(column));
        return std::nullopt;
    }
    if (column.type == ColumnType::memo) {
        // As Jet does it, whatever the column says of compression.
        constexpr std::size_t kMostCompressed = 1024; // characters
        const std::string bytes = EncodeText(
            *value, value->size() > kMostCompressed ? Compression::plain : Compression::compressed);
        return StoreLongValue(writes, column, bytes, spaces.longValues[column.number]);
    }
    if (column.type != ColumnType::text || column.fixed) throw DatabaseError(TakesNoText(column.name));
    if (value->size() * 2 > column.length)
        throw DatabaseError(u"The text is too long for the column " + column.name + u" (" +
                            DecimalText(column.length / 2) + u" characters at most): " + *value);
    if (value->front() == u'\xFEFF') // would be lost, and the row not found again
        throw DatabaseError(u"The text for the column " + column.name + u" begins with a byte order mark");
    return EncodeText(*value, column.compressed ? Compression::compressed : Compression::plain);
}

// Pages that have room again are offered for new rows.
void OfferAgain(WriteSet& writes, RowId freeMap, FreeSpaces& spaces, const std::set<PageNumber>& pages)
{
    for (const PageNumber page : pages) {
        const std::size_t room = FreeSpaceIn(writes.View(page)).value_or(0);
        if (!spaces.Knows(page)) {
            if (room < kWorthOffering || freeMap.page == 0) continue;
            AddToMap(writes, freeMap, page, Phase::tidy);
        }
        spaces.Set({page, room});
    }
}

} // namespace

TableWriter::TableWriter(Table& table) : table_(table), refusal_(RefusalOfTable(table.Definition()))
{
    if (!table.File().WhyReadOnly().empty()) refusal_ = table.File().WhyReadOnly();
    if (!refusal_.empty()) return;
    try {
        Inspect();
    } catch (const DatabaseError& error) {
        refusal_ = error.Words();
    }
}

Text TableWriter::RefusalOf(const std::vector<ColumnNeed>& needs) const
{
    if (!refusal_.empty()) return refusal_;
    for (const Column& column : table_.Definition().columns) {
        const auto need = std::find_if(needs.begin(), needs.end(), [&](const ColumnNeed& sought) {
            return EqualNoCase(sought.name, column.name);
        });
        const bool mayLackValue = column.mayBeNull || column.type == ColumnType::boolean;
        if (!mayLackValue && (need == needs.end() || need->mayBeEmpty)) return NeedsValue(column);
        if (need == needs.end() || column.type == ColumnType::memo) continue;
        if (column.type != ColumnType::text || column.fixed) return TakesNoText(column.name);
        if (column.length / 2 < need->characters) return TooNarrow(*need, column.length / 2);
    }
    return {};
}

std::vector<Text> TableWriter::Mend()
{
    std::vector<Text> notes;
    if (!refusal_.empty() || mended_) return notes;
    PageFile& file = table_.File();
    if (!file.Tail().empty()) {
        file.CutTail();
        notes.emplace_back(u"an unfinished page at its end was cut off");
    }
    if (const std::uint32_t counted = table_.Definition().rowCount; counted != rowCount_) {
        WriteSet writes(file);
        WriteRowCount(writes, table_.Definition().page, rowCount_, Phase::count);
        writes.Commit();
        notes.push_back(u"the count of its rows was corrected from " + DecimalText(counted) + u" to " +
                        DecimalText(rowCount_));
    }
    if (!unlisted_.empty()) {
        WriteSet writes(file);
        for (const Column& column : table_.Definition().columns)
            for (const auto& [number, page] : unlisted_)
                if (number == column.number) AddToMap(writes, column.ownedMap, page, Phase::commit);
        MarkFreshPagesUsed(writes);
        writes.Commit();
        notes.emplace_back(u"pages with long texts were entered in their map");
    }
    mended_ = true;
    return notes;
}

void TableWriter::Inspect()
{
    PageFile& file = table_.File();
    const TableDefinition& table = table_.Definition();
    InspectMaps();
    InspectTail();
    Inspected inspected;
    for (const Column& column : table.columns)
        if (column.IsLong()) inspected.longValuePages[column.number] = PagesOf(file, column.ownedMap);
    table_.ForEachRow(CheckDirectory, [&](const StoredRow& stored) {
        InspectRow(stored, inspected);
        ++rowCount_;
    });
    std::vector<std::uint32_t>& places = inspected.places;
    std::sort(places.begin(), places.end());
    const auto twice = std::adjacent_find(places.begin(), places.end());
    if (twice != places.end()) ThrowDamaged(*twice >> 8, u"two rows share the same bytes");
    if (rowCount_ < table.rowCount)
        throw DatabaseError(u"The table has lost rows: it should have " + DecimalText(table.rowCount) +
                            u" and has " + DecimalText(rowCount_));

    spaces_ = ReadSpaces();
    unlisted_ = std::move(inspected.unlisted);
}

TableSpaces TableWriter::ReadSpaces() const
{
    PageFile& file = table_.File();
    const TableDefinition& table = table_.Definition();
    TableSpaces spaces{FreeSpacesOf(file, table.freeMap, table_.Pages(), table.page), {}};
    for (const Column& column : table.columns)
        if (column.IsLong())
            spaces.longValues[column.number] =
                FreeSpacesOf(file, column.freeMap, PagesOf(file, column.ownedMap), kLongValueOwner);
    return spaces;
}

void TableWriter::InspectMaps() const
{
    const TableDefinition& table = table_.Definition();
    std::vector<RowId> maps = {table.ownedMap, table.freeMap};
    for (const Column& column : table.columns)
        if (column.IsLong()) maps.insert(maps.end(), {column.ownedMap, column.freeMap});
    PageRef hold;
    for (auto map = maps.begin(); map != maps.end(); ++map) {
        if (map->page == 0) continue; // no free map
        NeedDataPage(table_.File().View(map->page, hold), 0);
        if (std::find(maps.begin(), map, *map) != map) ThrowDamaged(map->page, u"a usage map has two uses");
        NeedExtensible(table_.File(), *map);
    }
    NeedExtensible(table_.File(), kFreePages);
}

// A stop while the file grew leaves part of a page that this program makes, or zeros in its place, and
// nothing in use yet.
void TableWriter::InspectTail() const
{
    PageFile& file = table_.File();
    const std::string tail = file.Tail();
    if (tail.empty()) return;
    const auto begins = [&tail](std::string_view page, std::size_t freeAt) {
        // The two bytes of a figure may be any.
        for (std::size_t at = 0; at < std::min(tail.size(), page.size()); ++at)
            if (tail[at] != page[at] && at != freeAt && at != freeAt + 1) return false;
        return true;
    };
    const std::string_view bitmap("\5\1\0\0", 4);
    constexpr std::size_t kFreeFigure = 2;
    const bool ours = begins(NewDataPage(table_.Definition().page).substr(0, 8), kFreeFigure) ||
                      begins(NewDataPage(kLongValueOwner).substr(0, 8), kFreeFigure) ||
                      begins(bitmap, bitmap.size());
    const bool unwritten = tail.substr(0, kSectorSize).find_first_not_of('\0') == std::string::npos;
    if ((!ours && !unwritten) || !IsPageFree(file, file.Count()))
        throw DatabaseError(u"The file ends in the middle of a page that this program did not begin: it was "
                            u"cut short, or something was added to it");
}

void TableWriter::InspectRow(const StoredRow& stored, Inspected& inspected) const
{
    for (RowId place : stored.moves) inspected.places.push_back(ToPointer(place));
    const Row row(table_.Definition(), stored.bytes);
    for (const Column& column : table_.Definition().columns) {
        const std::optional<ByteView> value = table_.Value(row, column, inspected.value);
        if (!value) continue;
        if (column.IsText()) CheckText(*value);
        if (!column.IsLong()) continue;
        for (RowId place : inspected.value.Places()) {
            const std::vector<PageNumber>& listed = inspected.longValuePages.at(column.number);
            inspected.places.push_back(ToPointer(place));
            if (!std::binary_search(listed.begin(), listed.end(), place.page))
                inspected.unlisted.emplace(column.number, place.page);
        }
    }
}

TableSpaces TableWriter::TakeSpaces()
{
    std::optional<TableSpaces> known = std::exchange(spaces_, std::nullopt);
    return known ? std::move(*known) : ReadSpaces();
}

void TableWriter::NeedWritable() const
{
    if (!refusal_.empty()) throw DatabaseError(refusal_);
}

RowId TableWriter::Append(const std::vector<std::optional<Text>>& values)
{
    NeedWritable();
    const TableDefinition& table = table_.Definition();
    WriteSet writes(table_.File());
    TableSpaces spaces = TakeSpaces();
    std::vector<std::optional<std::string>> cells;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        cells.push_back(EncodeCell(writes, table.columns[i], values.at(i), spaces));
    const std::string row = EncodeRow(table, cells);

    RowId id;
    if (const std::optional<PageNumber> found = spaces.rows.Find(row.size())) {
        std::string& page = writes.Edit(*found, Phase::commit);
        id = {*found, AddRow(page, row)};
        spaces.rows.Set({id.page, FreeSpaceIn(ByteView(page, id.page)).value_or(0)});
        writes.StageBehindFirstSector(id.page);
    } else {
        std::string page = NewDataPage(table.page);
        id.slot = AddRow(page, row);
        const std::size_t left = FreeSpaceIn(ByteView(page, 0)).value_or(0);
        id.page = writes.Add(std::move(page));
        EnterPage(writes, table.ownedMap, table.freeMap, spaces.rows, {id.page, left});
    }
    MarkFreshPagesUsed(writes);
    WriteRowCount(writes, table.page, rowCount_ + 1, Phase::count);
    writes.Commit();
    spaces_ = std::move(spaces);
    ++rowCount_;
    return id;
}

void TableWriter::Delete(std::span<const RowId> rows)
{
    NeedWritable();
    std::vector<StoredRow> inPlace, moved;
    std::set<std::uint32_t> pointers;
    for (RowId id : rows) {
        StoredRow stored;
        if (!table_.Fetch(id, stored) || !pointers.insert(ToPointer(id)).second)
            throw DatabaseError(u"The row was deleted before");
        std::vector<StoredRow>& rowsLike = stored.moves.empty() ? inPlace : moved;
        rowsLike.push_back(std::move(stored));
    }
    if (!inPlace.empty()) DeleteTogether(inPlace);
    // Where it has moved to is a leftover only when the row itself is gone, so nothing else may be on the
    // way.
    for (const StoredRow& row : moved) DeleteTogether({&row, 1});
}

void TableWriter::DeleteTogether(std::span<const StoredRow> rows)
{
    const TableDefinition& table = table_.Definition();
    WriteSet writes(table_.File());
    TableSpaces spaces = TakeSpaces();
    const std::uint32_t left = rowCount_ - static_cast<std::uint32_t>(rows.size());
    WriteRowCount(writes, table.page, left, Phase::prepare);
    std::set<PageNumber> rowPages;
    std::map<std::uint16_t, std::set<PageNumber>> longValuePages; // by column number
    for (const StoredRow& stored : rows) {
        const Row row(table, stored.bytes);
        DeleteRow(writes.Edit(stored.id.page, Phase::commit), stored.id.slot);
        rowPages.insert(stored.id.page);
        for (RowId place : stored.moves) {
            DeleteRow(writes.Edit(place.page, Phase::tidy), place.slot);
            rowPages.insert(place.page);
        }
        for (const Column& column : table.columns) {
            const std::optional<std::string_view> cell = row.Cell(column);
            if (!cell || cell->empty() || !column.IsLong()) continue;
            const LongValue value(table_.File(), ByteView(*cell, row.Page()));
            for (RowId place : value.Places()) {
                CheckDirectory(writes.View(place.page));
                DeleteRow(writes.Edit(place.page, Phase::tidy), place.slot);
                longValuePages[column.number].insert(place.page);
            }
        }
    }
    for (const Column& column : table.columns)
        if (column.IsLong())
            OfferAgain(writes, column.freeMap, spaces.longValues[column.number],
                       longValuePages[column.number]);
    OfferAgain(writes, table.freeMap, spaces.rows, rowPages);
    MarkFreshPagesUsed(writes); // of a free map that had to grow
    writes.Commit();
    spaces_ = std::move(spaces);
    rowCount_ = left;
}

} // namespace jet
