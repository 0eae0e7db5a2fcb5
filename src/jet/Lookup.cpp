#include "jet/Lookup.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

std::uint32_t HashOf(TextView text)
{
    std::uint32_t hash = 2166136261; // FNV-1a, a unit at a time
    for (char16_t unit : text) hash = (hash ^ FoldCase(unit)) * 16777619;
    return hash ^ hash >> 15; // of a product the low bits know little of the high ones
}

} // namespace

void Lookup::RowsByHash::Link()
{
    if (entries_.size() > ends_.size()) {
        ends_.assign(std::bit_ceil(2 * entries_.size()), 0);
        linked_ = 0;
    }
    for (; linked_ < entries_.size(); ++linked_)
        entries_[linked_].previous = std::exchange(EndOf(entries_[linked_].hash), linked_ + 1);
}

std::vector<RowId> Lookup::RowsByHash::Find(std::uint32_t hash) const
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
        rows.Link();
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
        rows.Link();
    }
}

} // namespace jet
