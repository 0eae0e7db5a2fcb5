// Creator.h: makes a new database file with one empty table.
// Fails by: DatabaseError; a file that exists is never replaced.
#pragma once
#include "platform/Files.h"

enum class NewColumnType { text, memo };
struct NewColumn {
    Text name;
    NewColumnType type;
    unsigned length; // characters, up to 255; without meaning for a memo
};
struct NewTable {
    Text name; // Latin letters and digits
    std::vector<NewColumn> columns;
};

// now: day count, for the catalog. The file is complete or not there: it is written under another name
// (path + ".new") and renamed.
void CreateJetDatabase(Files& files, const Text& path, const NewTable& table, double now);
