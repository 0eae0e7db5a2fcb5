// JetCodecTest.cpp: texts, rows, data pages and usage maps against bytes written by hand.
#include "jet/RowCodec.h"
#include "jet/UsageMap.h"
#include "tests/support/Case.h"
#include "tests/support/JetSamples.h"

#include <gtest/gtest.h>

using namespace jet;

namespace {

std::string Hex(std::string_view bytes)
{
    std::string hex;
    for (char byte : bytes)
        for (const int shift : {4, 0}) hex += "0123456789ABCDEF"[byte >> shift & 0xF];
    return hex;
}

std::string Unhex(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

TableDefinition ThreeTexts()
{
    TableDefinition table;
    table.mostColumns = table.variableColumns = 3;
    for (std::uint16_t number = 0; number < 3; ++number) {
        Column& column = table.columns.emplace_back();
        column.type = ColumnType::text;
        column.number = column.variableIndex = number;
        column.length = 510;
        column.mayBeNull = column.compressed = true;
    }
    return table;
}

} // namespace

TEST(JetCodec, TextsAreCompressedWhereTheyCanBe)
{
    const std::tuple<const char*, Text, Compression, std::string> cases[] = {
        {"three characters are compressed", u"abc", Compression::compressed, "FFFE616263"},
        {"two are not", u"ab", Compression::compressed, "61006200"},
        {"the last narrow character", u"ab\xFF", Compression::compressed, "FFFE6162FF"},
        {"one character too wide", u"ab\x100", Compression::compressed, "610062000001"},
        {"a NUL would end the narrow run", Text(u"a\0b", 3), Compression::compressed, "610000006200"},
        {"a column without compression", u"abc", Compression::plain, "610062006300"},
        {"a pair of surrogates is two units", u"\xD83D\xDE00", Compression::compressed, "3DD800DE"},
        {"a leading byte order mark would read as compression", u"\xFEFF\xFEFFxy", Compression::plain,
         "78007900"},
    };
    for (const auto& [why, text, compression, want] : cases)
        EXPECT_EQ(Hex(EncodeText(text, compression)), want) << why;
}

TEST(JetCodec, CompressedRunsTakeTurns)
{
    const Case<std::string, Text> cases[] = {
        {"runs take turns: narrow, wide, narrow", "FFFE6100300431040062", u"a\x0430\x0431\x62"},
        {"beginning wide", "FFFE003004", u"\x0430"},
        {"the mark alone", "FFFE", u""},
    };
    for (const auto& c : cases) EXPECT_EQ(DecodeText(ByteView(Unhex(c.given), 1)), c.want) << c.why;
    for (const char* cut : {"610062", "61", "FFFE0030"})
        EXPECT_THROW(DecodeText(ByteView(Unhex(cut), 1)), DatabaseError) << cut;
}

TEST(JetCodec, RowsAreReadBackAndDamagedOnesRefused)
{
    const TableDefinition table = ThreeTexts();
    const std::string row = EncodeRow(
        table, {EncodeText(u"ab", Compression::compressed), EncodeText(u"abc", Compression::compressed), {}});
    EXPECT_EQ(Hex(row), "030061006200FFFE6162630B000B0006000200030003");
    const Row read(table, ByteView(row, 1));
    EXPECT_EQ(Hex(read.Cell(table.columns[1]).value_or("none")), "FFFE616263");
    EXPECT_FALSE(read.Cell(table.columns[2]));

    const std::string shorter = Unhex("01006100620006000200010001");
    const Row fewer(table, ByteView(shorter, 1));
    EXPECT_EQ(Hex(fewer.Cell(table.columns[0]).value_or("none")), "61006200");
    EXPECT_FALSE(fewer.Cell(table.columns[2])) << "a row older than the column";

    for (const char* bad :
         {"", "03", "0000", "0400616203", "030003", "0300FFFF03",
          "030061006200FFFE6162630B000B0006000200090003",  // nine columns of varying length
          "030061006200FFFE6162630B00060007000200030003",  // overlap: the second and the third,
          "030061006200FFFE6162630B000B0006000700030003",  // the first and the second
          "030061006200FFFE616263FF000B0006000200030003"}) // ends outside
        EXPECT_THROW(Row(table, ByteView(Unhex(bad), 1)), DatabaseError) << bad;
}

TEST(JetCodec, APageThatIsHeldStaysAsItWas)
{
    MemoryFiles files;
    CreateSaved(files);
    PageFile file = OpenPages(files);
    PageRef hold;
    (void)file.View(kMaps, hold);
    const ByteView page = file.View(kDefinition, hold);
    EXPECT_EQ(page.Bytes().data(), hold->data()) << "held in place of the one before";
    file.Write(kDefinition, std::string(kPageSize, 'x'));
    EXPECT_EQ(page.U8(0), 2);
    EXPECT_EQ(file.View(kDefinition, hold).U8(0), 'x');
}

TEST(JetCodec, RowsComeAndGoInTheirPage)
{
    std::string page = NewDataPage(7);
    EXPECT_EQ(FreeSpaceIn(ByteView(page, 3)), 4096u - 14 - 2);
    for (const char* row : {"first", "second!", "third"}) AddRow(page, row);
    ReplaceRow(page, 0, "a longer first", 0);
    EXPECT_EQ(RowAt(ByteView(page, 3), 0).Bytes(), "a longer first");
    EXPECT_EQ(RowAt(ByteView(page, 3), 2).Bytes(), "third");
    EXPECT_NO_THROW(CheckDirectory(ByteView(page, 3)));
    const std::string bytes = page.substr(kSectorSize);
    const std::tuple<std::size_t, std::size_t> deletions[] = {
        {1, 0}, {2, 12}, {0, 26}}; // rows in the way keep the bytes of those before them
    for (const auto& [slot, freeAgain] : deletions) {
        DeleteRow(page, slot);
        EXPECT_EQ(SlotAt(ByteView(page, 3), slot).flags, kDeleted);
        EXPECT_EQ(FreeSpaceIn(ByteView(page, 3)), 4096u - 14 - 3 * 2 - 26 - 2 + freeAgain);
        EXPECT_NO_THROW(CheckDirectory(ByteView(page, 3)));
    }
    EXPECT_EQ(page.substr(kSectorSize), bytes) << "no other sector than the first changes";

    const struct {
        const char* why;
        std::size_t start, slot; // of the second row; which one is refused
    } misplaced[] = {{"a row behind the one before it", 4097, 1},
                     {"a row in the directory", 15, 1},
                     {"a row that ends behind the page", 5000, 2}};
    for (const auto& c : misplaced) {
        std::string bad = page;
        Put16(bad, 16, c.start);
        EXPECT_THROW((void)SlotAt(ByteView(bad, 3), c.slot), DatabaseError) << c.why;
        EXPECT_THROW(CheckDirectory(ByteView(bad, 3)), DatabaseError) << c.why;
    }
    while (SlotCount(ByteView(page, 3)) < (512 - 14) / 2) AddRow(page, "");
    EXPECT_FALSE(FreeSpaceIn(ByteView(page, 3))) << "the entry would stand in the second sector";
}
