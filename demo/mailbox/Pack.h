// Pack.h: a whole mailbox in one file, for systems whose file system cannot hold its names.
//
// Layout, numbers little-endian: "QBPACK1\n", 8 bytes FNV-1a (64 bit) of all that follows, then the root
// folder.
//   folder:  name, 4 bytes number of messages, the messages, 4 bytes number of sub-folders, the sub-folders
//   message: name of its source, 4 bytes length, the bytes
//   name:    4 bytes number of UTF-16 units, the units
#pragma once
#include "demo/mailbox/Mailbox.h"

#include <string>
#include <string_view>

// Throws MailboxError for a message or name of 4 GB and more, and for folders nested deeper than a pack may
// be.
std::string WritePack(const MailFolder& root);

// Throws MailboxError when the bytes are not a whole, undamaged pack.
MailFolder ReadPack(std::string_view pack);
