// VerifyTest.cpp: what is found wrong with a store, and what is not.
#include "archive/Verify.h"
#include "platform/FileNames.h"
#include "platform/posix/CodePage1252.h"
#include "platform/System.h"
#include "tests/support/Case.h"
#include "tests/support/MailDirectory.h"

#include <gtest/gtest.h>

namespace {

std::string Mail(const std::string& subject, const std::string& body = "body\r\n")
{
    return "From: a@b.example\r\nSubject: " + subject + "\r\n\r\n" + body;
}

struct VerifyTest : testing::Test {
    MailDirectory store;
    SystemFiles files;
    CodePage1252 codePage;
    std::vector<Text> folders;

    Verification Verify(const std::vector<SavedRecord>* records = nullptr)
    {
        return VerifyStore(files, codePage, store / u"", records, folders,
                           [](std::size_t, std::size_t) { return true; });
    }
    // "trouble folder/file (detail)", a line each.
    std::string Found(const std::vector<SavedRecord>* records = nullptr)
    {
        std::string lines;
        for (const Finding& each : Verify(records).findings)
            lines += ToUtf8(NameOf(each.trouble) + u" " + each.folder + u"/" + each.file + u" (" +
                            each.detail + u")\n");
        return lines;
    }
};

} // namespace

TEST_F(VerifyTest, FilesThatAreNoWholeEmailAreNamed)
{
    const std::string parts =
        "Subject: x\r\nContent-Type: multipart/mixed; boundary=\"b\"\r\n\r\n--b\r\n\r\nx\r\n";
    const Case<std::string, const char*> cases[] = {
        // the trouble and its detail; empty: none
        {"whole", Mail("x"), ""},
        {"without a body", "Subject: x\r\n\r\n", ""},
        {"with any line ends", "Subject: x\n\nbody", ""},
        {"of length zero", "", "empty ()"},
        {"cut in the header", "From: a@b.example\r\nSubj", "cut-short (it ends within its header)"},
        {"cut behind the header", "From: a@b.example\r\n", "cut-short (it ends within its header)"},
        {"with all parts", parts + "--b--\r\n", ""},
        {"with all parts, and more", parts + "--b--\r\n\r\n-- \r\nsent by a list", ""},
        {"cut in a part", parts, "cut-short (its last part has no end)"},
        {"cut in the end", parts + "--b-", "cut-short (its last part has no end)"},
        {"where the end is only quoted", parts + "> --b--\r\n", "cut-short (its last part has no end)"},
        {"without a boundary", "Subject: x\r\nContent-Type: multipart/mixed\r\n\r\nx", ""},
        {"whose end did not reach the disk", Mail("x") + std::string(512, '\0'),
         "cut-short (its end is nothing but zeros)"},
        {"with a few zeros behind", Mail("x") + std::string(511, '\0'), ""},
        {"that never reached the disk", std::string(4096, '\0'), "no-headers ()"},
        {"of something else", "Dear diary,\r\n\r\ntoday: nothing\r\n", "no-headers ()"},
        {"of a page", "<html>\r\nStyle: none\r\n\r\n</html>", "no-headers ()"},
    };
    for (const auto& c : cases) {
        store.Write("Inbox/0001_x.eml", c.given);
        std::string want = c.want;
        if (!want.empty()) want.insert(want.find(' '), " Inbox/0001_x.eml");
        EXPECT_EQ(Found(), want.empty() ? want : want + "\n") << "a file " << c.why;
    }
}

TEST_F(VerifyTest, TheSameContentIsFoundWithinAFolder)
{
    for (const char* name : {"A/0001_x.eml", "A/0007_xa.eml", "A/0009_xb.eml", "B/0001_x.eml"})
        store.Write(name, Mail("x"));
    store.Write("A/0002_y.eml", Mail("y")); // of the same length
    for (const char* name : {"A/0003_z.eml", "A/0004_z.eml"}) store.Write(name, "");
    EXPECT_EQ(Found(), "empty A/0003_z.eml ()\nempty A/0004_z.eml ()\n"
                       "same-content A/0007_xa.eml (0001_x.eml)\nsame-content A/0009_xb.eml (0001_x.eml)\n");
}

TEST_F(VerifyTest, RecordsAndFilesAreMatchedByFolderAndSubject)
{
    const std::string longSubject(60, 'w');
    store.Write("In/0000_Hello.eml", Mail("Hello"));
    store.Write("In/0001_Hello.eml", Mail("Hello", "2"));
    store.Write("In/0002_Helloa.eml", Mail("Hello", "3"));
    store.Write("In/0003_Helloa.eml", Mail("Hello a", "4"));
    store.Write("In/0004.eml", Mail("=?utf-8?Q?Caf=C3=A9!?="));
    store.Write("In/0005_.eml", Mail("\xD0\x9E"));
    store.Write("In/0006_" + longSubject.substr(0, 30) + "b.eml", Mail("cut"));
    store.Write("In/0007_Other.eml", Mail("Other"));
    for (const char* each : {"1", "2"}) // look alike
        store.Write("In/001" + std::string(each) + "_Twin.eml", Mail("Twin", each));
    store.Write("a_b/0000_One.eml", Mail("One"));
    store.Write("a_b_2/0000_Two.eml", Mail("Two"));
    store.Write("a_b_2/c/0000_Three.eml", Mail("Three"));
    store.Write("Stray/0000_x.eml", Mail("x"));
    store.Write("Stray/0001_y.eml", Mail("y"));
    store.Write("Known/0001_y.eml", Mail("y"));
    store.Write("Empty/notes.txt", "x");
    const auto subject = [&](const std::string& text) { return FromUtf8(text); };
    std::vector<SavedRecord> records = {
        {u"In", u"Hello", u"1"},
        {u"In", u"Hello", u"2"},
        {u"In", u"Hello", u"3"},
        {u"In", u"Hello a", u"4"},
        {u"In", u"Caf\u00E9!", u"5"},
        {u"In", u"\u041E", u"6"},
        {u"IN", subject(longSubject), u"7"},
        {u"In", u"Hello", u"3"}, // stands twice
        {u"a:b", u"One", u"8"},
        {u"a?b", u"Two", u"9"},
        {u"a?b\\c", u"Three", u"A"},
        {u"In", u"Gone", u"B"},
        {u"Nowhere\\x", u"Lost", u"C"},
        {u"In", u"Twin", u"D"},
        {u"In", u"Twin", u"D"},
        {u"In", u"Twin", u"D"},
    };
    folders = {u"known"};
    EXPECT_EQ(Found(&records),
              "file-alone In/0007_Other.eml (Other)\nrecord-alone In/ (Gone)\n"
              "record-alone In/ (Twin)\nfile-alone Known/0001_y.eml (y)\nstray-directory Stray/ (2)\n"
              "record-alone Nowhere\\x/ (Lost)\n");
    EXPECT_EQ(Verify(&records).findings[1].crc, u"B");
    EXPECT_EQ(Found(), "") << "without records";
    // A folder whose own name holds a backslash.
    records = {{u"x\\y", u"One", u"1"}};
    MailDirectory other;
    other.Write("x_y/0000_One.eml", Mail("One"));
    EXPECT_TRUE(VerifyStore(files, codePage, other / u"", &records, {}, [](auto, auto) {
                    return true;
                }).findings.empty());
}

// Whatever lies in a store, the rest of it is looked through, nothing is waited for and nothing is done
// twice.
TEST_F(VerifyTest, NothingInAHostileStoreStopsIt)
{
    namespace fs = std::filesystem;
    std::string deep;
    for (int i = 0; i < 20; ++i) deep += "deep" + std::to_string(i) + "/";
    if (store.Path().string().size() + deep.size() + 5 > kLongestPath) GTEST_SKIP();
    store.Write(deep + "1.eml", Mail("deep"));
    store.Write("directory.eml/1.eml", Mail("x"));
    store.Write("quoted/1.eml", Mail("mbox", "From a Mon\r\n>From b\r\n"));
    std::string want;
#ifndef _WIN32
    fs::create_directory_symlink(".", store.Path() / "loop");
    fs::create_symlink(store.Path() / "quoted/1.eml", store.Path() / "quoted/2.eml");
    fs::create_symlink("nothing", store.Path() / "quoted/3.eml");
    store.Write("bad\xFFname/1.eml", "");
    store.Write("new\nline/\x01\"<&>.eml", "");
    store.Write("quoted/\xFE.eml", Mail("unreachable"));
    want = "unreadable bad\uFFFDname/ (The file was not found)\n"
           "unreadable loop/ (a link to another directory is not followed)\n"
           "empty new\nline/\x01\"<&>.eml ()\n"
           "same-content quoted/2.eml (1.eml)\nunreadable quoted/3.eml (it is no file)\n"
           "unreadable quoted/\uFFFD.eml (The file was not found)\n";
#endif
    EXPECT_EQ(Found(), want);
    EXPECT_EQ(VerifyStore(files, codePage, store / u"nowhere", nullptr, {}, [](auto, auto) { return true; })
                  .findings.size(),
              1u);
}
