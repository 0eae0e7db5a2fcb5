// Require.h: what a fuzz target does with bytes and with a broken promise.
#pragma once
#include "text/Text.h"

#include <cstdio>
#include <cstdlib>

inline void Require(bool kept, const char* promise)
{
    if (kept) return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}

inline std::string_view BytesOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}
