// RemoteText.h: the texts of list and tree items, as they come through foreign memory.
#pragma once
#include "oe/RemoteMemory.h"
#include "text/Text.h"

// Of the block that the control writes a text to: 128 characters at most.
inline constexpr std::uint32_t kTextBytes = 256;

// False when the block could not be read; the text is empty then.
bool ReadRemoteText(RemoteMemory& memory, const RemoteBlock& block, Text& text);
