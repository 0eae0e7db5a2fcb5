// Catalog.h: which tables a database has.
#pragma once
#include "jet/PageFile.h"

namespace jet {

// The definition page of the table, whose name is sought without regard to case. Throws DatabaseError when
// there is none of that name, or it is a query or a table of another database.
PageNumber FindTable(PageFile& file, TextView name);

} // namespace jet
