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

std::size_t ResultsTable::Add(ResultsRow row)
{
    const auto number = static_cast<std::uint32_t>(rows_.size());
    auto place = places_.end();
    if (keepsSorted_) {
        place = std::upper_bound(places_.begin(), places_.end(), KeyOf(row),
                                 [this](const Text& key, std::uint32_t other) {
                                     return Precedes(order_, key, KeyOf(rows_[other]));
                                 });
    }
    place = places_.insert(place, number);
    rows_.push_back(std::move(row));
    return static_cast<std::size_t>(place - places_.begin());
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
