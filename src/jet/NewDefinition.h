// NewDefinition.h: the pages that describe a new table: its definition and the leaves of its indexes.
// Fails by: DatabaseError for a table that needs more than one page.
#pragma once
#include "jet/TableDefinition.h"

namespace jet {

struct NewIndex {
    Text name;
    std::vector<std::uint16_t> columns; // by number, ascending order
    std::uint8_t flags;                 // 01 unique, 02 ignores nulls, 08 required, 80 always
    bool primary;
    PageNumber leaf;
    RowId map;
    std::uint32_t distinctKeys = 0;
};

// The definition page; indexes in the order of their creation. A table of the system differs in a few
// fields from others.
std::string NewDefinitionPage(const TableDefinition& table, const std::vector<NewIndex>& indexes);

struct IndexEntry {
    std::string key; // of KeyOf parts
    RowId row;
};
std::string KeyOf(std::uint32_t number);
std::string KeyOf(TextView name); // throws for anything but Latin letters and digits
std::string NewIndexLeaf(PageNumber definition, const std::vector<IndexEntry>& entries);
std::uint32_t DistinctKeys(std::vector<IndexEntry> entries);

} // namespace jet
