// ProgramArchiveTest.cpp: the buttons that work on the store alone.
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

namespace {

const Text kPage = u"C:\\Store\\index.html";
const std::string kMail = "From: a@b.example\r\nSubject: Hello\r\n\r\nbody\r\n";

struct ProgramArchiveTest : testing::Test, ProgramBench {
    ProgramArchiveTest()
    {
        files.directories.insert(u"c:\\store\\in");
        files.AddFile(u"C:\\Store\\In\\0007_Hello.eml", kMail);
        const auto database = OpenJetDatabase(databaseFiles, kSavedPath);
        AddRow(*database, {u"In", u"Hello", u"A1"});
    }
};

TEST_F(ProgramArchiveTest, VerifyingShowsEachFindingInTheTable)
{
    Start();
    EXPECT_EQ(Press(&Program::cmdVerifyStore),
              u"1 e-mail file(s) looked through: nothing is wrong with the store.");
    EXPECT_TRUE(Stepped(u"busy"));
    EXPECT_TRUE(window.results.empty());
    EXPECT_EQ(window.percentages.back(), std::pair(Bar::currentFolder, 100));

    files.Delete(u"C:\\Store\\In\\0007_Hello.eml");
    files.AddFile(u"C:\\Store\\In\\0008_.eml", "");
    window.results.resize(3); // of a check
    const Text words = u"1 e-mail file(s) looked through, 3 finding(s), which stand in the results table.";
    EXPECT_EQ(Press(&Program::cmdVerifyStore), words);
    EXPECT_EQ(window.log, (std::vector<Text>{words}));
    const std::vector<ResultsRow> rows = {
        {u"in", u"0008", u"The file is empty: 0008_.eml", u"", u""},
        {u"in", u"0008", u"Not recorded as saved: 0008_.eml", u"", u""},
        {u"In", u"", u"Recorded as saved, but no file seems to be it: Hello", u"", u"A1"}};
    EXPECT_EQ(window.results, rows);
    EXPECT_EQ(Records().size(), 1u) << "nothing is changed";
}

TEST_F(ProgramArchiveTest, TheIndexPageIsMadeInTheStore)
{
    Start();
    EXPECT_EQ(Press(&Program::cmdIndexPage), u"The index page of 1 e-mail file(s) is made: " + kPage);
    const std::string page = files.files[FakeFiles::Key(kPage)];
    EXPECT_NE(page.find("[1,\"0007_hello.eml\",null,\"a@b.example\",\"\",\"Hello\",43,0]"), page.npos);
    EXPECT_NE(page.find("\"made\":\"2007-04-03\""), page.npos);
    files.AddFile(u"C:\\Store\\In\\0009_a.eml", kMail);
    Press(&Program::cmdIndexPage);
    EXPECT_NE(files.files[FakeFiles::Key(kPage)], page) << "it replaces its own";
}

TEST_F(ProgramArchiveTest, TheIndexPageTakesNobodyElsesPlace)
{
    Start();
    Press(&Program::cmdIndexPage);
    const std::string earlier = files.files[FakeFiles::Key(kPage)];
    // there: as index.html
    // error: empty: the page is made
    const std::tuple<const char*, std::string, std::size_t, const char16_t*> cases[] = {
        {"a page of its own", earlier, 1 << 20, u""},
        {"somebody's page", "mine", 1 << 20, u"A file of this name exists already"},
        {"a page that a program has open", earlier, 1 << 20, u"The file is in use by another program"},
        {"a full disk", earlier, 100, u"The disk is full"}};
    for (const auto& [why, there, room, refusal] : cases) {
        files.AddFile(kPage, there);
        files.AddFile(kPage + u".new", "mine, too");
        files.room = room;
        files.inUse.clear();
        if (Text(refusal).starts_with(u"The file is in use")) files.inUse = {FakeFiles::Key(kPage)};
        const std::size_t count = files.files.size();
        const Text words = Press(&Program::cmdIndexPage), error = refusal;
        EXPECT_TRUE(words.ends_with(error.empty() ? u"is made: " + kPage : u" - " + error)) << why;
        EXPECT_EQ(files.files[FakeFiles::Key(kPage)], there) << why; // the store is the same
        EXPECT_EQ(files.files[FakeFiles::Key(kPage + u".new")], "mine, too") << why;
        EXPECT_EQ(files.files.size(), count) << "nothing is left behind " << why;
    }
}

TEST_F(ProgramArchiveTest, BothCanBeStopped)
{
    Start();
    for (const auto stop : {&Program::cmdStopAfterEmail, &Program::cmdStopAfterFolder}) {
        window.onEvents = [&] { (program.*stop)(); };
        EXPECT_TRUE(Press(&Program::cmdVerifyStore).starts_with(u"Looking through the store was stopped."));
        EXPECT_EQ(Press(&Program::cmdIndexPage), u"");
        EXPECT_TRUE(Logged(u"No index page was made, as you stopped it."));
        EXPECT_FALSE(files.FileExists(kPage));
    }
}

} // namespace
