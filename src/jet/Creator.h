// Creator.h: makes a new database file with one empty table.
// Fails by: DatabaseError; a file that exists is never replaced.
#pragma once
#include "platform/Files.h"

// createTable: "CREATE TABLE ..." as Sql.h tells; the table's name has Latin letters and digits only.
// now: day count, for the catalog. The file is complete or not there: it is written beside that
// name (OpenBeside) and renamed.
void CreateJetDatabase(Files& files, const Text& path, TextView createTable, double now);
