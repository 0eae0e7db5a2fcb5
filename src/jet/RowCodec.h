// RowCodec.h: rows and the values in them, to and from bytes.
// Fails by: DatabaseError for bytes that are no row or no value, and for values that do not fit.
#pragma once
#include "jet/TableDefinition.h"

#include <array>
#include <optional>

namespace jet {

inline constexpr std::size_t kMostRowBytes = 4060; // a row must fit one page

inline constexpr std::size_t kColumnCount = 2; // bytes before the fixed columns
[[noreturn]] void ThrowOutside(PageNumber page);

// The bytes of one row, taken apart once.
class Row {
public:
    Row(const TableDefinition& table, ByteView bytes);
    // Nothing for null. A long value is its header (see LongValue). A boolean has one byte, 0 or 1.
    std::optional<std::string_view> Cell(const Column& column) const
    {
        static constexpr char kFalseTrue[] = {0, 1};
        if (column.number >= columns_) return std::nullopt; // the row is older than the column
        const bool bit = bytes_.U8(mask_ + column.number / 8) >> (column.number % 8) & 1;
        if (column.type == ColumnType::boolean) return std::string_view(kFalseTrue + (bit ? 1 : 0), 1);
        if (!bit) return std::nullopt;
        if (column.fixed) {
            const std::size_t start = kColumnCount + column.fixedOffset;
            if (start + column.length > fixedEnd_) ThrowOutside(Page());
            return bytes_.Bytes().substr(start, column.length);
        }
        if (column.variableIndex >= variableCount_) return std::nullopt;
        const std::uint16_t* const start = &starts_[variableCount_ - column.variableIndex];
        return bytes_.Bytes().substr(*start, start[-1] - *start);
    }
    PageNumber Page() const { return bytes_.Page(); }

private:
    ByteView bytes_;
    std::size_t columns_, variableCount_ = 0, fixedEnd_ = 0, mask_ = 0;
    // Of the columns of varying length, last first, behind the end of the last.
    std::array<std::uint16_t, kMostColumns + 1> starts_;
};

// A row of all the table's columns; cells by position in table.columns, nothing for null.
std::string EncodeRow(const TableDefinition& table, const std::vector<std::optional<std::string>>& cells);

inline constexpr std::size_t kMark = 2; // bytes before compressed text
enum class Compression { plain, compressed };
// Compressed only where it is possible and shortens. Leading U+FEFF are dropped: they would read back as
// the mark of compression.
std::string EncodeText(TextView text, Compression compression);
Text DecodeText(ByteView bytes);
void DecodeText(ByteView bytes, Text& text); // in place of what it held
void CheckText(ByteView bytes);              // throws where DecodeText would

inline bool IsCompressed(ByteView text)
{
    return text.Size() >= kMark && text.U16(0) == 0xFEFF;
}

// narrow(bytes) and wide(bytes) for each stretch of a text of one byte a character and of two.
template <class Narrow, class Wide>
void ForEachStretch(ByteView text, Narrow narrow, Wide wide)
{
    const std::size_t size = text.Size();
    if (!IsCompressed(text)) return wide(text.Sub(0, (size + 1) / 2 * 2).Bytes());
    // They take turns; a zero byte in the place of a character ends one.
    for (std::size_t at = kMark; at < size; ++at) {
        const std::size_t end = std::min(text.Bytes().find('\0', at), size);
        narrow(text.Bytes().substr(at, end - at));
        for (at = end + 1; at < size && text.U8(at) != 0; at += 2) wide(text.Sub(at, 2).Bytes());
    }
}

} // namespace jet
