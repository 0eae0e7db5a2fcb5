// Bytes.h: little-endian numbers in the bytes of a database file, every access checked.
// Fails by: DatabaseError naming the page, when a number lies outside the bytes it is sought in.
#pragma once
#include "text/Text.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace jet {

using PageNumber = std::uint32_t;
inline constexpr std::size_t kPageSize = 4096;
inline constexpr std::size_t kSectorSize = 512; // what a disk writes whole or not at all

// "The database is damaged (page 17): what", thrown as DatabaseError.
[[noreturn]] void ThrowDamaged(PageNumber page, TextView what);
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

    std::uint8_t U8(std::size_t at) const { return static_cast<std::uint8_t>(Number(at, 1)); }
    std::uint16_t U16(std::size_t at) const { return static_cast<std::uint16_t>(Number(at, 2)); }
    std::uint32_t U32(std::size_t at) const { return static_cast<std::uint32_t>(Number(at, 4)); }
    std::uint64_t U64(std::size_t at) const { return Number(at, 8); }
    ByteView Sub(std::size_t at, std::size_t count) const
    {
        Need(at, count);
        return {bytes_.substr(at, count), page_};
    }

private:
    void Need(std::size_t at, std::size_t count) const
    {
        if (at > bytes_.size() || count > bytes_.size() - at) ThrowDamaged(page_, u"something is cut short");
    }
    std::uint64_t Number(std::size_t at, std::size_t count) const
    {
        Need(at, count);
        std::uint64_t number = 0;
        for (std::size_t i = count; i-- > 0;)
            number = number << 8 | static_cast<std::uint8_t>(bytes_[at + i]);
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
