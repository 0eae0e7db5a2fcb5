// MailboxTest.cpp: what of a directory is mail, in what order, and the pack that carries it elsewhere.
#include "demo/mailbox/Mailbox.h"
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
    scratch.Write("inbox/b.EML", "2");
    scratch.Write("inbox/A.eml", "1");
    scratch.Write("inbox/c.mbox", "From x\nM1\n\nFrom y\nM2\n");
    scratch.Write("inbox/empty.eml", "");
    scratch.Write("inbox/old", "From x\nM3");
    scratch.Write("inbox/readme", "Fromage");
    scratch.Write("inbox/notes.txt", "From x\nno mail");
    scratch.Write("inbox/.keep", "");
    scratch.Write("Zoo/Sub/x.mbx", "From x\r\nM4");
    scratch.Write("archive/keep.txt", "an empty folder");
    EXPECT_EQ(Drawn(LoadMailbox(scratch.Path())),
              "Local Folders(own.eml=0,)[archive()]"
              "[inbox(A.eml=1,b.EML=2,c.mbox#1=M1\n\n,c.mbox#2=M2\n,empty.eml=,old#1=M3,)]"
              "[Zoo()[Sub(x.mbx#1=M4,)]]");
}

#ifndef _WIN32
TEST(MailboxTest, AnyNameIsReadable)
{
    MailDirectory scratch;
    for (const char* name : {"a?b", "CON", "dots..", "O'Brien", "caf\xC3\xA9", "caf\xE9", "x\x01y",
                             "back\\slash", "\xF0\x9F\x93\xA7"})
        scratch.Write(std::string(name) + "/1.eml", name);
    std::string names;
    for (const MailFolder& folder : LoadMailbox(scratch.Path()).folders)
        names += NameToUtf8(folder.name) + "|";
    // The two forms of the same letter are two folders of one name.
    EXPECT_EQ(names, "a?b|back\\slash|caf\xC3\xA9|caf\xC3\xA9|CON|dots..|O'Brien|x\x01y|\xF0\x9F\x93\xA7|");
}

TEST(MailboxTest, LinksToDirectoriesAreNotFollowed)
{
    MailDirectory scratch;
    scratch.Write("Inbox/1.eml", "1");
    std::filesystem::create_directory_symlink(scratch.Path(), scratch.Path() / "Inbox/loop");
    std::filesystem::create_symlink("nowhere", scratch.Path() / "Inbox/dangling.eml");
    EXPECT_EQ(Drawn(LoadMailbox(scratch.Path())), "Local Folders()[Inbox(1.eml=1,)]");
}

TEST(MailboxTest, DeepAndWideDirectoriesAreRead)
{
    MailDirectory scratch;
    std::string deep;
    for (int level = 0; level < 300; ++level) deep += "d/";
    scratch.Write(deep + "last.eml", "deep");
    for (int i = 0; i < 400; ++i) scratch.Write("many/" + std::to_string(i) + ".eml", "x");
    const MailFolder root = LoadMailbox(scratch.Path());
    EXPECT_EQ(CountMessages(root), 401u);
    EXPECT_EQ(Drawn(ReadPack(WritePack(root))), Drawn(root));
}
#endif

TEST(MailboxTest, MissingMailboxIsAnError)
{
    MailDirectory scratch;
    EXPECT_THROW(LoadMailbox(scratch.Path() / "none"), MailboxError);
    scratch.Write("file.pack", "From x\nnot a pack");
    EXPECT_THROW(LoadMailbox(scratch.Path() / "file.pack"), MailboxError);
}

TEST(MailboxTest, MboxIsCutAtItsSeparators)
{
    const struct {
        const char* why;
        std::string_view file;
        std::vector<std::string_view> messages;
    } cases[] = {
        {"the empty line belongs to the message", "From a\nA\n\nFrom b\nB\n", {"A\n\n", "B\n"}},
        {"CR LF lines", "From a\r\nA\r\n\r\nFrom b\r\nB\r\n", {"A\r\n\r\n", "B\r\n"}},
        {"no separator without an empty line before it",
         "From a\nA\nFrom here on\nB",
         {"A\nFrom here on\nB"}},
        {"nor inside a line", "From a\nA\n\n From b\n>From c\n", {"A\n\n From b\n>From c\n"}},
        {"\"From:\" is a header", "From a\nTo: x\n\nFrom: y\n", {"To: x\n\nFrom: y\n"}},
        {"a separator at the very end: an empty message", "From a\nA\n\nFrom b", {"A\n\n", ""}},
        {"two separators in a row are one message: the second has no empty line before it",
         "From a\nFrom b\nB",
         {"From b\nB"}},
        {"bytes before the first separator are not lost", "Subject: x\n\nFrom a\nA", {"Subject: x\n\n", "A"}},
        {"empty lines before it are no message", "\r\nFrom a\nA", {"A"}},
        {"empty", "", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(SplitMbox(c.file), c.messages) << c.why;
}

TEST(MailboxTest, FolderIsFoundByPath)
{
    MailDirectory scratch;
    scratch.Write("Projects/Alpha/1.eml", "1");
    const MailFolder root = LoadMailbox(scratch.Path());
    const auto* alpha = &root.folders[0].folders[0];
    EXPECT_EQ(FindFolder(root, u"Projects/Alpha"), alpha);
    EXPECT_EQ(FindFolder(root, u"Local Folders/Projects/Alpha"), alpha);
    EXPECT_EQ(FindFolder(root, u""), &root);
    EXPECT_EQ(FindFolder(root, u"Local Folders"), &root);
    EXPECT_EQ(FindFolder(root, u"projects"), nullptr);
    EXPECT_EQ(FindFolder(root, u"Projects/Beta"), nullptr);
}

TEST(MailboxTest, WithoutAChoiceTheInboxIsShownElseTheFirstMail)
{
    const MailMessage mail{u"a.eml", "Subject: a\r\n\r\n"};
    const MailFolder empty{u"Empty", {}, {}}, deep{u"Deep", {}, {empty, {u"Mail", {mail}, {}}}};
    const auto pathIn = [](std::vector<MailMessage> messages, std::vector<MailFolder> folders) {
        return DefaultFolderPath({std::u16string(kRootFolderName), std::move(messages), std::move(folders)});
    };
    EXPECT_EQ(pathIn({mail}, {deep, {u"INBOX", {}, {}}}), u"INBOX") << "even when it is empty";
    EXPECT_EQ(pathIn({}, {empty, deep}), u"Local Folders/Deep/Mail");
    EXPECT_EQ(pathIn({mail}, {deep}), u"Local Folders");
    EXPECT_EQ(pathIn({}, {empty}), u"Local Folders") << "no mail at all";
}

TEST(MailboxTest, DirectoryNamesHoldOnlyWhatWindowsCan)
{
    const struct {
        const char* why;
        std::u16string_view folder, directory;
    } cases[] = {
        {"an ordinary name", u"O'Brien & Co £5", u"O'Brien & Co £5"},
        {"forbidden characters", u"a\\b/c:d*e?f\"g<h>i|j\tk", u"a_b_c_d_e_f_g_h_i_j_k"},
        {"trailing dots and blanks", u"x. .", u"x___"},
        {"only the trailing ones", u".x y", u".x y"},
        {"a device, in any case", u"Con", u"Con_"},
        {"a device with an extension", u"lpt1.txt", u"lpt1_.txt"},
        {"no device", u"console COM0", u"console COM0"},
        {"the code page has the euro, not the letter a with macron", u"\u20AC\u0101", u"\u20AC_"},
        {"a character of two units", u"\xD83D\xDCE7", u"__"},
    };
    for (const auto& c : cases) EXPECT_EQ(DirectoryNameOf(c.folder), c.directory) << c.why;
}

TEST(MailboxTest, DamagedPackIsRefused)
{
    const MailFolder root{
        u"Local Folders", {{u"a.eml", std::string("\0\r\n\xFF", 4)}}, {{u"In\u20ACbox", {}, {}}}};
    const std::string pack = WritePack(root);
    EXPECT_EQ(Drawn(ReadPack(pack)), Drawn(root));

    for (std::size_t length = 0; length < pack.size(); ++length)
        EXPECT_NE(ErrorOf(std::string_view(pack).substr(0, length)), "none") << "cut to " << length;
    for (std::size_t i = 0; i < pack.size(); ++i) {
        std::string damaged = pack;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x40);
        EXPECT_NE(ErrorOf(damaged), "none") << "byte " << i;
    }
    EXPECT_NE(ErrorOf(pack + "x"), "none");
}

// A length that lies, in a pack whose checksum is right.
TEST(MailboxTest, LyingLengthInPackIsRefused)
{
    const auto packOf = [](std::string body) {
        std::uint64_t hash = 0xCBF29CE484222325u;
        for (const char c : body) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
        std::string pack = "QBPACK1\n";
        for (int i = 0; i < 8; ++i) pack += static_cast<char>(hash >> (8 * i) & 0xFF);
        return pack + body;
    };
    const std::string zero(4, '\0'), huge(4, '\xFF');
    EXPECT_EQ(ErrorOf(packOf(zero + zero + zero)), "none");
    EXPECT_EQ(ErrorOf(packOf(huge + zero + zero)), "the pack ends too early");
    EXPECT_EQ(ErrorOf(packOf(zero + huge + zero)), "the pack ends too early");
    EXPECT_EQ(ErrorOf(packOf(zero + zero + huge)), "the pack ends too early");
    EXPECT_EQ(ErrorOf(packOf(zero + zero + zero + "x")), "the pack has something behind its end");
    std::string nested;
    for (int level = 0; level < 5000; ++level) nested += zero + zero + std::string("\x01\0\0\0", 4);
    EXPECT_EQ(ErrorOf(packOf(nested)), "the pack's folders are nested too deeply");
}

} // namespace
