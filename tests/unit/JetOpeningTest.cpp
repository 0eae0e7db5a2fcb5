// JetOpeningTest.cpp: what opening a database finds out, and that it changes no byte of one that it refuses.
#include "jet/TableWriter.h"
#include "jet/UsageMap.h"
#include "platform/System.h"
#include "store/SavedMaintenance.h"
#include "tests/support/JetSamples.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

using namespace jet;

namespace {

constexpr PageNumber kFirstMap = 1, kDefinition = 16, kMaps = 17;
constexpr std::uint64_t kRowCountAt = kDefinition * kPageSize + 16;

// A file system in which no file may be written.
struct ProtectedFiles : MemoryFiles {
    bool isProtected = false;
    std::unique_ptr<RandomFile> Open(const Text& path, OpenMode mode, FileError& error) override
    {
        if (!isProtected || mode == OpenMode::read) return MemoryFiles::Open(path, mode, error);
        error = FileError::denied;
        return nullptr;
    }
};

// As the program opens it.
Text Open(SavedEmails& saved, Files& files, const Text& path)
{
    return OpenSavedEmails(saved, files, path,
                           {{nullptr, [&files](const Text& file) { return OpenJetDatabase(files, file); }}});
}

MemoryImage WithRows(int count)
{
    MemoryFiles files;
    CreateSaved(files);
    auto database = OpenJetDatabase(files, kSavedPath);
    for (int i = 0; i < count; ++i)
        AddRow(*database, {u"Folder", Text(static_cast<std::size_t>(i % 3) * 100, u's'), DecimalText(i)});
    database.reset();
    return files[kSavedPath];
}

void EditPage(MemoryImage& image, PageNumber page, const std::function<void(std::string&)>& edit)
{
    std::string bytes(kPageSize, '\0');
    image.Read(std::uint64_t{page} * kPageSize, bytes.data(), bytes.size());
    edit(bytes);
    image.Write(std::uint64_t{page} * kPageSize, bytes.data(), bytes.size());
}

// As another program makes the table with a primary key.
void GiveKey(std::string& page)
{
    constexpr std::size_t kSizeAt = 8, kLogicalAt = 47, kRealAt = 51, kFixedPart = 63, kColumns = 3;
    const ByteView view(page, kDefinition);
    const std::size_t size = view.U32(kSizeAt);
    std::size_t names = kFixedPart + kColumns * 25, end = names;
    for (std::size_t i = 0; i < kColumns; ++i) end += 2 + view.U16(end);
    std::string name("\x04\0k\0y\0", 6);
    std::string with = page.substr(0, kFixedPart) + std::string(12, '\0') +
                       page.substr(kFixedPart, end - kFixedPart) + std::string(52 + 28, '\0') + name +
                       page.substr(end, size - end);
    Put32(with, kSizeAt, static_cast<std::uint32_t>(with.size()));
    Put32(with, kLogicalAt, 1);
    Put32(with, kRealAt, 1);
    with.resize(kPageSize);
    page = with;
}

std::string Jet3File() // 67 pages of 2,048 bytes
{
    std::string bytes(137216, '\0');
    bytes.replace(0, 20, std::string("\0\1\0\0Standard Jet DB\0", 20));
    return bytes;
}

std::string Bytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

// "Read, but not written" is known at once, and said in plain words.
TEST(JetOpening, TellsWhyADatabaseCannotBeWritten)
{
    struct Case {
        const char* why;
        std::function<void(MemoryImage&)> change;
        Text reason;
    };
    const auto page = [](PageNumber number, std::function<void(std::string&)> edit) {
        return [=](MemoryImage& image) { EditPage(image, number, edit); };
    };
    const Text layout = u"The database has a layout that this program does not extend (page ",
               late = u"the map of free pages does not begin with the first page",
               tooShort = u"a usage map has no place for all pages that the file may come to have",
               cut = u"The file ends in the middle of a page that this program did not begin: it was cut "
                     u"short, or something was added to it";
    const Case cases[] = {
        {"as this program leaves it", [](MemoryImage&) {}, u""},
        {"a key", page(kDefinition, GiveKey),
         u"The table has an index or a key, which would not be kept up to date"},
        {"CRCs of 7 characters", page(kDefinition, [](std::string& p) { Put16(p, 63 + 2 * 25 + 23, 14); }),
         u"The column ecrc takes 7 characters, but 8 are needed"},
        {"CRCs of 7 characters, and something to be mended",
         page(kDefinition,
              [](std::string& p) {
                  Put16(p, 63 + 2 * 25 + 23, 14);
                  Put32(p, 16, 5);
              }),
         u"The column ecrc takes 7 characters, but 8 are needed"},
        {"CRCs as numbers", page(kDefinition, [](std::string& p) { p[63 + 2 * 25] = 4; }),
         u"The column ecrc does not take text"},
        {"subjects that may not be missing", page(kDefinition, [](std::string& p) { p[63 + 25 + 15] = 0; }),
         u"The column esubject needs a value"},
        {"CRCs that may not be missing", page(kDefinition, [](std::string& p) { p[63 + 2 * 25 + 15] = 0; }),
         u""},
        {"a damaged map", page(kMaps, [](std::string& p) { p[15] = '\xC0'; }),
         u"The database is damaged (page 17): a usage map was deleted"},
        {"one row lost", page(kDefinition, [](std::string& p) { Put32(p, 16, 8); }),
         u"The table has lost rows: it should have 8 and has 7"},
        {"all rows lost", page(kMaps, [](std::string& p) { ReplaceRow(p, 0, std::string(69, '\0'), 0); }),
         u"The table has lost rows: it should have 7 and has 0"},
        {"grown by a program that moves the map of free pages",
         page(kFirstMap, [](std::string& p) { Put32(p, SlotAt(ByteView(p, 1), 0).start + 1, 512); }),
         layout + u"1): " + late},
        {"a map that is too short a list",
         page(kMaps,
              [](std::string& p) { ReplaceRow(p, 2, std::string(1, '\1') + std::string(64, '\0'), 0); }),
         layout + u"17): " + tooShort},
        {"a list of free pages that leads nowhere",
         page(kFirstMap,
              [](std::string& p) {
                  std::string list(69, '\0');
                  list[0] = 1, list[5] = 16;
                  ReplaceRow(p, 0, list, 0);
              }),
         u"The database is damaged (page 16): a usage bitmap was expected here"},
        {"something added", [](MemoryImage& i) { i.Write(i.Size(), "more", 4); }, cut},
        {"cut short", [](MemoryImage& i) { i.Resize(i.Size() - 1000); }, cut},
        {"cut short by a page", [](MemoryImage& i) { i.Resize(i.Size() - kPageSize); },
         u"The database is damaged (page 19): the file ends before this page, which it refers to"},
        {"free pages, cut short", [](MemoryImage& i) { i.Resize(i.Size() + 5000); }, cut},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        MemoryFiles files;
        files[kSavedPath] = WithRows(7);
        c.change(files[kSavedPath]);
        const std::string before = files[kSavedPath].Bytes();
        SavedEmails saved;
        EXPECT_EQ(Open(saved, files, kSavedPath), u"");
        EXPECT_EQ(saved.whyReadOnly, c.reason);
        EXPECT_EQ(saved.IsWritable(), c.reason.empty());
        EXPECT_EQ(saved.notes.size(), c.reason.empty() ? 0u : 1u);
        if (saved.IsWritable()) {
            EmailEntry entry;
            entry.Crc = u"1";
            AddSavedEmail(saved, u"Folder", entry);
            EXPECT_FALSE(files[kSavedPath].Bytes() == before);
            continue;
        }
        const std::string refused = ToUtf8(u"the database of saved emails cannot be written: " + c.reason);
        for (const std::function<void()>& write :
             {std::function<void()>([&] { AddSavedEmail(saved, u"f", {}); }),
              std::function<void()>([&] { CondenseDatabase(saved, [](int) { return true; }); })}) {
            try {
                write();
                ADD_FAILURE();
            } catch (const DatabaseError& error) {
                EXPECT_EQ(error.what(), refused);
            }
        }
        CloseSavedEmails(saved);
        EXPECT_TRUE(files[kSavedPath].Bytes() == before);
    }
}

// Refused for writing, and still read by checks.
TEST(JetOpening, AWriteProtectedFileIsRead)
{
    ProtectedFiles files;
    files[kSavedPath] = WithRows(7);
    const std::string before = files[kSavedPath].Bytes();
    files.isProtected = true;
    SavedEmails saved;
    EXPECT_EQ(Open(saved, files, kSavedPath), u"");
    EXPECT_EQ(saved.whyReadOnly, u"The file is write-protected, or this user may not write it");
    EXPECT_TRUE(IsSaved(saved, u"3", u"Folder"));
    EXPECT_EQ(FolderCrcList(saved, u"Folder", u",", [] {}), u",0,1,2,3,4,5,6,");
    EXPECT_THROW(AddSavedEmail(saved, u"Folder", {}), DatabaseError);
    CloseSavedEmails(saved);
    EXPECT_TRUE(files[kSavedPath].Bytes() == before);
    EXPECT_EQ(saved.whyReadOnly, u"") << "of the file that was closed";
}

TEST(JetOpening, ACountThatIsTooSmallIsCorrectedAndTold)
{
    MemoryFiles files;
    files[kSavedPath] = WithRows(7);
    const std::string right = files[kSavedPath].Bytes();
    files[kSavedPath].Write(kRowCountAt, "\5\0\0\0", 4);
    SavedEmails saved;
    EXPECT_EQ(Open(saved, files, kSavedPath), u"");
    EXPECT_TRUE(saved.IsWritable());
    EXPECT_EQ(saved.notes, std::vector<Text>{
                               u"Database of saved emails: the count of its rows was corrected from 5 to 7"});
    CloseSavedEmails(saved);
    EXPECT_TRUE(files[kSavedPath].Bytes() == right);
}

// A disk that fails while the file is mended: known at opening, too.
TEST(JetOpening, WhatCannotBeMendedIsNotWritten)
{
    MemoryFiles files;
    files[kSavedPath] = WithRows(7);
    files[kSavedPath].Write(kRowCountAt, "\5\0\0\0", 4);
    const std::string before = files[kSavedPath].Bytes();
    files.failAt = files.changes + 1;
    files.failForGood = true;
    SavedEmails saved;
    EXPECT_EQ(Open(saved, files, kSavedPath), u"");
    EXPECT_EQ(saved.whyReadOnly, u"Page 16 of the database cannot be written");
    CloseSavedEmails(saved);
    EXPECT_TRUE(files[kSavedPath].Bytes() == before);
}

// Only the beginning of a page that this program makes, where no page is in use, is cut off.
TEST(JetOpening, OnlyAnUnfinishedPageOfOursIsCutOff)
{
    const std::string row = NewDataPage(kDefinition), longValue = NewDataPage(kLongValueOwner),
                      bitmap("\5\1\0\0\xFF\xFF\xFF\xFF\0", 9);
    struct Case {
        const char* why;
        std::string tail;
        bool ours;
        PageNumber cutPages = 0; // of those in use
    };
    const Case cases[] = {
        {"rows", row.substr(0, 4095), true},
        {"rows, hardly begun", row.substr(0, 1), true},
        {"long values", longValue.substr(0, 512), true},
        {"bits", bitmap, true},
        {"rows of another table", NewDataPage(2).substr(0, 512), false},
        {"zeros", std::string(512, '\0'), false},
        {"a definition", std::string("\2\1", 2), false},
        {"rows in the place of a page in use", row.substr(0, 2048), false, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        MemoryFiles files;
        MemoryImage& image = files[kSavedPath];
        image = WithRows(0);
        if (c.cutPages > 0) { // pages 18 and up in use, by nobody, as a stop leaves them
            AddRow(*OpenJetDatabase(files, kSavedPath), {u"f", u"s", u"1"});
            OpenJetDatabase(files, kSavedPath)->OpenRecordset(u"SELECT * FROM saved")->Delete();
            EditPage(image, kMaps, [](std::string& p) { ReplaceRow(p, 0, std::string(69, '\0'), 0); });
            EditPage(image, kMaps, [](std::string& p) { ReplaceRow(p, 1, std::string(69, '\0'), 0); });
            image.Resize(image.Size() - c.cutPages * kPageSize);
        }
        const std::uint64_t whole = image.Size();
        image.Write(whole, c.tail.data(), c.tail.size());
        const std::string before = image.Bytes();
        SavedEmails saved;
        EXPECT_EQ(Open(saved, files, kSavedPath), u"");
        EXPECT_EQ(saved.whyReadOnly.starts_with(u"The file ends in the middle of a page"), !c.ours)
            << ToUtf8(saved.whyReadOnly);
        CloseSavedEmails(saved);
        EXPECT_TRUE(image.Bytes() == (c.ours ? before.substr(0, whole) : before));
    }
}

// Files of other kinds, and ours cut anywhere: compared before and after.
TEST(JetOpening, ARefusedFileKeepsEveryByte)
{
    const std::string ours = WithRows(60).Bytes();
    std::vector<std::string> made = {Jet3File(), Jet3File().substr(0, 5001), "", "x", std::string(5000, 'x')};
    for (std::size_t size = 1; size < ours.size(); size += 997) made.push_back(ours.substr(0, size));
    made.push_back(ours.substr(0, ours.size() - 1));
    for (const std::string& bytes : made) {
        MemoryFiles files;
        files[kSavedPath] = MemoryImage(bytes);
        SavedEmails saved;
        (void)Open(saved, files, kSavedPath);
        EXPECT_FALSE(saved.IsWritable()) << bytes.size();
        CloseSavedEmails(saved);
        EXPECT_TRUE(files[kSavedPath].Bytes() == bytes) << bytes.size();
        EXPECT_EQ(files.changes, files.flushes) << "nothing is written, not even the same";
    }
}

// The same on the disk, with files that other programs have made.
TEST(JetOpening, ARealFileThatIsRefusedKeepsEveryByte)
{
    const char* const samples = std::getenv("QUILLBOX_SAMPLES");
    if (!samples) GTEST_SKIP() << "QUILLBOX_SAMPLES is not set";
    const ScratchDirectory scratch;
    SystemFiles files;
    int seen = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(samples)) {
        if (!entry.is_regular_file()) continue;
        const std::string whole = Bytes(entry.path());
        for (std::size_t size = whole.size(); size > 4097; size -= std::min<std::size_t>(size, 4099)) {
            const std::string bytes = whole.substr(0, size);
            const std::filesystem::path path = scratch.Path() / "saved.mdb";
            std::ofstream(path, std::ios::binary) << bytes;
            SavedEmails saved;
            EXPECT_NE(Open(saved, files, scratch / u"saved.mdb"), u"") << "it has no such table";
            EXPECT_FALSE(saved.IsOpen());
            if (bytes.size() < whole.size()) {
                try { // a table that it has, or had
                    const Readiness found =
                        OpenJetDatabase(files, scratch / u"saved.mdb")->PrepareForWriting(u"Table1", {});
                    EXPECT_NE(found.refusal, u"");
                } catch (const DatabaseError&) {
                }
            }
            EXPECT_EQ(Bytes(path), bytes) << entry.path() << " " << size;
            ++seen;
        }
    }
    EXPECT_GT(seen, 40);
}
