// Lookup.h: finds the rows of a table by the text in a column without reading them all.
#pragma once
#include "jet/Table.h"

#include <map>
#include <unordered_map>

namespace jet {

class Lookup {
public:
    // Rows whose text in the column may be equal to the value without regard to case; the caller looks,
    // because deleted rows and others of the same hash are among them. The first call for a column reads
    // the whole table. The answer is good until the next Added.
    const std::vector<RowId>& Candidates(const Table& table, const Column& column, TextView value);
    void Added(const Table& table, RowId row);
    void Clear() { columns_.clear(); }

private:
    using RowsByHash = std::unordered_map<std::size_t, std::vector<RowId>>;
    std::map<std::uint16_t, RowsByHash> columns_; // by column number; those that were asked for
    const std::vector<RowId> none_{};
};

} // namespace jet
