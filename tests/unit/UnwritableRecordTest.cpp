// UnwritableRecordTest.cpp: checks of a folder while the database of saved e-mails can be read but not
// written.
#include "folders/CheckFolder.h"
#include "folders/Synchronise.h"
#include "store/SavedEmails.h"
#include "tests/support/JetSamples.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<Text>;
const Text kFolder = u"Local Folders\\Inbox", kDirectory = u"C:\\Store\\Local Folders\\Inbox\\";
const Text kReason = u"The table has lost rows: it should have 5 and has 0";

struct UnwritableRecordTest : testing::Test, OeBench {
    UnwritableRecordTest()
        : OeBench({{u"Outlook Express", 0, {}},
                   {u"Local Folders", 1, {}},
                   {u"Inbox", 2, {MailRow(u"Mail 0"), MailRow(u"Mail 1")}}})
    {
        files.directories = {u"c:", u"c:\\store", FakeFiles::Key(kDirectory)};
        files.AddFile(kDirectory + u"0000_a.eml",
                      "From: Ann Archer <ann@example.com>\r\nTo: bob@example.com\r\nSubject: Mail 0\r\n"
                      "Received: from a by b; Tue, 3 Apr 2007 10:16:00 +0000\r\n"
                      "Date: Tue, 3 Apr 2007 10:15:30 +0000\r\n\r\nText\r\n");
        view.options.storeFolder = u"C:\\Store";
        CreateSaved(databaseFiles);
        databaseFiles[kSavedPath].Write(16 * 4096 + 16, "\5\0\0\0", 4);
        before = databaseFiles[kSavedPath].Bytes();
        EXPECT_EQ(OpenSavedEmails(
                      saved, databaseFiles, kSavedPath,
                      {{nullptr, [this](const Text& path) { return OpenJetDatabase(databaseFiles, path); }}}),
                  u"");
        fake.ShowFolder(2);
        Synchronise(run);
    }
    const Texts& Check(ComparisonType type)
    {
        view.options.comparison = type;
        view.log.clear();
        CheckFolder(run);
        return view.log;
    }

    MemoryFiles databaseFiles;
    std::string before;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};
};

} // namespace

TEST_F(UnwritableRecordTest, ACheckByFilesRecordsNothingAndSaysSo)
{
    EXPECT_EQ(saved.whyReadOnly, kReason);
    const Text verdict = u"Inbox has 1 saved email(s). 1 email(s) not saved.";
    const auto count = [this](const Text& line) {
        return std::count(view.log.begin(), view.log.end(), line);
    };
    Check(ComparisonType::file);
    EXPECT_EQ(view.log.back(), verdict);
    EXPECT_EQ(count(u"Nothing is recorded: " + kReason), 1);
    Check(ComparisonType::database);
    EXPECT_EQ(view.log.back(), u"Inbox has 0 saved email(s). 2 email(s) not saved.") << "it is still read";
    EXPECT_EQ(count(u"Nothing is recorded: " + kReason), 0) << "this check never records";

    CloseSavedEmails(saved);
    EXPECT_TRUE(databaseFiles[kSavedPath].Bytes() == before);
    Check(ComparisonType::file);
    EXPECT_EQ(view.log.back(), verdict);
    EXPECT_EQ(count(u"Nothing is recorded: the database of saved emails is not open"), 1);
}
