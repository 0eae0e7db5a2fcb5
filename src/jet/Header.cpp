#include "jet/Header.h"

#include "platform/Database.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <vector>

namespace jet {

namespace {

constexpr std::string_view kSignature("\0\1\0\0Standard Jet DB\0", 20);
constexpr std::size_t kVersionAt = 0x14, kObscuredAt = 0x18, kObscuredSize = 128, kKeyAt = 0x3E,
                      kPasswordAt = 0x42, kPasswordSize = 40, kMarkAt = 0x6A, kDateAt = 0x72,
                      kCountersAt = 0xE00;
constexpr PageNumber kFewestPages = 3; // header, map of free pages, catalog
constexpr TextView kTooShort = u"The file is too short to be a database";

// RC4 with the key that all files share; the same call obscures and reveals.
void Obscure(std::string& page)
{
    constexpr unsigned char kKey[] = {0xC7, 0xDA, 0x39, 0x6B};
    std::vector<unsigned char> state(256);
    std::iota(state.begin(), state.end(), static_cast<unsigned char>(0));
    unsigned char j = 0;
    for (unsigned i = 0; i < 256; ++i) {
        j = static_cast<unsigned char>(j + state[i] + kKey[i % 4]);
        std::swap(state[i], state[j]);
    }
    unsigned char i = 0;
    j = 0;
    for (std::size_t at = kObscuredAt; at < kObscuredAt + kObscuredSize; ++at) {
        j = static_cast<unsigned char>(j + state[++i]);
        std::swap(state[i], state[j]);
        page[at] = static_cast<char>(page[at] ^ state[static_cast<unsigned char>(state[i] + state[j])]);
    }
}

bool HasPassword(ByteView page)
{
    const double date = std::bit_cast<double>(page.U64(kDateAt));
    // Beyond the calendar the date is damaged and what it obscures cannot be read.
    const bool sane = date > -700000 && date < 3000000;
    const auto mask = static_cast<std::uint32_t>(sane ? static_cast<std::int32_t>(date) : 0);
    for (std::size_t at = 0; at < kPasswordSize; at += 4)
        if (page.U32(kPasswordAt + at) != mask) return true;
    return false;
}

} // namespace

void CheckHeader(PageFile& file)
{
    if (file.Count() == 0) throw DatabaseError(Text(kTooShort));
    std::string page = *file.Read(0);
    if (!page.starts_with(kSignature)) throw DatabaseError(u"The file is not a Jet database");
    if (page[kVersionAt] == 0)
        throw DatabaseError(u"The database is of an older format (Jet 3), which is not supported");
    if (page[kVersionAt] != 1)
        throw DatabaseError(u"The database is of a newer format, which is not supported");
    if (file.Count() < kFewestPages) throw DatabaseError(Text(kTooShort));
    Obscure(page);
    const ByteView view(page, 0);
    if (view.U32(kKeyAt) != 0) throw DatabaseError(u"The database is encrypted, which is not supported");
    if (HasPassword(view)) throw DatabaseError(u"The database has a password, which is not supported");
}

std::string NewHeader()
{
    std::string page(kPageSize, '\0');
    page.replace(0, kSignature.size(), kSignature);
    page[kVersionAt] = 1;
    Put32(page, 0x18, 0x100); // the two rows of page 1
    Put32(page, 0x1C, 0x101);
    for (std::size_t table = 0; table < 4; ++table)
        Put32(page, 0x20 + 4 * table, static_cast<std::uint32_t>(2 + table));
    Put16(page, 0x3C, 1252);
    const auto mask = static_cast<std::uint32_t>(std::bit_cast<double>(kHeaderDate));
    for (std::size_t at = 0; at < kPasswordSize; at += 4) Put32(page, kPasswordAt + at, mask); // no password
    Put32(page, kMarkAt, kHeaderMark);
    Put32(page, 0x6E, 0x0409); // sort order "General"
    Put(page, kDateAt, kHeaderDate, 8);
    Obscure(page);
    Put32(page, 0x98, 0x0654);
    page.replace(0x9C, 3, "4.0");
    for (std::size_t user = 0; user < 256; ++user)
        Put16(page, kCountersAt + 2 * user, user == 0 ? 0x0101 : 0x0100);
    return page;
}

} // namespace jet
