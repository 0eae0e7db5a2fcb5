// Sql.h: the SQL statements that the embedded engine understands:
//   SELECT * | column {, column} FROM table [WHERE condition {AND condition}] [ORDER BY column {, column}]
//   [;]
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

} // namespace jet
