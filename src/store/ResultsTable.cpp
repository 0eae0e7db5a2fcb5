#include "store/ResultsTable.h"

#include "text/DayCount.h"
#include "text/Numbers.h"

#include <algorithm>
#include <numeric>

namespace {

bool Precedes(SortOrder order, const Text& a, const Text& b)
{
    return order == SortOrder::ascending ? a < b : b < a;
}

// Of cells whose column is kept sorted.
bool PrecedesAsText(SortOrder order, TextView a, TextView b)
{
    if (order == SortOrder::descending) std::swap(a, b);
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char16_t x, char16_t y) { return FoldCase(x) < FoldCase(y); });
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
    const auto precedes = [this](std::uint32_t a, std::uint32_t b) {
        return PrecedesAsText(order_, Cell(rows_[a], column_), Cell(rows_[b], column_));
    };
    std::vector<std::uint32_t> added(rows_.size() - places_.size()), places;
    std::iota(added.begin(), added.end(), static_cast<std::uint32_t>(places_.size()));
    if (keepsSorted_) std::stable_sort(added.begin(), added.end(), precedes);
    std::vector<std::size_t> taken;
    auto from = places_.begin();
    for (const std::uint32_t number : added) {
        const auto to =
            keepsSorted_ ? std::upper_bound(from, places_.end(), number, precedes) : places_.end();
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
