// JetOpeningTest.cpp: what opening a database finds out, and that it changes no byte of one that it refuses.
#include "jet/DataPage.h"
#include "store/SavedMaintenance.h"
#include "tests/support/JetSamples.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using namespace jet;

namespace {

constexpr PageNumber kFirstMap = 1, kRows = 18, kSubjects = 19;
constexpr std::size_t kCount = 16, kColumns = 63, kColumn = 25; // where the definition has them, their size

// A file system in which no file may be written.
struct ProtectedFiles : MemoryFiles {
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) override
    {
        if (mode == OpenMode::read) return MemoryFiles::Open(path, mode, error);
        error = FileError::denied;
        return nullptr;
    }
};

// As the program opens it.
Text Open(SavedEmails& saved, Files& files)
{
    return OpenSavedEmails(saved, files, kSavedPath,
                           {{nullptr, [&files](const Text& file) { return OpenJetDatabase(files, file); }}});
}

using Change = std::function<void(MemoryImage&)>;
Change Bytes(PageNumber page, std::size_t at, std::string_view bytes)
{
    return [=](MemoryImage& image) {
        image.Write(std::uint64_t{page} * kPageSize + at, bytes.data(), bytes.size());
    };
}
Change Page(PageNumber page, std::function<void(std::string&)> edit)
{
    return [=](MemoryImage& image) {
        std::string bytes(kPageSize, '\0');
        image.Read(std::uint64_t{page} * kPageSize, bytes.data(), bytes.size());
        edit(bytes);
        Bytes(page, 0, bytes)(image);
    };
}
Change Row(PageNumber page, std::size_t slot, const std::string& row)
{
    return Page(page, [=](std::string& bytes) { ReplaceRow(bytes, slot, row, 0); });
}
Change Flip(std::size_t at, int bits) // in the header
{
    return Page(0, [=](std::string& page) { page[at] = static_cast<char>(page[at] ^ bits); });
}
Change Tail(const std::string& bytes)
{
    return [=](MemoryImage& image) { image.Write(image.Size(), bytes.data(), bytes.size()); };
}
const std::string kEmptyMap(69, '\0');

// Pages in use by nobody, as a stop leaves them, and then half of such a page.
void CutUsedPage(MemoryImage& image)
{
    SavedSample sample;
    sample.Add({{u"f", u"s", u"1"}});
    sample.Delete(u"1");
    sample.database.reset();
    image = sample.Image();
    for (const std::size_t map : {0, 1}) Row(kMaps, map, kEmptyMap)(image);
    image.Resize(image.Size() - kPageSize);
    Tail(NewDataPage(kDefinition).substr(0, 2048))(image);
}

} // namespace

// "Read, but not written" is known at once, and said in plain words; the engine itself refuses, too. Of what
// stands behind the last page only the beginning of a page that this program makes is cut off.
TEST(JetOpening, TellsWhyADatabaseCannotBeReadOrWritten)
{
    const Text layout = u"The database has a layout that this program does not extend (page ",
               damaged = u"The database is damaged (page ",
               tooNarrow = u"The column ecrc takes 7 characters, but 8 are needed",
               cut = u"The file ends in the middle of a page that this program did not begin: it was cut "
                     u"short, or something was added to it",
               mended = u"(cut off)";
    const std::string rows = NewDataPage(kDefinition);
    const std::size_t subject = kColumns + kColumn, crc = subject + kColumn;
    const struct {
        const char* why;
        Change change;
        Text found;
    } cases[] = {
        {"another signature", Flip(4, 1), u"The file is not a Jet database"},
        {"an older version", Flip(0x14, 1),
         u"The database is of an older format (Jet 3), which is not supported"},
        {"a newer version", Flip(0x14, 3), u"The database is of a newer format, which is not supported"},
        {"encrypted", Flip(0x3E, 1), u"The database is encrypted, which is not supported"},
        {"with a password", Flip(0x42, 1), u"The database has a password, which is not supported"},
        {"as this program leaves it", [](MemoryImage&) {}, u""},
        {"CRCs that may not be missing", Bytes(kDefinition, crc + 15, {"\0", 1}), u""},
        {"subjects that may not be missing", Bytes(kDefinition, subject + 15, {"\0", 1}),
         u"The column esubject needs a value"},
        {"CRCs of 7 characters", Bytes(kDefinition, crc + 23, "\16"), tooNarrow},
        {"CRCs of 7 characters, and something to be mended",
         [&](MemoryImage& image) {
             Bytes(kDefinition, crc + 23, "\16")(image);
             Bytes(kDefinition, kCount, "\5")(image);
         },
         tooNarrow},
        {"CRCs as numbers", Bytes(kDefinition, crc, "\4"), u"The column ecrc does not take text"},
        {"a column that numbers itself", Bytes(kDefinition, kColumns + 15, "\6"),
         u"The column efolder numbers its rows itself, which is not supported"},
        {"two columns in one place", Bytes(kDefinition, crc + 7, {"\0", 1}),
         u"The column ecrc has no place of its own in a row"},
        {"a table of the system", Bytes(kDefinition, 40, "\x53"),
         u"Tables of the database system are not written"},
        {"two uses of a map", Bytes(kDefinition, 59, {"\0", 1}), damaged + u"17): a usage map has two uses"},
        {"one row lost", Bytes(kDefinition, kCount, "\10"),
         u"The table has lost rows: it should have 8 and has 7"},
        {"grown by a program that moves the map of free pages",
         Page(kFirstMap, [](std::string& p) { Put32(p, SlotAt(ByteView(p, 1), 0).start + 1, 512); }),
         layout + u"1): the map of free pages does not begin with the first page"},
        {"a map that is too short a list", Row(kMaps, 2, '\1' + std::string(64, '\0')),
         layout + u"17): a usage map has no place for all pages that the file may come to have"},
        {"a list of free pages that leads to something else",
         Row(kFirstMap, 0, std::string("\1\20\0\0\0", 5) + std::string(64, '\0')),
         damaged + u"16): a usage bitmap was expected here"},
        {"a deleted map", Bytes(kMaps, 15, "\xC0"), damaged + u"17): a usage map was deleted"},
        {"a map with pages behind the end", Bytes(kMaps, kPageSize - 9, "\1"),
         damaged + u"17): a usage map names pages behind the end"},
        {"not a page of rows any more", Bytes(kRows, 0, "\x09"),
         damaged + u"18): a page with rows was expected here"},
        {"rows of something else", Bytes(kRows, 4, "\2"),
         damaged + u"18): its rows belong to something else"},
        {"more rows than fit", Bytes(kRows, 12, "\xFF\xFF"),
         damaged + u"18): it claims more rows than it can hold"},
        {"a row that is no row", Bytes(kRows, 4090, "\xFF\xFF\xFF\xFF\xFF\xFF"),
         damaged + u"18): a row has too many columns of varying length"},
        {"a wrong figure of free bytes", Bytes(kRows, 2, "\x70\x70"),
         damaged + u"18): its figure of free bytes is wrong"},
        {"a subject cut short",
         Page(kSubjects, [](std::string& p) { Put16(p, 14, SlotAt(ByteView(p, 1), 0).start + 1); }),
         damaged + u"18): a long value is cut short"},
        {"a subject that leads nowhere",
         Page(kRows,
              [](std::string& p) {
                  const std::size_t pointer = p.find(std::string("\1\x13\0\0", 4)); // of the second row
                  Put32(p, pointer - 4, 100);
                  Put32(p, pointer, 0);
              }),
         damaged + u"18): a long value is cut short"},
        {"a deleted subject", Bytes(kSubjects, 15, "\xC0"),
         damaged + u"19): part of a long value was deleted"},
        {"a folder that ends in half a character",
         Page(kRows, [](std::string& p) { p[SlotAt(ByteView(p, 1), 0).start + 2] = 's'; }),
         damaged + u"18): something is cut short"},
        {"a subject that does",
         Page(kSubjects, [](std::string& p) { p[SlotAt(ByteView(p, 1), 0).start + 2] = '\0'; }),
         damaged + u"18): something is cut short"},
        {"something added", Tail("more"), cut},
        {"a page without its first sector", Tail(std::string(512, '\0') + "rows"), mended},
        {"other bytes behind part of a sector of zeros", Tail(std::string(511, '\0') + "x"), cut},
        {"rows of another table", Tail(NewDataPage(2).substr(0, 512)), cut},
        {"the beginning of rows in the place of a page in use", CutUsedPage, cut},
        {"the beginning of rows", Tail(rows.substr(0, 4095)), mended},
        {"hardly the beginning of rows", Tail(rows.substr(0, 1)), mended},
        {"the beginning of long values", Tail(NewDataPage(kLongValueOwner).substr(0, 512)), mended},
        {"the beginning of bits", Tail({"\5\1\0\0\xFF\xFF\xFF\xFF\0", 9}), mended},
        {"cut short", [](MemoryImage& image) { image.Resize(image.Size() - 1000); }, cut},
        {"cut short by a page", [](MemoryImage& image) { image.Resize(image.Size() - kPageSize); },
         damaged + u"17): a usage map names pages behind the end"},
    };
    const MemoryImage good = WithRows(7);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        MemoryFiles files;
        MemoryImage& image = files[kSavedPath];
        image = good;
        c.change(image);
        const std::string before = image.Bytes();
        SavedEmails saved;
        Text found = Open(saved, files) + saved.whyReadOnly;
        if (saved.IsWritable() && !saved.notes.empty()) {
            EXPECT_TRUE(image.Bytes() == good.Bytes());
            found = mended;
        }
        EXPECT_EQ(ToUtf8(found), ToUtf8(c.found));
        const bool isRefused = !saved.IsWritable();
        EXPECT_EQ(saved.notes.size(), found.empty() || !saved.IsOpen() ? 0u : 1u);
        const auto refuses = [&](const std::function<void()>& write) {
            try {
                write();
                return false;
            } catch (const DatabaseError& error) {
                EXPECT_TRUE(!saved.IsOpen() || error.Words().ends_with(c.found)) << error.what();
                return true;
            }
        };
        EXPECT_EQ(refuses([&] { AddSavedEmail(saved, u"f", {{}, {}, {}, {}, {}, u"12345678"}); }), isRefused);
        EXPECT_EQ(refuses([&] { CondenseDatabase(saved, [](int) { return true; }); }), isRefused);
        if (saved.IsOpen() && isRefused) {
            EXPECT_THROW(AddRow(*saved.database, {u"f", u"", u"12345678"}), DatabaseError);
        }
        CloseSavedEmails(saved);
        EXPECT_EQ(image.Bytes() == before, isRefused);
    }
}

// Refused for writing, and still read by checks.
TEST(JetOpening, AWriteProtectedFileIsRead)
{
    ProtectedFiles files;
    files[kSavedPath] = WithRows(7);
    const std::string before = files[kSavedPath].Bytes();
    SavedEmails saved;
    EXPECT_EQ(Open(saved, files), u"");
    EXPECT_EQ(saved.whyReadOnly, u"The file is write-protected, or this user may not write it");
    EXPECT_TRUE(IsSaved(saved, u"3", kLongFolder));
    EXPECT_EQ(FolderCrcList(saved, kLongFolder, u",", [] {}), u",0,1,2,3,4,5,6,");
    EXPECT_THROW(AddSavedEmail(saved, u"Folder", {}), DatabaseError);
    EXPECT_THROW(AddRow(*saved.database, {u"f", u"s", u"2"}), DatabaseError);
    CloseSavedEmails(saved);
    EXPECT_TRUE(files[kSavedPath].Bytes() == before);
    EXPECT_EQ(saved.whyReadOnly, u"") << "of the file that was closed";
}

TEST(JetOpening, MendsWhatAStopLeftAndTellsIt)
{
    const MemoryImage right = WithRows(7);
    MemoryImage left = right;
    Bytes(kDefinition, kCount, "\5")(left);
    left.Write(left.Size(), NewDataPage(kDefinition).data(), 1234);
    MemoryFiles files;
    files[kSavedPath] = left;
    SavedEmails saved;
    EXPECT_EQ(Open(saved, files), u"");
    EXPECT_TRUE(saved.IsWritable());
    EXPECT_EQ(
        saved.notes,
        (std::vector<Text>{u"Database of saved emails: an unfinished page at its end was cut off",
                           u"Database of saved emails: the count of its rows was corrected from 5 to 7"}));
    EXPECT_EQ(saved.database->PrepareForWriting(u"saved", {}).notes, std::vector<Text>{}) << "once";
    CloseSavedEmails(saved);
    EXPECT_TRUE(files[kSavedPath].Bytes() == right.Bytes());
}

// Files of other kinds; ours, and those that other programs have made (in the folder QUILLBOX_SAMPLES), cut
// anywhere: compared before and after.
TEST(JetOpening, ARefusedFileKeepsEveryByte)
{
    std::string jet3(137216, '\0'); // 67 pages of 2,048 bytes
    jet3.replace(0, 20, std::string("\0\1\0\0Standard Jet DB\0", 20));
    std::vector<std::string> made = {jet3, jet3.substr(0, 5001), "", "x", std::string(5000, 'x')};
    std::vector<std::string> wholes = {WithRows(60).Bytes()};
    if (const char* const samples = std::getenv("QUILLBOX_SAMPLES")) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(samples)) {
            std::ifstream file(entry.path(), std::ios::binary);
            if (entry.is_regular_file()) wholes.push_back({std::istreambuf_iterator<char>(file), {}});
        }
    }
    for (const std::string& whole : wholes)
        for (std::size_t size = whole.size() - 1; size > 0; size -= std::min<std::size_t>(size, 997))
            made.push_back(whole.substr(0, size));
    for (const std::string& bytes : made) {
        MemoryFiles files;
        files[kSavedPath] = MemoryImage(bytes);
        SavedEmails saved;
        (void)Open(saved, files);
        EXPECT_FALSE(saved.IsWritable()) << bytes.size();
        CloseSavedEmails(saved);
        try { // a table that it has, or had
            auto database = OpenJetDatabase(files, kSavedPath);
            EXPECT_NE(database->PrepareForWriting(u"Table1", {}).refusal, u"") << bytes.size();
        } catch (const DatabaseError&) {
        }
        EXPECT_TRUE(files[kSavedPath].Bytes() == bytes) << bytes.size();
        EXPECT_EQ(files.changes, files.flushes) << "nothing is written, not even the same";
    }
}
