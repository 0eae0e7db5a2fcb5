// LongValue.h: values too long for their row, kept on pages of their own. In the row stands a header: the
// length, what follows or where it is.
// Fails by: DatabaseError for a value that cannot be followed.
#pragma once
#include "jet/TableDefinition.h"

namespace jet {

class LongValue {
public:
    LongValue(PageFile& file, ByteView header); // whose bytes must outlive it
    ByteView Bytes() const { return {(parts_.empty() ? whole_ : parts_), page_}; }
    const std::vector<RowId>& Places() const { return places_; } // none when it stands behind its header

private:
    PageNumber page_;        // of the header
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

// The free space of the owned pages that the free map names; a row's page must have this owner. Nothing
// without a free map.
std::vector<FreeSpace> FreeSpacesOf(PageFile& file, RowId freeMap, const std::vector<PageNumber>& owned,
                                    std::uint32_t owner);
FreeSpace* FindSpace(std::vector<FreeSpace>& spaces, std::size_t bytes); // null: none is large enough
// Enters a new page in the maps, and takes those it replaces out of the free map.
void EnterPage(WriteSet& writes, RowId ownedMap, RowId freeMap, std::vector<FreeSpace>& spaces,
               FreeSpace added);

// Places the value and answers the header for the row. spaces are those of the column.
std::string StoreLongValue(WriteSet& writes, const Column& column, const std::string& bytes,
                           std::vector<FreeSpace>& spaces);

} // namespace jet
