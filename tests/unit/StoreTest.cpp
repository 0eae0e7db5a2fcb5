// StoreTest.cpp: checksums, the identity of e-mails, and what is asked of the database of saved ones.
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "store/Identity.h"
#include "store/SavedEmails.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/JetSamples.h"

#include <gtest/gtest.h>

namespace {
const Text kPath = u"C:\\saved.mdb";
}

TEST(Store, ChecksumsMatchThePublishedCheckValues)
{
    CodePage1252 codePage;
    clsCRC crc(codePage);
    EXPECT_EQ(crc.Algorithm(), -1);
    EXPECT_EQ(CrcText(crc.CalculateString(u"123456789")), u"CBF43926");
    EXPECT_EQ(CrcText(crc.CalculateBytes("")), u"0");
    const Text fox = u"The quick brown fox jumps over the lazy dog";
    const std::pair<char16_t, char> others[] = {{u'\u20AC', '\x80'}, {u'\u0080', '?'}, {u'\u00E9', '\xE9'}};
    for (const auto& [unit, byte] : others)
        for (std::size_t at = 0; at < fox.size(); ++at) {
            Text text = fox;
            std::string bytes = ToUtf8(fox);
            text[at] = unit;
            bytes[at] = byte;
            EXPECT_EQ(crc.CalculateString(text), crc.CalculateBytes(bytes)) << "ANSI bytes, at " << at;
        }
    for (std::size_t cut = 0; cut <= fox.size(); ++cut) {
        crc.Clear();
        crc.AddString(fox.substr(0, cut));
        EXPECT_EQ(CrcText(crc.AddString(fox.substr(cut))), u"414FA339") << "in two parts, cut at " << cut;
    }
    crc.CalculateString(u"123456789");
    crc.SetValue(crc.Value());
    EXPECT_NE(CrcText(crc.AddBytes("")), u"CBF43926") << "kept: not inverted on the way in";
    crc.SetAlgorithm(0);
    EXPECT_EQ(crc.Algorithm(), 0);
    EXPECT_EQ(crc.CalculateString(u"123456789"), 0x31C3);
    EXPECT_EQ(CrcText(0xABC), u"ABC") << "no leading zeros";
    EXPECT_EQ(CrcText(-1), u"FFFFFFFF");
}

TEST(Store, TheIdentityStringIsThatOfStoredRows)
{
    EnglishLocale locale;
    EmailEntry entry;
    entry.From = {u"ann@example.com", u"bob@example.com"};
    entry.To = {u""};
    entry.Subject = u"O'Brien + co";
    entry.Received = 39175.0; // 3 April 2007, midnight
    entry.Sent = 39175.5;
    const Text dates = u"03/04/2007+03/04/2007 12:00:00+O'Brien + co+";
    EXPECT_EQ(IdentityString(entry, locale), dates + u"ann@example.com|bob@example.com+");
    entry.From = {u"", u"bob@example.com"};
    entry.To = {u"c", u"", u"d"};
    EXPECT_EQ(IdentityString(entry, locale), dates + u"+c||d")
        << "kept: an empty first sender hides the rest";
}

TEST(Store, ApostrophesAreDoubledInSqlAlone)
{
    SavedSample sample;
    SavedEmails saved{std::move(sample.database)};
    EmailEntry entry;
    entry.Subject = u"It's";
    entry.Crc = u"1A2B";
    AddSavedEmail(saved, u"O'Brien", entry);
    EXPECT_EQ(RowsOf(*saved.database), (std::vector<std::vector<Text>>{{u"O'Brien", u"It's", u"1A2B"}}));
    EXPECT_TRUE(IsSaved(saved, u"1A2B", u"O'Brien"));
    EXPECT_TRUE(IsSaved(saved, u"1A2B", u"")) << "in any folder";
    EXPECT_FALSE(IsSaved(saved, u"1A2C", u"O'Brien") || IsSaved(saved, u"1A2B", u"Inbox"));
}

TEST(Store, TheFirstEngineThatCanOpensTheDatabase)
{
    SavedSample sample;
    FakeFiles files;
    std::vector<Text> created;
    const DatabaseMaker refuses{
        [](const Text&, const Text&) { throw DatabaseError(u"no create"); },
        [](const Text&) -> std::unique_ptr<Database> { throw DatabaseError(u"no open"); }};
    const DatabaseMaker works{[&](const Text& path, const Text& table) {
                                  created = {path, table};
                                  files.AddFile(path);
                              },
                              [&](const Text&) { return OpenJetDatabase(sample.files, kSavedPath); }};
    SavedEmails saved;
    EXPECT_EQ(OpenSavedEmails(saved, files, kPath, {refuses, refuses}), u"no create\r\nno create");
    EXPECT_FALSE(saved.IsOpen() || saved.created);
    EXPECT_EQ(OpenSavedEmails(saved, files, kPath, {refuses, works}), u"");
    EXPECT_TRUE(saved.created);
    EXPECT_EQ(created, (std::vector<Text>{kPath, kCreateSaved}));
    created.clear();
    SavedEmails found;
    EXPECT_EQ(OpenSavedEmails(found, files, kPath, {refuses}), u"no open") << "it exists by now";
    EXPECT_EQ(OpenSavedEmails(found, files, kPath, {works}), u"");
    EXPECT_TRUE(created.empty() && !found.created) << "a file that is there is never made anew";
}
