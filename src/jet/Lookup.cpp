#include "jet/Lookup.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

// FNV-1a, a unit at a time. Texts that are equal without regard to case have the same.
class Hash {
public:
    void Add(char16_t unit) { hash_ = (hash_ ^ FoldCase(unit)) * 16777619; }
    // Of a product the low bits know little of the high ones.
    std::uint32_t Value() const { return hash_ ^ hash_ >> 15; }

private:
    std::uint32_t hash_ = 2166136261;
};

std::uint32_t HashOf(TextView text)
{
    Hash hash;
    for (const char16_t unit : text) hash.Add(unit);
    return hash.Value();
}

// Of a text as it is stored: none is made of it.
std::uint32_t HashOf(const Table& table, const Row& row, const Column& column, LongValue& held)
{
    const std::optional<ByteView> text = table.Value(row, column, held);
    Hash hash;
    if (text)
        ForEachStretch(
            *text,
            [&](std::string_view narrow) {
                for (const char unit : narrow) hash.Add(static_cast<unsigned char>(unit));
            },
            [&](std::string_view wide) {
                const ByteView units(wide, text->Page());
                for (std::size_t at = 0; at < units.Size(); at += 2) hash.Add(units.U16(at));
            });
    return hash.Value();
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
        if (entry.hash == hash) rows.push_back(FromPointer(entry.row));
        place = entry.previous;
    }
    std::reverse(rows.begin(), rows.end());
    return rows;
}

std::vector<RowId> Lookup::Candidates(const Table& table, const Column& column, TextView value)
{
    LongValue held;
    auto known = columns_.find(column.number);
    if (known == columns_.end()) {
        RowsByHash rows;
        table.ForEachRow([&](const StoredRow& stored) {
            rows.Add(HashOf(table, Row(table.Definition(), stored.bytes), column, held), stored.id);
        });
        rows.Link();
        known = columns_.emplace(column.number, std::move(rows)).first;
    }
    return known->second.Find(HashOf(value));
}

void Lookup::Added(const Table& table, RowId id)
{
    StoredRow stored;
    LongValue held;
    if (!table.Fetch(id, stored)) return;
    const Row row(table.Definition(), stored.bytes);
    for (auto& [number, rows] : columns_) {
        for (const Column& column : table.Definition().columns)
            if (column.number == number) rows.Add(HashOf(table, row, column, held), id);
        rows.Link();
    }
}

} // namespace jet
