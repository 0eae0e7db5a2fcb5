// FilesTest.cpp: what only Windows does to files: sharing, long paths, short names.
#include "platform/win32/WideText.h"
#include "platform/win32/WinFiles.h"
#include "tests/support/ScratchDirectory.h"

#include <fstream>
#include <gtest/gtest.h>
#include <windows.h>

namespace {

class WinFilesTest : public testing::Test {
protected:
    // A handle of another program.
    HANDLE OpenElsewhere(DWORD access, DWORD share)
    {
        return CreateFileW(Wide(path), access, share, nullptr, OPEN_ALWAYS, 0, nullptr);
    }

    ScratchDirectory scratch;
    Text path = scratch / u"file";
    WinFiles files;
    std::string bytes;
    FileError error = FileError::none;
};

} // namespace

// The mail client may still hold the message it has just saved, an editor the log.
TEST_F(WinFilesTest, AFileThatIsSharedIsReadAndAppendedToAndNoOther)
{
    const HANDLE other = OpenElsewhere(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    EXPECT_EQ(files.Append(path, "x"), FileError::none);
    EXPECT_EQ(files.ReadWhole(path, bytes), FileError::none);
    EXPECT_EQ(bytes, "x");
    EXPECT_FALSE(files.Open(path, OpenMode::exclusive, error));
    EXPECT_EQ(error, FileError::inUse);
    CloseHandle(other);
    const HANDLE alone = OpenElsewhere(GENERIC_READ, 0); // as a backup has it
    EXPECT_EQ(files.ReadWhole(path, bytes), FileError::inUse);
    EXPECT_EQ(files.Append(path, "y"), FileError::inUse);
    CloseHandle(alone);
}

// A longer path is refused: cut, it would be another e-mail's.
TEST_F(WinFilesTest, PathsOf259CharactersAndNoMore)
{
    Text directory = scratch / u"";
    while (directory.size() < 180) {
        directory += u"\\" + Text(40, u'd');
        ASSERT_TRUE(files.MakeDirectory(directory));
    }
    const Text longest = directory + u"\\" + Text(259 - directory.size() - 1, u'n');
    EXPECT_EQ(files.Append(longest, "x"), FileError::none);
    EXPECT_TRUE(files.FileExists(longest));
    EXPECT_EQ(files.Append(longest + u"n", "y"), FileError::notFound);
    EXPECT_EQ(files.ReadWhole(longest, bytes), FileError::none);
    EXPECT_EQ(bytes, "x");
    EXPECT_EQ(files.Rename(longest, longest + u"n"), FileError::notFound);
    EXPECT_TRUE(files.FileExists(longest));
    const Text tooLong = directory + u"\\" + Text(300, u'd');
    EXPECT_FALSE(files.MakeDirectory(tooLong));
    std::vector<Text> names;
    EXPECT_NE(ListEmlFiles(files, tooLong, names), FileError::none);
}

// Asked for "*.*eml", Windows gives this file for the sake of its short name.
TEST_F(WinFilesTest, ShortNamesDoNotMakeAnEmail)
{
    std::ofstream(scratch.Path() / "message number one.eml_old") << "x";
    std::ofstream(scratch.Path() / "message number one.emlx") << "x";
    std::vector<Text> names;
    EXPECT_EQ(ListEmlFiles(files, scratch / u"", names), FileError::none);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(ListEmlFiles(files, u"", names), FileError::notFound); // and not the root of the drive
}
