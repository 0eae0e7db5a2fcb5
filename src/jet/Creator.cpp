#include "jet/Creator.h"

#include "jet/Header.h"
#include "jet/NewDefinition.h"
#include "jet/RowCodec.h"
#include "jet/Sql.h"
#include "jet/UsageMap.h"
#include "platform/Database.h"

#include <bit>

using namespace jet;

namespace {

// Where things are in a new file. Page 1 is the map of free pages; the definitions of the four system
// tables are pages 2 to 5, in the order of kSystemTables.
constexpr PageNumber kSystemMaps = 6, kFirstLeaf = 7, kObjectRows = 14, kRightRows = 15, kTable = 16,
                     kTableMaps = 17, kPages = 18;
constexpr PageNumber kObjects = 2, kRights = 3;

struct SystemColumn {
    const char* name;
    ColumnType type;
    std::uint16_t number, variableIndex, fixedOffset, length;
};
struct SystemIndex {
    const char* name;
    std::vector<std::uint16_t> columns;
    std::uint8_t flags;
    bool primary;
};
struct SystemTable {
    std::vector<SystemColumn> columns; // by name, as they are stored
    std::vector<SystemIndex> indexes;  // by creation; each has one leaf, all tables' one behind another
    PageNumber rows;                   // its one data page, or 0
};

using enum ColumnType;

const std::vector<SystemTable>& SystemTables()
{
    static const std::vector<SystemTable> tables = {
        // MSysObjects: what there is
        {{{"Connect", memo, 9, 3, 0, 0},
          {"Database", memo, 8, 2, 0, 0},
          {"DateCreate", date, 4, 1, 10, 8},
          {"DateUpdate", date, 5, 1, 18, 8},
          {"Flags", int32, 7, 2, 26, 4},
          {"ForeignName", text, 10, 4, 0, 510},
          {"Id", int32, 0, 0, 0, 4},
          {"Lv", ole, 13, 7, 0, 0},
          {"LvExtra", ole, 16, 10, 0, 0},
          {"LvModule", ole, 15, 9, 0, 0},
          {"LvProp", ole, 14, 8, 0, 0},
          {"Name", text, 2, 0, 0, 510},
          {"Owner", binary, 6, 1, 0, 510},
          {"ParentId", int32, 1, 0, 4, 4},
          {"RmtInfoLong", ole, 12, 6, 0, 0},
          {"RmtInfoShort", binary, 11, 5, 0, 510},
          {"Type", int16, 3, 1, 8, 2}},
         {{"ParentIdName", {1, 2}, 0x81, false}, {"Id", {0}, 0x81, true}},
         kObjectRows},
        // MSysACEs: who may do what
        {{{"ACM", int32, 2, 1, 4, 4},
          {"FInheritable", boolean, 3, 1, 0, 1},
          {"ObjectId", int32, 0, 0, 0, 4},
          {"SID", binary, 1, 0, 0, 510}},
         {{"ObjectId", {0}, 0x88, false}},
         kRightRows},
        // MSysQueries
        {{{"Attribute", byte, 1, 0, 4, 1},
          {"Expression", memo, 5, 3, 0, 0},
          {"Flag", int16, 6, 4, 5, 2},
          {"LvExtra", int32, 7, 4, 7, 4},
          {"Name1", text, 3, 1, 0, 510},
          {"Name2", text, 4, 2, 0, 510},
          {"ObjectId", int32, 0, 0, 0, 4},
          {"Order", binary, 2, 0, 0, 510}},
         {{"ObjectIdAttribute", {0, 1, 2}, 0x81, true}},
         0},
        // MSysRelationships
        {{{"ccolumn", int32, 2, 1, 4, 4},
          {"grbit", int32, 1, 1, 0, 4},
          {"icolumn", int32, 3, 1, 8, 4},
          {"szColumn", text, 5, 2, 0, 510},
          {"szObject", text, 4, 1, 0, 510},
          {"szReferencedColumn", text, 7, 4, 0, 510},
          {"szReferencedObject", text, 6, 3, 0, 510},
          {"szRelationship", text, 0, 0, 0, 510}},
         {{"szRelationship", {0}, 0x82, false},
          {"szObject", {4}, 0x82, false},
          {"szReferencedObject", {6}, 0x82, false}},
         0},
    };
    return tables;
}

enum Account : std::uint16_t { kAdmin = 0x0103, kEngine = 0x0302, kCreator = 0x0402, kUsers = 0x0102 };

// Objects that are no tables have numbers of their own.
constexpr std::uint32_t kRoot = 0x0F000000, kTables = 0x0F000001, kDatabases = 0x0F000002,
                        kRelationships = 0x0F000003, kSystemDatabase = 0x10000000, kSystemObject = 0x80000000;

struct ObjectRow {
    std::uint32_t id, parent;
    Text name;
    std::uint16_t type;
    std::uint32_t flags;
    Account owner;
};
std::vector<ObjectRow> ObjectRows(const Text& table)
{
    return {
        {kTables, kRoot, u"Tables", 3, kSystemObject, kEngine},
        {kDatabases, kRoot, u"Databases", 3, kSystemObject, kEngine},
        {kRelationships, kRoot, u"Relationships", 3, kSystemObject, kEngine},
        {kSystemDatabase, kDatabases, u"MSysDb", 2, kSystemObject, kAdmin},
        {2, kTables, u"MSysObjects", 1, kSystemObject, kEngine},
        {3, kTables, u"MSysACEs", 1, kSystemObject, kEngine},
        {4, kTables, u"MSysQueries", 1, kSystemObject, kEngine},
        {5, kTables, u"MSysRelationships", 1, kSystemObject, kEngine},
        {kTable, kTables, table, 1, 0, kAdmin},
    };
}

struct RightRow {
    std::uint32_t object, rights;
    bool inherited;
    Account account;
};
constexpr RightRow kRightsRows[] = {
    {2, 0x60000, false, kAdmin},
    {3, 0x60000, false, kAdmin},
    {4, 0x60000, false, kAdmin},
    {5, 0xE0000, false, kAdmin},
    {kTables, 0xF00FE, true, kCreator},
    {kTables, 0x60001, false, kAdmin},
    {kRelationships, 0xF00FE, true, kCreator},
    {kRelationships, 0x60001, false, kAdmin},
    {kDatabases, 0x60000, false, kAdmin},
    {kSystemDatabase, 0x6000E, false, kAdmin},
    {kSystemDatabase, 0xE, false, kUsers},
    {4, 0x14, false, kUsers},
    {5, 0x14, false, kUsers},
    {2, 0x14, false, kUsers},
    {kTables, 0xFFEFF, true, kUsers},
    {kRelationships, 0xFFFFF, true, kUsers},
    {kTable, 0xFFEFF, false, kAdmin},
    {kTable, 0xFFEFF, false, kUsers},
};

std::string Bytes(std::uint64_t number, std::size_t count)
{
    std::string bytes;
    Append(bytes, number, count);
    return bytes;
}

std::string MapOf(PageNumber page) // of the first 512 pages
{
    std::string map = NewUsageMap();
    if (page != 0) map.at(5 + page / 8) = static_cast<char>(1 << (page % 8));
    return map;
}

// Collects the pages of the new file.
class Builder {
public:
    Builder(const NewTable& table, double now)
        : new_(table), now_(now), pages_(kPages, std::string(kPageSize, '\0'))
    {
        pages_[0] = NewHeader();
        BuildFreePages();
        pages_[kSystemMaps] = NewDataPage(0);
        for (std::size_t i = 0; i < SystemTables().size(); ++i)
            tables_.push_back(SystemDefinition(SystemTables()[i], static_cast<PageNumber>(kObjects + i)));
        BuildObjects();
        BuildRights();
        BuildSystemTables();
        BuildTable();
    }

    std::string Image() const
    {
        std::string image;
        for (const std::string& page : pages_) image += page;
        return image;
    }

private:
    struct Definition {
        TableDefinition table;
        std::vector<NewIndex> indexes;
        std::vector<std::vector<IndexEntry>> entries; // per index
    };

    void BuildFreePages()
    {
        std::string freePages = NewUsageMap();
        for (std::size_t page = kPages; page < (freePages.size() - 5) * 8; ++page)
            freePages[5 + page / 8] = static_cast<char>(freePages[5 + page / 8] | 1 << (page % 8));
        pages_[1] = NewDataPage(1);
        AddRow(pages_[1], freePages);
        AddRow(pages_[1], NewUsageMap());
    }

    RowId AddSystemMap(PageNumber page) { return {kSystemMaps, AddRow(pages_[kSystemMaps], MapOf(page))}; }

    // Maps are made in this order: the table's, those of its long columns by number, those of its indexes.
    Definition SystemDefinition(const SystemTable& source, PageNumber page)
    {
        Definition made;
        TableDefinition& table = made.table;
        table.page = page;
        table.system = true;
        for (const SystemColumn& column : source.columns) {
            Column& added = table.columns.emplace_back();
            added.name = FromAscii(column.name);
            added.type = column.type;
            added.number = column.number;
            added.variableIndex = column.variableIndex;
            added.fixedOffset = column.fixedOffset;
            added.length = column.length;
            added.fixed = column.type < binary;
            added.mayBeNull = true;
            if (!added.fixed) ++table.variableColumns;
        }
        table.mostColumns = static_cast<std::uint16_t>(table.columns.size());
        table.ownedMap = AddSystemMap(source.rows);
        table.freeMap = AddSystemMap(source.rows);
        for (std::uint16_t number = 0; number < table.mostColumns; ++number) {
            for (Column& column : table.columns) {
                if (column.number != number || !column.IsLong()) continue;
                column.ownedMap = AddSystemMap(0);
                column.freeMap = AddSystemMap(0);
            }
        }
        for (const SystemIndex& index : source.indexes) {
            const PageNumber leaf = nextLeaf_++;
            made.indexes.push_back(
                {FromAscii(index.name), index.columns, index.flags, index.primary, leaf, AddSystemMap(leaf)});
            made.entries.emplace_back();
        }
        return made;
    }

    // Cells by column name.
    RowId AddSystemRow(Definition& definition, PageNumber page,
                       const std::vector<std::pair<TextView, std::string>>& values)
    {
        const TableDefinition& table = definition.table;
        std::vector<std::optional<std::string>> cells(table.columns.size());
        for (const auto& [name, value] : values)
            cells[static_cast<std::size_t>(table.Find(name) - table.columns.data())] = value;
        ++definition.table.rowCount;
        return {page, AddRow(pages_[page], EncodeRow(table, cells))};
    }

    void BuildObjects()
    {
        pages_[kObjectRows] = NewDataPage(kObjects);
        Definition& objects = tables_[0];
        const std::string now = Bytes(std::bit_cast<std::uint64_t>(now_), 8);
        for (const ObjectRow& object : ObjectRows(new_.name)) {
            const RowId row = AddSystemRow(objects, kObjectRows,
                                           {{u"Id", Bytes(object.id, 4)},
                                            {u"ParentId", Bytes(object.parent, 4)},
                                            {u"Name", EncodeText(object.name, Compression::plain)},
                                            {u"Type", Bytes(object.type, 2)},
                                            {u"DateCreate", now},
                                            {u"DateUpdate", now},
                                            {u"Owner", Bytes(object.owner ^ kAccountMask, 2)},
                                            {u"Flags", Bytes(object.flags, 4)}});
            objects.entries[0].push_back({KeyOf(object.parent) + KeyOf(object.name), row});
            objects.entries[1].push_back({KeyOf(object.id), row});
        }
    }

    void BuildRights()
    {
        pages_[kRightRows] = NewDataPage(kRights);
        Definition& rights = tables_[1];
        for (const RightRow& right : kRightsRows) {
            const RowId row = AddSystemRow(rights, kRightRows,
                                           {{u"ObjectId", Bytes(right.object, 4)},
                                            {u"ACM", Bytes(right.rights, 4)},
                                            {u"FInheritable", Bytes(right.inherited ? 1 : 0, 1)},
                                            {u"SID", Bytes(right.account ^ kAccountMask, 2)}});
            rights.entries[0].push_back({KeyOf(right.object), row});
        }
    }

    void BuildSystemTables()
    {
        for (Definition& definition : tables_) {
            for (std::size_t i = 0; i < definition.indexes.size(); ++i) {
                definition.indexes[i].distinctKeys = DistinctKeys(definition.entries[i]);
                pages_[definition.indexes[i].leaf] =
                    NewIndexLeaf(definition.table.page, definition.entries[i]);
            }
            pages_[definition.table.page] = NewDefinitionPage(definition.table, definition.indexes);
        }
    }

    void BuildTable()
    {
        pages_[kTableMaps] = NewDataPage(0);
        const auto addMap = [this] { return RowId{kTableMaps, AddRow(pages_[kTableMaps], NewUsageMap())}; };
        TableDefinition table;
        table.page = kTable;
        table.ownedMap = addMap();
        table.freeMap = addMap();
        for (const NewColumn& source : new_.columns) {
            Column& column = table.columns.emplace_back();
            column.name = source.name;
            column.type = source.IsMemo() ? memo : text;
            column.number = column.variableIndex = table.variableColumns++;
            column.length = static_cast<std::uint16_t>(2 * source.characters);
            column.mayBeNull = true;
            column.compressed = !source.IsMemo();
            if (!column.IsLong()) continue;
            column.ownedMap = addMap();
            column.freeMap = addMap();
        }
        table.mostColumns = table.variableColumns;
        pages_[kTable] = NewDefinitionPage(table, {});
    }

    const NewTable& new_;
    double now_;
    PageNumber nextLeaf_ = kFirstLeaf;
    std::vector<std::string> pages_;
    std::vector<Definition> tables_;
};

} // namespace

void CreateJetDatabase(Files& files, const Text& path, TextView createTable, double now)
{
    const NewTable table = ParseCreateTable(createTable);
    const std::string image = Builder(table, now).Image();
    const auto fail = [&path](const Text& why) {
        throw DatabaseError(u"The database " + path + u" cannot be made: " + why);
    };
    if (files.FileExists(path)) fail(Describe(FileError::exists));
    Text unfinished;
    FileError error = FileError::none;
    std::unique_ptr<RandomFile> file = OpenBeside(files, path, unfinished, error);
    if (!file) fail(Describe(error));
    error = file->WriteAt(0, image.data(), image.size());
    if (error == FileError::none) error = file->Flush();
    file.reset();
    if (error == FileError::none) error = files.Rename(unfinished, path);
    if (error != FileError::none) {
        files.Delete(unfinished);
        fail(Describe(error));
    }
}
