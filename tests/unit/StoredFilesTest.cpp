// StoredFilesTest.cpp: what a new database of saved e-mails does not know of the store.
#include "folders/StoredFiles.h"
#include "folders/Synchronise.h"
#include "tests/support/MemoryDatabase.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {

TEST(StoredFiles, OnlyTheMailFoldersOwnDirectoriesCount)
{
    OeBench bench({{u"Outlook Express", 0, {}},
                   {u"Local Folders", 1, {}},
                   {u"Inbox", 2, {MailRow(u"One")}},
                   {u"A/B", 3, {}},
                   {u"Empty", 2, {}}});
    MemoryRows rows;
    SavedEmails saved;
    saved.database = std::make_unique<MemoryDatabase>(rows);
    FolderRun run{bench.client, saved, bench.view, bench.files, bench.clock, bench.codePage, bench.locale};
    bench.view.options.storeFolder = u"C:\\Store";
    EXPECT_EQ(CountStoredFiles(run).files, 0u) << "no folder is known yet";
    Synchronise(run);
    for (const Text& path :
         {Text(u"C:\\Store\\old.eml"), Text(u"C:\\Store\\Outlook Express\\0.eml"),
          Text(u"C:\\Store\\Local Folders\\Old\\1.eml"), Text(u"C:\\Store\\Local Folders\\Empty\\note.txt")})
        bench.files.AddFile(path);
    EXPECT_EQ(CountStoredFiles(run).files, 0u) << "of no mail folder";
    bench.files.AddFile(u"C:\\Store\\Local Folders\\Inbox\\0000_One.eml");
    bench.files.AddFile(u"C:\\Store\\Local Folders\\Inbox\\0001_Two.EML");
    bench.files.AddFile(u"C:\\Store\\Local Folders\\Inbox\\A_B\\0000_Three.eml");
    EXPECT_EQ(CountStoredFiles(run).files, 3u);
    EXPECT_EQ(CountStoredFiles(run).folders, 2u);
    bench.view.options.storeFolder = u"C:\\Other";
    EXPECT_EQ(CountStoredFiles(run).files, 0u) << "the store folder of this moment";
}

TEST(StoredFiles, ADatabaseSaysWhetherItIsNew)
{
    FakeFiles files;
    MemoryRows rows;
    const Text path = u"C:\\saved.mdb";
    const DatabaseMaker opens = {[&](const Text& made, const Text&) { files.AddFile(made); },
                                 [&](const Text&) { return std::make_unique<MemoryDatabase>(rows); }};
    const DatabaseMaker fails = {
        [](const Text&, const Text&) { throw DatabaseError(u"no"); },
        [](const Text&) -> std::unique_ptr<Database> { throw DatabaseError(u"no"); }};
    SavedEmails made, found, refused;
    EXPECT_EQ(OpenSavedEmails(made, files, path, {fails, opens}), u"");
    EXPECT_TRUE(made.created);
    EXPECT_EQ(OpenSavedEmails(found, files, path, {fails, opens}), u"");
    EXPECT_FALSE(found.created) << "the file was there";
    files.files.clear();
    EXPECT_NE(OpenSavedEmails(refused, files, path, {fails}), u"");
    EXPECT_FALSE(refused.created);
}

} // namespace
