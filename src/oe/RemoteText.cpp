#include "oe/RemoteText.h"

#include <array>

bool ReadRemoteText(RemoteMemory& memory, const RemoteBlock& block, Text& text)
{
    std::array<char16_t, kTextBytes / sizeof(char16_t)> units{};
    const bool done = RemoteRead(memory, block, units.data(), kTextBytes);
    text = CutAtNul({units.data(), units.size()}); // a text that fills the block has no NUL
    return done;
}
