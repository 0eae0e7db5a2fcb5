// RowCodec.h: rows and the values in them, to and from bytes.
// Fails by: DatabaseError for bytes that are no row or no value, and for values that do not fit.
#pragma once
#include "jet/TableDefinition.h"

#include <optional>

namespace jet {

inline constexpr std::size_t kMostRowBytes = 4060; // a row must fit one page

// The bytes of one row, taken apart once.
class Row {
public:
    Row(const TableDefinition& table, ByteView bytes);
    // Nothing for null. A long value is its header (see LongValue). A boolean has one byte, 0 or 1.
    std::optional<std::string_view> Cell(const Column& column) const;
    PageNumber Page() const { return bytes_.Page(); }

private:
    std::size_t VariableOffset(std::size_t index) const; // index variableCount_: the end of the last one
    ByteView bytes_;
    std::size_t columns_, variableCount_ = 0, offsetTable_ = 0, fixedEnd_ = 0, mask_ = 0;
};

// A row of all the table's columns; cells by position in table.columns, nothing for null.
std::string EncodeRow(const TableDefinition& table, const std::vector<std::optional<std::string>>& cells);

enum class Compression { plain, compressed };
// Compressed only where it is possible and shortens. Leading U+FEFF are dropped: they would read back as
// the mark of compression.
std::string EncodeText(TextView text, Compression compression);
Text DecodeText(ByteView bytes);
void DecodeText(ByteView bytes, Text& text); // in place of what it held
void CheckText(ByteView bytes);              // throws where DecodeText would

} // namespace jet
