// Addresses.h: an address list as a mail client shows it.
#pragma once
#include "demo/client/HeaderText.h"

#include <string>
#include <string_view>

// For each address its display name, or the bare address where it has none, joined by "; ".
std::wstring DisplayNames(std::string_view value, RawCharset raw);
