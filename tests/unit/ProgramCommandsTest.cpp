// ProgramCommandsTest.cpp: what each button and menu item does, and when it does not.
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

namespace {

const Text kExported = u"All emails for the selected folder have been exported.";
const Text kAllExported = u"All folders have been exported.";

struct ProgramCommandsTest : testing::Test, ProgramBench {};

TEST_F(ProgramCommandsTest, AnExportEndsWithABoxUnlessItIsStopped)
{
    Start();
    fake.onSave = [this](int saves) {
        if (saves == 2) program.cmdStopAfterEmail();
    };
    EXPECT_EQ(Press(&Program::cmdExport), u"");
    EXPECT_EQ(window.steps, (Texts{u"begin", u"busy", u"no stop after e-mail", u"no stop buttons", u"end"}));
    EXPECT_TRUE(Logged(u"User aborted on email export."));
    EXPECT_EQ(Press(&Program::cmdExport), kExported) << "the stop is forgotten";
    EXPECT_EQ(fake.saved.size(), 3u);
    fake.folders[2].item = 0; // restarted, it shows a folder that is not known
    EXPECT_TRUE(Press(&Program::cmdExport).starts_with(u"Please ensure a folder has been selected"));
    EXPECT_FALSE(Stepped(u"busy"));
}

TEST_F(ProgramCommandsTest, AllFoldersAreCheckedAndThenExported)
{
    Start();
    for (int time = 1; time <= 2; ++time) {
        EXPECT_EQ(Press(&Program::cmdSaveAll), kAllExported);
        EXPECT_EQ(window.steps, (Texts{u"begin", u"busy", u"stop buttons", u"box", u"end"}));
        EXPECT_EQ(window.statistics[Statistic::totalCount], time == 1 ? u"4" : u"1");
        EXPECT_EQ(window.statistics[Statistic::totalLeft], u"1") << "at the last, of this run";
        fake.folders[3].rows.push_back(MailRow(u"Sent1"));
    }
    EXPECT_EQ(fake.saved.size(), 5u);
}

TEST_F(ProgramCommandsTest, AStopAfterAFolderEndsTheCheckAloneAndClosingBoth)
{
    for (const bool closing : {false, true}) {
        ProgramBench bench;
        bench.Start();
        bench.window.onEvents = [&] {
            const bool once = bench.window.steps.size() == 2; // begin, busy
            if (!once || bench.window.summaryLines.empty()) return;
            closing ? bench.program.AskToClose() : bench.program.cmdStopAfterFolder();
        };
        EXPECT_EQ(bench.Press(&Program::cmdSaveAll), closing ? u"" : kAllExported);
        EXPECT_EQ(bench.fake.saved.size(), closing ? 0u : 3u) << "of the folder that was checked";
        EXPECT_EQ(bench.Stepped(u"stop buttons"), !closing) << "each is there anew";
        EXPECT_EQ(bench.window.steps.back(), closing ? u"destroy" : u"end");
    }
}

TEST_F(ProgramCommandsTest, ACheckOfAllFoldersBeginsAnew)
{
    Start();
    for (int time = 0; time < 2; ++time) {
        window.results.resize(7);
        window.summary = u"before";
        window.percentages.clear();
        EXPECT_EQ(Press(&Program::cmdCheckAllFolders),
                  u"All folders have been checked - 4 email(s) to be saved.");
        EXPECT_TRUE(window.results.empty());
        EXPECT_EQ(window.summary, u"");
        const auto& bars = window.percentages;
        EXPECT_EQ(std::count(bars.begin(), bars.end(), std::pair(Bar::allFolders, 67)), 1)
            << "the folders were counted before";
    }
    EXPECT_EQ(Press(&Program::cmdCheckFolder).substr(0, 26), u"Folder has not been stored");
    EXPECT_TRUE(Stepped(u"busy"));
    for (const auto command : {&Program::cmdExport, &Program::cmdCheckAllFolders, &Program::cmdSaveAll})
        Press(command);
    EXPECT_FALSE(Logged(u"Exporting emails from Local Folders\\Sent")) << "the last check's list alone";
    fake.ShowFolder(2);
    Press(&Program::cmdGetID);
    EXPECT_EQ(window.shown.back(), u"Message ID: 0");
    EXPECT_EQ(window.steps, (Texts{u"begin", u"end"}));
}

TEST_F(ProgramCommandsTest, AFreshRunListMissesNoNewMail)
{
    for (const bool fresh : {false, true}) {
        ProgramBench bench;
        bench.profile.values[u"Options/Jump to remaining"] = u"1";
        if (fresh) bench.profile.values[u"Extras/Fresh Run List"] = u"1";
        bench.Start();
        auto& rows = bench.fake.folders[2].rows;
        EXPECT_EQ(bench.Press(&Program::cmdExport), kExported);
        rows.push_back(MailRow(u"Last"));
        EXPECT_EQ(bench.Press(&Program::cmdSaveAll), kAllExported);
        rows.insert(rows.begin(), {MailRow(u"First"), MailRow(u"Second")});
        const std::size_t before = bench.fake.saved.size();
        EXPECT_EQ(bench.Press(&Program::cmdSaveAll), kAllExported);
        EXPECT_EQ(bench.fake.saved.size() - before, fresh ? 2u : 0u);
    }
}

TEST_F(ProgramCommandsTest, ExtrasAreWrittenWhenAllThatIsChosenCanBeTaken)
{
    const ExtraRow& last = ExtraRows().back();
    const int other = last.normal == last.most ? last.least : last.most;
    std::vector<Text> right;
    for (const ExtraRow& row : ExtraRows()) right.push_back(DecimalText(row.normal));
    const std::vector<Text> normal = right;
    std::vector<Text> wrong = right;
    wrong.back() = DecimalText(last.most + 1);
    right.back() = DecimalText(other);
    Start();
    window.chosenExtras = {wrong};
    EXPECT_EQ(Press(&Program::cmdExtras), Text(last.key) + u" takes a number from " +
                                              DecimalText(last.least) + u" to " + DecimalText(last.most) +
                                              u", which this is not: " + wrong.back());
    EXPECT_EQ(window.extras, normal);
    EXPECT_EQ(window.wrongExtras, (std::vector<int>{static_cast<int>(wrong.size()) - 1}));
    EXPECT_TRUE(profile.written.empty()) << "given up";

    window.chosenExtras = {wrong, right};
    profile.refuse = true;
    EXPECT_TRUE(Press(&Program::cmdExtras).starts_with(u"The extras could not be written to settings.ini"));
    profile.refuse = false;
    EXPECT_EQ(profile.values.count(u"Extras/" + Text(last.key)), 0u);
    profile.written.clear();
    window.chosenExtras = {right};
    EXPECT_EQ(Press(&Program::cmdExtras), u"");
    EXPECT_EQ(window.extras, right) << "they hold meanwhile";
    EXPECT_EQ(profile.written.size(), ExtraRows().size());
    EXPECT_EQ(profile.values[u"Extras/" + Text(last.key)], DecimalText(other));
}

TEST_F(ProgramCommandsTest, TickedRowsAreMarkedAsSavedOnce)
{
    Start();
    window.results = {{u"In", u"0", u"It's one", u"", u"A1"},
                      {u"In", u"1", u"Unread", u"", u""},
                      {u"In", u"2", u"Not ticked", u"", u"C"},
                      {u"In", u"3", u"It's one", u"", u"A1"},
                      {u"In", u"4", u"Last", u"", u"D4"},
                      {u"In", u"5", u"Refused", u"", u"E5"},
                      {u"In", u"", u"Recorded as saved, but no file seems to be it: One", u"", u"F6"}};
    window.ticked = {0, 1, 3, 4, 6};
    EXPECT_EQ(Press(&Program::mnMarkSaved), u"Finished updating database");
    const Text said = u"Mark as saved: In - It's one : A1";
    EXPECT_EQ(window.log, (Texts{said, u"Not marked, as the row has no e-mail's details: In - 1", said,
                                 u"Mark as saved: In - Last : D4",
                                 u"Not marked, as the row has no e-mail's details: In - "}));
    EXPECT_EQ(Records(), (std::vector<Texts>{{u"In", u"It's one", u"A1"}, {u"In", u"Last", u"D4"}}));
    EXPECT_EQ(window.ticked, (std::set<int>{1, 6})) << "the others are unticked, and stay";

    ProgramBench alike;
    alike.profile.values[u"Extras/Look-alikes"] = u"1";
    alike.Start();
    alike.window.results = window.results;
    alike.window.ticked = {0, 3};
    alike.Press(&Program::mnMarkSaved);
    EXPECT_EQ(alike.window.log,
              (Texts{said, u"Not marked, as this e-mail or one that looks the same is recorded: In - 3"}));
    EXPECT_EQ(alike.window.ticked, (std::set<int>{3}));

    window.ticked = {5};
    databaseFiles.failForGood = true;
    databaseFiles.failAt = databaseFiles.changes + 1;
    EXPECT_TRUE(Press(&Program::mnMarkSaved).starts_with(u"Database error: "));
    EXPECT_EQ(window.ticked, (std::set<int>{5})) << "what is not recorded stays ticked";
    EXPECT_EQ(window.log, window.boxes);
    window.ticked = {0, 3};
    window.onEvents = [this] { program.AskToClose(); };
    Press(&Program::mnMarkSaved);
    EXPECT_EQ(window.ticked, (std::set<int>{3})) << "closing ends it between two rows";
}

TEST_F(ProgramCommandsTest, CondensingShowsHowFarItIsAndCanBeStopped)
{
    for (int i = 0; i < 600; ++i)
        AddRow(*OpenJetDatabase(databaseFiles, kSavedPath), {u"Inbox", u"", DecimalText(i % 400)});
    Start();
    for (const auto stop : {&Program::cmdStopAfterEmail, &Program::cmdStopAfterFolder}) {
        window.onEvents = [&] { (program.*stop)(); };
        window.percentages.clear();
        EXPECT_EQ(Press(&Program::mnCondenseDB), u"");
        EXPECT_EQ(window.log, (Texts{u"Condensing was stopped: the records behind were not looked at."}));
        ASSERT_EQ(window.percentages.size(), 1u);
        EXPECT_EQ(window.percentages[0].first, Bar::currentFolder);
        EXPECT_TRUE(Stepped(u"busy"));
    }
    window.onEvents = {};
    for (const bool again : {false, true}) {
        Press(&Program::mnCondenseDB);
        EXPECT_TRUE(window.log.empty()) << "it came to its end";
        EXPECT_EQ(window.shown.back() == u"Removed 0 record(s)", again);
    }
    EXPECT_EQ(Records().size(), 400u);
}

TEST_F(ProgramCommandsTest, AMissingStoreIsSaidOnceThenAccepted)
{
    const Text gone = u"D:\\gone", own = u"C:\\Quillbox";
    const struct {
        Text wish, comesBack, reason, used;
        void (Program::*command)();
    } cases[] = {
        {gone, u"", u"cannot be found: " + gone, own, &Program::cmdSaveAll},
        {gone, gone, u"cannot be found: " + gone, gone, &Program::cmdExport},
        {u"mails", u"mails", u"is not a full path: mails", own, &Program::cmdCheckFolder},
    };
    for (const auto& c : cases) {
        ProgramBench bench;
        bench.profile.values[u"Paths/Store"] = c.wish;
        bench.Start();
        const Text reason = u"The store folder of the settings " + c.reason, words = bench.Press(c.command);
        EXPECT_TRUE(words.starts_with(reason + u"\r\n\r\nNothing has been started."));
        EXPECT_TRUE(words.ends_with(u"works with the program's folder:\r\n" + own));
        EXPECT_EQ(bench.window.log, (Texts{reason}));
        EXPECT_EQ(bench.window.steps, (Texts{u"begin", u"warning", u"end"})) << "nothing was started";
        bench.files.directories.insert({u"d:", FakeFiles::Key(c.comesBack)});
        EXPECT_EQ(bench.Press(&Program::cmdExport), kExported) << "the next press goes ahead";
        EXPECT_EQ(bench.fake.saved.at(0).path, c.used + u"\\Local Folders\\Inbox\\0000_Mail0.eml");
        bench.files.directories.insert({u"d:", u"d:\\gone"});
        EXPECT_EQ(bench.Press(&Program::cmdCheckAllFolders).substr(0, 3), u"All");
        EXPECT_EQ(bench.program.Store().Path(), c.used) << "for good";
        bench.program.AskToClose();
        EXPECT_EQ(bench.profile.values[u"Paths/Store"], c.wish) << "it stays the wish";
    }
    profile.values[u"Paths/Store"] = gone;
    Start();
    for (const Text& chosen : {Text(u"C:\\Store\\"), Text(u"E:\\")})
        program.Store().Choose(chosen); // E: is empty
    EXPECT_EQ(Press(&Program::cmdExport), kExported) << "the user's choice ends the matter";
    program.AskToClose();
    EXPECT_EQ(profile.values[u"Paths/Store"], u"C:\\Store");
}

TEST_F(ProgramCommandsTest, FilesWithoutRecordsAreSaidOnceForEachStore)
{
    files.Delete(u"C:\\Quillbox\\saved.mdb");
    databaseFiles.files.clear();
    files.AddFile(u"C:\\Store\\Local Folders\\Inbox\\0000_Mail0.eml");
    files.directories.insert(u"c:\\other");
    program.StartUp();
    const Text found =
        u"saved.mdb has been made anew, but the store folder holds 1 saved e-mail(s) of 1 folder(s)";
    ASSERT_EQ(window.boxes.size(), 1u);
    EXPECT_TRUE(window.boxes[0].starts_with(found + u":\r\nC:\\Store\r\n"));
    EXPECT_EQ(window.log.back(), found + u": a check of all folders with \"File (slow)\" records them.");
    EXPECT_EQ(Press(&Program::cmdSync), u"") << "once";

    for (const auto command : {&Program::cmdExport, &Program::cmdSaveAll}) {
        const Text other = command == &Program::cmdExport ? u"C:\\Other" : u"C:\\Third";
        files.directories.insert(FakeFiles::Key(other));
        files.AddFile(other + u"\\Local Folders\\Sent\\0000_Sent0.eml");
        program.Store().Choose(other);
        EXPECT_TRUE(Press(command).starts_with(found)) << "before the first export there";
        EXPECT_FALSE(Stepped(u"busy"));
    }
    for (const Text& there : {Text(u"C:\\STORE"), Text(u"C:\\Quillbox")}) { // nothing is in the second
        program.Store().Choose(there);
        EXPECT_EQ(Press(&Program::cmdExport), kExported) << "what lies there may be this session's own";
    }
}

TEST_F(ProgramCommandsTest, FoldersAreMadeOpenedAndUsed)
{
    Start();
    program.cmdOpenFolder();
    EXPECT_EQ(window.shown.back(), u"There is no export folder to open yet");
    Press(&Program::cmdExport);
    program.cmdOpenFolder();
    EXPECT_EQ(window.opened, (Texts{u"C:\\Store\\Local Folders\\Inbox\\"}));
    const Text ignored = window.controls[txtIgnore];
    window.controls[chkSendKeys] = u"1";
    window.selectedNode = -1;
    program.cmdUseSelection();
    EXPECT_EQ(window.controls[txtIgnore], ignored) << "none is selected";
    window.selectedNode = 3;
    program.cmdUseSelection();
    EXPECT_EQ(window.controls[txtIgnore], u"Local Folders\\Sent");
    EXPECT_EQ(window.controls[chkSendKeys], u"1") << "it stays as it is ticked";

    files.AddFile(u"C:\\Store\\taken");
    files.refused = {u"c:\\store\\full"};
    window.names = {u"not asked for", u"Mail of 2007", u"full", u"taken", u"\u0416", u"", u"a:b"};
    const Text no = u"A folder cannot have this name, or Outlook Express could not save to it: ";
    Press(&Program::cmdNewFolder);
    EXPECT_EQ(window.boxes, (Texts{no + u"a:b", no, no + u"\u0416",
                                   u"There is a file of this name already: C:\\Store\\taken",
                                   u"The folder cannot be made. The disk may be full or write-protected, or "
                                   u"the name too long: C:\\Store\\full"}));
    EXPECT_TRUE(files.DirectoryExists(u"C:\\Store\\Mail of 2007"));
    EXPECT_EQ(program.Store().Path(), u"C:\\Store\\Mail of 2007");
    EXPECT_EQ(window.names.size(), 1u);
    EXPECT_EQ(window.steps.back(), u"folder list");
    Press(&Program::cmdChooseStore);
    EXPECT_EQ(window.steps, (Texts{u"folder list"}));
    EXPECT_EQ(window.tab, static_cast<int>(Tab::store));
}

// The menu line "Forget ticked": what is forgotten is saved again, and nothing else.
struct ForgetTest : testing::Test, ProgramBench {
    ForgetTest()
    {
        // A CRC that stands twice, in other folders, and one of another e-mail.
        const auto database = OpenJetDatabase(databaseFiles, kSavedPath);
        const Texts rows[] = {{u"In", u"A1"}, {u"In", u"A1"}, {u"Out", u"A1"}, {u"In", u"B2"}};
        for (const Texts& row : rows) AddRow(*database, {row[0], u"One", row[1]});
        window.results = {{u"In", u"0", u"One", u"", u"A1"},
                          {u"In", u"1", u"Unread", u"", u""},
                          {u"In", u"2", u"New", u"", u"C3"}};
        window.ticked = {0, 1, 2};
    }
};

TEST_F(ForgetTest, TickedEmailsAreForgottenAfterAsking)
{
    Start();
    window.answersYes = false;
    EXPECT_EQ(Press(&Program::mnForget), u"");
    EXPECT_EQ(Records().size(), 4u);
    EXPECT_EQ(window.ticked.size(), 3u);

    window.answersYes = true;
    EXPECT_EQ(Press(&Program::mnForget), u"2 record(s) of the ticked e-mails were deleted");
    EXPECT_EQ(window.log.front(), u"Forgotten: In - One : A1");
    EXPECT_EQ(Records(), (std::vector<Texts>{{u"Out", u"One", u"A1"}, {u"In", u"One", u"B2"}}));
    EXPECT_TRUE(window.ticked.empty());

    const std::size_t asked = window.asked.size();
    Press(&Program::mnForget);
    EXPECT_EQ(window.asked.size(), asked) << "nothing is ticked";
}

TEST_F(ForgetTest, OfThoseThatLookAlikeEachTickForgetsOne)
{
    profile.values[u"Extras/Look-alikes"] = u"1";
    Start();
    EXPECT_EQ(Press(&Program::mnForget), u"1 record(s) of the ticked e-mails were deleted");
    EXPECT_EQ(Records().size(), 3u);
}

TEST_F(ForgetTest, AForgottenEmailIsSavedAgain)
{
    Start();
    Press(&Program::cmdExport);
    const auto saved = fake.saved.size();
    const Texts first = Records().at(4);
    window.results = {{first[0], u"0", first[1], u"", first[2]}};
    window.ticked = {0};
    Press(&Program::mnForget);
    fake.selected = {0};
    Press(&Program::cmdExport);
    EXPECT_EQ(fake.saved.size(), saved + 1);
    EXPECT_EQ(fake.saved.back().subject, first[1]);
}

} // namespace
