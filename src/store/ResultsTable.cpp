#include "store/ResultsTable.h"

#include "text/DayCount.h"
#include "text/Numbers.h"
#include "text/SortPrefix.h"

#include <algorithm>
#include <numeric>

namespace {

// As wide as the longest number, so that keys can be compared as texts. No number, no key.
Text NumberKey(const Text& cell)
{
    constexpr std::size_t kWidth = 10;
    return cell.empty() || cell.size() >= kWidth ? cell : Text(kWidth - cell.size(), u'0') + cell;
}

} // namespace

void ResultsTable::Add(ResultsRow row)
{
    rows_.push_back(std::move(row));
    ticked_.push_back(false);
}

void ResultsTable::PlaceAdded()
{
    if (!HasAdded()) return;
    if (keepsSorted_) TakePrefixes();
    const auto precedes = [this](std::uint32_t a, std::uint32_t b) { return PrecedesAsText(a, b); };
    std::vector<std::uint32_t> added(rows_.size() - places_.size()), places;
    std::iota(added.begin(), added.end(), static_cast<std::uint32_t>(places_.size()));
    if (keepsSorted_) std::stable_sort(added.begin(), added.end(), precedes);
    auto from = places_.begin();
    for (const std::uint32_t number : added) {
        const auto to =
            keepsSorted_ ? std::upper_bound(from, places_.end(), number, precedes) : places_.end();
        places.insert(places.end(), from, to);
        places.push_back(number);
        from = to;
    }
    places.insert(places.end(), from, places_.end());
    places_ = std::move(places);
}

void ResultsTable::Clear()
{
    rows_.clear();
    ticked_.clear();
    places_.clear();
    prefixes_.clear();
}

void ResultsTable::SortBy(ResultsColumn column)
{
    order_ = order_ == SortOrder::ascending ? SortOrder::descending : SortOrder::ascending;
    column_ = column;
    keepsSorted_ = column != ResultsColumn::id && column != ResultsColumn::date;
    prefixes_.clear();
    if (keepsSorted_) {
        TakePrefixes();
        std::stable_sort(places_.begin(), places_.end(),
                         [this](std::uint32_t a, std::uint32_t b) { return PrecedesAsText(a, b); });
        return;
    }
    std::vector<Text> keys;
    keys.reserve(rows_.size());
    for (const ResultsRow& row : rows_) {
        const Text& cell = Cell(row, column);
        keys.push_back(column == ResultsColumn::id ? NumberKey(cell) : DateKey(cell));
    }
    std::stable_sort(places_.begin(), places_.end(), [&](std::uint32_t a, std::uint32_t b) {
        return order_ == SortOrder::ascending ? keys[a] < keys[b] : keys[b] < keys[a];
    });
}

std::optional<std::size_t> ResultsTable::Find(std::size_t from, TextView beginning) const
{
    const Text sought = FoldCase(beginning);
    for (std::size_t step = 0; step < places_.size(); ++step) {
        const std::size_t place = (from + step) % places_.size();
        const TextView cell = rows_[places_[place]].front();
        if (FoldCase(cell.substr(0, sought.size())) == sought) return place;
    }
    return std::nullopt;
}

void ResultsTable::TakePrefixes()
{
    while (prefixes_.size() < rows_.size())
        prefixes_.push_back(SortPrefix<kPrefixNumbers>(Cell(rows_[prefixes_.size()], column_)));
}

bool ResultsTable::PrecedesAsText(std::uint32_t a, std::uint32_t b) const
{
    if (order_ == SortOrder::descending) std::swap(a, b);
    if (const auto order = prefixes_[a] <=> prefixes_[b]; order != 0) return order < 0;
    const Text &before = Cell(rows_[a], column_), &behind = Cell(rows_[b], column_);
    return std::lexicographical_compare(before.begin(), before.end(), behind.begin(), behind.end(),
                                        [](char16_t x, char16_t y) { return FoldCase(x) < FoldCase(y); });
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
