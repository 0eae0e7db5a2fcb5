// JetDatabaseTest.cpp: the embedded engine from outside: recordsets on files in memory.
#include "tests/support/JetSamples.h"

#include <gtest/gtest.h>

TEST(JetDatabase, AddedRowsAreReadBack)
{
    const Rows rows = {
        {u"Inbox", u"Hello", u"CBF43926"},
        {u"Local Folders\\O'Brien", u"say \"hi\"", u"0"},
        {Text(255, u'\x0436'), u"\x0416\x4E2D\xD83D\xDE00 \xE9\xFF", u"FFFFFFFF"}, // the longest folder
        {u"ab", u"", u"1A2B"}, // too short to be compressed; no subject
        {u"\x0100\x0200 zero low bytes", u"tab\tline\r\nend", u"1"},
        {u"nul", Text(u"a\0b", 3), u"2"}, // cannot be compressed
        {u"Inbox", Text(64, u'\xE9'), u"3"},
        {u"Inbox", Text(62, u'm'), u"4"}, // the last that stands in its row, and the next
        {u"Inbox", Text(63, u'm'), u"5"},
        {u"Inbox", Text(3000, u'x'), u"6"},
        {u"Inbox", Text(20000, u'\x4E2D'), u"7"},
        {u"Inbox", Text(1024, u'n'), u"8"}, // the last that is compressed, and the next
        {u"Inbox", Text(1025, u'n'), u"9"},
    };
    // Subjects are compressed whatever their column says of it: this program's older files say yes.
    std::vector<std::uint64_t> sizes;
    for (const char compressed : {'\0', '\1'}) {
        SavedSample sample;
        constexpr std::uint64_t kSubject = kDefinition * jet::kPageSize + 63 + 25, kFlag = kSubject + 16;
        EXPECT_EQ(sample.Image().Bytes()[kFlag], '\0');
        sample.Image().Write(kFlag, &compressed, 1);
        sample.Open();
        sample.Add(rows);
        EXPECT_EQ(RowsOf(*sample.database), rows);
        sample.Open();
        EXPECT_EQ(RowsOf(*sample.database), rows);
        sizes.push_back(sample.Image().Size());
    }
    EXPECT_EQ(sizes, std::vector(2, std::uint64_t{32} * 4096));
}

TEST(JetDatabase, NewFileIsReadyForUse)
{
    SavedSample sample;
    MemoryFiles& files = sample.files;
    EXPECT_EQ(files.files.size(), 1u) << "nothing is left of the making";
    EXPECT_EQ(sample.Image().Size(), 18u * 4096);
    EXPECT_EQ(sample.database->ColumnNames(u"SAVED"), (std::vector<Text>{u"efolder", u"esubject", u"ecrc"}));
    const auto rows = sample.database->OpenRecordset(u"SELECT * FROM saved");
    EXPECT_TRUE(rows->AtEnd() && rows->AtBeginning());
    EXPECT_THROW(rows->MoveNext(), DatabaseError);
    EXPECT_THROW(Value(*rows, u"ecrc"), DatabaseError);
    EXPECT_THROW(rows->Update(), DatabaseError);
    EXPECT_THROW(rows->SetField(rows->Column(u"ecrc"), u"1"), DatabaseError);

    const Text other = u"other.mdb";
    EXPECT_THROW(CreateSaved(files), DatabaseError) << "an existing file is not replaced";
    for (const char16_t* bad : {u"CREATE TABLE t (a TEXT(256))", u"CREATE TABLE na\xEFve (a MEMO)"})
        EXPECT_THROW(CreateJetDatabase(files, other, bad, kSampleDate), DatabaseError) << ToUtf8(bad);
    EXPECT_THROW(OpenJetDatabase(files, other), DatabaseError);
    EXPECT_EQ(files.files.size(), 1u);

    const Text own = Text(kSavedPath) + u".new"; // somebody's
    files.Rename(kSavedPath, own);
    CreateSaved(files);
    EXPECT_EQ(files.files.size(), 2u);
    EXPECT_TRUE(files.FileExists(own)) << "it is no rest of a making that was cut off";
}

TEST(JetDatabase, FindsByTextWithoutRegardToCase)
{
    SavedSample sample;
    sample.Add({{u"Inbox", u"a", u"A1"},
                {u"INBOX", u"b", u"B2"},
                {u"K\xD6LN", u"c", u"A1"},
                {u"", u"d", u"a1"},
                {u"O'Brien \x0416", u"e", u"C3"}});
    const auto subjects = [&](const Text& where) {
        std::string found;
        for (const auto& row : RowsOf(*sample.database, u"SELECT * FROM saved WHERE " + where))
            found += ToUtf8(row[1]);
        return found;
    };
    const std::tuple<const char16_t*, const char*> cases[] = {
        {u"ecrc='A1'", "acd"},
        {u"(ecrc='a1') AND (efolder='inbox')", "a"},
        {u"efolder='inBox'", "ab"},
        {u"efolder='o''brien \x0436'", "e"},
        {u"efolder='Inbo'", ""},
        {u"efolder=''", "d"},
        {u"ecrc='A1' AND ecrc='B2'", ""},
        {u"efolder='k\xF6ln' AND ecrc='A1' AND esubject='C'", "c"},
    };
    for (int pass = 0; pass < 2; ++pass) // reading the table for the index, then with it
        for (const auto& [condition, want] : cases) EXPECT_EQ(subjects(condition), want) << ToUtf8(condition);

    sample.Add({{u"inbox", u"f", u"A1"}}); // the index follows what is added and deleted
    for (int crc = 0; crc < 100; ++crc) AddRow(*sample.database, {u"other", u"x", DecimalText(crc)});
    sample.database->OpenRecordset(u"SELECT * FROM saved WHERE esubject='a'")->Delete();
    EXPECT_EQ(subjects(u"ecrc='A1'"), "cdf");
    EXPECT_EQ(subjects(u"efolder='Inbox'"), "bf");
}

TEST(JetDatabase, LookupsDoNotReadTheTableAgain)
{
    SavedSample sample(WithRows(30000));
    const auto has = [&](int crc) {
        return !sample.database->OpenRecordset(u"SELECT * FROM saved WHERE ecrc='" + DecimalText(crc) + u"'")
                    ->AtEnd();
    };
    EXPECT_TRUE(has(0)); // reads the whole table
    ASSERT_GT(sample.Image().Size() / 4096, 1500u);
    sample.files.reads = 0;
    for (int crc = 0; crc < 30000; crc += 300) EXPECT_TRUE(has(crc) && !has(crc + 30000));
    EXPECT_LE(sample.files.reads, 200u) << "a page for each that is found, if the cache has lost it";
}

TEST(JetDatabase, OrdersByFoldedTextsAndThenByPlace)
{
    SavedSample sample;
    sample.Add({{u"b", u"1", u"B"},
                {u"a", u"2", u"B"},
                {u"A", u"3", u"b"},
                {u"z", u"4", u"A"},
                {u"a", u"5", u"B"},
                {u"", u"6", u"B"}});
    const auto order = [&](const Text& clauses) {
        std::string subjects;
        for (const auto& row : RowsOf(*sample.database, u"SELECT * FROM saved " + clauses))
            subjects += ToUtf8(row[1]);
        return subjects;
    };
    EXPECT_EQ(order(u"ORDER BY ecrc, efolder"), "462351");
    EXPECT_EQ(order(u"WHERE ecrc='b' AND efolder='A' ORDER BY ecrc"), "235");
}

// Without its end a batch deletes nothing; and nothing twice.
TEST(JetDatabase, ABatchThatIsGivenUpDeletesNothing)
{
    SavedSample sample(WithRows(5));
    const std::string before = sample.Image().Bytes();
    const auto rows = sample.database->OpenRecordset(u"SELECT * FROM saved");
    {
        const auto batch = sample.database->BeginDeletions();
        rows->Delete();
        rows->Delete();
        EXPECT_THROW(batch->Store(), DatabaseError) << "the same row";
    }
    {
        const auto batch = sample.database->BeginDeletions();
        rows->Delete();
    }
    EXPECT_TRUE(sample.Image().Bytes() == before);
    EXPECT_EQ(Value(*rows, u"ecrc"), u"0");
    rows->Delete();
    EXPECT_EQ(RowsOf(*sample.database).size(), 4u) << "at once again";
    EXPECT_THROW(Value(*rows, u"ecrc"), DatabaseError) << "gone, though it was read before";
}

// What cannot be read is no answer, however often it is asked for; nor is the row before it one.
TEST(JetDatabase, ARowThatIsNotThereIsNotTakenForAnother)
{
    MemoryImage image = WithRows(40);
    constexpr std::uint64_t kSubjects = 19, kMoreRows = 20;
    image.Write(kSubjects * jet::kPageSize + 15, "\xC0", 1); // deletes the one of the row 1
    image.Write(kMoreRows * jet::kPageSize, "\x09", 1);
    SavedSample sample(image);
    const auto rows = sample.database->OpenRecordset(u"SELECT * FROM saved");
    for (int row = 0; row < 17; ++row, rows->MoveNext()) EXPECT_EQ(Value(*rows, u"ecrc"), DecimalText(row));
    for (int time = 0; time < 2; ++time) EXPECT_THROW((void)rows->AtEnd(), DatabaseError) << "damaged";

    image.Write(kMoreRows * jet::kPageSize, "\x01", 1);
    SavedSample other(image);
    const auto found = other.database->OpenRecordset(u"SELECT * FROM saved WHERE ecrc='1' AND esubject='x'");
    for (int time = 0; time < 2; ++time) EXPECT_THROW((void)found->AtEnd(), DatabaseError) << "damaged";

    SavedSample whole(WithRows(3));
    const auto left = whole.database->OpenRecordset(u"SELECT * FROM saved");
    EXPECT_FALSE(left->AtEnd());
    whole.Delete(u"1");
    EXPECT_EQ(Value(*left, u"ecrc"), u"0");
    left->MoveNext();
    for (int time = 0; time < 2; ++time) EXPECT_THROW(Value(*left, u"ecrc"), DatabaseError) << "deleted";
}

TEST(JetDatabase, RoomOfDeletedRowsIsFilledAndNoMore)
{
    SavedSample sample(WithRows(40));
    for (const int crc : {35, 36, 37}) sample.Delete(DecimalText(crc));
    for (int crc = 100; crc < 160; ++crc)
        AddRow(*sample.database, {kLongFolder, Text(100, u's'), DecimalText(crc)});
    sample.Open();
    EXPECT_EQ(RowsOf(*sample.database).size(), 97u);
    EXPECT_EQ(sample.database->PrepareForWriting(u"saved", {}).refusal, u"");
}

TEST(JetDatabase, TextsThatDoNotFitAreRefusedAndNothingIsStored)
{
    SavedSample sample;
    const std::string before = sample.Image().Bytes();
    for (const std::vector<Text>& row : {std::vector<Text>{Text(256, u'f'), u"s", u"1"},
                                         {u"f", Text(5000, u's'), u"123456789"},
                                         {u"\xFEFFmarked", u"s", u"1"}}) // would not be found again
        EXPECT_THROW(AddRow(*sample.database, row), DatabaseError) << ToUtf8(row[0]);
    EXPECT_TRUE(sample.Image().Bytes() == before);
    sample.Add({{Text(255, u'f'), u"s", u"12345678"}});
    EXPECT_EQ(RowsOf(*sample.database), (Rows{{Text(255, u'f'), u"s", u"12345678"}}));
}

TEST(JetDatabase, StatementsThatDoNotFitTheTableAreRefused)
{
    SavedSample sample(WithRows(1));
    Database& database = *sample.database;
    for (const char16_t* sql : {u"SELECT * FROM other", u"SELECT eid FROM saved",
                                u"SELECT * FROM saved WHERE eid='1'", u"SELECT * FROM saved ORDER BY eid",
                                u"SELECT * FROM MSysObjects WHERE Id='2'", u"UPDATE saved SET ecrc='1'"})
        EXPECT_THROW(database.OpenRecordset(sql), DatabaseError) << ToUtf8(sql);
    const auto rows = database.OpenRecordset(u"SELECT ecrc FROM saved");
    EXPECT_THROW(Value(*rows, u"efolder"), DatabaseError);
    const auto system = database.OpenRecordset(u"SELECT * FROM MSysObjects");
    EXPECT_THROW(system->Delete(), DatabaseError);
    system->AddNew();
    system->SetField(system->Column(u"Name"), u"x");
    EXPECT_THROW(system->Update(), DatabaseError);

    database.Close();
    EXPECT_THROW(Value(*rows, u"ecrc"), DatabaseError);
    EXPECT_THROW(AddRow(database, {u"f", u"s", u"2"}), DatabaseError);

    sample.Image().Write(3 * 4096 + 40, "\x4E", 1); // a table with an index becomes a user's
    sample.Open();
    EXPECT_EQ(sample.database->PrepareForWriting(u"MSysACEs", {}).refusal,
              u"The table has an index or a key, which would not be kept up to date");
    const auto rights = sample.database->OpenRecordset(u"SELECT * FROM MSysACEs");
    EXPECT_FALSE(rights->AtEnd());
    EXPECT_THROW(rights->Delete(), DatabaseError);
}

TEST(JetDatabase, DeletedRowsMakeRoomForOthers)
{
    for (const bool openedAgain : {false, true}) {
        SavedSample sample;
        std::uint64_t size = 0;
        for (int round = 0; round < 2; ++round) {
            for (int i = 0; i < 200; ++i) sample.Add({{kLongFolder, Text(100, u's'), DecimalText(i)}});
            if (round == 0) size = sample.Image().Size();
            for (int i = 0; i < 200; ++i) sample.Delete(DecimalText(i));
            if (openedAgain) sample.Open();
        }
        EXPECT_LE(sample.Image().Size(), size + 2 * jet::kPageSize) << openedAgain;
    }
}
