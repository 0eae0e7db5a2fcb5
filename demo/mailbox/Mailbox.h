// Mailbox.h: the folders and messages that the stand-in mail client shows, loaded from a directory or a pack.
// Fails by: MailboxError, in plain words with the path. Nothing that is mail is ever left out silently.
#pragma once
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct MailboxError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct MailMessage {
    std::u16string source; // the file it came from; behind a message of an mbox its number, "old.mbox#3"
    std::string bytes;     // unchanged; may be empty
};

struct MailFolder {
    std::u16string name;
    std::vector<MailMessage> messages;
    std::vector<MailFolder> folders;
};

constexpr std::u16string_view kRootFolderName = u"Local Folders";

// path is a directory or a pack (Pack.h). The directory's own messages belong to "Local Folders", the folder
// that is returned; its sub-directories are the sub-folders, sorted by name (NameLess). Messages come in the
// order of their file names: ".eml" files, and mbox files (".mbox", ".mbx", or no extension and "From " at
// the start), each standing for all its messages. Other files, and links to directories, are not mail.
MailFolder LoadMailbox(const std::filesystem::path& path);

// The messages of an mbox file: the bytes between the separators. A separator is a line that begins with
// "From " at the start of the file or behind an empty line. Bytes before the first one are a message, too,
// unless they are line ends only.
std::vector<std::string_view> SplitMbox(std::string_view file);

// The folder at a path of names joined by "/", with or without "Local Folders/" before it; letter case
// counts. An empty path and "Local Folders" alone are the root. Null when there is none.
const MailFolder* FindFolder(const MailFolder& root, std::u16string_view path);

// The path (as for FindFolder) of the folder that is shown when none is asked for: "Inbox" in any letter
// case, else the first that has messages, depth first, else the root.
std::u16string DefaultFolderPath(const MailFolder& root);

std::size_t CountMessages(const MailFolder& folder); // with those of all folders below

// The bytes of any file; throws MailboxError when it cannot be read.
std::string ReadFileBytes(const std::filesystem::path& path);
