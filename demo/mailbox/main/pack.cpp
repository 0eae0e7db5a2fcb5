// pack.cpp: demo-pack DIRECTORY FILE: puts a mailbox directory into one file.
//           demo-pack --default DIRECTORY: prints the path of the folder that is shown when none is asked
//           for.
#include "demo/mailbox/Pack.h"
#include "demo/mailbox/LoadMailbox.h"
#include "demo/mailbox/Names.h"

#include <fstream>
#include <iostream>

namespace {

std::size_t CountFolders(const MailFolder& folder)
{
    std::size_t count = folder.folders.size();
    for (const MailFolder& child : folder.folders) count += CountFolders(child);
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: demo-pack (DIRECTORY FILE | --default DIRECTORY)\n";
        return 2;
    }
    try {
        if (std::string_view(argv[1]) == "--default") {
            std::cout << NameToUtf8(DefaultFolderPath(LoadMailbox(argv[2]))) << "\n";
            return 0;
        }
        const MailFolder root = LoadMailbox(argv[1]);
        const std::string pack = WritePack(root);
        std::ofstream file(argv[2], std::ios::binary);
        file.write(pack.data(), static_cast<std::streamsize>(pack.size()));
        file.close();
        if (!file) throw MailboxError(std::string(argv[2]) + ": cannot be written");
        std::cout << CountMessages(root) << " messages in " << CountFolders(root) << " folders\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "demo-pack: " << error.what() << "\n";
        return 1;
    }
}
