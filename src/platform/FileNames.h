// FileNames.h: what the file systems of all systems agree on: how long a path may be, which names are
// e-mails, and their order.
#pragma once
#include "text/Text.h"

inline constexpr std::size_t kLongestPath = 259; // characters: the room of old Windows calls, without the NUL

// What the pattern "*.*eml" matches, short 8.3 names left out: a "." somewhere before a final "eml", in any
// letter case. "a.EML", "b.xeml" and ".eml" do, "eml" and "aeml" do not.
bool IsEmlName(TextView name);

// By name without regard to case; names that differ in case only stand in the order of their units. Names
// that begin with a number stand in the order of their numbers: saved e-mails have at least four digits, and
// 10000 comes after 9999, not between 0999 and 1000.
bool NamePrecedes(TextView a, TextView b);
