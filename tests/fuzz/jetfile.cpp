// jetfile.cpp: database files with damage anywhere. The input is a list of patches to one of a few files;
// the engine reads what it can, refuses the rest, and never makes things worse.
#include "jet/DataPage.h"
#include "tests/fuzz/Require.h"
#include "tests/support/JetSamples.h"

#include <iterator>

namespace {

using Rows = std::vector<std::vector<Text>>;

MemoryImage Seed(std::uint64_t pages)
{
    MemoryFiles files;
    CreateSaved(files);
    if (pages > 0) files[kSavedPath].Resize(pages * jet::kPageSize);
    auto database = OpenJetDatabase(files, kSavedPath);
    // In their row, on a page with others, on pages of their own.
    const std::size_t subjects[] = {0, 10, 80, 20, 300, 0, 2100, 90, 10, 20};
    for (std::size_t i = 0; i < std::size(subjects); ++i)
        AddRow(*database, {Text(i % 4 == 0 ? 255 : 20, u'\x0416'), Text(subjects[i], u's'),
                           DecimalText(static_cast<int>(i))});
    database->OpenRecordset(u"SELECT * FROM saved WHERE ecrc='7'")->Delete();
    return files[kSavedPath];
}

// Pages that hold something, which is where damage is of interest.
std::vector<std::uint64_t> UsedPages(const MemoryImage& image)
{
    std::vector<std::uint64_t> used;
    std::string page(jet::kPageSize, '\0');
    for (std::uint64_t number = 0; number * jet::kPageSize < image.Size(); ++number) {
        image.Read(number * jet::kPageSize, page.data(), page.size());
        if (page.find_first_not_of('\0') != std::string::npos) used.push_back(number);
    }
    return used;
}

struct SeedFile {
    MemoryImage image;
    std::vector<std::uint64_t> pages;
};
const std::vector<SeedFile>& Seeds()
{
    static const std::vector<SeedFile> seeds = [] {
        std::vector<SeedFile> made;
        for (std::uint64_t pages : {0, 700}) { // the second has lists of bitmap pages for maps
            const MemoryImage image = Seed(pages);
            made.push_back({image, UsedPages(image)});
        }
        return made;
    }();
    return seeds;
}

// What can be read; false when something cannot.
bool List(Database& database, Rows& rows)
{
    try {
        rows = RowsOf(database);
        std::sort(rows.begin(), rows.end());
        return true;
    } catch (const DatabaseError&) {
        return false;
    }
}

void ReadCatalog(JetDatabase& database)
{
    try {
        const std::vector<Text> columns = database.ColumnNames(u"MSysObjects");
        const auto rows = database.OpenRecordset(u"SELECT * FROM MSysObjects");
        for (; !rows->AtEnd(); rows->MoveNext())
            for (const Text& column : columns) (void)rows->Field(column);
    } catch (const DatabaseError&) {
    }
}

bool Add(Database& database, const Text& subject)
{
    try {
        AddRow(database, {u"added", subject, u"ADDED"});
        return true;
    } catch (const DatabaseError&) {
        return false;
    }
}

bool DeleteFirst(Database& database, std::vector<Text>& deleted)
{
    try {
        const auto rows = database.OpenRecordset(u"SELECT * FROM saved");
        deleted = {rows->Field(u"efolder"), rows->Field(u"esubject"), rows->Field(u"ecrc")};
        rows->Delete();
        return true;
    } catch (const DatabaseError&) {
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const SeedFile& seed = Seeds()[data[0] % Seeds().size()];
    MemoryFiles files;
    MemoryImage& image = files[kSavedPath];
    image = seed.image;
    constexpr std::size_t kPatch = 5; // page, place from the start or the end of it, length and sort, byte
    for (std::size_t at = 1; at + kPatch <= size && at < 1 + 16 * kPatch; at += kPatch) {
        const std::uint64_t page = seed.pages[data[at] % seed.pages.size()];
        const std::size_t offset = (data[at + 1] | data[at + 2] << 8) % jet::kPageSize;
        const std::size_t count = std::min<std::size_t>(1 + data[at + 3] % 8, jet::kPageSize - offset);
        const std::string bytes(count, static_cast<char>(data[at + 4]));
        if (data[at + 3] == 0xFF)
            image.Resize(page * jet::kPageSize + offset);
        else
            image.Write(page * jet::kPageSize + offset, bytes.data(), bytes.size());
    }
    try {
        auto database = OpenJetDatabase(files, kSavedPath);
        ReadCatalog(*database);
        Rows before, after;
        const bool whole = List(*database, before);
        const bool refused = !database->PrepareForWriting(u"saved", {}).refusal.empty();
        Require(!refused || files.changes == files.flushes, "what is refused is not written");
        if (refused) return 0;
        Require(image.Size() % jet::kPageSize == 0, "a partial page is cut off");
        const bool shortAdded = Add(*database, u"short");
        const bool longAdded = Add(*database, Text(2100, u'a'));
        std::vector<Text> deleted;
        const bool gone = DeleteFirst(*database, deleted);
        Require(!shortAdded || whole, "a table that cannot be read is not written");
        database = OpenJetDatabase(files, kSavedPath);
        if (whole) {
            if (shortAdded) before.push_back({u"added", u"short", u"ADDED"});
            if (longAdded) before.push_back({u"added", Text(2100, u'a'), u"ADDED"});
            if (gone) before.erase(std::find(before.begin(), before.end(), deleted));
            std::sort(before.begin(), before.end());
            Require(List(*database, after), "a table that could be read still can");
            Require(before == after, "its rows are what they were, and the one that was added");
        }
    } catch (const DatabaseError&) {
        return 0; // not a database any more
    }
    return 0;
}
