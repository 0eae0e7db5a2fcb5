// jetfile.cpp: database files with damage anywhere. The input is a list of patches to one of a few files;
// the engine reads what it can, refuses the rest, and never makes things worse.
#include "tests/fuzz/Require.h"
#include "tests/support/JetSamples.h"

#include <iterator>

namespace {

using Rows = std::vector<std::vector<Text>>;

struct SeedFile {
    MemoryImage image;
    std::vector<std::uint64_t> pages; // those that hold something, which is where damage is of interest
};

SeedFile Seed(std::uint64_t pages)
{
    SavedSample sample;
    if (pages > 0) sample.Image().Resize(pages * jet::kPageSize);
    sample.Open();
    // In their row, on a page with others, on pages of their own.
    const std::size_t subjects[] = {0, 10, 80, 20, 300, 0, 2100, 90, 10, 20};
    for (std::size_t i = 0; i < std::size(subjects); ++i)
        sample.Add({{Text(i % 4 == 0 ? 255 : 20, u'\x0416'), Text(subjects[i], u's'),
                     DecimalText(static_cast<int>(i))}});
    sample.Delete(u"7");
    SeedFile seed{sample.Image(), {}};
    std::string page(jet::kPageSize, '\0');
    for (std::uint64_t number = 0; number * jet::kPageSize < seed.image.Size(); ++number) {
        seed.image.Read(number * jet::kPageSize, page.data(), page.size());
        if (page.find_first_not_of('\0') != std::string::npos) seed.pages.push_back(number);
    }
    return seed;
}

// Patches have 5 bytes: page, place from its start (2), length and sort, byte.
void Patch(MemoryImage& image, const SeedFile& seed, const std::uint8_t* patch)
{
    const std::uint64_t page = seed.pages[patch[0] % seed.pages.size()] * jet::kPageSize;
    const std::size_t offset = (patch[1] | patch[2] << 8) % jet::kPageSize;
    const std::size_t count = std::min<std::size_t>(1 + patch[3] % 8, jet::kPageSize - offset);
    if (patch[3] == 0xFF)
        image.Resize(page + offset);
    else
        image.Write(page + offset, std::string(count, static_cast<char>(patch[4])).data(), count);
}

template <class Operation>
bool Works(Operation operation)
{
    try {
        operation();
        return true;
    } catch (const DatabaseError&) {
        return false;
    }
}

Rows Sorted(Rows rows)
{
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ReadCatalog(JetDatabase& database)
{
    const std::vector<Text> columns = database.ColumnNames(u"MSysObjects");
    const auto rows = database.OpenRecordset(u"SELECT * FROM MSysObjects");
    for (; !rows->AtEnd(); rows->MoveNext())
        for (const Text& column : columns) (void)Value(*rows, column);
}

void ReadAndExtend(const MemoryImage& image)
{
    SavedSample sample(image);
    (void)Works([&] { ReadCatalog(*sample.database); });
    Rows rows;
    const bool hasColumns =
        Works([&] { sample.database->OpenRecordset(u"SELECT efolder, esubject, ecrc FROM saved"); });
    const bool whole = Works([&] { rows = RowsOf(*sample.database); });
    Require(sample.files.changes == 0, "reading writes nothing");
    const std::vector<ColumnNeed> needs = {
        {u"efolder", 1, false}, {u"esubject", 1, true}, {u"ecrc", 8, false}};
    if (!sample.database->PrepareForWriting(u"saved", needs).refusal.empty()) {
        Require(sample.Image() == image, "what is refused keeps every byte");
        return;
    }
    if (!hasColumns) return; // another table
    Require(whole, "what is taken for writing can be read");
    Require(sample.Image().Size() % jet::kPageSize == 0, "a partial page is cut off");
    for (const std::size_t subject : {5, 2100}) {
        const std::vector<Text> row = {u"added", Text(subject, u'a'), u"ADDED"};
        if (Works([&] { sample.Add({row}); })) rows.push_back(row);
    }
    std::vector<Text> first;
    const bool gone = Works([&] {
        const auto found = sample.database->OpenRecordset(u"SELECT * FROM saved");
        first = {Value(*found, u"efolder"), Value(*found, u"esubject"), Value(*found, u"ecrc")};
        found->Delete();
    });
    if (gone) rows.erase(std::find(rows.begin(), rows.end(), first));
    Rows after;
    sample.Open();
    Require(Works([&] { after = RowsOf(*sample.database); }), "a table that could be read still can");
    Require(Sorted(after) == Sorted(rows), "its rows are what they were, and those that were added");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const SeedFile seeds[] = {Seed(0), Seed(700)}; // the second has lists of bitmap pages for maps
    if (size == 0) return 0;
    const SeedFile& seed = seeds[data[0] % std::size(seeds)];
    MemoryImage image = seed.image;
    for (std::size_t at = 1, patches = 0; at + 5 <= size && patches < 16; at += 5, ++patches)
        Patch(image, seed, data + at);
    (void)Works([&] { ReadAndExtend(image); }); // or it is no database any more
    return 0;
}
