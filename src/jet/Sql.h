// Sql.h: the SQL statements that the embedded engine understands:
//   SELECT * | column {, column} FROM table [WHERE condition {AND condition}] [ORDER BY column {, column}]
//   [;]
//   CREATE TABLE table (column type {, column type}) [;]
// A type is TEXT(characters), 1 to 255 of them, or MEMO. A new table has at most 24 columns of different
// names; its names and theirs have at most 64 characters.
// A condition is column = 'text', in any number of parentheses; an apostrophe in the text is doubled.
// Names that are no plain words stand in [brackets]. Keywords may be in any letter case.
// Fails by: DatabaseError for everything else, saying what was expected where.
#pragma once
#include "text/Text.h"

namespace jet {

struct Condition {
    Text column, value;
};

struct Select {
    std::vector<Text> columns; // empty: all
    Text table;
    std::vector<Condition> where; // all must hold
    std::vector<Text> orderBy;
};

Select ParseSelect(TextView sql);

struct NewColumn {
    Text name;
    unsigned characters; // most, 1 to 255; 0: a memo, which takes any number
    bool IsMemo() const { return characters == 0; }
};

struct NewTable {
    Text name;
    std::vector<NewColumn> columns;
};

NewTable ParseCreateTable(TextView sql);

} // namespace jet
