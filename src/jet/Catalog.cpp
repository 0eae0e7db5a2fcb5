#include "jet/Catalog.h"

#include "jet/Table.h"
#include "platform/Database.h"

namespace jet {

namespace {

constexpr PageNumber kCatalogPage = 2;
enum ObjectType : std::uint16_t { kTable = 1, kLinkedOdbc = 4, kQuery = 5, kLinked = 6 };

} // namespace

PageNumber FindTable(PageFile& file, TextView name)
{
    const Table catalog(file, kCatalogPage);
    const Column* const id = catalog.Definition().Find(u"Id");
    const Column* const nameColumn = catalog.Definition().Find(u"Name");
    const Column* const type = catalog.Definition().Find(u"Type");
    if (!id || !nameColumn || !type) ThrowDamaged(kCatalogPage, u"the list of tables is not one");

    Text instead; // what bears the name but is not a table
    StoredRow stored;
    LongValue held;
    Text found;
    for (RowId place : catalog.Rows()) {
        if (!catalog.Fetch(place, stored)) continue;
        const Row row(catalog.Definition(), stored.bytes);
        const std::optional<std::string_view> idCell = row.Cell(*id), typeCell = row.Cell(*type);
        if (!idCell || !typeCell) continue;
        catalog.ReadColumn(row, *nameColumn, held, found);
        if (!EqualNoCase(found, name)) continue;
        switch (ByteView(*typeCell, place.page).U16(0)) {
        case kTable:
            return ByteView(*idCell, place.page).U32(0);
        case kLinkedOdbc:
        case kLinked:
            instead = u" is a table of another database";
            break;
        case kQuery:
            instead = u" is a query";
            break;
        default:
            break; // forms, reports and the like
        }
    }
    throw DatabaseError(instead.empty() ? u"The database has no table " + Text(name) : Text(name) + instead);
}

} // namespace jet
