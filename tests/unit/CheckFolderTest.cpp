// CheckFolderTest.cpp: checking a folder of the fake client against files in memory and the record.
#include "folders/Comparison.h"
#include "oe/MessageDetails.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/RunBench.h"

namespace {

std::vector<std::vector<Text>> Inbox(int count)
{
    std::vector<std::vector<Text>> mails;
    for (int i = 0; i < count; ++i)
        mails.push_back(MailRow(u"Mail " + DecimalText(i), u"03/04/2007 10:1" + DecimalText(9 - i % 10)));
    return mails;
}

struct CheckFolderTest : testing::Test, RunBench {
    CheckFolderTest() : RunBench(Inbox(4), {{u"Empty", 2, {}}}) {}
    void Store(const Text& name, std::string bytes = "x")
    {
        files.directories.insert(FakeFiles::Key(kDirectory));
        files.AddFile(kDirectory + name, std::move(bytes));
    }
    std::string MailOf(int row) { return FakeClient::BytesOf(Mail()[static_cast<std::size_t>(row)]); }
    // The row as the program reads it.
    EmailEntry RowEntry(int row)
    {
        FindOeHandles(client);
        return ReadEntry(client, row);
    }
    // What was said last, in log and box alike.
    void ExpectVerdict(const Text& words, const char* why = "")
    {
        EXPECT_EQ(view.boxes, Texts{words}) << why;
        EXPECT_EQ(view.log.back(), words) << why;
        EXPECT_EQ(fake.LiveBlocks(), 0u);
    }
};

} // namespace

TEST_F(CheckFolderTest, AFolderWithoutFilesNeedsNoComparison)
{
    const std::pair<Text, Text> looked{u"", u"envelope"}, none{u"0/4", u"red"};
    const std::tuple<const char*, bool, int, Text, Marks> steps[] = {
        {"no directory", false, 2, u"Folder has not been stored.", {none}},
        {"no files", true, 2, u"No emails for this folder have been stored.", {looked, none}},
        {"nothing is missing", false, 3, u"Folder has not been stored.", {}},
        {"empty both", true, 3, u"No emails exist in this folder to be exported.", {looked}},
    };
    for (const auto& [why, hasDirectory, shown, words, marks] : steps) {
        SCOPED_TRACE(why);
        const Text directory = shown == 2 ? kDirectory : u"C:\\Store\\Local Folders\\Empty\\";
        if (hasDirectory) files.directories.insert(FakeFiles::Key(directory));
        fake.ShowFolder(shown);
        Check(ComparisonType::file);
        EXPECT_EQ(view.log, Texts{words});
        EXPECT_EQ(view.boxes, Texts{words + u"\r\n" + directory});
        EXPECT_EQ(view.summaryLines,
                  shown == 2 ? Texts{kInbox + u" - all 4 emails need to be exported."} : Texts{});
        EXPECT_EQ(view.marks, marks);
        EXPECT_EQ(view.selectedNode, shown) << "the node that is marked";
        EXPECT_EQ(view.selectedLine, shown);
    }
    EXPECT_EQ(view.currentFolder, u"Local Folders\\Empty");
}

TEST_F(CheckFolderTest, WithoutWhatItNeedsACheckSaysSo)
{
    view.options.storeFolder = u"";
    Check(ComparisonType::simple);
    EXPECT_TRUE(view.boxes.empty() && view.marks.empty()) << "no directory to look into";
    view.options.storeFolder = u"C:\\Store";

    Store(u"0000_a.eml");
    CloseSavedEmails(saved);
    Check();
    ExpectVerdict(u"Database error: the database of saved emails is not open");
    EXPECT_TRUE(view.results.empty());
    saved.database = OpenJetDatabase(databaseFiles, kSavedPath);

    const std::vector<OeFolder> known = client.lstTree;
    client.lstTree.clear();
    Check(ComparisonType::simple);
    EXPECT_EQ(view.boxes, Texts{u"Please ensure a folder has been selected in Outlook Express"});
    client.lstTree = known;

    view.onEvents = [this] {
        if (!view.shown.empty() && view.shown.back().starts_with(u"[1 of 3]")) fake.End();
    };
    Check();
    ExpectVerdict(kSilent, "the client closes while it is read");
    EXPECT_TRUE(view.results.empty()) << "what was not read is not an e-mail";
    EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"}}));
    view.onEvents = nullptr;
    Check(ComparisonType::simple);
    ExpectVerdict(kSilent);
    client.lstTree.clear();
    Check(ComparisonType::simple);
    EXPECT_TRUE(view.boxes.empty()) << "a client that was never seen has not stopped responding";
}

TEST_F(CheckFolderTest, AStopEndsTheCheckWithoutAVerdict)
{
    for (int i = 0; i < 3; ++i) Store(u"000" + DecimalText(i) + u"_a.eml", MailOf(i));
    // How often the window lives during each check, and so where a stop can come in between.
    for (const ComparisonType type :
         {ComparisonType::simple, ComparisonType::database, ComparisonType::file}) {
        int events = 0;
        view.onEvents = [&] { ++events; };
        Check(type);
        const int all = events;
        ASSERT_GE(all, 4);
        for (int stopAt = 1; stopAt < all; ++stopAt) {
            SCOPED_TRACE(testing::Message()
                         << "comparison " << static_cast<int>(type) << ", stop " << stopAt);
            events = 0;
            bool inFiles = false;
            view.onEvents = [&] {
                if (++events != stopAt) return;
                Stop();
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

TEST_F(CheckFolderTest, SimpleComparisonCountsFiles)
{
    Mail() = Inbox(10);
    for (int i = 0; i < 10; ++i)
        if (i != 3) Store(u"000" + DecimalText(i) + u"_a.eml");
    Store(u"0011_a.eml");
    Check(ComparisonType::simple);
    ExpectVerdict(u"Inbox has 10 saved email(s). All emails have been saved.",
                  "a missing file and a surplus one cancel out");
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"10/10", u"green"}));

    Store(u"0012_a.eml");
    Check(ComparisonType::simple);
    ExpectVerdict(u"Inbox has 11 saved email(s). All emails have been saved but there are 1 extra emails");
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"11/10", u""}));
    EXPECT_TRUE(view.summaryLines.empty());

    for (const Text name : {u"0000_a.eml", u"0011_a.eml", u"0012_a.eml"})
        files.files.erase(FakeFiles::Key(kDirectory + name));
    Check(ComparisonType::simple);
    ExpectVerdict(u"Inbox has 8 saved email(s). 2 email(s) not saved.");
    EXPECT_EQ(view.summaryLines, Texts{kInbox + u" - 2 email(s) not saved"});
    EXPECT_EQ(view.marks, (Marks{{u"", u"envelope"}, {u"8/10", u"yellow"}}));
    EXPECT_TRUE(view.results.empty());
    ASSERT_EQ(view.percentages.size(), 11u);
    EXPECT_EQ(view.percentages[4].second, 44);
    EXPECT_EQ(view.percentages[9].second, 100);
    EXPECT_EQ(view.percentages[10].second, 0) << "the bar is left empty";
}

TEST_F(CheckFolderTest, SimpleComparisonNotesTheFirstEmailWithoutFile)
{
    const std::tuple<const char*, Texts, std::int32_t, std::int32_t> cases[] = {
        {"the first is missing", {u"0001_a.eml"}, 2, 0},
        {"the last is missing", {u"0000_a.eml", u"0001.eml"}, 3, 2},
        {"names of the user's own count as files and for no e-mail", {u"0000_a.eml", u"copy.eml"}, 3, 1},
        {"five digits are not their first four", {u"0000_a.eml", u"00010_a.eml", u"10001_a.eml"}, 1002, 1},
        {"a short name", {u"0", u"1.eml"}, 3, 2},
        {"nothing unsaved: not looked for", {u"a.eml", u"b.eml"}, 2, -1},
    };
    view.options.comparison = ComparisonType::simple;
    for (const auto& [why, names, total, firstUnsaved] : cases)
        EXPECT_EQ(CompareFolder(run, total, names)->firstUnsaved, firstUnsaved) << why;
}

TEST_F(CheckFolderTest, DatabaseComparisonLooksCrcsUpInTheFolder)
{
    Store(u"0000_a.eml");
    Check();
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"0/4", u"red"})) << "files, but none recorded";
    AddSavedEmail(saved, kInbox, RowEntry(0));
    AddSavedEmail(saved, u"Local Folders\\Empty", RowEntry(1)); // of another folder
    AddSavedEmail(saved, kInbox, RowEntry(3));
    Check();
    const Text verdict = u"Inbox has 2 saved email(s). 2 email(s) not saved.";
    EXPECT_EQ(view.log, (Texts{u"Not saved 1 - Mail 1", u"Not saved 2 - Mail 2", verdict}))
        << "in the order of the list, though later rows are older";
    EXPECT_EQ(view.boxes, Texts{verdict});
    ASSERT_EQ(view.results.size(), 2u);
    EXPECT_EQ(view.results[1][1], u"2");
    EXPECT_EQ(view.results[0], (ResultsRow{kInbox, u"1", u"Mail 1", u"03/04/2007 10:18:00", RowEntry(1).Crc}))
        << "the later of the two dates";
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"2/4", u"yellow"}));
    auto from = view.shown.begin();
    for (const Text step : {u"[1 of 3] Reading Outlook Express emails...", u"[2 of 3] Caching database...",
                            u"[3 of 3] Comparing emails..."}) {
        from = std::find(from, view.shown.end(), step);
        EXPECT_NE(from, view.shown.end()) << ToUtf8(step);
    }
    EXPECT_EQ(Records().size(), 3u) << "this comparison writes nothing";
    EXPECT_EQ(CompareFolder(run, 4, {})->firstUnsaved, 1);

    for (int row : {1, 2}) AddSavedEmail(saved, kInbox, RowEntry(row));
    Check();
    ExpectVerdict(u"Inbox has 4 saved email(s). All emails have been saved.");
    EXPECT_EQ(CompareFolder(run, 4, {})->firstUnsaved, -1);
}

TEST_F(CheckFolderTest, FileComparisonReadsTheFilesAndMendsTheDatabase)
{
    Store(u"0000_a.eml", MailOf(0));
    Store(u"0001_a.eml", MailOf(1));
    Store(u"0002_a.eml",
          FakeClient::BytesOf(MailRow(u"Mail 2", u"03/04/2007 10:59"))); // another e-mail of that subject
    Store(u"0005_b.eml", "Subject: no date\r\n\r\n");
    Store(u"0006_c.eml", "Date: Tue, 99 Foo 2007 10:00:00\r\n\r\n");
    Store(u"0007_d.eml", MailOf(2));
    files.tooLarge = {FakeFiles::Key(kDirectory + u"0007_d.eml")};
    AddSavedEmail(saved, kInbox, RowEntry(1));
    AddSavedEmail(saved, u"Elsewhere", RowEntry(0));
    Check(ComparisonType::file);
    const Text verdict = u"Inbox has 2 saved email(s). 2 email(s) not saved.";
    EXPECT_EQ(view.log,
              (Texts{u"Ignoring dateless email: 0005_b.eml",
                     u"Ignoring unreadable email: 0006_c.eml (Type mismatch)",
                     u"Ignoring unreadable email: 0007_d.eml (There is not enough memory to read the file)",
                     kInbox + u" - 1 unsaved email(s).", u"Not saved 2 - Mail 2", u"Not saved 3 - Mail 3",
                     verdict}));
    EXPECT_EQ(view.results.size(), 2u);
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"2/4", u"yellow"}));
    ASSERT_EQ(Records().size(), 3u) << "what was not recorded under this folder is now, once";
    EXPECT_EQ(Records()[2][0] + Records()[2][1], kInbox + u"Mail 0");
    EXPECT_EQ(std::exchange(lookUps, 0), 1u) << "for that one";
    Check(ComparisonType::file);
    EXPECT_EQ(lookUps, 0u);
    EXPECT_EQ(Records().size(), 3u);

    CloseSavedEmails(saved);
    Check(ComparisonType::file);
    ExpectVerdict(verdict, "files can be compared without a database");
}

TEST_F(CheckFolderTest, FileComparisonTellsTheDifferenceOfTheCounts)
{
    for (int i = 0; i < 4; ++i) Store(u"000" + DecimalText(i) + u"_a.eml", MailOf(i));
    Check(ComparisonType::file);
    EXPECT_EQ(view.log.front(), kInbox + u" - count matches the number of saved emails.");
    ExpectVerdict(u"Inbox has 4 saved email(s). All emails have been saved.");
    std::vector<int> bar; // of three steps
    for (const auto& [which, percent] : view.percentages) bar.push_back(percent);
    EXPECT_EQ(bar, (std::vector<int>{0, 33, 67, 100, 0, 33, 67, 100, 0, 33, 67, 100, 0}));

    for (const Text name : {u"0004_a.eml", u"0005_a.eml"})
        Store(name, FakeClient::BytesOf(MailRow(u"Another")));
    Check(ComparisonType::file);
    EXPECT_EQ(view.log.front(), kInbox + u" - there are -2 more saved emails.") << "kept: the minus sign";
    EXPECT_EQ(view.marks.back(), (std::pair<Text, Text>{u"4/4", u"green"}))
        << "surplus files are no e-mails of the list";
}
