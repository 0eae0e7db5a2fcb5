// AddressList.h: the addresses of From, To, Cc and Bcc (RFC 5322), one by one.
// Cannot fail: unknown shapes become names or addresses as they stand.
#pragma once
#include <string>
#include <string_view>
#include <vector>

// As it stands in the value, encoded words included.
struct MailAddress {
    std::string name;    // without quotes; a comment where there is none; empty when there is neither
    std::string address; // without brackets; empty for what has none
};

// Those of a group count one by one, its name does not.
std::vector<MailAddress> ReadAddresses(std::string_view value);
