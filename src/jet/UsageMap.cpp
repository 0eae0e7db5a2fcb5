#include "jet/UsageMap.h"

#include "platform/Database.h"

namespace jet {

namespace {

constexpr std::size_t kInlineHeader = 5, kListHeader = 1, kBitmapHeader = 4;
constexpr PageNumber kBitmapReach = (kPageSize - kBitmapHeader) * 8;
constexpr char kInline = 0, kList = 1;
constexpr TextView kTooShort = u"a usage map has no place for all pages that the file may come to have",
                   kLateBeginning = u"the map of free pages does not begin with the first page";

// What a bit is where nothing was said about the page: in a table's map the page is not the table's, in
// the map of free pages it is free.
enum class Default { absent, present };
Default DefaultOf(RowId map)
{
    return map == kFreePages ? Default::present : Default::absent;
}

void SetBitAt(std::string& page, std::size_t at, PageNumber index, bool on)
{
    char& byte = page.at(at + index / 8);
    const int bit = 1 << (index % 8);
    byte = static_cast<char>(on ? byte | bit : byte & ~bit);
}

ByteView MapRow(ByteView page, RowId map)
{
    if (!IsDataPage(page)) ThrowDamaged(page.Page(), u"a page of usage maps was expected here");
    if (SlotAt(page, map.slot).flags != 0) ThrowDamaged(page.Page(), u"a usage map was deleted");
    const ByteView row = RowAt(page, map.slot);
    if (row.Size() < kInlineHeader || row.U8(0) > 1) ThrowDamaged(page.Page(), u"a usage map is not one");
    return row;
}

PageNumber InlineReach(ByteView row)
{
    return static_cast<PageNumber>((row.Size() - kInlineHeader) * 8);
}

ByteView Bitmap(ByteView page)
{
    if (page.U8(0) != 5) ThrowDamaged(page.Page(), u"a usage bitmap was expected here");
    return page.Sub(kBitmapHeader, kPageSize - kBitmapHeader);
}

// The indexes of the bits that are `on`.
std::vector<PageNumber> Bits(std::string_view bytes, bool on)
{
    std::vector<PageNumber> found;
    const int empty = on ? 0 : 0xFF;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int byte = static_cast<unsigned char>(bytes[i]);
        if (byte == empty) continue;
        for (unsigned bit = 0; bit < 8; ++bit)
            if ((byte >> bit & 1) == (on ? 1 : 0)) found.push_back(static_cast<PageNumber>(i * 8 + bit));
    }
    return found;
}

// Edits one map in the images of a write set.
class MapEditor {
public:
    MapEditor(WriteSet& writes, RowId map, Phase phase) : writes_(writes), map_(map), phase_(phase) {}

    void Set(PageNumber page, bool on)
    {
        if (Row().U8(0) == kInline) {
            const PageNumber first = Row().U32(1);
            if (page < first || page - first >= InlineReach(Row())) {
                if (on == (DefaultOf(map_) == Default::present)) return;
                MakeReach(page);
                return Set(page, on);
            }
            SetBitAt(writes_.Edit(map_.page, phase_), RowStart() + kInlineHeader, page - first, on);
            return;
        }
        const PageNumber entry = page / kBitmapReach;
        const std::size_t at = kListHeader + 4 * std::size_t{entry};
        if (at + 4 > Row().Size()) {
            if (on == (DefaultOf(map_) == Default::present)) return;
            ThrowForeignLayout(map_.page, kTooShort);
        }
        PageNumber bitmap = Row().U32(at);
        if (bitmap == 0) {
            if (on == (DefaultOf(map_) == Default::present)) return;
            bitmap = writes_.Add(NewBitmap());
            Put32(writes_.Edit(map_.page, phase_), RowStart() + at, bitmap);
        }
        (void)Bitmap(writes_.View(bitmap));
        SetBitAt(writes_.Edit(bitmap, phase_), kBitmapHeader, page % kBitmapReach, on);
    }

private:
    ByteView Row() { return MapRow(writes_.View(map_.page), map_); }
    std::size_t RowStart() { return SlotAt(writes_.View(map_.page), map_.slot).start; }

    std::string NewBitmap() const
    {
        std::string page(kPageSize, DefaultOf(map_) == Default::present ? '\xFF' : '\0');
        Put32(page, 0, 0x0105);
        return page;
    }

    void MakeReach(PageNumber page)
    {
        const std::string row(Row().Bytes());
        const PageNumber first = ByteView(row, map_.page).U32(1);
        if (map_ == kFreePages) {
            if (first != 0) ThrowForeignLayout(map_.page, kLateBeginning);
            if (Lengthen()) return;
            StageZeros();
        } else if (InlineReach(Row()) >= 8 &&
                   Bits(std::string_view(row).substr(kInlineHeader), true).empty()) {
            Put32(writes_.Edit(map_.page, phase_), RowStart() + 1, page & ~7u);
            return;
        }
        MakeList(row, first);
    }

    // The map of free pages grows in its page as long as that has room.
    bool Lengthen()
    {
        std::string row(Row().Bytes());
        const std::size_t before = row.size();
        while ((row.size() - kInlineHeader) * 8 < writes_.Next()) row.append(4, '\xFF');
        const ByteView mapPage = writes_.View(map_.page);
        CheckDirectory(mapPage);
        if (row.size() - before > mapPage.U16(2)) return false;
        StageZeros();
        std::string grown(writes_.View(map_.page).Bytes());
        ReplaceRow(grown, map_.slot, std::string(row.size(), '\0'), 0);
        writes_.Stage(map_.page, phase_, std::move(grown));
        std::string& page = writes_.Edit(map_.page, Phase::commit);
        ReplaceRow(page, map_.slot, row, 0);
        return true;
    }

    // A row that changes in several sectors is half old and half new if the power goes. Zeros, which call no
    // page free, are right whatever stands beside them.
    void StageZeros()
    {
        std::string page(writes_.View(map_.page).Bytes());
        const std::size_t size = Row().Size();
        writes_.Stage(map_.page, Phase::fresh, page.replace(RowStart(), size, size, '\0'));
    }

    void MakeList(const std::string& row, PageNumber first)
    {
        const bool sought = DefaultOf(map_) == Default::absent;
        const std::vector<PageNumber> said = Bits(std::string_view(row).substr(kInlineHeader), sought);
        std::string& page = writes_.Edit(map_.page, phase_);
        const std::size_t start = RowStart();
        page.replace(start, row.size(), row.size(), '\0');
        page[start] = kList;
        for (PageNumber index : said) Set(first + index, sought);
    }

    WriteSet& writes_;
    RowId map_;
    Phase phase_;
};

} // namespace

std::vector<PageNumber> PagesOf(PageFile& file, RowId map)
{
    PageRef hold, bitmapHold;
    const ByteView row = MapRow(file.View(map.page, hold), map);
    std::vector<PageNumber> pages;
    const auto take = [&](std::string_view bitmap, std::uint64_t first) {
        for (PageNumber index : Bits(bitmap, true)) {
            if (first + index >= file.Count())
                ThrowDamaged(map.page, u"a usage map names pages behind the end");
            pages.push_back(static_cast<PageNumber>(first + index));
        }
    };
    if (row.U8(0) == kInline) {
        take(row.Bytes().substr(kInlineHeader), row.U32(1));
        return pages;
    }
    for (std::size_t at = kListHeader; at + 4 <= row.Size(); at += 4) {
        const PageNumber bitmap = row.U32(at);
        if (bitmap == 0) continue;
        const std::uint64_t first = std::uint64_t{(at - kListHeader) / 4} * kBitmapReach;
        take(Bitmap(file.View(bitmap, bitmapHold)).Bytes(), first);
    }
    return pages;
}

void NeedExtensible(PageFile& file, RowId map)
{
    PageRef hold, bitmapHold;
    const ByteView page = file.View(map.page, hold);
    const ByteView row = MapRow(page, map);
    // A bitmap in the row turns into a list in the same bytes.
    const std::size_t entries = (row.Size() - kListHeader) / 4;
    if (entries <= kMostPages / kBitmapReach) ThrowForeignLayout(map.page, kTooShort);
    if (row.U8(0) == kInline) {
        if (map != kFreePages) return;
        if (row.U32(1) != 0) ThrowForeignLayout(map.page, kLateBeginning);
        CheckDirectory(page); // the row will grow
        return;
    }
    for (std::size_t entry = 0; entry < entries; ++entry)
        if (const PageNumber bitmap = row.U32(kListHeader + 4 * entry))
            (void)Bitmap(file.View(bitmap, bitmapHold));
}

bool IsPageFree(PageFile& file, PageNumber page)
{
    PageRef hold, bitmapHold;
    const ByteView row = MapRow(file.View(kFreePages.page, hold), kFreePages);
    const auto isSet = [](std::string_view bits, PageNumber index) {
        return index / 8 >= bits.size() ||
               (static_cast<unsigned char>(bits[index / 8]) >> index % 8 & 1) != 0;
    };
    if (row.U8(0) == kInline) return isSet(row.Bytes().substr(kInlineHeader), page);
    const std::size_t at = kListHeader + 4 * std::size_t{page / kBitmapReach};
    const PageNumber bitmap = at + 4 <= row.Size() ? row.U32(at) : 0;
    return bitmap == 0 || isSet(Bitmap(file.View(bitmap, bitmapHold)).Bytes(), page % kBitmapReach);
}

void AddToMap(WriteSet& writes, RowId map, PageNumber page, Phase phase)
{
    MapEditor(writes, map, phase).Set(page, true);
}

void TakeFromMap(WriteSet& writes, RowId map, PageNumber page, Phase phase)
{
    MapEditor(writes, map, phase).Set(page, false);
}

void MarkFreshPagesUsed(WriteSet& writes)
{
    // Marking may itself add pages, of bitmaps; those are reached in their turn.
    MapEditor editor(writes, kFreePages, Phase::global);
    for (PageNumber page = writes.FirstFresh(); page < writes.Next(); ++page) editor.Set(page, false);
}

std::string NewUsageMap(std::size_t bytes)
{
    return std::string(bytes, '\0');
}

} // namespace jet
