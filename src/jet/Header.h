// Header.h: page 0 of a database file, part of which is obscured.
#pragma once
#include "jet/PageFile.h"

namespace jet {

// Throws DatabaseError, saying why, when the file is none that this engine can keep consistent: another
// kind or version, encrypted, with a password.
void CheckHeader(PageFile& file);

// The creation date of new files, of which the obscured account names in the catalog are made in a way
// that is not known. The three belong together; the dates in the catalog may be the real ones.
inline constexpr std::uint64_t kHeaderDate = 0x40E4AB3E3BD3853E; // the bits of the double
inline constexpr std::uint32_t kHeaderMark = 0x261C;
inline constexpr std::uint16_t kAccountMask = 0x8A67;
std::string NewHeader();

} // namespace jet
