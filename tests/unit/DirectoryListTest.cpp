// DirectoryListTest.cpp: the lines of the folder list in which the store folder is chosen.
#include "app/DirectoryList.h"
#include "tests/support/Case.h"

#include <gtest/gtest.h>

namespace {

std::vector<Text> Written(const std::vector<DirectoryLine>& lines)
{
    std::vector<Text> written;
    for (const DirectoryLine& line : lines) written.push_back(line.label + u"=" + line.path);
    return written;
}

TEST(DirectoryListTest, PathIsWrittenInOneForm)
{
    const Case<Text> cases[] = {
        {"a drive's root keeps its separator", u"C:\\", u"C:\\"},
        {"a bare drive is its root", u"c:", u"c:\\"},
        {"trailing separators go", u"C:\\Mail\\\\", u"C:\\Mail"},
        {"slashes of another system", u"Z:/tmp/out/", u"Z:\\tmp\\out"},
        {"below a share", u"\\\\server\\share\\a\\", u"\\\\server\\share\\a"},
        {"nothing", u"", u""},
    };
    for (const auto& c : cases) EXPECT_EQ(NormalDirectoryPath(c.given), c.want) << c.why;
}

TEST(DirectoryListTest, FullPathsNameOnePlace)
{
    for (const TextView path : {u"C:\\", u"z:\\Mail", u"\\\\server\\share", u"\\\\server\\share\\a"})
        EXPECT_TRUE(IsFullPath(path)) << ToUtf8(path);
    for (const TextView path : {u"", u"C:", u"Mail", u"C:Mail", u"\\Mail", u"..\\Mail", u".", u"1:\\Mail",
                                u"\\\\", u"\\\\server", u"\\\\server\\", u"\\\\\\share"})
        EXPECT_FALSE(IsFullPath(path)) << ToUtf8(path);
}

TEST(DirectoryListTest, LinesLeadFromTheRootToTheSubdirectories)
{
    const std::vector<DirectoryLine> lines = DirectoryLines(u"C:\\Mail\\Old", {u"2001", u"2002"});
    EXPECT_EQ(Written(lines),
              (std::vector<Text>{u"C:\\=C:\\", u"  Mail=C:\\Mail", u"    Old=C:\\Mail\\Old",
                                 u"      2001=C:\\Mail\\Old\\2001", u"      2002=C:\\Mail\\Old\\2002"}));
    EXPECT_EQ(OwnLine(lines, 2), 2u);
    EXPECT_EQ(Written(DirectoryLines(u"D:\\", {u"a"})), (std::vector<Text>{u"D:\\=D:\\", u"  a=D:\\a"}));
    EXPECT_EQ(Written(DirectoryLines(u"\\\\server\\share\\a", {})),
              (std::vector<Text>{u"\\\\server\\share=\\\\server\\share", u"  a=\\\\server\\share\\a"}));
    EXPECT_TRUE(DirectoryLines(u"", {}).empty());
}

} // namespace
