// RemoteMemoryTest.cpp: blocks of memory in the client's process.
#include "oe/RemoteMemory.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <array>

namespace {

// The client's process gives whole pages, and would take the byte too many.
TEST(RemoteMemory, ACopyLargerThanItsBlockIsRefused)
{
    constexpr std::uint32_t kSize = 16;
    for (const std::uint32_t family : {2u, 1u}) { // VER_PLATFORM_WIN32_NT, and shared mappings before it
        OeBench bench({{u"Outlook Express", 0, {}}});
        bench.fake.platform = family;
        RemoteMemory& memory = bench.client.memory;
        const WindowHandle window = bench.fake.Find(u"Outlook Express Browser Class");
        const RemoteBlock block = RemoteAlloc(memory, window, kSize);
        std::array<char, kSize + 1> bytes;
        bytes.fill('x');
        EXPECT_TRUE(RemoteWrite(memory, block, bytes.data(), kSize)) << family;

        const auto before = bench.fake.calls;
        bytes.fill('y');
        EXPECT_FALSE(RemoteWrite(memory, block, bytes.data(), kSize + 1)) << family;
        EXPECT_FALSE(RemoteRead(memory, block, bytes.data(), kSize + 1)) << family;
        EXPECT_EQ(bytes, decltype(bytes){}) << "zeros, and not what the buffer held";
        EXPECT_EQ(bench.fake.calls, before) << "nothing was copied";

        EXPECT_TRUE(RemoteRead(memory, block, bytes.data(), kSize)) << family;
        EXPECT_EQ(std::string(bytes.data(), kSize), std::string(kSize, 'x')) << family;
        EXPECT_FALSE(RemoteWrite(memory, RemoteBlock{}, bytes.data(), 1)) << "a block that never was";
        RemoteFree(memory, block);
    }
}

} // namespace
