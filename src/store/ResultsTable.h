// ResultsTable.h: the e-mails that checks found not saved, and the order in which the window shows them.
// A row is known by its number, counted from 0 as rows come; its place is where it stands on the window.
#pragma once
#include "platform/Locale.h"

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

enum class ResultsColumn { folder, id, subject, date, crc };
enum class SortOrder { ascending, descending };

using ResultsRow = std::array<Text, 5>; // a cell for each column, as text

inline const Text& Cell(const ResultsRow& row, ResultsColumn column)
{
    return row[static_cast<std::size_t>(column)];
}

class ResultsTable {
public:
    // Dates are read back as the locale has written them.
    explicit ResultsTable(Locale& locale) : locale_(locale) {}

    void Add(ResultsRow row); // not ticked; it has no place yet
    bool HasAdded() const { return places_.size() < rows_.size(); }
    void PlaceAdded(); // gives the rows that were added a place each, for many at a time: others may move
    void Clear();      // column and order of sorting stay

    // What a click on the column's header does to the rows that have a place: the order turns round, whatever
    // the column was before. "ID" sorts by number, "Date" by time, the others as text without regard to case;
    // equal rows stay as they stood. Kept: rows that come later find their place only after a sort as text,
    // otherwise they go to the end.
    void SortBy(ResultsColumn column);
    SortOrder Order() const { return order_; } // of the last sort
    bool KeepsSorted() const { return keepsSorted_; }

    const ResultsRow& Row(std::size_t number) const { return rows_[number]; }
    const std::vector<std::uint32_t>& Places() const { return places_; } // the number of the row at each

    bool IsTicked(std::size_t number) const { return ticked_[number]; }
    void Tick(std::size_t number, bool ticked) { ticked_[number] = ticked; }

    // The place of the first row from a place on, then from the top, whose first cell begins with a text in
    // any letter case.
    std::optional<std::size_t> Find(std::size_t from, TextView beginning) const;

private:
    void TakePrefixes();
    bool PrecedesAsText(std::uint32_t a, std::uint32_t b) const; // rows with a prefix
    Text DateKey(const Text& cell) const;

    Locale& locale_;
    std::deque<ResultsRow> rows_; // a vector holds three times as much while it grows
    std::vector<bool> ticked_;    // by row
    std::vector<std::uint32_t> places_;
    // By row, of the cells whose column is kept sorted: beyond "Re: " and what else many begin with.
    static constexpr std::size_t kPrefixNumbers = 3;
    std::vector<std::array<std::uint64_t, kPrefixNumbers>> prefixes_;
    ResultsColumn column_ = ResultsColumn::folder;
    SortOrder order_ = SortOrder::descending; // so that the first click sorts from small to great
    bool keepsSorted_ = false;
};
