// JetRealFileTest.cpp: files made by the engine of the format's makers. QUILLBOX_SAMPLES names the folder
// in which they are; they are not part of the project.
#include "tests/support/JetSamples.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace {

std::string Sample(const std::string& name)
{
    const char* folder = std::getenv("QUILLBOX_SAMPLES");
    if (!folder) return {};
    std::ifstream file(std::string(folder) + "/mdb/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::vector<Text>> AllOf(JetDatabase& database, const Text& table)
{
    std::vector<std::vector<Text>> found;
    const auto rows = database.OpenRecordset(u"SELECT * FROM " + table);
    for (; !rows->AtEnd(); rows->MoveNext()) {
        std::vector<Text>& row = found.emplace_back();
        for (const Text& column : database.ColumnNames(table)) row.push_back(Value(*rows, column));
    }
    return found;
}

} // namespace

// What a new file holds of system tables is what a real one holds, but for bytes that real ones do not
// agree on either: left-overs in fields without meaning.
TEST(JetRealFile, NewSystemTablesEqualRealOnes)
{
    const std::string real = Sample("adox_jet4.mdb");
    if (real.empty()) GTEST_SKIP() << "QUILLBOX_SAMPLES is not set";
    const std::string made = SavedSample().Image().Bytes();
    // The header, MSysQueries, MSysRelationships, maps of the system tables, empty leaves.
    const std::vector<std::size_t> meaningless = {0x07A, 0x0C5, 0x0DE, 0x110, 0x19F,
                                                  0x1A5, 0x1AB, 0x1B7, 0x1B9}; // in MSysQueries
    for (const std::size_t page : {0, 4, 5, 6, 10, 11, 12, 13}) {
        for (std::size_t at = 0; at < 4096; ++at) {
            if (page == 4 && std::count(meaningless.begin(), meaningless.end(), at) > 0) continue;
            EXPECT_EQ(real[page * 4096 + at], made[page * 4096 + at]) << "page " << page << " at " << at;
        }
    }
    for (std::size_t page : {14, 15}) { // rows: fewer in the real one, the same bytes but for the dates
        for (std::size_t row = 0; row < (page == 14 ? 8u : 16u); ++row) {
            const std::size_t slot = page * 4096 + 14 + 2 * row;
            EXPECT_EQ(real.substr(slot, 2), made.substr(slot, 2)) << "page " << page << " row " << row;
        }
    }
    EXPECT_EQ(real.substr(15 * 4096 + 0xEE0),
              made.substr(15 * 4096 + 0xEE0, real.size() - 15 * 4096 - 0xEE0));
}

TEST(JetRealFile, OverflowRowsAreReadAddedAndDeleted)
{
    const std::string real = Sample("overflowTestV2000.mdb");
    if (real.empty()) GTEST_SKIP() << "QUILLBOX_SAMPLES is not set";
    SavedSample sample{MemoryImage(real)};
    std::unique_ptr<JetDatabase>& database = sample.database;
    const Rows expected = {
        {u"row1col1", u"", u"", u"", u"", u"", u"", u"", u""},
        {u"row2col1", u"row2col3", u"", u"", u"", u"", u"", u"", u""},
        {u"", u"row3col3", u"", u"", u"", u"", u"", u"row3col9", u""},
        {u"row4col1", u"row4col2", u"", u"", u"", u"", u"", u"", u""},
        {u"", u"row5col2", u"", u"", u"", u"", u"", u"", u""},
        {u"", u"row6col2", u"row6col3", u"", u"", u"", u"", u"", u""},
        {u"row7col1", u"", u"", u"", u"", u"row7col7", u"", u"", u""},
    };
    EXPECT_EQ(AllOf(*database, u"Table1"), expected);
    for (const char16_t* table : {u"MSysObjects", u"MSysACEs", u"MSysQueries", u"MSysRelationships"})
        EXPECT_NO_THROW(AllOf(*database, table)) << ToUtf8(table);

    const auto rows = database->OpenRecordset(u"SELECT * FROM Table1 WHERE data3='ROW3COL3'");
    ASSERT_FALSE(rows->AtEnd());
    rows->Delete(); // one that has moved
    rows->AddNew();
    rows->SetField(rows->Column(u"data10"), u"added");
    rows->Update();
    sample.Open();
    Rows changed = expected;
    changed.erase(changed.begin() + 2);
    changed.push_back({u"", u"", u"", u"", u"", u"", u"", u"", u"added"});
    EXPECT_EQ(AllOf(*database, u"table1"), changed);
}
