// Pack.cpp: writes and reads packs.
#include "demo/mailbox/Pack.h"

#include <cstdint>

namespace {

constexpr std::string_view kMagic = "QBPACK1\n";
constexpr std::size_t kChecksumSize = 8;
// Deeper than any file system nests, shallow enough for a thread's stack.
constexpr int kMaxDepth = 4000;

std::uint64_t Checksum(std::string_view bytes)
{
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    return hash;
}

void PutNumber(std::string& pack, std::uint64_t number, int bytes)
{
    for (int i = 0; i < bytes; ++i) pack += static_cast<char>(number >> (8 * i) & 0xFF);
}

void PutCount(std::string& pack, std::size_t count)
{
    if (count > 0xFFFFFFFFu) throw MailboxError("a message is too large for a pack");
    PutNumber(pack, count, 4);
}

void PutName(std::string& pack, std::u16string_view name)
{
    PutCount(pack, name.size());
    for (const char16_t unit : name) PutNumber(pack, unit, 2);
}

void PutFolder(std::string& pack, const MailFolder& folder, int depth)
{
    if (depth > kMaxDepth) throw MailboxError("the folders are nested too deeply for a pack");
    PutName(pack, folder.name);
    PutCount(pack, folder.messages.size());
    for (const MailMessage& message : folder.messages) {
        PutName(pack, message.source);
        PutCount(pack, message.bytes.size());
        pack += message.bytes;
    }
    PutCount(pack, folder.folders.size());
    for (const MailFolder& child : folder.folders) PutFolder(pack, child, depth + 1);
}

// What is left to read. Every take checks that so much is there.
struct Reader {
    std::string_view rest;

    std::string_view Take(std::size_t count)
    {
        if (count > rest.size()) throw MailboxError("the pack ends too early");
        const std::string_view taken = rest.substr(0, count);
        rest.remove_prefix(count);
        return taken;
    }

    std::uint64_t Number(std::size_t bytes)
    {
        std::uint64_t number = 0;
        const std::string_view taken = Take(bytes);
        for (std::size_t i = bytes; i-- > 0;) number = number << 8 | static_cast<unsigned char>(taken[i]);
        return number;
    }

    std::size_t Count() { return static_cast<std::size_t>(Number(4)); }

    std::u16string Name()
    {
        const std::size_t units = Count();
        if (units > rest.size() / 2) throw MailboxError("the pack ends too early");
        std::u16string name;
        for (std::size_t i = 0; i < units; ++i) name += static_cast<char16_t>(Number(2));
        return name;
    }

    MailFolder Folder(int depth)
    {
        if (depth > kMaxDepth) throw MailboxError("the pack's folders are nested too deeply");
        MailFolder folder{Name(), {}, {}};
        for (std::size_t left = Count(); left > 0; --left) {
            std::u16string source = Name();
            folder.messages.push_back({std::move(source), std::string(Take(Count()))});
        }
        for (std::size_t left = Count(); left > 0; --left) folder.folders.push_back(Folder(depth + 1));
        return folder;
    }
};

} // namespace

std::string WritePack(const MailFolder& root)
{
    std::string body;
    PutFolder(body, root, 0);
    std::string pack(kMagic);
    PutNumber(pack, Checksum(body), kChecksumSize);
    return pack += body;
}

MailFolder ReadPack(std::string_view pack)
{
    if (!pack.starts_with(kMagic)) throw MailboxError("not a mailbox pack");
    Reader reader{pack.substr(kMagic.size())};
    const std::uint64_t checksum = reader.Number(kChecksumSize);
    if (checksum != Checksum(reader.rest)) throw MailboxError("the pack is damaged or cut short");
    MailFolder root = reader.Folder(0);
    if (!reader.rest.empty()) throw MailboxError("the pack has something behind its end");
    return root;
}
