// DataPage.h: pages that hold rows: of tables, of long values, of usage maps.
// A disk that loses its power half way through a page has written whole sectors of it, each of them or not.
// So what makes a row be there or not is in one sector, the page's first: its entry in the directory, the
// count of entries and the figure of free bytes. No row is moved in its page, as that would take several.
// Fails by: DatabaseError for a page that is not what it should be.
#pragma once
#include "jet/PageFile.h"

#include <algorithm>
#include <optional>

namespace jet {

inline constexpr std::size_t kMostSlots = 255;               // a row number is one byte
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C; // "LVAL" in the place of the table's page number

// Where a row is: its page and its slot in that page's directory.
struct RowId {
    PageNumber page = 0;
    std::uint8_t slot = 0;
    bool operator==(const RowId&) const = default;
};
// As the file writes it: page << 8 | slot. 0 stands for nothing.
inline RowId FromPointer(std::uint32_t pointer)
{
    return {pointer >> 8, static_cast<std::uint8_t>(pointer)};
}
inline std::uint32_t ToPointer(RowId row)
{
    return row.page << 8 | row.slot;
}

inline constexpr std::uint16_t kLookup = 0x4000; // the row has moved: its first 4 bytes point to it
inline constexpr std::uint16_t kTarget = 0x8000; // where a moved row is; no row of its own
inline constexpr std::uint16_t kDeleted = kLookup | kTarget;
inline constexpr std::uint16_t kStartBits = 0x1FFF; // beside the flags

struct Slot {
    std::uint16_t flags = 0;
    std::size_t start = 0, end = 0; // in the page
};

inline constexpr std::size_t kDirectory = 14; // behind the page's header: two bytes for each slot
constexpr std::size_t SlotOffset(std::size_t slot)
{
    return kDirectory + 2 * slot;
}
[[noreturn]] void ThrowMisplaced(PageNumber page, std::size_t slot);
// One of so many slots, whose row ends there.
inline Slot SlotFrom(ByteView page, std::size_t slot, std::size_t count, std::size_t end)
{
    const std::uint16_t value = page.U16(SlotOffset(slot));
    const std::size_t start = value & kStartBits;
    if (start > end || end > kPageSize || start < SlotOffset(count)) ThrowMisplaced(page.Page(), slot);
    return {static_cast<std::uint16_t>(value & ~kStartBits), start, end};
}

bool IsDataPage(ByteView page);
std::uint32_t OwnerOf(ByteView page);
void NeedDataPage(ByteView page, std::uint32_t owner); // throws unless it is one of this owner
std::size_t SlotCount(ByteView page);
Slot SlotAt(ByteView page, std::size_t slot);
// visit(slot, Slot) for the first ones, so many at the most: where a row ends is known from the one before.
template <class Visit>
void ForEachSlot(ByteView page, std::size_t most, Visit visit)
{
    const std::size_t count = SlotCount(page);
    std::size_t end = kPageSize;
    for (std::size_t slot = 0; slot < std::min(count, most); ++slot) {
        const Slot found = SlotFrom(page, slot, count, end);
        end = found.start;
        visit(slot, found);
    }
}
ByteView RowAt(ByteView page, std::size_t slot); // whatever its flags
// Throws unless all slots are in order and the free figure is right: a page to which a row may be added.
void CheckDirectory(ByteView page);

std::string NewDataPage(std::uint32_t owner);
// Bytes the longest row may have that can still be added; nothing when none can, not even an empty one.
std::optional<std::size_t> FreeSpaceIn(ByteView page);
std::uint8_t AddRow(std::string& page, std::string_view row); // its slot; the free space was looked at before
// Its bytes stay, and are free again once no row that is there has been added after it.
void DeleteRow(std::string& page, std::size_t slot);
// The row's bytes give way to others; the rows behind it move, in several sectors. Growth must fit the free
// bytes.
void ReplaceRow(std::string& page, std::size_t slot, std::string_view row, std::uint16_t flags);

} // namespace jet
