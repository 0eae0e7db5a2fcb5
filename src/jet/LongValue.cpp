#include "jet/LongValue.h"

#include "jet/UsageMap.h"
#include "platform/Database.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kHeader = 12;
constexpr std::uint32_t kInRow = 2, kOneRow = 1; // the two bits above the length
constexpr std::size_t kMostInRow = 64, kMostInOneRow = 4076, kPointer = 4;
constexpr std::uint32_t kMostBytes = 0x3FFFFFFF;

std::string Header(std::size_t size, std::uint32_t kind, std::uint32_t pointer)
{
    std::string header;
    Append32(header, static_cast<std::uint32_t>(size) | kind << 30);
    Append32(header, pointer);
    Append32(header, 0);
    return header;
}

RowId StoreRow(WriteSet& writes, const Column& column, std::string_view row, FreeSpaces& spaces)
{
    if (const std::optional<PageNumber> found = spaces.Find(row.size())) {
        std::string& page = writes.Edit(*found, Phase::fresh);
        const RowId id{*found, AddRow(page, row)};
        spaces.Set({id.page, FreeSpaceIn(ByteView(page, id.page)).value_or(0)});
        return id;
    }
    std::string page = NewDataPage(kLongValueOwner);
    const std::uint8_t slot = AddRow(page, row);
    const std::size_t left = FreeSpaceIn(ByteView(page, 0)).value_or(0);
    const PageNumber number = writes.Add(std::move(page));
    EnterPage(writes, column.ownedMap, column.freeMap, spaces, {number, left});
    return {number, slot};
}

} // namespace

void LongValue::Read(PageFile& file, ByteView header)
{
    page_ = header.Page();
    whole_ = {};
    parts_.clear();
    places_.clear();
    const std::uint32_t word = header.U32(0), kind = word >> 30;
    const std::size_t size = word & kMostBytes;
    if (kind & kInRow) {
        whole_ = header.Sub(kHeader, size).Bytes();
        return;
    }
    RowId place = FromPointer(header.U32(4));
    while (place.page != 0) {
        if (places_.size() > file.Count() || parts_.size() > size)
            ThrowDamaged(place.page, u"a long value runs in a circle");
        const ByteView page = file.View(place.page, hold_);
        NeedDataPage(page, kLongValueOwner);
        const Slot slot = SlotAt(page, place.slot);
        if (slot.flags != 0) ThrowDamaged(place.page, u"part of a long value was deleted");
        const ByteView row = page.Sub(slot.start, slot.end - slot.start);
        places_.push_back(place);
        if (kind & kOneRow) {
            whole_ = row.Bytes();
            break;
        }
        parts_ += row.Sub(kPointer, row.Size() - std::min(row.Size(), kPointer)).Bytes();
        place = FromPointer(row.U32(0));
    }
    if (Bytes().Size() < size) ThrowDamaged(page_, u"a long value is cut short");
    whole_ = whole_.substr(0, size);
    parts_.resize(std::min(parts_.size(), size));
}

void FreeSpaces::Set(FreeSpace space)
{
    const auto [known, isNew] = bytes_.try_emplace(space.page, space.bytes);
    if (!isNew) byBytes_.erase({known->second, space.page});
    known->second = space.bytes;
    byBytes_.emplace(space.bytes, space.page);
}

std::optional<PageNumber> FreeSpaces::Find(std::size_t bytes) const
{
    const auto found = byBytes_.lower_bound({bytes, 0});
    return found == byBytes_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<PageNumber> FreeSpaces::TakeFull()
{
    std::vector<PageNumber> full;
    while (!byBytes_.empty() && byBytes_.begin()->first < kWorthOffering) {
        full.push_back(byBytes_.begin()->second);
        bytes_.erase(full.back());
        byBytes_.erase(byBytes_.begin());
    }
    return full;
}

FreeSpaces FreeSpacesOf(PageFile& file, RowId freeMap, const std::vector<PageNumber>& owned,
                        std::uint32_t owner)
{
    FreeSpaces spaces;
    if (freeMap.page == 0) return spaces;
    PageRef hold;
    for (PageNumber number : PagesOf(file, freeMap)) {
        if (!std::binary_search(owned.begin(), owned.end(), number)) continue; // left by a stop: only a hint
        const ByteView page = file.View(number, hold);
        NeedDataPage(page, owner);
        CheckDirectory(page);
        if (const std::optional<std::size_t> bytes = FreeSpaceIn(page)) spaces.Set({number, *bytes});
    }
    return spaces;
}

void EnterPage(WriteSet& writes, RowId ownedMap, RowId freeMap, FreeSpaces& spaces, FreeSpace added)
{
    AddToMap(writes, ownedMap, added.page, Phase::commit);
    for (const PageNumber full : spaces.TakeFull())
        if (freeMap.page != 0) TakeFromMap(writes, freeMap, full, Phase::tidy);
    if (added.bytes < kWorthOffering) return;
    if (freeMap.page != 0) AddToMap(writes, freeMap, added.page, Phase::tidy);
    spaces.Set(added);
}

std::string StoreLongValue(WriteSet& writes, const Column& column, const std::string& bytes,
                           FreeSpaces& spaces)
{
    if (bytes.size() <= kMostInRow) return Header(bytes.size(), kInRow, 0) + bytes;
    if (bytes.size() > kMostBytes)
        throw DatabaseError(u"The text is longer than the column " + column.name + u" can take at all");
    if (bytes.size() <= kMostInOneRow)
        return Header(bytes.size(), kOneRow, ToPointer(StoreRow(writes, column, bytes, spaces)));
    // Last part first, so that each can point to the next.
    constexpr std::size_t kPart = kMostInOneRow - kPointer;
    std::uint32_t next = 0;
    for (std::size_t start = (bytes.size() - 1) / kPart * kPart;; start -= kPart) {
        std::string row;
        Append32(row, next);
        row += bytes.substr(start, kPart);
        next = ToPointer(StoreRow(writes, column, row, spaces));
        if (start == 0) break;
    }
    return Header(bytes.size(), 0, next);
}

} // namespace jet
