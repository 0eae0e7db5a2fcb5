// StoreFoldersTest.cpp: names and directories of the mail folders in the store, and what is stored there.
#include "folders/StoreFolders.h"
#include "folders/FolderPaths.h"
#include "folders/StoredFiles.h"
#include "store/StoreNames.h"
#include "tests/support/Case.h"
#include "tests/support/RunBench.h"

TEST(FolderPaths, AStatusReplacesTheOneBefore)
{
    EXPECT_EQ(MarkedNodeText(u"Inbox", u" - ", u"3/7"), u"Inbox - 3/7");
    EXPECT_EQ(MarkedNodeText(u"Inbox - 3/7", u" - ", u"7/7"), u"Inbox - 7/7");
    EXPECT_EQ(MarkedNodeText(u"Q1 - plans", u" - ", u"1/2"), u"Q1 - 1/2") << "kept: the name is cut";
    EXPECT_EQ(MarkedNodeText(u"Inbox", u" - ", u""), u"Inbox");
}

TEST(StoreFolders, NamesThatWindowsCannotHoldAreChanged)
{
    CodePage1252 codePage;
    const Case<Text> cases[] = {
        {"forbidden characters", u"a\\b/c:d*e?f\"g<h>i|j", u"a_b_c_d_e_f_g_h_i_j"},
        {"control characters", u"a\tb\x01", u"a_b_"},
        {"trailing dots and blanks", u"a. .", u"a___"},
        {"inner ones stay", u"a. b", u"a. b"},
        {"up and away", u"..", u"__"},
        {"a device", u"con", u"con_"},
        {"a device with an extension", u"LPT1.txt", u"LPT1_.txt"},
        {"a device before blanks", u"nul .x", u"nul _.x"},
        {"no device", u"COM0", u"COM0"},
        {"outside the code page", u"\u0416\u00E9\U0001F4E7", u"_\u00E9__"},
        {"nothing", u"", u"_"},
    };
    for (const auto& c : cases) EXPECT_EQ(DirectoryNameFor(c.given, codePage), c.want) << c.why;
}

TEST(StoreFolders, NoTwoFoldersShareADirectory)
{
    CodePage1252 codePage;
    const std::vector<FolderNode> nodes = {{u"Root", 1}, {u"Local", 2}, {u"a?", 3}, {u"in", 4},
                                           {u"a*", 3},   {u"a_", 3},    {u"in", 4}, {u"A_", 3},
                                           {u"-x", 3},   {u"b?", 3},    {u"b*", 3}, {u"Other", 2}};
    EXPECT_EQ(
        StoreDirectories(nodes, codePage),
        (Texts{u"Root", u"Local", u"Local\\a__2", u"Local\\a__2\\in", u"Local\\a__3", u"Local\\a_",
               u"Local\\a_\\in", u"Local\\A__4", u"Local\\-x", u"Local\\b_", u"Local\\b__2", u"Other"}));
}

TEST(StoreFolders, FoldersAreMadeLevelByLevel)
{
    FakeFiles files;
    files.directories = {u"c:", u"\\\\server\\share"};
    EXPECT_TRUE(MakeFolders(files, u"C:\\a\\b\\c\\"));
    EXPECT_TRUE(files.DirectoryExists(u"C:\\a\\b"));
    EXPECT_TRUE(MakeFolders(files, u"\\\\server\\share\\x\\"));
    EXPECT_FALSE(MakeFolders(files, u"Z:\\a\\")) << "a drive that is not there";
    EXPECT_EQ(ExportFolderOf(u"C:\\", u"Local\\Inbox"), u"C:\\Local\\Inbox\\");
}

TEST(StoredFiles, OnlyTheMailFoldersOwnDirectoriesCount)
{
    RunBench bench(1, {{u"A/B", 3, {}}, {u"Empty", 2, {}}});
    FolderRun unknown{bench.client, bench.saved,    bench.view,  bench.files,
                      bench.clock,  bench.codePage, bench.locale};
    for (const Text path :
         {u"C:\\Store\\old.eml", u"C:\\Store\\Outlook Express\\0.eml",
          u"C:\\Store\\Local Folders\\Old\\1.eml", u"C:\\Store\\Local Folders\\Empty\\note.txt"})
        bench.files.AddFile(path);
    EXPECT_EQ(CountStoredFiles(bench.run).files, 0u) << "of no mail folder";
    for (const Text name : {u"0000_One.eml", u"0001_Two.EML", u"A_B\\0000_Three.eml"})
        bench.files.AddFile(kDirectory + name);
    EXPECT_EQ(CountStoredFiles(unknown).files, 0u) << "no folder is known yet";
    EXPECT_EQ(CountStoredFiles(bench.run).files, 3u);
    EXPECT_EQ(CountStoredFiles(bench.run).folders, 2u);
    bench.view.options.storeFolder = u"C:\\Other";
    EXPECT_EQ(CountStoredFiles(bench.run).files, 0u) << "the store folder of this moment";
}
