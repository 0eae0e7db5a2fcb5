#include "jet/SortKeys.h"

#include "text/SortPrefix.h"

#include <algorithm>

namespace jet {

void SortKeys::Add(TextView text)
{
    units_ += text;
    starts_.push_back(units_.size());
}

std::vector<std::uint32_t> SortKeys::Order()
{
    for (char16_t& unit : units_) unit = FoldCase(unit);
    // Most rows differ in the beginning of the first text, which stands beside their place: the texts
    // themselves are all over the memory.
    struct Place {
        std::uint64_t prefix;
        std::uint32_t place;
    };
    std::vector<Place> places;
    for (std::uint32_t place = 0; place < (starts_.size() - 1) / columns_; ++place)
        places.push_back({SortPrefix<1>(TextOf(place, 0)).front(), place});
    std::sort(places.begin(), places.end(), [this](const Place& a, const Place& b) {
        if (a.prefix != b.prefix) return a.prefix < b.prefix;
        for (std::size_t column = 0; column < columns_; ++column)
            if (const int order = TextOf(a.place, column).compare(TextOf(b.place, column))) return order < 0;
        return a.place < b.place;
    });
    std::vector<std::uint32_t> order;
    for (const Place& place : places) order.push_back(place.place);
    return order;
}

TextView SortKeys::TextOf(std::size_t place, std::size_t column) const
{
    const std::size_t at = place * columns_ + column;
    return TextView(units_).substr(starts_[at], starts_[at + 1] - starts_[at]);
}

} // namespace jet
