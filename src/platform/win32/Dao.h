// Dao.h: databases through Data Access Objects, where Windows or Office brought them: late-bound, so that
// the program starts without them.
// Fails by: DatabaseError, in the engine's own words.
#pragma once
#include "platform/Database.h"

bool IsDaoInstalled(); // true when the engine can be started, so also a check for a broken installation

std::unique_ptr<Database> OpenDaoDatabase(const Text& path); // an existing file, shared with other programs

// Makes a new file in the format of Jet 4, General sort order, with the one table that the statement
// ("CREATE TABLE ...") describes. Never replaces a file, and leaves none behind on failure.
void CreateDaoDatabase(const Text& path, const Text& createTable);
