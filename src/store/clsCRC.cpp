#include "store/clsCRC.h"

#include <array>
#include <bit>

namespace {

using Table = std::array<std::uint32_t, 256>;

// The first is the table of the algorithm; each further one is what its entry becomes by one more byte of 0,
// so that the steps of eight bytes do not wait for each other.
constexpr std::array<Table, 8> MakeTables32()
{
    std::array<Table, 8> tables{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t entry = i;
        for (int bit = 0; bit < 8; ++bit) entry = (entry >> 1) ^ ((entry & 1) ? 0xEDB88320u : 0u);
        tables[0][i] = entry;
    }
    for (std::size_t further = 1; further < tables.size(); ++further)
        for (std::size_t i = 0; i < 256; ++i) {
            const std::uint32_t before = tables[further - 1][i];
            tables[further][i] = (before >> 8) ^ tables[0][before & 0xFF];
        }
    return tables;
}

constexpr Table MakeTable16()
{
    Table table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t crc = 0;
        for (std::uint32_t c = i << 8, bit = 0; bit < 8; ++bit, c <<= 1)
            crc = (crc << 1) ^ (((crc ^ c) & 0x8000u) ? 0x1021u : 0u);
        table[i] = crc & 0xFFFFu;
    }
    return table;
}

constexpr std::array<Table, 8> kTables32 = MakeTables32();
constexpr Table kTable16 = MakeTable16();

// Of bytes, or of a text in ASCII.
template <class View>
std::uint32_t Word(View characters, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(characters[at + i] & 0xFF); };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

std::uint32_t Step32(std::uint32_t crc, char byte)
{
    return (crc >> 8) ^ kTables32[0][(crc ^ static_cast<unsigned char>(byte)) & 0xFF];
}

// As eight steps.
template <class View>
std::uint32_t StepsOfEight(std::uint32_t crc, View characters)
{
    const std::uint32_t low = crc ^ Word(characters, 0), high = Word(characters, 4);
    return kTables32[7][low & 0xFF] ^ kTables32[6][low >> 8 & 0xFF] ^ kTables32[5][low >> 16 & 0xFF] ^
           kTables32[4][low >> 24] ^ kTables32[3][high & 0xFF] ^ kTables32[2][high >> 8 & 0xFF] ^
           kTables32[1][high >> 16 & 0xFF] ^ kTables32[0][high >> 24];
}

bool BeginsWithEightOfAscii(TextView text)
{
    if (text.size() < 8) return false;
    unsigned bits = 0;
    for (std::size_t i = 0; i < 8; ++i) bits |= text[i];
    return bits < 0x80;
}

} // namespace

clsCRC::clsCRC(CodePage& codePage) : codePage_(codePage) {}

void clsCRC::SetAlgorithm(std::int32_t algorithm)
{
    crc32_ = algorithm != 0;
    Clear();
}

void clsCRC::Clear()
{
    register32_ = 0xFFFFFFFFu;
    register16_ = 0;
}

std::int32_t clsCRC::AddBytes(std::string_view bytes)
{
    if (crc32_) {
        for (; bytes.size() >= 8; bytes.remove_prefix(8)) register32_ = StepsOfEight(register32_, bytes);
        for (const char byte : bytes) register32_ = Step32(register32_, byte);
    } else {
        for (const char byte : bytes)
            register16_ = kTable16[((register16_ >> 8) ^ static_cast<unsigned char>(byte)) & 0xFF] ^
                          ((register16_ & 0xFF) << 8);
    }
    return Value();
}

std::int32_t clsCRC::AddString(TextView text)
{
    if (crc32_) // ASCII is the same bytes in every ANSI code page of Windows
        for (; BeginsWithEightOfAscii(text); text.remove_prefix(8))
            register32_ = StepsOfEight(register32_, text);
    return AddBytes(codePage_.ToAnsi(text));
}

std::int32_t clsCRC::CalculateBytes(std::string_view bytes)
{
    Clear();
    return AddBytes(bytes);
}

std::int32_t clsCRC::CalculateString(TextView text)
{
    Clear();
    return AddString(text);
}

std::optional<std::int32_t> clsCRC::CalculateFile(Files& files, const Text& path)
{
    std::string bytes;
    if (files.ReadWhole(path, bytes) != FileError::none || bytes.empty()) return std::nullopt;
    return CalculateBytes(bytes);
}

std::int32_t clsCRC::Value() const
{
    return static_cast<std::int32_t>(crc32_ ? ~register32_ : register16_ & 0xFFFFu);
}

void clsCRC::SetValue(std::int32_t value)
{
    (crc32_ ? register32_ : register16_) = static_cast<std::uint32_t>(value);
}

Text CrcText(std::int32_t value)
{
    auto rest = static_cast<std::uint32_t>(value);
    const auto bits = static_cast<std::size_t>(std::bit_width(rest | 1));
    Text text((bits + 3) / 4, u'0');
    for (std::size_t i = text.size(); i-- > 0; rest >>= 4) text[i] = u"0123456789ABCDEF"[rest & 0xF];
    return text;
}
