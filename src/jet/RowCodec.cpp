#include "jet/RowCodec.h"

#include "platform/Database.h"

#include <algorithm>
#include <functional>

namespace jet {

namespace {

constexpr TextView kCutShort = u"a row is cut short";

// One byte a character is possible: no NUL, which ends such a stretch, and nothing beyond Latin-1.
bool FitsNarrow(TextView text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= 1 && unit <= 0xFF; });
}

} // namespace

void ThrowOutside(PageNumber page)
{
    ThrowDamaged(page, u"a column lies outside its row");
}

Row::Row(const TableDefinition& table, ByteView bytes) : bytes_(bytes), columns_(bytes.U16(0))
{
    if (columns_ == 0 || columns_ > table.mostColumns)
        ThrowDamaged(bytes.Page(), u"a row has too many columns");
    const std::size_t maskSize = (columns_ + 7) / 8;
    if (bytes.Size() < kColumnCount + maskSize) ThrowDamaged(bytes.Page(), kCutShort);
    mask_ = fixedEnd_ = bytes.Size() - maskSize;
    if (table.variableColumns == 0) return;

    if (mask_ < kColumnCount + 4) ThrowDamaged(bytes.Page(), kCutShort);
    variableCount_ = bytes.U16(mask_ - 2);
    const std::size_t tableSize = 2 * (variableCount_ + 1);
    if (variableCount_ > table.variableColumns || mask_ - 2 < kColumnCount + tableSize)
        ThrowDamaged(bytes.Page(), u"a row has too many columns of varying length");
    const std::size_t offsets = mask_ - 2 - tableSize;
    bytes.Bytes().copy(reinterpret_cast<char*>(starts_.data()), tableSize, offsets);
    const auto first = starts_.begin() + variableCount_;
    if (!std::is_sorted(starts_.begin(), first + 1, std::greater<>()))
        ThrowDamaged(bytes.Page(), u"the columns of a row overlap");
    fixedEnd_ = *first;
    if (fixedEnd_ < kColumnCount || starts_[0] > offsets) ThrowOutside(bytes.Page());
}

std::string EncodeRow(const TableDefinition& table, const std::vector<std::optional<std::string>>& cells)
{
    std::size_t fixedEnd = kColumnCount;
    for (const Column& column : table.columns) // a boolean has no place but the mask
        if (column.fixed && column.type != ColumnType::boolean)
            fixedEnd = std::max(fixedEnd, kColumnCount + column.fixedOffset + std::size_t{column.length});
    std::string row(fixedEnd, '\0');
    Put16(row, 0, table.mostColumns);

    std::string mask((table.mostColumns + std::size_t{7}) / 8, '\0');
    std::vector<const std::string*> variable(table.variableColumns, nullptr);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const Column& column = table.columns[i];
        if (!cells[i]) continue;
        const bool set = column.type != ColumnType::boolean || *cells[i] != std::string(1, '\0');
        if (set)
            mask[column.number / 8] = static_cast<char>(mask[column.number / 8] | 1 << (column.number % 8));
        if (column.type == ColumnType::boolean) continue;
        if (column.fixed) {
            if (cells[i]->size() != column.length) throw DatabaseError(u"A value does not fill its column");
            row.replace(kColumnCount + column.fixedOffset, column.length, *cells[i]);
        } else {
            variable.at(column.variableIndex) = &*cells[i];
        }
    }
    if (!variable.empty()) {
        std::vector<std::size_t> offsets;
        for (const std::string* value : variable) {
            offsets.push_back(row.size());
            if (value) row += *value;
        }
        offsets.push_back(row.size());
        for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) Append16(row, *offset);
        Append16(row, variable.size());
    }
    row += mask;
    if (row.size() > kMostRowBytes) throw DatabaseError(u"The row is too long for the database");
    return row;
}

std::string EncodeText(TextView text, Compression compression)
{
    while (!text.empty() && text.front() == u'\xFEFF') text.remove_prefix(1);
    std::string bytes;
    if (compression == Compression::compressed && text.size() >= 3 && FitsNarrow(text)) {
        bytes = "\xFF\xFE";
        for (char16_t unit : text) bytes += static_cast<char>(unit);
        return bytes;
    }
    bytes.reserve(text.size() * 2);
    for (char16_t unit : text) Append16(bytes, unit);
    return bytes;
}

Text DecodeText(ByteView bytes)
{
    Text text;
    DecodeText(bytes, text);
    return text;
}

void DecodeText(ByteView bytes, Text& text)
{
    // As many units at the most. What will be written over is not cleared.
    text.resize(IsCompressed(bytes) ? bytes.Size() - kMark : bytes.Size() / 2);
    char16_t* end = text.data();
    ForEachStretch(
        bytes,
        [&](std::string_view narrow) {
            end = std::transform(narrow.begin(), narrow.end(), end,
                                 [](char unit) { return static_cast<unsigned char>(unit); });
        },
        [&](std::string_view wide) {
            wide.copy(reinterpret_cast<char*>(end), wide.size());
            end += wide.size() / 2;
        });
    text.resize(static_cast<std::size_t>(end - text.data()));
}

void CheckText(ByteView bytes)
{
    const auto pass = [](std::string_view) {};
    ForEachStretch(bytes, pass, pass);
}

} // namespace jet
