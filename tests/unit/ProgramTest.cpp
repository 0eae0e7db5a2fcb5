// ProgramTest.cpp: the program's start and end, and the bracket around its commands.
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

struct ProgramTest : testing::Test, ProgramBench {};

TEST_F(ProgramTest, StartsInItsOrder)
{
    files.readOnly = true;
    window.onBox = [this] { EXPECT_TRUE(window.log.empty()) << "nothing before the first box"; };
    program.StartUp();
    EXPECT_EQ(window.steps, (Texts{u"store C:\\Quillbox", u"store C:\\Store", u"begin", u"appear",
                                   u"IMPORTANT! Please Read", u"end"}));
    EXPECT_EQ(window.log, (Texts{Text(61, u'-'), u"Started " + ProgramTitle() + u" - " + ProgramVersion(),
                                 u"The program's folder cannot be written: settings and log are not kept.",
                                 u"-- Syncing with OE --"}));
    EXPECT_TRUE(window.unlocked);
    for (const Needs needs : {Needs::idle, Needs::folders, Needs::records})
        EXPECT_TRUE(program.IsEnabled(needs)) << static_cast<int>(needs);
    EXPECT_EQ(files.files[u"c:\\quillbox\\log.txt"].substr(0, 21), "03/04/2007 12:00:00 -");
}

TEST_F(ProgramTest, WithoutAClientItStartsAndWaits)
{
    fake.End();
    files.AddFile(u"C:\\Quillbox\\settings.tmp"); // of another session: no sign of a read-only folder
    program.StartUp();
    EXPECT_EQ(window.shown.back(), u"Could not find Outlook Express window");
    EXPECT_FALSE(Logged(u"cannot be written"));
    EXPECT_FALSE(window.unlocked);
    EXPECT_FALSE(program.IsEnabled(Needs::folders));
    EXPECT_TRUE(program.IsEnabled(Needs::idle));
    EXPECT_EQ(Press(&Program::cmdCheckAllFolders), u"") << "there are no folders to speak of";
}

TEST_F(ProgramTest, ADatabaseIsWritableMendedOrSaidAtOnceAndExportingStaysOff)
{
    const Text off = u", so exporting stays off:\r\nC:\\Quillbox\\saved.mdb\r\n\r\n";
    const Text opened = u"The database of saved emails can", noted = u"Database of saved emails: ";
    const struct {
        const char* why;
        std::size_t at; // what the file is made to say there: at the second place, its number of rows
        std::string bytes;
        Text box, note;
    } cases[] = {
        {"no database at all", 0, "this is no database", opened + u"not be opened" + off, u""},
        {"lost rows", 16 * 4096 + 16, "\4",
         opened + u" be read but not written" + off + u"The table has lost rows",
         opened + u" be read but not written: The table has lost rows"},
        {"mended", 16 * 4096 + 16, std::string(1, '\0'), u"",
         noted + u"the count of its rows was corrected from 0 to 1"},
    };
    for (const auto& c : cases) {
        ProgramBench bench;
        AddRow(*OpenJetDatabase(bench.databaseFiles, kSavedPath), {u"Inbox", u"", u"1"});
        bench.databaseFiles[kSavedPath].Write(c.at, c.bytes.data(), c.bytes.size());
        const std::string before = bench.databaseFiles[kSavedPath].Bytes();
        bench.program.StartUp();
        EXPECT_TRUE(c.note.empty() || bench.window.log.at(2).starts_with(c.note)) << "behind Started";
        EXPECT_EQ(bench.program.IsEnabled(Needs::records), c.box.empty()) << c.why;
        EXPECT_TRUE(bench.program.IsEnabled(Needs::folders)) << "checks read it";
        if (c.box.empty()) continue;
        ASSERT_EQ(bench.window.boxes.size(), 1u) << c.why;
        EXPECT_TRUE(bench.window.boxes[0].starts_with(c.box)) << ToUtf8(bench.window.boxes[0]);
        EXPECT_EQ(bench.window.steps[4], u"warning") << "before the first box";
        const Text words = bench.Press(&Program::mnCondenseDB);
        EXPECT_TRUE(words.starts_with(u"Database error: the database of saved emails ")) << ToUtf8(words);
        EXPECT_EQ(bench.window.log, (Texts{words}));
        EXPECT_EQ(bench.window.steps, (Texts{u"begin", u"warning", u"end"})) << "before the window changes";
        bench.program.AskToClose();
        EXPECT_TRUE(bench.databaseFiles[kSavedPath].Bytes() == before) << c.why;
    }
}

TEST_F(ProgramTest, ClosingWritesTheChoicesAndEndsAtOnce)
{
    Start();
    window.controls[chkSkipFiles] = u"1";
    window.controls[txtIgnore] = u"Trash";
    for (int time = 0; time < 2; ++time) program.AskToClose();
    EXPECT_EQ(window.steps, (Texts{u"destroy"})) << "once";
    EXPECT_EQ(window.log, (Texts{u"Closing Quillbox"}));
    EXPECT_EQ(profile.written.size(), SettingRows().size());
    EXPECT_EQ(profile.values[u"Options/Skip Identical Files"], u"1");
    EXPECT_EQ(profile.values[u"Options/First folder to ignore"], u"Trash");
    EXPECT_EQ(profile.values[u"Paths/Store"], u"C:\\Store");
    EXPECT_FALSE(files.FileExists(u"C:\\Quillbox\\settings.tmp")) << "a try at start-up leaves nothing";
}

TEST_F(ProgramTest, SettingsThatCannotBeReadAreSaidAndNotWritten)
{
    files.locked = u"c:\\quillbox\\settings.ini";
    program.StartUp();
    EXPECT_TRUE(Logged(u"settings.ini cannot be read, so your choices are not known"));
    ASSERT_EQ(window.boxes.size(), 1u);
    EXPECT_TRUE(window.boxes.front().ends_with(u"The file is in use by another program"));
    files.locked.clear(); // until closing
    program.AskToClose();
    EXPECT_TRUE(profile.written.empty());
}

TEST_F(ProgramTest, ClosingThatFailedCanBeAskedForAgain)
{
    Start();
    profile.outOfMemory = true;
    EXPECT_THROW(program.AskToClose(), std::bad_alloc); // which the window's procedure takes
    EXPECT_FALSE(Stepped(u"destroy"));
    program.AskToClose();
    EXPECT_TRUE(Stepped(u"destroy")) << "or nothing but killing would end it";
}

TEST_F(ProgramTest, ClosingInMidRunFinishesTheEmailAndThenEnds)
{
    for (const bool session : {false, true}) { // after a session's end the process may be gone
        ProgramBench bench;
        bench.Start();
        bench.fake.onSave = [&](int) {
            session ? bench.program.EndSession() : bench.program.AskToClose();
            EXPECT_EQ(bench.profile.written.size(), session ? SettingRows().size() : 0u);
            EXPECT_EQ(bench.Logged(u"Closing Quillbox"), session);
        };
        EXPECT_EQ(bench.Press(&Program::cmdExport), u"");
        EXPECT_EQ(bench.Records().size(), 1u) << "the e-mail under way";
        EXPECT_TRUE(bench.Logged(u"User aborted on email export."));
        EXPECT_EQ(std::count(bench.window.log.begin(), bench.window.log.end(), u"Closing Quillbox"), 1);
        EXPECT_EQ(bench.profile.written.size(), SettingRows().size());
        EXPECT_EQ(bench.window.steps,
                  (Texts{u"begin", u"busy", u"close box", u"no stop buttons", u"end", u"destroy"}));
    }
}

TEST_F(ProgramTest, ClosingInMidRunWaitsForNoSettling)
{
    profile.values[u"Options/OE Folder Settle Time"] = u"30";
    Start();
    const int began = fake.sleptMilliseconds;
    window.onEvents = [&] {
        if (fake.sleptMilliseconds - began > 1'000) program.AskToClose();
    };
    Press(&Program::cmdCheckAllFolders);
    EXPECT_LT(fake.sleptMilliseconds - began, 2'000);
    EXPECT_EQ(window.steps.back(), u"destroy");
}

TEST_F(ProgramTest, ClosingAtTheFirstBoxSynchronisesNoMore)
{
    window.onBox = [this] { program.AskToClose(); };
    program.StartUp();
    EXPECT_FALSE(Logged(u"-- Syncing with OE --"));
    EXPECT_EQ(window.log.back(), u"Closing Quillbox");
    EXPECT_EQ(window.steps.back(), u"destroy");
}

TEST_F(ProgramTest, AnErrorEndsTheCommandAsAMessage)
{
    Start();
    window.onBusy = [this] {
        program.cmdSync();
        for (const Needs needs : {Needs::idle, Needs::folders, Needs::records})
            EXPECT_FALSE(program.IsEnabled(needs)) << static_cast<int>(needs);
        EXPECT_TRUE(program.IsEnabled(Needs::nothing));
        throw std::runtime_error("out of luck");
    };
    EXPECT_EQ(Press(&Program::cmdExport), u"Error: out of luck");
    EXPECT_EQ(window.log, (Texts{u"Error: out of luck"}));
    EXPECT_EQ(window.steps, (Texts{u"begin", u"busy", u"warning", u"end"})) << "and no two at once";
    window.onBusy = {};
    EXPECT_EQ(Press(&Program::cmdExport), u"All emails for the selected folder have been exported.");
}

} // namespace
