// UnwritableRecordTest.cpp: checks of a folder while the database of saved e-mails can be read but not
// written.
#include "folders/CheckFolder.h"
#include "folders/Synchronise.h"
#include "tests/support/MemoryDatabase.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

TEST(UnwritableRecord, ACheckByFilesRecordsNothingAndSaysSo)
{
    const Text reason = u"The table has lost rows: it should have 5 and has 0",
               directory = u"C:\\Store\\Local Folders\\Inbox\\";
    OeBench bench({{u"Outlook Express", 0, {}},
                   {u"Local Folders", 1, {}},
                   {u"Inbox", 2, {MailRow(u"Mail 0"), MailRow(u"Mail 1")}}});
    bench.files.directories = {u"c:", u"c:\\store", FakeFiles::Key(directory)};
    bench.files.AddFile(directory + u"0000_a.eml",
                        "From: Ann Archer <ann@example.com>\r\nTo: bob@example.com\r\nSubject: Mail 0\r\n"
                        "Received: from a by b; Tue, 3 Apr 2007 10:16:00 +0000\r\n"
                        "Date: Tue, 3 Apr 2007 10:15:30 +0000\r\n\r\nText\r\n");
    bench.view.options.storeFolder = u"C:\\Store";
    MemoryRows rows;
    SavedEmails saved{std::make_unique<MemoryDatabase>(rows), reason};
    FolderRun run{bench.client, saved, bench.view, bench.files, bench.clock, bench.codePage, bench.locale};
    bench.fake.ShowFolder(2);
    Synchronise(run);

    const Text lost = u"Nothing is recorded: " + reason,
               closed = u"Nothing is recorded: the database of saved emails is not open";
    const struct {
        ComparisonType type;
        const char16_t* verdict;
        long lost, closed; // how often it is said
    } checks[] = {
        {ComparisonType::file, u"Inbox has 1 saved email(s). 1 email(s) not saved.", 1, 0},
        {ComparisonType::database, u"Inbox has 0 saved email(s). 2 email(s) not saved.", 0, 0},
        {ComparisonType::file, u"Inbox has 1 saved email(s). 1 email(s) not saved.", 0, 1},
    };
    for (const auto& check : checks) {
        if (check.closed != 0) CloseSavedEmails(saved);
        bench.view.options.comparison = check.type;
        bench.view.log.clear();
        CheckFolder(run);
        const std::vector<Text>& log = bench.view.log;
        EXPECT_EQ(log.back(), check.verdict);
        EXPECT_EQ(std::count(log.begin(), log.end(), lost), check.lost);
        EXPECT_EQ(std::count(log.begin(), log.end(), closed), check.closed);
        EXPECT_TRUE(rows.empty());
    }
}
