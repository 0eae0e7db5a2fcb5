// PlatformFilesTest.cpp: the file system of the system that the tests run on, and the order of names.
#include "platform/FileNames.h"
#include "platform/System.h"
#include "tests/support/ScratchDirectory.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

class PlatformFiles : public testing::Test {
protected:
    void Write(const Text& name, std::string_view content)
    {
        std::ofstream(scratch.Path() / name, std::ios::binary) << content;
    }

    ScratchDirectory scratch;
    SystemFiles files;
    std::string bytes;
    FileError error = FileError::none;
};

std::string AllBytes()
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    return all;
}

} // namespace

TEST(FileNames, EmlNames)
{
    const struct {
        const char16_t* name;
        bool want;
    } cases[] = {
        {u"a.eml", true},    {u"a.EML", true},   {u"b.xeml", true},  {u".eml", true},  {u"a.b.eMl", true},
        {u"a.b xeml", true}, {u"eml", false},    {u"aeml", false},   {u"a.em", false}, {u"a.eml.txt", false},
        {u"", false},        {u"a.eml ", false}, {u"a.emlx", false},
    };
    for (const auto& c : cases) EXPECT_EQ(IsEmlName(c.name), c.want) << ToUtf8(c.name);
}

TEST(FileNames, SortedWithoutRegardToCase)
{
    std::vector<Text> names = {u"b", u"a10", u"A2", u"a", u"B", u"\u00C9", u"\u00E9a", u"aB", u"Ab"};
    SortNames(names);
    EXPECT_EQ(names,
              (std::vector<Text>{u"a", u"a10", u"A2", u"Ab", u"aB", u"B", u"b", u"\u00C9", u"\u00E9a"}));
}

TEST(FileNames, SortedByTheNumbersTheyBeginWith)
{
    const std::vector<Text> sorted = {u"!",      u"0000_z",  u"0001",    u"0001_a",
                                      u"0001_B", u"1_b",     u"0009_a",  u"1000_a",
                                      u"9999_a", u"10000_a", u"10001_a", u"123456789012345678901",
                                      u"_1",     u"a10",     u"a2"};
    std::vector<Text> names(sorted.rbegin(), sorted.rend());
    SortNames(names);
    EXPECT_EQ(names, sorted);
}

TEST_F(PlatformFiles, ListsTheEmailsOfADirectoryAndNothingElse)
{
    for (const Text name :
         {u"a.EML", u"b.xeml", u"eml", u"C.eml", u"0001_\u00A3\u00E9.eml", u"a.txt", u"x.eml.bak"})
        Write(name, "x");
    ASSERT_TRUE(files.MakeDirectory(scratch / u"dir.eml"));
    EXPECT_EQ(files.ListEmlFiles(scratch / u""),
              (std::vector<Text>{u"0001_\u00A3\u00E9.eml", u"a.EML", u"b.xeml", u"C.eml"}));
    EXPECT_TRUE(files.ListEmlFiles(scratch / u"missing").empty());
    EXPECT_TRUE(files.ListEmlFiles(scratch / u"a.EML").empty()); // a file is no directory
}

TEST_F(PlatformFiles, ListsDirectories)
{
    for (const Text name : {u"b", u"A", u"\u00DCber uns"}) ASSERT_TRUE(files.MakeDirectory(scratch / name));
    Write(u"file", "");
    EXPECT_EQ(files.ListDirectories(scratch / u""), (std::vector<Text>{u"A", u"b", u"\u00DCber uns"}));
}

TEST_F(PlatformFiles, FilesAndDirectoriesAreToldApart)
{
    Write(u"file", "");
    ASSERT_TRUE(files.MakeDirectory(scratch / u"dir"));
    EXPECT_TRUE(files.MakeDirectory(scratch / u"dir")); // it exists afterwards
    EXPECT_TRUE(files.DirectoryExists(scratch / u"dir"));
    EXPECT_TRUE(files.DirectoryExists(scratch / u"dir/"));
    EXPECT_FALSE(files.DirectoryExists(scratch / u"file"));
    EXPECT_FALSE(files.DirectoryExists(u""));
    EXPECT_TRUE(files.FileExists(scratch / u"file"));
    EXPECT_FALSE(files.FileExists(scratch / u"dir"));
    EXPECT_FALSE(files.FileExists(scratch / u"missing"));
    EXPECT_FALSE(files.FileExists(u""));
    EXPECT_FALSE(files.MakeDirectory(scratch / u"file"));
    EXPECT_FALSE(files.MakeDirectory(scratch / u"missing/below")); // one level only
}

TEST_F(PlatformFiles, ReadWholeGivesTheBytesUnchanged)
{
    std::string large;
    while (large.size() < 300000) large += AllBytes();
    const std::string contents[] = {"", "x",
                                    "a\r\nb\nc\x1A"
                                    "d",
                                    AllBytes(), large};
    for (const std::string& content : contents) {
        Write(u"m.eml", content);
        EXPECT_EQ(files.ReadWhole(scratch / u"m.eml", bytes), FileError::none);
        EXPECT_TRUE(bytes == content) << content.size();
    }
}

TEST_F(PlatformFiles, ReadWholeLeavesNothingBehindOnFailure)
{
    bytes = "old";
    EXPECT_EQ(files.ReadWhole(scratch / u"missing", bytes), FileError::notFound);
    EXPECT_EQ(bytes, "");
    bytes = "old";
    EXPECT_EQ(files.ReadWhole(scratch / u"", bytes), FileError::denied); // a directory
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(files.ReadWhole(scratch / u"no/such/place", bytes), FileError::notFound);
}

TEST_F(PlatformFiles, AppendCreatesAndThenGoesOn)
{
    EXPECT_EQ(files.Append(scratch / u"log.txt", "one\r\n"), FileError::none);
    EXPECT_EQ(files.Append(scratch / u"log.txt", "two\r\n"), FileError::none);
    EXPECT_EQ(files.ReadWhole(scratch / u"log.txt", bytes), FileError::none);
    EXPECT_EQ(bytes, "one\r\ntwo\r\n");
    EXPECT_EQ(files.Append(scratch / u"", "x"), FileError::denied);
    EXPECT_EQ(files.Append(scratch / u"no/log.txt", "x"), FileError::notFound);
}

TEST_F(PlatformFiles, ExclusiveUseIsRefusedToASecond)
{
    Write(u"saved.mdb", "0123456789");
    const Text path = scratch / u"saved.mdb";
    auto first = files.Open(path, OpenMode::exclusive, error);
    ASSERT_TRUE(first);
    EXPECT_EQ(error, FileError::none);
    for (const OpenMode mode : {OpenMode::exclusive, OpenMode::read}) {
        EXPECT_FALSE(files.Open(path, mode, error));
        EXPECT_EQ(error, FileError::inUse);
    }
    EXPECT_FALSE(files.Open(path, OpenMode::createNew, error));
    EXPECT_EQ(error, FileError::exists);
    first.reset();

    const auto reader = files.Open(path, OpenMode::read, error),
               second = files.Open(path, OpenMode::read, error);
    EXPECT_TRUE(reader && second); // readers share
    EXPECT_FALSE(files.Open(path, OpenMode::exclusive, error));
    EXPECT_EQ(error, FileError::inUse);
}

TEST_F(PlatformFiles, ReadsAndWritesAtAnyPlace)
{
    const Text path = scratch / u"pages";
    auto file = files.Open(path, OpenMode::createNew, error);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Size(), 0u);
    EXPECT_TRUE(file->WriteAt(4096, "end", 3)); // past the end: zeros between
    EXPECT_TRUE(file->WriteAt(0, "start", 5));
    EXPECT_EQ(file->Size(), 4099u);
    char buffer[8] = {};
    EXPECT_TRUE(file->ReadAt(4094, buffer, 5));
    EXPECT_EQ(std::string(buffer, 5), std::string("\0\0end", 5));
    EXPECT_FALSE(file->ReadAt(4094, buffer, 6)); // one byte too many
    EXPECT_FALSE(file->ReadAt(1u << 20, buffer, 1));
    EXPECT_TRUE(file->ReadAt(4099, buffer, 0));
    EXPECT_TRUE(file->Resize(5));
    EXPECT_EQ(file->Size(), 5u);
    EXPECT_TRUE(file->Resize(7));
    EXPECT_TRUE(file->Flush());
    file.reset();
    EXPECT_EQ(files.ReadWhole(path, bytes), FileError::none);
    EXPECT_EQ(bytes, std::string("start\0\0", 7));

    file = files.Open(path, OpenMode::read, error);
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->WriteAt(0, "x", 1));
    EXPECT_FALSE(file->Resize(0));
}

TEST_F(PlatformFiles, OpenSaysWhyItFails)
{
    EXPECT_FALSE(files.Open(scratch / u"missing", OpenMode::exclusive, error));
    EXPECT_EQ(error, FileError::notFound);
    EXPECT_FALSE(files.Open(scratch / u"no/such", OpenMode::createNew, error));
    EXPECT_EQ(error, FileError::notFound);
    for (const OpenMode mode : {OpenMode::read, OpenMode::exclusive}) {
        EXPECT_FALSE(files.Open(scratch / u"", mode, error));
        EXPECT_EQ(error, FileError::denied);
    }
}

TEST_F(PlatformFiles, RenameNeverReplaces)
{
    Write(u"a", "A");
    Write(u"b", "B");
    EXPECT_EQ(files.Rename(scratch / u"a", scratch / u"b"), FileError::exists);
    EXPECT_EQ(files.ReadWhole(scratch / u"b", bytes), FileError::none);
    EXPECT_EQ(bytes, "B");
    EXPECT_EQ(files.Rename(scratch / u"a", scratch / u"c"), FileError::none);
    EXPECT_FALSE(files.FileExists(scratch / u"a"));
    EXPECT_EQ(files.Rename(scratch / u"a", scratch / u"d"), FileError::notFound);
    EXPECT_TRUE(files.Delete(scratch / u"c"));
    EXPECT_FALSE(files.Delete(scratch / u"c"));
}

// A path that is cut at its NUL would name another file.
TEST_F(PlatformFiles, ANulIsNeverTheEndOfAPath)
{
    Write(u"a.eml", "x");
    const Text path = (scratch / u"a.eml") + Text(1, u'\0') + u".txt";
    EXPECT_FALSE(files.FileExists(path));
    EXPECT_FALSE(files.Delete(path));
    EXPECT_NE(files.ReadWhole(path, bytes), FileError::none);
    EXPECT_NE(files.Append(path, "y"), FileError::none);
    EXPECT_FALSE(files.Open(path, OpenMode::exclusive, error));
    EXPECT_NE(files.Rename(scratch / u"a.eml", path), FileError::none);
    EXPECT_FALSE(files.MakeDirectory((scratch / u"dir") + Text(1, u'\0')));
    EXPECT_FALSE(files.DirectoryExists((scratch / u"") + Text(1, u'\0')));
    EXPECT_TRUE(files.FileExists(scratch / u"a.eml"));
}

TEST_F(PlatformFiles, NamesBeyondAscii)
{
    const Text name = u"\u65E5\u672C \u00A3 \U0001F600.eml";
    EXPECT_EQ(files.Append(scratch / name, "x"), FileError::none);
    EXPECT_TRUE(files.FileExists(scratch / name));
    EXPECT_EQ(files.ListEmlFiles(scratch / u""), std::vector<Text>{name});
}

TEST_F(PlatformFiles, EveryErrorHasItsWords)
{
    for (int number = 1; number <= static_cast<int>(FileError::outOfMemory); ++number)
        EXPECT_FALSE(Describe(static_cast<FileError>(number)).empty()) << number;
    EXPECT_EQ(Describe(FileError::none), u"");
}

#ifndef _WIN32
TEST_F(PlatformFiles, AFullDiskIsToldFromOtherFailures)
{
    if (!files.FileExists(u"/dev/full")) GTEST_SKIP();
    EXPECT_EQ(files.Append(u"/dev/full", "x"), FileError::full);
}

TEST_F(PlatformFiles, LinksCountAsWhatTheyLeadTo)
{
    Write(u"real", "x");
    ASSERT_TRUE(files.MakeDirectory(scratch / u"dir"));
    std::filesystem::create_symlink("real", scratch.Path() / "link.eml");
    std::filesystem::create_symlink("nowhere", scratch.Path() / "broken.eml");
    std::filesystem::create_symlink("dir", scratch.Path() / "dir.eml");
    EXPECT_EQ(files.ListEmlFiles(scratch / u""), std::vector<Text>{u"link.eml"});
    EXPECT_EQ(files.ListDirectories(scratch / u""), (std::vector<Text>{u"dir", u"dir.eml"}));
}
#endif
