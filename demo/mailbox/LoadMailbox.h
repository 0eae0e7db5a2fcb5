// LoadMailbox.h: a mailbox from a directory or a pack.
// Fails by: MailboxError, with the path. Nothing that is mail is ever left out silently.
#pragma once
#include "demo/mailbox/Mailbox.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// path is a directory or a pack (Pack.h). The directory's own messages belong to "Local Folders", the folder
// that is returned; its sub-directories are the sub-folders, sorted by name (NameLess). Messages come in the
// order of their file names: ".eml" files, and mbox files (".mbox", ".mbx", or no extension and "From " at
// the start), each standing for all its messages. Other files, and links to directories, are not mail.
MailFolder LoadMailbox(const std::filesystem::path& path);

// The messages of an mbox file: the bytes between the separators. A separator is a line that begins with
// "From " at the start of the file or behind an empty line. Bytes before the first one are a message, too,
// unless they are line ends only.
std::vector<std::string_view> SplitMbox(std::string_view file);

// The bytes of any file; throws MailboxError when it cannot be read.
std::string ReadFileBytes(const std::filesystem::path& path);
