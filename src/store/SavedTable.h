// SavedTable.h: the table of exported e-mails, as a new database gets it.
#pragma once
#include "jet/Creator.h"
#include "platform/Database.h"

inline constexpr char16_t kSavedTable[] = u"saved";

// A subject may have any length; a CRC text has at most 8 characters.
inline NewTable SavedTable()
{
    return {kSavedTable,
            {{u"efolder", NewColumnType::text, 255},
             {u"esubject", NewColumnType::memo, 0},
             {u"ecrc", NewColumnType::text, 8}}};
}

// What another program's table must be able to take. A folder or a subject may happen to be short; a CRC that
// does not fit would be lost for all e-mails but a few.
inline std::vector<ColumnNeed> SavedColumns()
{
    return {{u"efolder", 1, false}, {u"esubject", 1, true}, {u"ecrc", 8, false}};
}

// The same for an engine that takes statements: "CREATE TABLE saved (efolder TEXT(255), esubject MEMO, ...)".
inline Text CreateTableSql(const NewTable& table)
{
    Text columns;
    for (const NewColumn& column : table.columns) {
        if (!columns.empty()) columns += u", ";
        columns += column.name;
        columns +=
            column.type == NewColumnType::memo ? u" MEMO" : u" TEXT(" + DecimalText(column.length) + u")";
    }
    return u"CREATE TABLE " + table.name + u" (" + columns + u")";
}
