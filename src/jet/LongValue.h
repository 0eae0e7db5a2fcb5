// LongValue.h: values too long for their row, kept on pages of their own. In the row stands a header: the
// length, what follows or where it is.
// Fails by: DatabaseError for a value that cannot be followed.
#pragma once
#include "jet/TableDefinition.h"

#include <map>
#include <set>

namespace jet {

class LongValue {
public:
    LongValue() = default;
    LongValue(PageFile& file, ByteView header) { Read(file, header); } // whose bytes must outlive it
    void Read(PageFile& file, ByteView header);                        // in place of what it was
    ByteView Bytes() const { return {(parts_.empty() ? whole_ : parts_), page_}; }
    const std::vector<RowId>& Places() const { return places_; } // none when it stands behind its header

private:
    PageNumber page_ = 0;    // of the header
    std::string_view whole_; // of one that is in one piece
    PageRef hold_;           // keeps it
    std::string parts_;      // put together
    std::vector<RowId> places_;
};

// A page of a free map and the bytes that a new row on it may have.
struct FreeSpace {
    PageNumber page;
    std::size_t bytes;
};
inline constexpr std::size_t kWorthOffering = 256; // a page with less room leaves the free map

class FreeSpaces {
public:
    void Set(FreeSpace space); // in place of what was known of the page
    bool Knows(PageNumber page) const { return bytes_.count(page) != 0; }
    // The fullest page with so much room; nothing: none has.
    std::optional<PageNumber> Find(std::size_t bytes) const;
    std::vector<PageNumber> TakeFull(); // those that are not worth offering

private:
    std::map<PageNumber, std::size_t> bytes_;
    std::set<std::pair<std::size_t, PageNumber>> byBytes_;
};

// The free space of the owned pages that the free map names; a row's page must have this owner. Nothing
// without a free map.
FreeSpaces FreeSpacesOf(PageFile& file, RowId freeMap, const std::vector<PageNumber>& owned,
                        std::uint32_t owner);
// Enters a new page in the maps, and takes those it replaces out of the free map.
void EnterPage(WriteSet& writes, RowId ownedMap, RowId freeMap, FreeSpaces& spaces, FreeSpace added);

// Places the value and answers the header for the row. spaces are those of the column.
std::string StoreLongValue(WriteSet& writes, const Column& column, const std::string& bytes,
                           FreeSpaces& spaces);

} // namespace jet
