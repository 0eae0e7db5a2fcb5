// Bytes.h: little-endian numbers in the bytes of a database file, every access checked.
// Fails by: DatabaseError naming the page, when a number lies outside the bytes it is sought in.
#pragma once
#include "text/Text.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace jet {

using PageNumber = std::uint32_t;
inline constexpr std::size_t kPageSize = 4096;
inline constexpr std::size_t kSectorSize = 512; // what a disk writes whole or not at all

// "The database is damaged (page 17): what", thrown as DatabaseError.
[[noreturn]] void ThrowDamaged(PageNumber page, TextView what);
[[noreturn]] void ThrowCutShort(PageNumber page);
// For what another program may do to a file in good order, but this one cannot go on with:
// "The database has a layout that this program does not extend (page 1): what".
[[noreturn]] void ThrowForeignLayout(PageNumber page, TextView what);

// Part of a page, remembering which, so that a number that is not there can be reported. The bytes are
// not owned.
class ByteView {
public:
    ByteView(std::string_view bytes, PageNumber page) : bytes_(bytes), page_(page) {}

    std::size_t Size() const { return bytes_.size(); }
    PageNumber Page() const { return page_; }
    std::string_view Bytes() const { return bytes_; }

    std::uint8_t U8(std::size_t at) const { return NumberAt<std::uint8_t>(at); }
    std::uint16_t U16(std::size_t at) const { return NumberAt<std::uint16_t>(at); }
    std::uint32_t U32(std::size_t at) const { return NumberAt<std::uint32_t>(at); }
    std::uint64_t U64(std::size_t at) const { return NumberAt<std::uint64_t>(at); }
    ByteView Sub(std::size_t at, std::size_t count) const
    {
        Need(at, count);
        return {bytes_.substr(at, count), page_};
    }

private:
    void Need(std::size_t at, std::size_t count) const
    {
        if (at > bytes_.size() || count > bytes_.size() - at) ThrowCutShort(page_);
    }
    template <class Number>
    Number NumberAt(std::size_t at) const
    {
        static_assert(std::endian::native == std::endian::little); // as the file has them
        Need(at, sizeof(Number));
        Number number;
        std::memcpy(&number, bytes_.data() + at, sizeof number);
        return number;
    }

    std::string_view bytes_;
    PageNumber page_;
};

inline void Append(std::string& bytes, std::uint64_t number, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}
inline void Append16(std::string& bytes, std::size_t number)
{
    Append(bytes, number, 2);
}
inline void Append32(std::string& bytes, std::uint32_t number)
{
    Append(bytes, number, 4);
}

// The place must exist: these write into pages that were read through a ByteView before.
inline void Put(std::string& bytes, std::size_t at, std::uint64_t number, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) bytes.at(at + i) = static_cast<char>(number >> (8 * i) & 0xFF);
}
inline void Put16(std::string& bytes, std::size_t at, std::size_t number)
{
    Put(bytes, at, number, 2);
}
inline void Put32(std::string& bytes, std::size_t at, std::uint32_t number)
{
    Put(bytes, at, number, 4);
}

} // namespace jet
