// Addresses.h: reduces lists of addresses to what the mail client's list shows of them.
// None of these functions can fail: unknown shapes pass through as names.
#pragma once
#include "text/Text.h"

// "Ann" <a@x.org>, b@x.org becomes "Ann"; b@x.org: each address becomes its display name, or the bare address
// when it has none, joined by "; ". With listMode the answer is AddressSeparator(value) instead.
Text DetagAddressList(TextView value, bool listMode);

// What joins the addresses of a value: "; ", "," or nothing. One that stands inside a quoted name is the
// answer only when there is no other.
Text AddressSeparator(TextView value);

// The one address that a text contains; a text without "@" is cleaned of quotes and semicolons.
Text BareAddressOf(TextView value);

// 1-based position of the first character from start on that is one of characters, in either direction.
// None: 0, or length + 1 when endIfNone is set and the search goes forwards.
std::size_t FindAnyOf(TextView text, TextView characters, std::size_t start, bool endIfNone, bool backwards);
