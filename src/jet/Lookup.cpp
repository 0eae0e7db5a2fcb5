#include "jet/Lookup.h"

namespace jet {

namespace {

std::size_t HashOf(TextView text)
{
    return std::hash<Text>()(FoldCase(text));
}

} // namespace

const std::vector<RowId>& Lookup::Candidates(const Table& table, const Column& column, TextView value)
{
    auto known = columns_.find(column.number);
    if (known == columns_.end()) {
        RowsByHash rows;
        for (RowId id : table.Rows()) {
            if (const std::optional<StoredRow> stored = table.Fetch(id))
                rows[HashOf(table.ColumnText(Row(table.Definition(), stored->bytes), column))].push_back(id);
        }
        known = columns_.emplace(column.number, std::move(rows)).first;
    }
    const auto found = known->second.find(HashOf(value));
    return found == known->second.end() ? none_ : found->second;
}

void Lookup::Added(const Table& table, RowId id)
{
    const std::optional<StoredRow> stored = table.Fetch(id);
    if (!stored) return;
    const Row row(table.Definition(), stored->bytes);
    for (auto& [number, rows] : columns_) {
        for (const Column& column : table.Definition().columns)
            if (column.number == number) rows[HashOf(table.ColumnText(row, column))].push_back(id);
    }
}

} // namespace jet
