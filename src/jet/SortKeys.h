// SortKeys.h: sorts the rows of a table by the texts in some of its columns, without regard to case.
#pragma once
#include "text/Text.h"

namespace jet {

class SortKeys {
public:
    explicit SortKeys(std::size_t columns) : columns_(columns) {} // at least 1
    void Add(TextView text);                                      // row by row, column by column
    // The places of the rows in the order in which they were added, sorted; equal ones stay in that order.
    // Asked once, behind the last Add.
    std::vector<std::uint32_t> Order();

private:
    TextView TextOf(std::size_t place, std::size_t column) const;

    std::size_t columns_;
    Text units_;                            // of all texts; folded by Order
    std::vector<std::size_t> starts_ = {0}; // in units_, and the end
};

} // namespace jet
