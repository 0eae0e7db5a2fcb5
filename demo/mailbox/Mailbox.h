// Mailbox.h: the folders and messages that the stand-in mail client shows.
#pragma once
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What is wrong with a mailbox, in plain words.
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

// The folder at a path of names joined by "/", with or without "Local Folders/" before it; letter case
// counts. An empty path and "Local Folders" alone are the root. Null when there is none.
const MailFolder* FindFolder(const MailFolder& root, std::u16string_view path);

// The path (as for FindFolder) of the folder that is shown when none is asked for: "Inbox" in any letter
// case, else the first that has messages, depth first, else the root.
std::u16string DefaultFolderPath(const MailFolder& root);

std::size_t CountMessages(const MailFolder& folder); // with those of all folders below
