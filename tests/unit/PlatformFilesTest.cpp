// PlatformFilesTest.cpp: the file system of the system that the tests run on, and the order of names.
#include "platform/FileNames.h"
#include "platform/System.h"
#include "tests/support/ScratchDirectory.h"
#include "text/DayCount.h"

#include <algorithm>
#include <ctime>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class PlatformFiles : public testing::Test {
protected:
    void Write(const Text& name, std::string_view content)
    {
        std::ofstream(scratch.Path() / name, std::ios::binary) << content;
    }
    std::string Content(const Text& name)
    {
        std::string content;
        EXPECT_EQ(files.ReadWhole(scratch / name, content), FileError::none);
        return content;
    }
    FileError ErrorOfOpening(const Text& name, OpenMode mode)
    {
        const bool isOpen = files.Open(scratch / name, mode, error) != nullptr;
        EXPECT_EQ(isOpen, error == FileError::none);
        return error;
    }

    ScratchDirectory scratch;
    SystemFiles files;
    std::string bytes;
    FileError error = FileError::none;
};

} // namespace

// Names that the pattern "*.*eml" of Windows takes: a dot somewhere, the three letters at the end.
TEST(FileNames, AnEmailHasADotAndEndsInEml)
{
    for (const char16_t* name : {u"a.eml", u"a.EML", u"b.xeml", u".eml", u"a.b.eMl", u"a.b xeml"})
        EXPECT_TRUE(IsEmlName(name)) << ToUtf8(name);
    for (const char16_t* name : {u"eml", u"aeml", u"a.em", u"a.eml.txt", u"", u"a.eml ", u"a.emlx"})
        EXPECT_FALSE(IsEmlName(name)) << ToUtf8(name);
}

TEST(FileNames, AreSortedByTheirNumberThenWithoutRegardToCase)
{
    const std::vector<Text> sorted = {
        u"!",      u"0000_z", u"0001",   u"0001_a",  u"0001_B",  u"1_b",
        u"0009_a", u"1000_a", u"9999_a", u"10000_a", u"10001_a", u"123456789012345678901",
        u"_1",     u"a",      u"a10",    u"A2",      u"Ab",      u"aB",
        u"B",      u"b",      u"\u00C9", u"\u00E9a"};
    std::vector<Text> names(sorted.rbegin(), sorted.rend());
    std::sort(names.begin(), names.end(), NamePrecedes);
    EXPECT_EQ(names, sorted);
    names = {u"b", u"aB", u"B", u"Ab"};
    std::sort(names.begin(), names.end(), NamePrecedes);
    EXPECT_EQ(names, (std::vector<Text>{u"Ab", u"aB", u"B", u"b"}))
        << "capitals first where that alone differs";
}

TEST_F(PlatformFiles, ListsEmailsAndDirectoriesEachAlone)
{
    const std::vector<Text> emails = {u"0001_\u00A3\u00E9.eml", u"a.EML", u"b.xeml", u"C.eml",
                                      u"\u65E5\u672C \U0001F600.eml"};
    for (const Text& name : emails) Write(name, "x");
    for (const Text name : {u"a.txt", u"eml", u"x.eml.bak"}) Write(name, "x");
    const std::vector<Text> directories = {u"A", u"dir.eml", u"\u00DCber uns"};
    for (const Text& name : directories) ASSERT_TRUE(files.MakeDirectory(scratch / name));
    std::vector<Text> names;
    EXPECT_EQ(ListEmlFiles(files, scratch / u"", names), FileError::none);
    EXPECT_EQ(names, emails);
    EXPECT_EQ(ListDirectories(files, scratch / u"", names), FileError::none);
    EXPECT_EQ(names, directories);
    for (const Text name : {u"missing", u"a.EML"}) {
        EXPECT_NE(ListEmlFiles(files, scratch / name, names), FileError::none);
        EXPECT_TRUE(names.empty());
    }
}

TEST_F(PlatformFiles, FilesAndDirectoriesAreToldApart)
{
    Write(u"file", "");
    ASSERT_TRUE(files.MakeDirectory(scratch / u"dir"));
    EXPECT_TRUE(files.MakeDirectory(scratch / u"dir")) << "it exists afterwards";
    EXPECT_FALSE(files.MakeDirectory(scratch / u"file"));
    EXPECT_FALSE(files.MakeDirectory(scratch / u"missing/below")) << "one level only";
    const std::tuple<Text, bool, bool> cases[] = {{scratch / u"dir", false, true},
                                                  {scratch / u"dir/", false, true},
                                                  {scratch / u"file", true, false},
                                                  {scratch / u"missing", false, false},
                                                  {u"", false, false}};
    for (const auto& [path, isFile, isDirectory] : cases) {
        EXPECT_EQ(files.FileExists(path), isFile) << ToUtf8(path);
        EXPECT_EQ(files.DirectoryExists(path), isDirectory) << ToUtf8(path);
    }
}

TEST_F(PlatformFiles, AFileIsReadAsItIsOrNotAtAll)
{
    std::string all;
    for (int i = 0; i < 300000; ++i) all += static_cast<char>(i);
    for (const std::string& content : {std::string(),
                                       std::string("a\r\nb\nc\x1A"
                                                   "d"),
                                       all}) {
        Write(u"m.eml", content);
        EXPECT_TRUE(Content(u"m.eml") == content) << content.size();
    }
    bytes = "old";
    EXPECT_EQ(files.ReadWhole(scratch / u"missing", bytes), FileError::notFound);
    EXPECT_EQ(bytes, "");
    bytes = "old";
    EXPECT_EQ(files.ReadWhole(scratch / u"", bytes), FileError::denied) << "a directory";
    EXPECT_EQ(bytes, "");
}

TEST_F(PlatformFiles, OpenRefusesASecondExclusiveUserAndWhatIsNoFile)
{
    EXPECT_EQ(ErrorOfOpening(u"missing", OpenMode::exclusive), FileError::notFound);
    EXPECT_EQ(ErrorOfOpening(u"no/such", OpenMode::createNew), FileError::notFound);
    EXPECT_EQ(ErrorOfOpening(u"", OpenMode::read), FileError::denied) << "a directory";
    Write(u"saved.mdb", "0123456789");
    auto first = files.Open(scratch / u"saved.mdb", OpenMode::exclusive, error);
    ASSERT_TRUE(first);
    for (const OpenMode mode : {OpenMode::exclusive, OpenMode::read})
        EXPECT_EQ(ErrorOfOpening(u"saved.mdb", mode), FileError::inUse);
    EXPECT_EQ(ErrorOfOpening(u"saved.mdb", OpenMode::createNew), FileError::exists);
    first.reset();

    const auto reader = files.Open(scratch / u"saved.mdb", OpenMode::read, error);
    ASSERT_TRUE(reader);
    EXPECT_EQ(ErrorOfOpening(u"saved.mdb", OpenMode::read), FileError::none);
    EXPECT_EQ(ErrorOfOpening(u"saved.mdb", OpenMode::exclusive), FileError::inUse);
    EXPECT_NE(reader->WriteAt(0, "x", 1), FileError::none);
    EXPECT_FALSE(reader->Resize(0));
}

TEST_F(PlatformFiles, ReadsAndWritesAtAnyPlace)
{
    auto file = files.Open(scratch / u"pages", OpenMode::createNew, error);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->WriteAt(4096, "end", 3), FileError::none) << "past the end: zeros between";
    EXPECT_EQ(file->WriteAt(0, "start", 5), FileError::none);
    EXPECT_EQ(file->Size(), 4099u);
    char buffer[8] = {};
    EXPECT_TRUE(file->ReadAt(4094, buffer, 5));
    EXPECT_EQ(std::string(buffer, 5), std::string("\0\0end", 5));
    EXPECT_FALSE(file->ReadAt(4094, buffer, 6)) << "one byte too many";
    EXPECT_FALSE(file->ReadAt(1u << 20, buffer, 1));
    EXPECT_TRUE(file->ReadAt(4099, buffer, 0));
    EXPECT_TRUE(file->Resize(5) && file->Resize(7));
    EXPECT_EQ(file->Flush(), FileError::none);
    EXPECT_EQ(file->Size(), 7u);
    file.reset();
    EXPECT_EQ(Content(u"pages"), std::string("start\0\0", 7));
}

TEST_F(PlatformFiles, RenameNeverReplacesAndReplaceDoes)
{
    Write(u"a", "A");
    Write(u"b", "B");
    EXPECT_EQ(files.Rename(scratch / u"a", scratch / u"b"), FileError::exists);
    EXPECT_EQ(Content(u"b"), "B");
    EXPECT_EQ(files.Rename(scratch / u"a", scratch / u"c"), FileError::none);
    EXPECT_EQ(files.Rename(scratch / u"a", scratch / u"d"), FileError::notFound);
    EXPECT_EQ(files.Replace(scratch / u"c", scratch / u"b"), FileError::none);
    EXPECT_EQ(Content(u"b"), "A");
    EXPECT_EQ(files.Replace(scratch / u"c", scratch / u"b"), FileError::notFound);
    ASSERT_TRUE(files.MakeDirectory(scratch / u"dir"));
    EXPECT_EQ(files.Replace(scratch / u"b", scratch / u"dir"), FileError::denied);
    EXPECT_EQ(files.Replace(scratch / u"b", scratch / u"c"), FileError::none) << "nothing to replace";
    EXPECT_TRUE(files.Delete(scratch / u"c"));
    EXPECT_FALSE(files.Delete(scratch / u"c"));
}

// A path that is cut at its NUL would name another file.
TEST_F(PlatformFiles, ANulIsNeverTheEndOfAPath)
{
    Write(u"a.eml", "x");
    const Text nul(1, u'\0'), path = (scratch / u"a.eml") + nul + u".txt";
    EXPECT_FALSE(files.FileExists(path) || files.Delete(path));
    EXPECT_NE(files.ReadWhole(path, bytes), FileError::none);
    EXPECT_NE(files.Append(path, "y"), FileError::none);
    EXPECT_FALSE(files.Open(path, OpenMode::exclusive, error));
    EXPECT_NE(files.Rename(scratch / u"a.eml", path), FileError::none);
    EXPECT_FALSE(files.MakeDirectory((scratch / u"dir") + nul));
    EXPECT_FALSE(files.DirectoryExists((scratch / u"") + nul));
    EXPECT_EQ(Content(u"a.eml"), "x");
}

#ifndef _WIN32
TEST_F(PlatformFiles, AFullDiskIsToldFromOtherFailures)
{
    if (!files.FileExists(u"/dev/full")) GTEST_SKIP();
    EXPECT_EQ(files.Append(u"/dev/full", "x"), FileError::full);
}

#endif

TEST_F(PlatformFiles, TheLastChangeIsSetInTheUsersTimeOfThatDay)
{
    const auto changed = [&] {
        struct stat state {};
        EXPECT_EQ(stat((scratch.Path() / u"a.eml").string().c_str(), &state), 0);
        const std::tm local = *std::localtime(&state.st_mtime);
        return std::vector<int>{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                local.tm_hour,        local.tm_min,     local.tm_sec};
    };
    const auto at = [](int year, int month, int day) {
        return DateFromSeconds(SecondsOf(DateFromYmd(year, month, day)) + 10 * 3600 + 15 * 60 + 30);
    };
    Write(u"a.eml", "x");
    for (const int month : {1, 7}) {
        EXPECT_EQ(files.SetLastChange(scratch / u"a.eml", at(2007, month, 3)), FileError::none);
        EXPECT_EQ(changed(), (std::vector<int>{2007, month, 3, 10, 15, 30}));
    }
#ifdef _WIN32 // whose files know the years from 1601 on
    EXPECT_EQ(files.SetLastChange(scratch / u"a.eml", at(1066, 10, 14)), FileError::none);
    EXPECT_EQ(changed()[0], 2007);
#endif
    EXPECT_EQ(files.SetLastChange(scratch / u"gone.eml", at(2007, 1, 3)), FileError::notFound);
}
