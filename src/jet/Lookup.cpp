#include "jet/Lookup.h"

#include <algorithm>

namespace jet {

namespace {

std::size_t HashOf(TextView text)
{
    std::uint32_t hash = 2166136261; // FNV-1a, a unit at a time
    for (char16_t unit : text) hash = (hash ^ FoldCase(unit)) * 16777619;
    return hash ^ hash >> 15; // of a product the low bits know little of the high ones
}

} // namespace

void Lookup::RowsByHash::Add(std::size_t hash, RowId row)
{
    if (entries_.size() == ends_.size()) {
        ends_.assign(2 * ends_.size(), 0);
        for (std::uint32_t i = 0; i < entries_.size(); ++i)
            entries_[i].previous = std::exchange(EndOf(entries_[i].hash), i + 1);
    }
    const std::uint32_t previous =
        std::exchange(EndOf(hash), static_cast<std::uint32_t>(entries_.size() + 1));
    entries_.push_back({hash, row, previous});
}

std::vector<RowId> Lookup::RowsByHash::Find(std::size_t hash) const
{
    std::vector<RowId> rows;
    for (std::uint32_t place = ends_[hash & (ends_.size() - 1)]; place != 0;) {
        const Entry& entry = entries_[place - 1];
        if (entry.hash == hash) rows.push_back(entry.row);
        place = entry.previous;
    }
    std::reverse(rows.begin(), rows.end());
    return rows;
}

std::vector<RowId> Lookup::Candidates(const Table& table, const Column& column, TextView value)
{
    auto known = columns_.find(column.number);
    if (known == columns_.end()) {
        RowsByHash rows;
        Text text;
        table.ForEachRow([&](const StoredRow& stored) {
            table.ReadColumn(Row(table.Definition(), stored.bytes), column, text);
            rows.Add(HashOf(text), stored.id);
        });
        known = columns_.emplace(column.number, std::move(rows)).first;
    }
    return known->second.Find(HashOf(value));
}

void Lookup::Added(const Table& table, RowId id)
{
    const std::optional<StoredRow> stored = table.Fetch(id);
    if (!stored) return;
    const Row row(table.Definition(), stored->bytes);
    for (auto& [number, rows] : columns_) {
        for (const Column& column : table.Definition().columns)
            if (column.number == number) rows.Add(HashOf(table.ColumnText(row, column)), id);
    }
}

} // namespace jet
