// CheckFolderTest.cpp: checking a folder of the fake client against files in memory and a real database.
#include "folders/CheckFolder.h"
#include "folders/Comparison.h"
#include "folders/Synchronise.h"
#include "oe/MessageDetails.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/JetSamples.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<Text>;
using Marks = std::vector<std::pair<Text, Text>>;
const Text kFolder = u"Local Folders\\Inbox";
const Text kDirectory = u"C:\\Store\\Local Folders\\Inbox\\";

std::vector<FakeFolder> Folders(int inboxCount)
{
    std::vector<std::vector<Text>> rows;
    for (int i = 0; i < inboxCount; ++i)
        rows.push_back(MailRow(u"Mail " + DecimalText(i), u"03/04/2007 10:1" + DecimalText(9 - i % 10)));
    return {{u"Outlook Express", 0, {}}, {u"Local Folders", 1, {}}, {u"Inbox", 2, rows}, {u"Empty", 2, {}}};
}

// A message as MailRow shows it.
std::string Message(const std::string& number, const std::string& minute)
{
    return "From: Ann Archer <ann@example.com>\r\nTo: bob@example.com\r\nSubject: Mail " + number +
           "\r\nReceived: from a by b; Tue, 3 Apr 2007 10:16:00 +0000\r\nDate: Tue, 3 Apr 2007 10:" + minute +
           ":30 +0000\r\n\r\nText\r\n";
}

struct CheckFolderTest : testing::Test, OeBench {
    explicit CheckFolderTest(int inboxCount = 4) : OeBench(Folders(inboxCount))
    {
        files.directories = {u"c:", u"c:\\store"};
        view.options.storeFolder = u"C:\\Store";
        CreateSaved(databaseFiles);
        saved.database = OpenJetDatabase(databaseFiles, kSavedPath);
        fake.ShowFolder(2);
        Synchronise(run);
    }
    void Store(const Text& name, std::string bytes = "x")
    {
        files.directories.insert(FakeFiles::Key(kDirectory));
        files.AddFile(kDirectory + name, std::move(bytes));
    }
    void Check(ComparisonType type)
    {
        view.options.comparison = type;
        view.log.clear();
        view.shown.clear();
        view.boxes.clear();
        view.marks.clear();
        view.summaryLines.clear();
        view.results.clear();
        CheckFolder(run);
        EXPECT_EQ(fake.LiveBlocks(), 0u);
    }
    // The row as the program reads it.
    EmailEntry RowEntry(int row)
    {
        FindOeHandles(client);
        ReadFolderEntries(client, [](int) {});
        for (const EmailEntry& entry : client.folderEntries)
            if (entry.row == row) return entry;
        return {};
    }
    // What was said last, in log and box alike.
    Text Verdict() const
    {
        if (view.boxes.size() != 1 || view.log.empty())
            return u"(" + DecimalText(std::ssize(view.boxes)) + u" boxes)";
        return view.log.back() == view.boxes[0] ? view.boxes[0] : u"(" + view.log.back() + u" in the log)";
    }
    Texts ResultIds() const
    {
        Texts ids;
        for (const ResultsRow& row : view.results) ids.push_back(row[1]);
        return ids;
    }

    MemoryFiles databaseFiles;
    SavedEmails saved;
    FolderRun run{client, saved, view, files, clock, codePage, locale};
};

struct TenEmailsTest : CheckFolderTest {
    TenEmailsTest() : CheckFolderTest(10) {}
};

struct ManyEmailsTest : CheckFolderTest {
    ManyEmailsTest() : CheckFolderTest(240) {}
};

} // namespace

TEST_F(CheckFolderTest, AFolderWithoutFilesNeedsNoComparison)
{
    Check(ComparisonType::file);
    EXPECT_EQ(view.log, Texts{u"Folder has not been stored."});
    EXPECT_EQ(view.boxes, Texts{u"Folder has not been stored.\r\n" + kDirectory});
    EXPECT_EQ(view.summaryLines, Texts{kFolder + u" - all 4 emails need to be exported."});
    EXPECT_EQ(view.marks, (Marks{{u"0/4", u"red"}}));
    EXPECT_EQ(view.selectedNode, 2) << "the node that is marked";
    EXPECT_EQ(view.selectedLine, 2);

    files.directories.insert(FakeFiles::Key(kDirectory));
    Check(ComparisonType::file);
    EXPECT_EQ(view.boxes, Texts{u"No emails for this folder have been stored.\r\n" + kDirectory});
    EXPECT_EQ(view.summaryLines, Texts{kFolder + u" - all 4 emails need to be exported."});
    EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"}, {u"0/4", u"red"}}));

    fake.ShowFolder(3);
    Check(ComparisonType::file);
    EXPECT_EQ(view.boxes, Texts{u"Folder has not been stored.\r\nC:\\Store\\Local Folders\\Empty\\"});
    EXPECT_TRUE(view.summaryLines.empty() && view.marks.empty()) << "nothing is missing";

    files.directories.insert(u"c:\\store\\local folders\\empty");
    Check(ComparisonType::file);
    EXPECT_EQ(view.log, Texts{u"No emails exist in this folder to be exported."});
    EXPECT_EQ(view.boxes,
              Texts{u"No emails exist in this folder to be exported.\r\nC:\\Store\\Local Folders\\Empty\\"});
    EXPECT_EQ(view.currentFolder, u"Local Folders\\Empty");
}

TEST_F(CheckFolderTest, WithoutWhatItNeedsACheckSaysSo)
{
    const Text silent = u"Outlook Express has stopped responding - please restart Outlook Express.";
    view.options.storeFolder = u"";
    Check(ComparisonType::simple);
    EXPECT_TRUE(view.boxes.empty() && view.marks.empty()) << "no directory to look into";
    view.options.storeFolder = u"C:\\Store";

    Store(u"0000_a.eml");
    CloseSavedEmails(saved);
    Check(ComparisonType::database);
    EXPECT_EQ(Verdict(), u"Database error: the database of saved emails is not open");
    EXPECT_TRUE(view.results.empty());
    saved.database = OpenJetDatabase(databaseFiles, kSavedPath);

    view.onEvents = [this] {
        if (!view.shown.empty() && view.shown.back().starts_with(u"[1 of 3]"))
            static_cast<FakeClient&>(fake).Close();
    };
    Check(ComparisonType::database);
    EXPECT_EQ(Verdict(), silent) << "the client closes while it is read";
    EXPECT_TRUE(view.results.empty()) << "what was not read is not an e-mail";
    EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"}}));

    view.onEvents = nullptr;
    Check(ComparisonType::simple);
    EXPECT_EQ(Verdict(), silent);
}

TEST_F(CheckFolderTest, AStopEndsTheCheckWithoutAVerdict)
{
    for (char16_t n = u'0'; n < u'3'; ++n)
        Store(u"000" + Text(1, n) + u"_a.eml", Message(std::string(1, static_cast<char>(n)), "10"));
    // How often the window lives during each check, and so where a stop can come in between.
    for (const ComparisonType type :
         {ComparisonType::simple, ComparisonType::database, ComparisonType::file}) {
        int events = 0;
        flags = {};
        view.onEvents = [&] { ++events; };
        Check(type);
        const int all = events;
        ASSERT_GE(all, 4);
        for (int stopAt = 1; stopAt < all; ++stopAt) {
            SCOPED_TRACE(testing::Message()
                         << "comparison " << static_cast<int>(type) << ", stop " << stopAt);
            flags = {};
            events = 0;
            bool inFiles = false;
            view.onEvents = [&] {
                if (++events != stopAt) return;
                flags.stopAfterEmail = flags.stopRequested = true;
                inFiles = !view.shown.empty() && view.shown.back().starts_with(u"[2 of 3]");
            };
            Check(type);
            EXPECT_LE(events, stopAt + 5) << "nothing more is done than what is under way";
            EXPECT_EQ(view.log.back(), u"User aborted on email export.");
            EXPECT_TRUE(view.boxes.empty() && view.summaryLines.empty());
            EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"}})) << "nothing is said of the folder";
            EXPECT_TRUE(!inFiles || view.log.size() == 1) << "no difference to a part of the files";
        }
    }
}

TEST_F(CheckFolderTest, WithoutFoldersNothingIsSelected)
{
    client.lstTree.clear();
    Check(ComparisonType::simple);
    EXPECT_EQ(view.boxes, Texts{u"Please ensure a folder has been selected in Outlook Express"});
    static_cast<FakeClient&>(fake).Close();
    Check(ComparisonType::simple);
    EXPECT_TRUE(view.boxes.empty()) << "a client that was never seen has not stopped responding";
}

TEST_F(TenEmailsTest, SimpleComparisonCountsFiles)
{
    for (int i = 0; i < 10; ++i)
        if (i != 3) Store(u"000" + DecimalText(i) + u"_a.eml");
    Store(u"0011_a.eml");
    Check(ComparisonType::simple);
    EXPECT_EQ(Verdict(), u"Inbox has 10 saved email(s). All emails have been saved.")
        << "a missing file and a surplus one cancel out";
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"10/10", u"green"}));

    Store(u"0012_a.eml");
    Check(ComparisonType::simple);
    EXPECT_EQ(Verdict(),
              u"Inbox has 11 saved email(s). All emails have been saved but there are 1 extra emails");
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"11/10", u""}));
    EXPECT_TRUE(view.summaryLines.empty());

    for (const Text name : {u"0000_a.eml", u"0011_a.eml", u"0012_a.eml"})
        files.files.erase(FakeFiles::Key(kDirectory + name));
    view.percentages.clear();
    Check(ComparisonType::simple);
    EXPECT_EQ(Verdict(), u"Inbox has 8 saved email(s). 2 email(s) not saved.");
    EXPECT_EQ(view.summaryLines, Texts{kFolder + u" - 2 email(s) not saved"});
    EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"}, {u"8/10", u"yellow"}}));
    EXPECT_TRUE(view.results.empty());
    ASSERT_EQ(view.percentages.size(), 11u);
    EXPECT_EQ(view.percentages[4].second, 44);
    EXPECT_EQ(view.percentages[9].second, 100);
    EXPECT_EQ(view.percentages[10].second, 0) << "the bar is left empty";
}

TEST_F(CheckFolderTest, SimpleComparisonNotesTheFirstEmailWithoutFile)
{
    const struct {
        const char* why;
        Texts names;
        std::int32_t total, firstUnsaved;
    } cases[] = {
        {"the first is missing", {u"0001_a.eml"}, 2, 0},
        {"the last is missing", {u"0000_a.eml", u"0001.eml"}, 3, 2},
        {"names of the user's own count as files and for no e-mail", {u"0000_a.eml", u"copy.eml"}, 3, 1},
        {"five digits are not the first four of them",
         {u"0000_a.eml", u"00010_a.eml", u"10001_a.eml"},
         1002,
         1},
        {"a short name", {u"0", u"1.eml"}, 3, 2},
        {"nothing unsaved: not looked for", {u"a.eml", u"b.eml"}, 2, -1},
    };
    view.options.comparison = ComparisonType::simple;
    for (const auto& c : cases)
        EXPECT_EQ(CompareFolder(run, c.total, c.names)->firstUnsaved, c.firstUnsaved) << c.why;
}

TEST_F(CheckFolderTest, DatabaseComparisonLooksCrcsUpInTheFolder)
{
    Store(u"0000_a.eml");
    AddSavedEmail(saved, kFolder, RowEntry(0));
    AddSavedEmail(saved, u"Local Folders\\Empty", RowEntry(1)); // of another folder
    AddSavedEmail(saved, kFolder, RowEntry(3));
    Check(ComparisonType::database);
    const Text verdict = u"Inbox has 2 saved email(s). 2 email(s) not saved.";
    EXPECT_EQ(view.log, (Texts{u"Not saved 1 - Mail 1", u"Not saved 2 - Mail 2", verdict}))
        << "in the order of the list, though later rows are older";
    EXPECT_EQ(view.boxes, Texts{verdict});
    ASSERT_EQ(ResultIds(), (Texts{u"1", u"2"}));
    EXPECT_EQ(view.results[0],
              (ResultsRow{kFolder, u"1", u"Mail 1", u"03/04/2007 10:18:00", RowEntry(1).Crc}))
        << "the later of the two dates";
    EXPECT_EQ(view.results[1][3], u"03/04/2007 10:17:00");
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"2/4", u"yellow"}));
    const Texts steps = {u"[1 of 3] Reading Outlook Express emails...", u"[2 of 3] Caching database...",
                         u"[3 of 3] Comparing emails..."};
    auto from = view.shown.begin();
    for (const Text& step : steps) {
        from = std::find(from, view.shown.end(), step);
        EXPECT_NE(from, view.shown.end()) << ToUtf8(step);
    }
    EXPECT_EQ(RowsOf(*saved.database).size(), 3u) << "this comparison writes nothing";
    EXPECT_EQ(CompareFolder(run, 4, {})->firstUnsaved, 1);

    for (int row : {1, 2}) AddSavedEmail(saved, kFolder, RowEntry(row));
    Check(ComparisonType::database);
    EXPECT_EQ(Verdict(), u"Inbox has 4 saved email(s). All emails have been saved.");
    EXPECT_EQ(CompareFolder(run, 4, {})->firstUnsaved, -1);

    databaseFiles = {};
    CreateSaved(databaseFiles);
    saved.database.reset();
    saved.database = OpenJetDatabase(databaseFiles, kSavedPath);
    Check(ComparisonType::database);
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"0/4", u"red"})) << "files, but none recorded";
}

TEST_F(CheckFolderTest, FileComparisonReadsTheFilesAndMendsTheDatabase)
{
    Store(u"0000_a.eml", Message("0", "19"));
    Store(u"0001_a.eml", Message("1", "18"));
    Store(u"0002_a.eml", Message("2", "59")); // another e-mail of that subject
    Store(u"0005_b.eml", "Subject: no date\r\n\r\n");
    Store(u"0006_c.eml", "Date: Tue, 99 Foo 2007 10:00:00\r\n\r\n");
    AddSavedEmail(saved, kFolder, RowEntry(1));
    Check(ComparisonType::file);
    const Text verdict = u"Inbox has 2 saved email(s). 2 email(s) not saved.";
    EXPECT_EQ(view.log, (Texts{u"Ignoring dateless email: 0005_b.eml",
                               u"Ignoring unreadable email: 0006_c.eml (Type mismatch)",
                               kFolder + u" - 1 unsaved email(s).", u"Not saved 2 - Mail 2",
                               u"Not saved 3 - Mail 3", verdict}));
    EXPECT_EQ(ResultIds(), (Texts{u"2", u"3"}));
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"2/4", u"yellow"}));
    const Text crc0 = RowEntry(0).Crc, crc1 = RowEntry(1).Crc;
    EXPECT_EQ(RowsOf(*saved.database),
              (std::vector<Texts>{{kFolder, u"Mail 1", crc1}, {kFolder, u"Mail 0", crc0}}))
        << "what was not recorded is now, once";
    Check(ComparisonType::file);
    EXPECT_EQ(RowsOf(*saved.database).size(), 2u);

    CloseSavedEmails(saved);
    Check(ComparisonType::file);
    EXPECT_EQ(Verdict(), verdict) << "files can be compared without a database";
}

TEST_F(CheckFolderTest, AFileThatDoesNotFitIntoMemoryEndsNoCheck)
{
    for (const Text n : {u"0", u"1", u"2", u"3"})
        Store(u"000" + n + u"_a.eml", Message(ToUtf8(n), "1" + std::to_string(9 - (n[0] - u'0'))));
    files.tooLarge = {FakeFiles::Key(kDirectory + u"0001_a.eml")};
    Check(ComparisonType::file);
    EXPECT_EQ(view.log,
              (Texts{u"Ignoring unreadable email: 0001_a.eml (There is not enough memory to read the file)",
                     kFolder + u" - 1 unsaved email(s).", u"Not saved 1 - Mail 1",
                     u"Inbox has 3 saved email(s). 1 email(s) not saved."}));
    EXPECT_EQ(ResultIds(), Texts{u"1"});
}

TEST_F(CheckFolderTest, ARowThatCannotBeReadIsNotSaved)
{
    // A sent message, say: what is unread would have its dates, which are none.
    Store(u"0002_a.eml", "Date: Tue, 3 Apr 2007 10:16:30 +0000\r\n\r\n");
    fake.unread = {2};
    Check(ComparisonType::file);
    EXPECT_EQ(view.log[view.log.size() - 3], u"Not saved 2 - ");
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"0/4", u"red"}));
    EXPECT_TRUE(RowsOf(*saved.database).empty());
}

TEST_F(CheckFolderTest, FileComparisonTellsTheDifferenceOfTheCounts)
{
    for (char n = '0'; n < '4'; ++n)
        Store(u"000" + Text(1, static_cast<char16_t>(n)) + u"_a.eml",
              Message(std::string(1, n), std::to_string(19 - (n - '0'))));
    Check(ComparisonType::file);
    EXPECT_EQ(view.log.front(), kFolder + u" - count matches the number of saved emails.");
    EXPECT_EQ(Verdict(), u"Inbox has 4 saved email(s). All emails have been saved.");

    Store(u"0004_a.eml", Message("9", "10"));
    Store(u"0005_a.eml", Message("9", "10"));
    Check(ComparisonType::file);
    EXPECT_EQ(view.log.front(), kFolder + u" - there are -2 more saved emails.");
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"4/4", u"green"}))
        << "surplus files are no e-mails of the list";
}

TEST_F(ManyEmailsTest, FilesBeyondNumber9999AreFoundInTheirPlace)
{
    for (int i = 0; i < 240; ++i) {
        const Text number = DecimalText(9880 + i);
        Store(number + u"_a.eml", Message(std::to_string(i), std::to_string(19 - i % 10)));
    }
    Check(ComparisonType::file);
    EXPECT_EQ(Verdict(), u"Inbox has 240 saved email(s). All emails have been saved.")
        << "a search goes back 100 files at the most";
}
