// Lookup.h: finds the rows of a table by the text in a column without reading them all.
#pragma once
#include "jet/Table.h"

#include <map>

namespace jet {

class Lookup {
public:
    // Rows whose text in the column may be equal to the value without regard to case, in the order in which
    // they were met; the caller looks, because deleted rows and others of the same hash are among them. The
    // first call for a column reads the whole table.
    std::vector<RowId> Candidates(const Table& table, const Column& column, TextView value);
    void Added(const Table& table, RowId row);
    void Clear() { columns_.clear(); }

private:
    // A hash table with chains; their ends and links are places in entries, counted from 1. 0: none.
    class RowsByHash {
    public:
        void Add(std::uint32_t hash, RowId row) { entries_.push_back({hash, ToPointer(row), 0}); }
        void Link(); // those that were added, to be found
        std::vector<RowId> Find(std::uint32_t hash) const;

    private:
        struct Entry {
            std::uint32_t hash;
            std::uint32_t row;      // as the file writes it: there are many
            std::uint32_t previous; // in its chain
        };
        std::uint32_t& EndOf(std::uint32_t hash) { return ends_[hash & (ends_.size() - 1)]; }
        std::vector<std::uint32_t> ends_ = std::vector<std::uint32_t>(64, 0); // of a power of two chains
        std::vector<Entry> entries_;
        std::uint32_t linked_ = 0; // so many of them
    };
    std::map<std::uint16_t, RowsByHash> columns_; // by column number; those that were asked for
};

} // namespace jet
