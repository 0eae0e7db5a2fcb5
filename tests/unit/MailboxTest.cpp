// MailboxTest.cpp: what of a directory is mail, in what order, and the pack that carries it elsewhere.
#include "demo/mailbox/LoadMailbox.h"
#include "demo/mailbox/Names.h"
#include "demo/mailbox/Pack.h"
#include "tests/support/MailDirectory.h"

#include <gtest/gtest.h>

namespace {

// The tree as one line: name(source=bytes,...)[folder folder].
std::string Drawn(const MailFolder& folder)
{
    std::string text = NameToUtf8(folder.name) + "(";
    for (const MailMessage& message : folder.messages)
        text += NameToUtf8(message.source) + "=" + message.bytes + ",";
    text += ")";
    for (const MailFolder& child : folder.folders) text.append("[").append(Drawn(child)).append("]");
    return text;
}

std::string ErrorOf(std::string_view pack)
{
    try {
        ReadPack(pack);
    } catch (const MailboxError& error) {
        return error.what();
    }
    return "none";
}

TEST(MailboxTest, DirectoryBecomesFoldersAndMessages)
{
    MailDirectory scratch;
    scratch.Write("own.eml", "0");
    scratch.Write("Inbox/b.EML", "2");
    scratch.Write("Inbox/A.eml", "1");
    scratch.Write("Inbox/c.mbox", "From x\nM1\n\nFrom y\nM2\n");
    scratch.Write("Inbox/empty.eml", "");
    scratch.Write("Inbox/old", "From x\nM3");
    scratch.Write("Inbox/readme", "Fromage");
    scratch.Write("Inbox/notes.txt", "From x\nno mail");
    scratch.Write("Inbox/.keep", "");
    scratch.Write("Zoo/Sub/x.mbx", "From x\r\nM4");
    scratch.Write("archive/keep.txt", "an empty folder");
    const MailFolder root = LoadMailbox(scratch.Path());
    EXPECT_EQ(Drawn(root), "Local Folders(own.eml=0,)[archive()]"
                           "[Inbox(A.eml=1,b.EML=2,c.mbox#1=M1\n\n,c.mbox#2=M2\n,empty.eml=,old#1=M3,)]"
                           "[Zoo()[Sub(x.mbx#1=M4,)]]");
    EXPECT_EQ(CountMessages(root), 8u);
    const MailFolder* sub = &root.folders[2].folders[0];
    EXPECT_EQ(FindFolder(root, u"Zoo/Sub"), sub);
    EXPECT_EQ(FindFolder(root, u"Local Folders/Zoo/Sub"), sub);
    EXPECT_EQ(FindFolder(root, u"Local Folders"), &root);
    EXPECT_EQ(FindFolder(root, u"zoo"), nullptr);
    EXPECT_EQ(FindFolder(root, u"Zoo/Other"), nullptr);
    EXPECT_EQ(DefaultFolderPath(root), u"Inbox");
    EXPECT_EQ(DefaultFolderPath({u"Local Folders", {}, {root.folders[0], root.folders[2]}}),
              u"Local Folders/Zoo/Sub")
        << "the first mail";
    EXPECT_THROW(LoadMailbox(scratch.Path() / "none"), MailboxError);
    EXPECT_THROW(LoadMailbox(scratch.Path() / "Inbox/old"), MailboxError) << "a file that is no pack";
}

// The format of RFC 4155, read strictly: a separator begins the file or follows an empty line.
TEST(MailboxTest, MboxIsCutAtItsSeparatorsAndLosesNoByteOfAMessage)
{
    const struct {
        std::string_view file;
        std::vector<std::string_view> messages;
    } cases[] = {
        {"From a\nA\n\nFrom b\nB\n", {"A\n\n", "B\n"}},
        {"From a\r\nA\r\n\r\nFrom b\r\nB\r\n", {"A\r\n\r\n", "B\r\n"}},
        {"From a\nA\nFrom here on\nB", {"A\nFrom here on\nB"}},
        {"From a\nA\n\n From b\n>From c\n", {"A\n\n From b\n>From c\n"}},
        {"From a\nA\n\nFrom b", {"A\n\n", ""}},
        {"From a\nFrom b\nB", {"From b\nB"}},
        {"Subject: x\n\nFrom a\nA", {"Subject: x\n\n", "A"}}, // before the first separator
        {"\r\nFrom a\nA", {"A"}},
        {"", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(SplitMbox(c.file), c.messages) << c.file;
}

TEST(MailboxTest, ADamagedPackIsRefused)
{
    const MailFolder root{
        u"Local Folders", {{u"a.eml", std::string("\0\r\n\xFF", 4)}}, {{u"In\u20ACbox", {}, {}}}};
    const std::string pack = WritePack(root);
    EXPECT_EQ(Drawn(ReadPack(pack)), Drawn(root));
    for (std::size_t i = 0; i < pack.size(); ++i) {
        EXPECT_NE(ErrorOf(std::string_view(pack).substr(0, i)), "none") << "cut to " << i;
        std::string damaged = pack;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x40);
        EXPECT_NE(ErrorOf(damaged), "none") << "byte " << i;
    }
}

} // namespace
