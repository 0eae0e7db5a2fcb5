// JetDatabaseTest.cpp: the embedded engine from outside: recordsets on files in memory.
#include "jet/JetDatabase.h"
#include "tests/support/JetSamples.h"

#include <gtest/gtest.h>

using Rows = std::vector<std::vector<Text>>;

TEST(JetDatabase, AddedRowsAreReadBack)
{
    const Text longest(255, u'\x0436'), paged(3000, u'x'), chained(20000, u'\x4E2D');
    const Rows rows = {
        {u"Inbox", u"Hello", u"CBF43926"},
        {u"Local Folders\\O'Brien", u"say \"hi\"", u"0"},
        {longest, u"\x0416\x4E2D\xD83D\xDE00 \xE9\xFF", u"FFFFFFFF"}, // the longest folder, all scripts
        {u"ab", u"", u"1A2B"}, // too short to be compressed; no subject
        {u"\x0100\x0200 zero low bytes", u"tab\tline\r\nend", u"1"},
        {u"nul", Text(u"a\0b", 3), u"2"}, // cannot be compressed
        {u"Inbox", Text(64, u'\xE9'), u"3"},
        {u"Inbox", Text(62, u'm'), u"4"}, // the last that stands in its row, and the next
        {u"Inbox", Text(63, u'm'), u"5"},
        {u"Inbox", paged, u"6"},
        {u"Inbox", chained, u"7"},
        {u"Inbox", Text(1024, u'n'), u"8"}, // the last that is compressed, and the next
        {u"Inbox", Text(1025, u'n'), u"9"},
    };
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    for (const std::vector<Text>& row : rows) AddRow(*database, row);
    EXPECT_EQ(RowsOf(*database), rows);
    database.reset();
    EXPECT_EQ(RowsOf(*OpenJetDatabase(files, kSavedPath)), rows);
}

TEST(JetDatabase, NewFileIsReadyForUse)
{
    MemoryFiles files;
    CreateSaved(files);
    EXPECT_EQ(files.files.size(), 1u) << "nothing is left of the making";
    EXPECT_EQ(files[kSavedPath].Size(), 18u * 4096);
    auto database = OpenJetDatabase(files, kSavedPath);
    EXPECT_EQ(database->ColumnNames(u"SAVED"), (std::vector<Text>{u"efolder", u"esubject", u"ecrc"}));
    const auto rows = database->OpenRecordset(u"SELECT * FROM saved");
    EXPECT_TRUE(rows->AtEnd() && rows->AtBeginning());
    EXPECT_THROW(rows->MoveNext(), DatabaseError);
    EXPECT_THROW(rows->Field(u"ecrc"), DatabaseError);
    EXPECT_THROW(rows->Update(), DatabaseError);
    EXPECT_THROW(rows->SetField(u"ecrc", u"1"), DatabaseError);

    MemoryFiles again = files;
    EXPECT_THROW(CreateSaved(again), DatabaseError) << "an existing file is not replaced";
    for (const char16_t* odd : {u"CREATE TABLE t (a TEXT(256))", u"CREATE TABLE na\xEFve (a MEMO)"})
        EXPECT_THROW(CreateJetDatabase(files, u"other.mdb", odd, kSampleDate), DatabaseError);
    EXPECT_EQ(files.files.size(), 1u);
}

TEST(JetDatabase, FindsByTextWithoutRegardToCase)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    const Rows rows = {{u"Inbox", u"a", u"A1"},
                       {u"INBOX", u"b", u"B2"},
                       {u"Sent", u"c", u"A1"},
                       {u"", u"d", u"a1"},
                       {u"O'Brien \x0416", u"e", u"C3"}};
    for (const std::vector<Text>& row : rows) AddRow(*database, row);
    struct Case {
        Text where;
        std::string subjects;
    };
    const Case cases[] = {
        {u"ecrc='A1'", "acd"},
        {u"(ecrc='a1') AND (efolder='inbox')", "a"},
        {u"efolder='inBox'", "ab"},
        {u"efolder='o''brien \x0436'", "e"},
        {u"efolder='Inbo'", ""},
        {u"efolder=''", "d"},
        {u"ecrc='A1' AND ecrc='B2'", ""},
        {u"esubject='C' AND ecrc='A1' AND efolder='SENT'", "c"},
    };
    const auto subjects = [&](const Case& c) {
        std::string found;
        for (const std::vector<Text>& row : RowsOf(*database, u"SELECT * FROM saved WHERE " + c.where))
            found += ToUtf8(row[1]);
        return found;
    };
    for (int pass = 0; pass < 2; ++pass) // reading the table for the index, then with it
        for (const Case& c : cases) EXPECT_EQ(subjects(c), c.subjects) << ToUtf8(c.where);

    AddRow(*database, {u"inbox", u"f", u"A1"}); // the index follows what is added and deleted
    database->OpenRecordset(u"SELECT * FROM saved WHERE esubject='a'")->Delete();
    EXPECT_EQ(subjects({u"ecrc='A1'", ""}), "cdf");
    EXPECT_EQ(subjects({u"efolder='Inbox'", ""}), "bf");
}

TEST(JetDatabase, LookupsDoNotReadTheTableAgain)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    for (int i = 0; i < 30000; ++i) AddRow(*database, {u"Folder " + Text(200, u'x'), u"", DecimalText(i)});
    database = OpenJetDatabase(files, kSavedPath);
    const auto has = [&](int crc) {
        return !database->OpenRecordset(u"SELECT * FROM saved WHERE ecrc='" + DecimalText(crc) + u"'")
                    ->AtEnd();
    };
    EXPECT_TRUE(has(0)); // reads the whole table
    const std::size_t pages = files[kSavedPath].Size() / 4096;
    ASSERT_GT(pages, 1500u);
    files.reads = 0;
    for (int crc = 0; crc < 30000; crc += 300) EXPECT_TRUE(has(crc) && !has(crc + 30000));
    EXPECT_LE(files.reads, 200u) << "a page for each that is found, if the cache has lost it";
}

TEST(JetDatabase, OrdersByFoldedTextsAndThenByPlace)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    const Rows rows = {{u"b", u"1", u"B"}, {u"a", u"2", u"B"}, {u"A", u"3", u"b"},
                       {u"z", u"4", u"A"}, {u"a", u"5", u"B"}, {u"", u"6", u"B"}};
    for (const std::vector<Text>& row : rows) AddRow(*database, row);
    std::string order;
    const auto sorted = database->OpenRecordset(u"SELECT esubject FROM saved ORDER BY ecrc, efolder");
    for (; !sorted->AtEnd(); sorted->MoveNext()) order += ToUtf8(sorted->Field(u"esubject"));
    EXPECT_EQ(order, "462351");
}

TEST(JetDatabase, DeletedRowsKeepTheirPlaceUntilTheNext)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    for (int i = 0; i < 400; ++i)
        AddRow(*database, {u"f", Text(static_cast<std::size_t>(i) * 20, u'x'), DecimalText(i)});
    int place = 0;
    const auto rows = database->OpenRecordset(u"SELECT * FROM saved");
    for (; !rows->AtEnd(); rows->MoveNext(), ++place) {
        if (place % 3 == 0) continue;
        rows->Delete();
        EXPECT_THROW(rows->Delete(), DatabaseError);
        EXPECT_THROW(rows->Field(u"ecrc"), DatabaseError);
    }
    EXPECT_EQ(place, 400);
    const std::uint64_t size = files[kSavedPath].Size();
    for (int i = 0; i < 40; ++i) AddRow(*database, {u"f", Text(100, u'y'), u"new"});
    EXPECT_EQ(files[kSavedPath].Size(), size) << "the room of deleted rows is used";
    database = OpenJetDatabase(files, kSavedPath);
    const Rows found = RowsOf(*database);
    ASSERT_EQ(found.size(), 134u + 40u);
    EXPECT_EQ(RowsOf(*database, u"SELECT * FROM saved WHERE ecrc='399'"),
              (Rows{{u"f", Text(399 * 20, u'x'), u"399"}}));
}

TEST(JetDatabase, TextsThatDoNotFitAreRefusedAndNothingIsStored)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    const std::string before = files[kSavedPath].Bytes();
    EXPECT_THROW(AddRow(*database, {Text(256, u'f'), u"s", u"1"}), DatabaseError);
    EXPECT_THROW(AddRow(*database, {u"f", Text(5000, u's'), u"123456789"}), DatabaseError);
    EXPECT_THROW(AddRow(*database, {u"\xFEFFmarked", u"s", u"1"}), DatabaseError)
        << "it would not be found again";
    EXPECT_TRUE(files[kSavedPath].Bytes() == before);
    AddRow(*database, {Text(255, u'f'), u"s", u"12345678"});
    EXPECT_EQ(RowsOf(*database), (Rows{{Text(255, u'f'), u"s", u"12345678"}}));
}

TEST(JetDatabase, StatementsThatDoNotFitTheTableAreRefused)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    AddRow(*database, {u"f", u"s", u"1"});
    for (const char16_t* sql : {u"SELECT * FROM other", u"SELECT eid FROM saved",
                                u"SELECT * FROM saved WHERE eid='1'", u"SELECT * FROM saved ORDER BY eid",
                                u"SELECT * FROM MSysObjects WHERE Id='2'", u"UPDATE saved SET ecrc='1'"})
        EXPECT_THROW(database->OpenRecordset(sql), DatabaseError) << ToUtf8(sql);
    const auto rows = database->OpenRecordset(u"SELECT ecrc FROM saved");
    EXPECT_THROW(rows->Field(u"efolder"), DatabaseError);
    const auto system = database->OpenRecordset(u"SELECT * FROM MSysObjects");
    EXPECT_THROW(system->Delete(), DatabaseError);
    system->AddNew();
    system->SetField(u"Name", u"x");
    EXPECT_THROW(system->Update(), DatabaseError);

    database->Close();
    EXPECT_THROW(rows->Field(u"ecrc"), DatabaseError);
    EXPECT_THROW(AddRow(*database, {u"f", u"s", u"2"}), DatabaseError);
}

TEST(JetDatabase, ReadOnlyFilesAreReadAndLeftAlone)
{
    MemoryFiles files;
    CreateSaved(files);
    AddRow(*OpenJetDatabase(files, kSavedPath), {u"f", u"s", u"1"});
    files[kSavedPath].Write(files[kSavedPath].Size(), "partial", 7);
    const std::string before = files[kSavedPath].Bytes();
    auto database = OpenJetDatabase(files, kSavedPath, OpenMode::read);
    EXPECT_EQ(RowsOf(*database), (Rows{{u"f", u"s", u"1"}}));
    EXPECT_THROW(AddRow(*database, {u"f", u"s", u"2"}), DatabaseError);
    EXPECT_THROW(database->OpenRecordset(u"SELECT * FROM saved")->Delete(), DatabaseError);
    database.reset();
    EXPECT_TRUE(files[kSavedPath].Bytes() == before);
    EXPECT_THROW(OpenJetDatabase(files, u"missing.mdb"), DatabaseError);
}

// What a table may be like that the engine reads but does not write.
TEST(JetDatabase, TablesThatCannotBeKeptConsistentAreReadOnly)
{
    MemoryFiles files;
    CreateSaved(files);
    AddRow(*OpenJetDatabase(files, kSavedPath), {u"f", u"s", u"1"});
    constexpr std::uint64_t kColumns = 16 * 4096 + 63; // records of 25 bytes
    struct Case {
        const char* why;
        std::uint64_t at;
        int byte;
        const char* words;
    };
    const Case cases[] = {
        {"a column that numbers itself", kColumns + 15, 0x06,
         "The column efolder numbers its rows itself, which is not supported"},
        {"two columns in one place", kColumns + 2 * 25 + 7, 0,
         "The column ecrc has no place of its own in a row"},
        {"a table of the system", 16 * 4096 + 40, 0x53, "Tables of the database system are not written"},
        {"two uses of a map", 16 * 4096 + 59, 0,
         "The database is damaged (page 17): a usage map has two uses"},
    };
    for (const Case& c : cases) {
        MemoryFiles changed;
        changed[kSavedPath] = files[kSavedPath];
        const char byte = static_cast<char>(c.byte);
        changed[kSavedPath].Write(c.at, &byte, 1);
        auto database = OpenJetDatabase(changed, kSavedPath);
        EXPECT_EQ(RowsOf(*database).size(), 1u) << c.why;
        try {
            AddRow(*database, {u"f", u"s", u"2"});
            ADD_FAILURE() << c.why;
        } catch (const DatabaseError& error) {
            EXPECT_STREQ(error.what(), c.words) << c.why;
        }
        EXPECT_THROW(database->OpenRecordset(u"SELECT * FROM saved")->Delete(), DatabaseError) << c.why;
    }
    const char user = 0x4E; // a table with an index that is not the system's
    files[kSavedPath].Write(3 * 4096 + 40, &user, 1);
    auto database = OpenJetDatabase(files, kSavedPath);
    const auto rights = database->OpenRecordset(u"SELECT * FROM MSysACEs");
    EXPECT_FALSE(rights->AtEnd());
    EXPECT_THROW(rights->Delete(), DatabaseError);
}

// A damaged page must stop the writing before it makes things worse, and must not stop the reading of others.
TEST(JetDatabase, DamageIsNamedAndNotWrittenTo)
{
    MemoryFiles files;
    CreateSaved(files);
    {
        auto database = OpenJetDatabase(files, kSavedPath);
        for (int i = 0; i < 300; ++i) AddRow(*database, {u"f", Text(100, u'\x0416'), DecimalText(i)});
    }
    struct Case {
        const char* why;
        std::uint64_t at;
        std::string bytes;
    };
    // Page 17 has the maps, 18 the first subjects, 19 the first rows.
    const Case cases[] = {
        {"not a page of rows any more", 19 * 4096, std::string(1, '\x09')},
        {"rows of something else", 19 * 4096 + 4, std::string(1, '\x02')},
        {"more rows than fit", 19 * 4096 + 12, std::string(2, '\xFF')},
        {"a row that is no row", 19 * 4096 + 4090, std::string(6, '\xFF')},
        {"a wrong figure of free bytes", 19 * 4096 + 2, std::string(2, '\x70')},
        {"a map with pages behind the end", 17 * 4096 + 4096 - 69 + 60, std::string(1, '\x01')},
        {"a deleted map", 17 * 4096 + 15, std::string(1, '\xC0')},
        {"subjects that are none any more", 18 * 4096, std::string(1, '\x09')},
        {"a deleted subject", 18 * 4096 + 15, std::string(1, '\xC0')},
    };
    for (const Case& c : cases) {
        MemoryFiles damaged;
        damaged[kSavedPath] = files[kSavedPath];
        damaged[kSavedPath].Write(c.at, c.bytes.data(), c.bytes.size());
        const std::string before = damaged[kSavedPath].Bytes();
        auto database = OpenJetDatabase(damaged, kSavedPath);
        try {
            AddRow(*database, {u"f", u"s", u"x"});
            ADD_FAILURE() << c.why;
        } catch (const DatabaseError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with("The database is damaged (page 1"))
                << error.what();
        }
        EXPECT_TRUE(damaged[kSavedPath].Bytes() == before) << c.why;
    }
}
