// JetCrashTest.cpp: the program is ended, or the disk fails, between any two writes of the engine: the file
// opens again and holds every row that was added.
#include "jet/TableWriter.h"
#include "jet/UsageMap.h"
#include "tests/support/JetSamples.h"
#include "tests/support/PowerCut.h"

#include <functional>
#include <gtest/gtest.h>

using namespace jet;

namespace {

Rows Sorted(Rows rows)
{
    std::sort(rows.begin(), rows.end());
    return rows;
}

Rows RowsIn(const MemoryImage& image)
{
    SavedSample sample(image, OpenMode::read);
    const Rows rows = Sorted(RowsOf(*sample.database));
    EXPECT_EQ(sample.files.changes, 0u) << "reading writes nothing";
    return rows;
}

std::uint32_t CountedRows(MemoryFiles& files)
{
    PageFile file = OpenPages(files);
    return ReadTableDefinition(file, kDefinition).rowCount;
}

// Whether the map of free pages calls the page free, told from its bytes.
bool IsFree(PageFile& file, PageNumber page)
{
    PageRef hold;
    const ByteView map = RowAt(file.View(1, hold), 0);
    if (map.U8(0) == 0) return page / 8 + 5 >= map.Size() || (map.U8(page / 8 + 5) >> page % 8 & 1);
    const PageNumber bits = map.U32(1 + page / 32736 * 4), index = page % 32736;
    return bits == 0 || (file.View(bits, hold).U8(4 + index / 8) >> index % 8 & 1);
}

// What a stop may leave: pages in use by nobody, never pages called free that somebody uses.
void ExpectNothingInUseIsFree(const MemoryImage& image)
{
    MemoryFiles files;
    files[kSavedPath] = image;
    PageFile file = OpenPages(files);
    const TableDefinition table = ReadTableDefinition(file, kDefinition);
    for (RowId map : {table.ownedMap, table.freeMap, table.columns[1].ownedMap, table.columns[1].freeMap}) {
        for (PageNumber page : PagesOf(file, map)) EXPECT_FALSE(IsFree(file, page)) << page;
        PageRef hold;
        const ByteView row = RowAt(file.View(map.page, hold), map.slot);
        for (std::size_t at = 1; row.U8(0) == 1 && at + 4 <= row.Size(); at += 4)
            EXPECT_TRUE(row.U32(at) == 0 || !IsFree(file, row.U32(at))) << row.U32(at);
    }
}

// Pages of long values are in the map of their column.
void ExpectListed(MemoryFiles& files)
{
    PageFile file = OpenPages(files);
    const Table table(file, kDefinition);
    const Column& subject = table.Definition().columns[1];
    const std::vector<PageNumber> listed = PagesOf(file, subject.ownedMap);
    StoredRow stored;
    for (RowId id : table.Rows()) {
        ASSERT_TRUE(table.Fetch(id, stored));
        const auto cell = Row(table.Definition(), stored.bytes).Cell(subject);
        if (!cell) continue;
        const LongValue value(file, ByteView(*cell, id.page));
        for (RowId place : value.Places())
            EXPECT_TRUE(std::binary_search(listed.begin(), listed.end(), place.page)) << place.page;
    }
}

// Opens the state that a stop left, and works on with it.
void ExpectSound(const MemoryImage& image, const Rows& expected)
{
    SavedSample sample(image);
    EXPECT_LE(CountedRows(sample.files), expected.size()) << "a count too large would tell of lost rows";
    EXPECT_EQ(sample.database->PrepareForWriting(u"saved", {}).refusal, u"");
    EXPECT_EQ(Sorted(RowsOf(*sample.database)), expected);
    EXPECT_EQ(CountedRows(sample.files), expected.size()) << "corrected on opening";
    ExpectListed(sample.files);
    sample.Add({{u"after the stop", Text(100, u'\x0416'), u"AFTER"}});
    EXPECT_EQ(RowsOf(*sample.database).size(), expected.size() + 1);
    EXPECT_EQ(CountedRows(sample.files), expected.size() + 1);
    EXPECT_EQ(sample.Image().Size() % kPageSize, 0u);
    sample.Open();
    EXPECT_EQ(sample.database->PrepareForWriting(u"saved", {}).notes, std::vector<Text>{}) << "mended once";
}

struct Scenario {
    const char* name;
    MemoryImage start;
    int newPages;
    std::function<void(Database&)> operation; // adds or deletes one row
};

MemoryImage Lengthened(MemoryImage image, PageNumber pages) // by free ones
{
    image.Resize(std::uint64_t{pages} * kPageSize);
    return image;
}

// As an update in place leaves it: the row's bytes stand on another page.
void MoveRow(PageFile& file, RowId from, PageNumber to)
{
    std::string page = *file.Read(to), oldPage = *file.Read(from.page);
    const std::uint8_t target = AddRow(page, RowAt(ByteView(oldPage, from.page), from.slot).Bytes());
    Put16(page, 14 + 2 * std::size_t{target}, SlotAt(ByteView(page, to), target).start | kTarget);
    std::string pointer;
    Append32(pointer, ToPointer({to, target}));
    ReplaceRow(oldPage, from.slot, pointer + "left", kLookup);
    file.Write(to, page);
    file.Write(from.page, oldPage);
}

// The last row has moved to the table's first page and, if they are crossed, a row of that page to where it
// was.
MemoryImage WithMovedRow(bool areCrossed)
{
    SavedSample sample(WithRows(20));
    sample.Delete(u"16"); // its last: there is room now
    PageFile file = OpenPages(sample.files);
    std::vector<RowId> rows = Table(file, kDefinition).Rows();
    MoveRow(file, rows.back(), rows.front().page);
    if (areCrossed) MoveRow(file, rows.front(), rows.back().page);
    return sample.Image();
}

std::function<void(Database&)> Add(const Text& subject)
{
    return [subject](Database& database) { AddRow(database, {Text(200, u'\x0416'), subject, u"NEW"}); };
}

std::function<void(Database&)> DeleteOf(const Text& crc)
{
    return [crc](Database& database) {
        database.OpenRecordset(u"SELECT * FROM saved WHERE ecrc='" + crc + u"'")->Delete();
    };
}

std::vector<Scenario> Scenarios()
{
    SavedSample memos;
    memos.Add({{u"f", u"s", u"0"}, {u"f", Text(30000, u'c'), u"1"}, {u"f", Text(600, u'p'), u"2"}});
    const MemoryImage withMemos = memos.Image();
    // Files in which the map of free pages is a long row, and some are free.
    const auto withLongMap = [](PageNumber pages) {
        SavedSample sample(Lengthened(WithRows(0), pages));
        sample.Add({{u"f", u"s", u"0"}});
        return sample.Image();
    };
    return {
        {"the first row", WithRows(0), 1, Add(u"s")},
        {"a row on an existing page", WithRows(3), 0, Add(u"s")},
        {"a row on a new page", WithRows(16), 1, Add(u"s")},
        {"the first long subject", WithRows(0), 2, Add(Text(500, u'p'))},
        {"a long subject on a page with others", withMemos, 0, Add(Text(400, u'p'))},
        {"a long subject and a new page", WithRows(16), 2, Add(Text(3000, u'p'))},
        {"a subject on new and old pages, and a new page", WithRows(16), 2, Add(Text(2100, u'c'))},
        {"a subject of many pages", WithRows(3), 9, Add(Text(20000, u'c'))},
        {"an empty map moves, the map of free pages grows", Lengthened(WithRows(0), 600), 2,
         Add(Text(500, u'p'))},
        {"maps become lists", Lengthened(WithRows(16), 700), 5, Add(Text(3000, u'p'))},
        {"the maps of long subjects become lists", Lengthened(withMemos, 700), 3, Add(Text(1000, u'p'))},
        {"the map of free pages grows again", withLongMap(543), 1, Add(Text(500, u'p'))},
        {"the map of free pages becomes a list", Lengthened(withLongMap(31000), 32500), 11,
         Add(Text(20000, u'c'))},
        {"a second page of bits", Lengthened(WithRows(16), 32734), 20, Add(Text(20000, u'c'))},
        {"a row is deleted", WithRows(20), 0, DeleteOf(u"0")},
        {"the last row is deleted", WithRows(1), 0, DeleteOf(u"0")},
        {"a long subject is deleted", withMemos, 0, DeleteOf(u"2")},
        {"a subject of many pages is deleted", withMemos, 0, DeleteOf(u"1")},
        {"a moved row is deleted", WithMovedRow(false), 0, DeleteOf(u"19")},
    };
}

} // namespace

// The program is ended, or the power goes: of what was written since the last flush any part may be on the
// disk. The next operation begins before the last one's leftovers are.
TEST(JetCrash, AStopAtAnyMomentLosesNoRow)
{
    std::size_t states = 0;
    for (const Scenario& scenario : Scenarios()) {
        SCOPED_TRACE(scenario.name);
        SavedSample sample(scenario.start);
        MemoryFiles& files = sample.files;
        std::vector<Rows> after = {RowsIn(scenario.start)}; // so many operations
        std::vector<std::size_t> flushed; // the changes that were flushed when each was done
        files.record = true;
        for (const auto& operation : {scenario.operation, Add(u"and another")}) {
            operation(*sample.database);
            flushed.push_back(files.flushedAt.back());
            after.push_back(RowsIn(sample.Image()));
            ASSERT_NE(after.back(), *(after.end() - 2));
            if (after.size() == 2) {
                EXPECT_EQ((sample.Image().Size() - scenario.start.Size()) / kPageSize,
                          static_cast<std::uint64_t>(scenario.newPages));
            }
        }
        PowerCuts(scenario.start, files).ForEach([&](const MemoryImage& image, std::size_t onDisk) {
            const auto reported = std::upper_bound(flushed.begin(), flushed.end(), onDisk) - flushed.begin();
            const Rows found = RowsIn(image);
            EXPECT_NE(std::find(after.begin() + reported, after.end(), found), after.end())
                << "what was reported stays so, and nothing else comes or goes";
            ExpectNothingInUseIsFree(image);
            ExpectSound(image, found);
            ++states;
        });
    }
    EXPECT_GE(states, 1000u);
}

// Several rows at once, two of which have moved to each other's page: each goes alone or with others, none
// comes back, and the table never counts more than it has.
TEST(JetCrash, AStopInABatchLosesNoOtherRow)
{
    SavedSample sample(WithMovedRow(true));
    MemoryFiles& files = sample.files;
    Database* const database = sample.database.get();
    for (int i = 20; i < 120; ++i) AddRow(*database, {u"f", Text(100 + i % 5 * 900u, u'l'), DecimalText(i)});
    const MemoryImage start = files[kSavedPath];
    const Rows before = RowsIn(start);
    files.record = true;
    files.flushes = 0;
    {
        const auto batch = database->BeginDeletions();
        const auto rows = database->OpenRecordset(u"SELECT * FROM saved");
        const auto unstored = files.changes;
        for (; !rows->AtEnd(); rows->MoveNext())
            if (Value(*rows, u"ecrc").back() != u'7') rows->Delete();
        EXPECT_EQ(files.changes, unstored) << "gathered";
        batch->Store();
    }
    EXPECT_EQ(files.flushes, 6u) << "two for each that has moved";
    const Rows after = RowsIn(files[kSavedPath]);
    EXPECT_EQ(after.size(), 12u);
    EXPECT_EQ(CountedRows(files), 12u);
    std::size_t left = before.size(), flushed = 0;
    PowerCuts(start, files).ForEach([&](const MemoryImage& image, std::size_t onDisk) {
        const Rows found = RowsIn(image);
        if (onDisk > flushed) left = found.size(); // the next part of the batch
        flushed = onDisk;
        EXPECT_LE(found.size(), left) << "none comes back";
        EXPECT_TRUE(std::includes(found.begin(), found.end(), after.begin(), after.end()));
        EXPECT_TRUE(std::includes(before.begin(), before.end(), found.begin(), found.end()));
        ExpectSound(image, found);
    });
    EXPECT_EQ(flushed, files.flushedAt.back());
}

TEST(JetCrash, AStopWhileMakingTheFileLeavesNoneOrAll)
{
    MemoryFiles files;
    files.record = true;
    CreateSaved(files);
    EXPECT_EQ(files.flushedAt, std::vector{files.history.size() - 1}) << "before it gets its name";
    std::size_t complete = 0;
    for (const auto& state : files.history) {
        MemoryFiles again;
        for (const auto& [path, image] : state) again[path] = image;
        if (again.FileExists(kSavedPath))
            ++complete;
        else
            CreateSaved(again); // what the stop left does not stand in the way
        ExpectSound(again[kSavedPath], {});
    }
    EXPECT_EQ(complete, 1u);
}

TEST(JetCrash, AFailedWriteIsReportedAndLosesNoRow)
{
    for (const bool forGood : {false, true}) {
        for (const Scenario& scenario : Scenarios()) {
            SCOPED_TRACE(scenario.name);
            const Rows before = RowsIn(scenario.start);
            for (std::size_t n = 1;; ++n) {
                SavedSample sample(scenario.start);
                MemoryFiles& files = sample.files;
                std::unique_ptr<JetDatabase>& database = sample.database;
                RowsOf(*database, u"SELECT * FROM saved WHERE ecrc='0'"); // so that there is an index
                files.failAt = files.changes + n;
                files.failForGood = forGood;
                files.tornBytes = forGood ? 0 : 1000;
                bool reported = true;
                try {
                    scenario.operation(*database);
                } catch (const DatabaseError&) {
                    reported = false;
                }
                if (reported && files.changes < files.failAt) break; // no change was left to fail
                EXPECT_FALSE(reported) << "change " << n;
                files.failForGood = false;
                const Rows found = RowsIn(files[kSavedPath]);
                const bool isBefore = found == before;
                EXPECT_TRUE(isBefore || found.size() + 1 == before.size() ||
                            found.size() == before.size() + 1);
                if (!forGood) { // the same connection goes on
                    EXPECT_EQ(files[kSavedPath].Size() % kPageSize, 0u);
                    EXPECT_EQ(Sorted(RowsOf(*database)), found);
                    if (isBefore) scenario.operation(*database);
                    EXPECT_EQ(RowsOf(*database, u"SELECT * FROM saved WHERE ecrc='NEW'").size(),
                              RowsIn(files[kSavedPath]).size() > before.size() ? 1u : 0u);
                }
                database.reset();
                ExpectSound(files[kSavedPath], RowsIn(files[kSavedPath]));
            }
        }
    }
}

TEST(JetCrash, ARowIsFlushedBeforeItIsReported)
{
    const std::tuple<const char*, std::function<void(Database&)>, std::size_t> cases[] = {
        {"the row on an existing page, then its entry", Add(u"s"), 2},
        {"the same beside a long value", Add(Text(100, u'c')), 2},
        {"new pages, out of the free ones, then the row", Add(Text(20000, u'c')), 3},
        {"the count first, then the row", DeleteOf(u"1"), 2},
        {"and no more without anything to be tidied", DeleteOf(u"0"), 2},
    };
    SavedSample sample(WithRows(3));
    for (const auto& [order, operation, flushes] : cases) {
        sample.files.flushes = 0;
        operation(*sample.database);
        EXPECT_EQ(sample.files.flushes, flushes) << order;
    }
}
