#include "store/ResultsTable.h"

#include "text/DayCount.h"
#include "text/Numbers.h"

#include <algorithm>

namespace {

bool Precedes(SortOrder order, const Text& a, const Text& b)
{
    return order == SortOrder::ascending ? a < b : b < a;
}

// As wide as the longest number, so that keys can be compared as texts. No number, no key.
Text NumberKey(const Text& cell)
{
    constexpr std::size_t kWidth = 10;
    return cell.empty() || cell.size() >= kWidth ? cell : Text(kWidth - cell.size(), u'0') + cell;
}

} // namespace

std::vector<std::size_t> ResultsTable::PlaceAdded()
{
    if (places_.size() == rows_.size()) return {};
    std::vector<std::pair<Text, std::uint32_t>> added; // by key, equal ones as they came
    for (std::size_t number = places_.size(); number < rows_.size(); ++number)
        added.emplace_back(keepsSorted_ ? KeyOf(rows_[number]) : Text(), static_cast<std::uint32_t>(number));
    std::stable_sort(added.begin(), added.end(),
                     [this](const auto& a, const auto& b) { return Precedes(order_, a.first, b.first); });
    std::vector<std::uint32_t> places;
    std::vector<std::size_t> taken;
    auto from = places_.begin();
    for (const auto& [key, number] : added) {
        const auto behind = [this](const Text& sought, std::uint32_t other) {
            return Precedes(order_, sought, KeyOf(rows_[other]));
        };
        const auto to = keepsSorted_ ? std::upper_bound(from, places_.end(), key, behind) : places_.end();
        places.insert(places.end(), from, to);
        taken.push_back(places.size());
        places.push_back(number);
        from = to;
    }
    places.insert(places.end(), from, places_.end());
    places_ = std::move(places);
    return taken;
}

void ResultsTable::Clear()
{
    rows_.clear();
    places_.clear();
}

void ResultsTable::SortBy(ResultsColumn column)
{
    order_ = order_ == SortOrder::ascending ? SortOrder::descending : SortOrder::ascending;
    column_ = column;
    keepsSorted_ = column != ResultsColumn::id && column != ResultsColumn::date;
    std::vector<Text> keys;
    keys.reserve(rows_.size());
    for (const ResultsRow& row : rows_) keys.push_back(KeyOf(row));
    std::stable_sort(places_.begin(), places_.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return Precedes(order_, keys[a], keys[b]); });
}

Text ResultsTable::KeyOf(const ResultsRow& row) const
{
    const Text& cell = Cell(row, column_);
    switch (column_) {
    case ResultsColumn::id:
        return NumberKey(cell);
    case ResultsColumn::date:
        return DateKey(cell);
    case ResultsColumn::folder:
    case ResultsColumn::subject:
    case ResultsColumn::crc:
        break;
    }
    return FoldCase(cell);
}

// An empty cell and one that is no date have no key.
Text ResultsTable::DateKey(const Text& cell) const
try {
    const std::optional<double> date = cell.empty() ? std::nullopt : locale_.ParseDateText(cell);
    if (!date) return {};
    const bool timeOnly = *date >= 0 && *date < 1; // the text of such a date has no day
    return FormatDate(*date, timeOnly ? TextView{u"hhnnss"} : kCompactFormat);
} catch (const ValueFault&) { // rounded out of the calendar
    return {};
}
