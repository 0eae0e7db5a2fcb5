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
