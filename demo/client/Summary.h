// Summary.h: what the message list shows of one message.
#pragma once
#include <string>
#include <string_view>

struct Summary {
    std::wstring from, subject, to, received, sent; // dates in the user's locale; empty: the message has none
    bool attachment = false;
    bool urgent = false;
};

// Any bytes; never fails.
Summary Summarise(std::string_view message);
