#include "store/clsCRC.h"

namespace {

std::array<std::uint32_t, 256> MakeTable32()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t entry = i;
        for (int bit = 0; bit < 8; ++bit) entry = (entry >> 1) ^ ((entry & 1) ? 0xEDB88320u : 0u);
        table[i] = entry;
    }
    return table;
}

std::array<std::uint32_t, 256> MakeTable16()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t crc = 0;
        for (std::uint32_t c = i << 8, bit = 0; bit < 8; ++bit, c <<= 1)
            crc = (crc << 1) ^ (((crc ^ c) & 0x8000u) ? 0x1021u : 0u);
        table[i] = crc & 0xFFFFu;
    }
    return table;
}

} // namespace

clsCRC::clsCRC(CodePage& codePage) : codePage_(codePage)
{
    SetAlgorithm(1);
}

void clsCRC::SetAlgorithm(std::int32_t algorithm)
{
    crc32_ = algorithm != 0;
    if (crc32_ && !table32_) table32_ = std::make_unique<const Table>(MakeTable32());
    if (!crc32_ && !table16_) table16_ = std::make_unique<const Table>(MakeTable16());
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
        const Table& table = *table32_;
        std::uint32_t crc = register32_;
        for (const char byte : bytes)
            crc = (crc >> 8) ^ table[(crc ^ static_cast<unsigned char>(byte)) & 0xFF];
        register32_ = crc;
    } else {
        const Table& table = *table16_;
        std::uint32_t crc = register16_;
        for (const char byte : bytes)
            crc = table[((crc >> 8) ^ static_cast<unsigned char>(byte)) & 0xFF] ^ ((crc & 0xFF) << 8);
        register16_ = crc;
    }
    return Value();
}

std::int32_t clsCRC::AddString(TextView text)
{
    return AddBytes(codePage_.ToAnsi(text));
}

std::int32_t clsCRC::CalculateBytes(std::string_view bytes)
{
    Clear();
    return AddBytes(bytes);
}

std::int32_t clsCRC::CalculateString(TextView text)
{
    return CalculateBytes(codePage_.ToAnsi(text));
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
    Text digits;
    do {
        digits.insert(digits.begin(), u"0123456789ABCDEF"[rest & 0xF]);
        rest >>= 4;
    } while (rest != 0);
    return digits;
}
