#include "jet/DataPage.h"

namespace jet {

namespace {

constexpr std::size_t kFreeAt = 2, kOwnerAt = 4, kCountAt = 12;
constexpr std::size_t kMostAdded = (kSectorSize - kDirectory) / 2; // rows whose entries are in one sector

std::size_t LowestStart(ByteView page)
{
    const std::size_t count = SlotCount(page);
    return count == 0 ? kPageSize : SlotAt(page, count - 1).start;
}

} // namespace

bool IsDataPage(ByteView page)
{
    return page.U8(0) == 1;
}
std::uint32_t OwnerOf(ByteView page)
{
    return page.U32(kOwnerAt);
}

void NeedDataPage(ByteView page, std::uint32_t owner)
{
    if (!IsDataPage(page)) ThrowDamaged(page.Page(), u"a page with rows was expected here");
    if (OwnerOf(page) != owner) ThrowDamaged(page.Page(), u"its rows belong to something else");
}

std::size_t SlotCount(ByteView page)
{
    const std::size_t count = page.U16(kCountAt);
    if (SlotOffset(count) > kPageSize) ThrowDamaged(page.Page(), u"it claims more rows than it can hold");
    return count;
}

Slot SlotAt(ByteView page, std::size_t slot)
{
    const std::size_t count = SlotCount(page);
    if (slot >= count) ThrowDamaged(page.Page(), u"it has no row " + DecimalText(static_cast<int>(slot)));
    return SlotFrom(page, slot, count, slot == 0 ? kPageSize : page.U16(SlotOffset(slot - 1)) & kStartBits);
}

void ThrowMisplaced(PageNumber page, std::size_t slot)
{
    ThrowDamaged(page, u"row " + DecimalText(static_cast<std::int64_t>(slot)) + u" lies outside its place");
}

ByteView RowAt(ByteView page, std::size_t slot)
{
    const Slot found = SlotAt(page, slot);
    return page.Sub(found.start, found.end - found.start);
}

void CheckDirectory(ByteView page)
{
    const std::size_t count = SlotCount(page);
    std::size_t lowest = kPageSize;
    ForEachSlot(page, count, [&](std::size_t, const Slot& slot) { lowest = slot.start; });
    if (page.U16(kFreeAt) != lowest - SlotOffset(count))
        ThrowDamaged(page.Page(), u"its figure of free bytes is wrong");
}

std::string NewDataPage(std::uint32_t owner)
{
    std::string page(kPageSize, '\0');
    page[0] = page[1] = 1;
    Put16(page, kFreeAt, kPageSize - kDirectory);
    Put32(page, kOwnerAt, owner);
    return page;
}

std::optional<std::size_t> FreeSpaceIn(ByteView page)
{
    const std::size_t count = SlotCount(page), free = page.U16(kFreeAt);
    if (count >= kMostAdded || free < 2) return std::nullopt;
    return free - 2;
}

std::uint8_t AddRow(std::string& page, std::string_view row)
{
    const ByteView view(page, 0);
    const std::size_t slot = SlotCount(view), start = LowestStart(view) - row.size();
    page.replace(start, row.size(), row);
    Put16(page, SlotOffset(slot), start);
    Put16(page, kCountAt, slot + 1);
    Put16(page, kFreeAt, start - SlotOffset(slot + 1));
    return static_cast<std::uint8_t>(slot);
}

void DeleteRow(std::string& page, std::size_t slot)
{
    const ByteView view(page, 0);
    Put16(page, SlotOffset(slot), SlotAt(view, slot).start | kDeleted);
    const std::size_t count = SlotCount(view);
    if (count > kMostAdded) return; // another program's; its directory is in two sectors
    std::size_t kept = count;
    while (kept > 0 && SlotAt(view, kept - 1).flags == kDeleted) --kept;
    const std::size_t lowest = kept == 0 ? kPageSize : SlotAt(view, kept - 1).start;
    for (std::size_t gone = kept; gone < count; ++gone) Put16(page, SlotOffset(gone), lowest | kDeleted);
    Put16(page, kFreeAt, lowest - SlotOffset(count));
}

void ReplaceRow(std::string& page, std::size_t slot, std::string_view row, std::uint16_t flags)
{
    const ByteView view(page, 0);
    const std::size_t count = SlotCount(view), lowest = LowestStart(view);
    const Slot old = SlotAt(view, slot);
    const std::size_t oldSize = old.end - old.start;
    const std::string behind = page.substr(lowest, old.start - lowest); // rows slot+1 and up, last one first
    const std::size_t start = old.end - row.size();

    // What the rows leave free is cleared: no text of a deleted row stays in the page.
    const std::size_t newLowest = lowest + oldSize - row.size();
    if (newLowest > lowest) page.replace(lowest, newLowest - lowest, newLowest - lowest, '\0');
    page.replace(newLowest, behind.size(), behind);
    page.replace(start, row.size(), row);
    Put16(page, SlotOffset(slot), start | flags);
    for (std::size_t later = slot + 1; later < count; ++later) {
        const std::size_t value = ByteView(page, 0).U16(SlotOffset(later));
        Put16(page, SlotOffset(later), value + oldSize - row.size());
    }
    Put16(page, kFreeAt, newLowest - SlotOffset(count));
}

} // namespace jet
