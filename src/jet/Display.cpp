#include "jet/Display.h"

#include "jet/RowCodec.h"
#include "platform/Database.h"
#include "text/DayCount.h"
#include "text/Numbers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace jet {

namespace {

Text HexText(std::string_view bytes)
{
    static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    Text text;
    for (char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 0xF];
    }
    return text;
}

// The shortest of two precisions that reads back as the same number.
Text NumberText(double number, int shortDigits, int fullDigits)
{
    if (!std::isfinite(number)) return std::isnan(number) ? u"NaN" : number < 0 ? u"-Infinity" : u"Infinity";
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.*g", shortDigits, number);
    const double readBack = std::strtod(digits, nullptr);
    const bool same =
        fullDigits < 10 ? static_cast<float>(readBack) == static_cast<float>(number) : readBack == number;
    if (!same) std::snprintf(digits, sizeof digits, "%.*g", fullDigits, number);
    return FromAscii(digits);
}

Text MoneyText(std::uint64_t stored)
{
    const bool negative = (stored >> 63) != 0;
    const std::uint64_t size = negative ? 0 - stored : stored;
    Text text = negative ? u"-" : u"";
    text += DecimalText(static_cast<std::int64_t>(size / 10000));
    text += u'.';
    for (std::uint64_t digit = 1000; digit > 0; digit /= 10)
        text += static_cast<char16_t>(u'0' + size / digit % 10);
    return text;
}

Text DateText(double date)
{
    try {
        return FormatDate(date, u"yyyy-mm-dd hh:nn:ss");
    } catch (const ValueFault&) {
        return NumberText(date, 15, 17); // outside the calendar: the bare number, so that it can be seen
    }
}

Text GuidText(ByteView value)
{
    struct Part {
        std::size_t at, count;
        bool reversed; // stored low byte first
    };
    static constexpr Part kParts[] = {
        {0, 4, true}, {4, 2, true}, {6, 2, true}, {8, 2, false}, {10, 6, false}};
    Text text;
    for (const Part& part : kParts) {
        std::string bytes(value.Sub(part.at, part.count).Bytes());
        if (part.reversed) std::reverse(bytes.begin(), bytes.end());
        text += text.empty() ? u'{' : u'-';
        text += HexText(bytes);
    }
    text += u'}';
    return text;
}

} // namespace

Text DisplayText(const Column& column, ByteView value)
{
    switch (column.type) {
    case ColumnType::boolean:
        return value.U8(0) ? u"True" : u"False";
    case ColumnType::byte:
        return DecimalText(value.U8(0));
    case ColumnType::int16:
        return DecimalText(static_cast<std::int16_t>(value.U16(0)));
    case ColumnType::int32:
        return DecimalText(static_cast<std::int32_t>(value.U32(0)));
    case ColumnType::money:
        return MoneyText(value.U64(0));
    case ColumnType::float32:
        return NumberText(std::bit_cast<float>(value.U32(0)), 6, 9);
    case ColumnType::float64:
        return NumberText(std::bit_cast<double>(value.U64(0)), 15, 17);
    case ColumnType::date:
        return DateText(std::bit_cast<double>(value.U64(0)));
    case ColumnType::text:
    case ColumnType::memo:
        return DecodeText(value);
    case ColumnType::binary:
    case ColumnType::ole:
    case ColumnType::raw:
        return HexText(value.Bytes());
    case ColumnType::guid:
        return GuidText(value);
    case ColumnType::decimal:
        break;
    }
    throw DatabaseError(u"The column " + column.name + u" has values of a kind that cannot be shown");
}

} // namespace jet
