// JetDatabase.h: the embedded engine: opens, reads and extends database files of the Jet 4 format (.mdb)
// without any part of the system's own. It knows tables of text and memo columns without indexes; other
// tables it reads.
// Fails by: DatabaseError.
#pragma once
#include "jet/Creator.h"
#include "platform/Database.h"
#include "platform/Files.h"

struct JetDatabase : Database {
    // In the order in which the table was given them.
    virtual std::vector<Text> ColumnNames(const Text& table) = 0;
};

// Changes no byte: only what is added and deleted does, and Database::PrepareForWriting. mode:
// OpenMode::exclusive, which reads a file that may not be written, or OpenMode::read to look into a file that
// others may be reading. Lookups by
// "=" do not read the whole table but for the first time; rows come in the order of the file unless ORDER
// BY is given. Null and empty text are the same: both are stored as null and found by =''.
std::unique_ptr<JetDatabase> OpenJetDatabase(Files& files, const Text& path,
                                             OpenMode mode = OpenMode::exclusive);
