// CommandSwitchesTest.cpp: the command line, and what a run without a user answers.
#include "app/CommandSwitches.h"
#include "tests/support/ProgramBench.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;
TEST(CommandSwitches, AreTakenTogetherOrNotAtAll)
{
    const std::pair<Words, Text> cases[] = {
        {{}, u""},
        {{"/sync", "/check"}, u""},
        {{"/SYNC", "/Export", "/all", "/jump", "/close"}, u""},
        {{"/close", "/store:C:\\My Mail", "/comparison:File", "/folder:A\\B", "/check", "/sync"}, u""},
        {{"/captions"}, u""},
        {{"/captions", "/close"}, u"/captions stands alone"},
        {{"/check"}, u"/sync is missing"},
        {{"/sync"}, u"Either /check or /export must be there"},
        {{"/sync", "/check", "/export"}, u"Either /check or /export must be there"},
        {{"/sync", "/export", "/all", "/folder:A"}, u"/folder and /all exclude each other"},
        {{"/sync", "/export", "/export"}, u"This switch is there twice: /export"},
        {{"/sync", "/export", "/Folder:A", "/folder:B"}, u"This switch is there twice: /folder:B"},
        {{"/sync", "/export", "/folder"}, u"This switch cannot be: /folder"},
        {{"/sync", "/export", "/folder: "}, u"This switch cannot be: /folder: "},
        {{"/sync", "/export", "/comparison:slow"}, u"This switch cannot be: /comparison:slow"},
        {{"/sync", "/export", "close"}, u"This switch cannot be: close"},
        {{""}, u"This switch cannot be: "},
    };
    for (const auto& [arguments, wrong] : cases)
        EXPECT_EQ(ParseSwitches(arguments).wrong, wrong) << testing::PrintToString(arguments);
    const CommandSwitches all = ParseSwitches(cases[3].first);
    EXPECT_EQ(all.store, u"C:\\My Mail");
    EXPECT_EQ(all.folder, u"A\\B");
    EXPECT_EQ(all.comparison, ComparisonType::file);
    EXPECT_TRUE(all.run == UnattendedRun::check && all.close && !all.jump && !all.allFolders);
}

struct Unattended : ProgramBench {
    ExitCode Run(const Words& more)
    {
        Words arguments = {"/sync", "/close"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        program.StartUp(ParseSwitches(arguments));
        EXPECT_TRUE(window.boxes.empty()) << "nobody is there to press OK";
        EXPECT_EQ(window.steps.back(), u"destroy");
        EXPECT_TRUE(profile.written.empty()) << "the settings are the user's";
        return program.Code();
    }
};

} // namespace

TEST(UnattendedRun, TellsByItsCodeWhatCameOfIt)
{
    using enum ExitCode;
    const Words exportAll = {"/export", "/all"}, checkAll = {"/check", "/all"},
                count = {"/check", "/all", "/comparison:simple"},
                nowhere = {"/export", "/all", "/store:Q:\\none"};
    const Words inbox = {"/export", "/folder:local folders\\inbox"};
    const auto after = [](int emails, const std::function<void(Unattended&)>& what) {
        return [emails, what](Unattended& b) {
            b.fake.onSave = [&b, emails, what](int saves) {
                if (saves == emails) what(b);
            };
        };
    };
    const Words jump = {"/export", "/all", "/comparison:simple", "/jump"};
    const Text kFirst = u"C:\\Store\\Local Folders\\Inbox\\0000_Mail0.eml";
    const auto hasTwo = [&](Unattended& b) {
        b.files.AddFile(kFirst);
        b.files.AddFile(u"C:\\Store\\Local Folders\\Inbox\\0001_Mail1.eml");
        AddRow(*OpenJetDatabase(b.databaseFiles, kSavedPath), {u"Local Folders\\Inbox", u"Mail0", u"A1"});
    };
    const auto mailComes = [](Unattended& b) { b.fake.Arrive(MailRow(u"New")); };
    const struct {
        const char* why;
        Words switches;
        std::function<void(Unattended&)> before;
        ExitCode code;
        std::size_t saved;
        Text says;
    } cases[] = {
        {"all", exportAll, {}, allSaved, 4, u"All folders have been exported."},
        {"one folder, from its first row on", inbox, [](auto& b) { b.fake.selected = {2}; }, allSaved, 3,
         u""},
        {"the one that is shown", {"/export"}, [](auto& b) { b.fake.selected = {1}; }, allSaved, 3, u""},
        {"another than is shown", {"/export", "/folder:Local Folders\\Sent"}, {}, allSaved, 1, u""},
        {"a click on another one",
         {"/export", "/folder:Local Folders\\Sent"},
         [](auto& b) { b.window.onBusy = [&b] { b.fake.ShowFolder(2); }; },
         unsaved,
         3,
         u"showed another folder than it was told to"},
        {"a folder that there is not", {"/export", "/folder:Inbox"}, {}, unsaved, 0, u"has no such folder"},
        {"a check finds what is missing", checkAll, {}, unsaved, 0, u"4 email(s) to be saved."},
        {"no folder is looked at", exportAll,
         [](auto& b) { b.profile.values[u"Options/First folder to ignore"] = u"Local Folders"; }, unsaved, 0,
         u"No folder was looked at"},
        {"nothing comes of a save", exportAll, [](auto& b) { b.fake.saveNothing = true; }, unsaved, 0,
         u"FAIL"},
        {"look-alikes", exportAll, [](auto& b) { b.fake.folders[3].rows.push_back(MailRow(u"Sent0")); },
         unsaved, 4, u"look exactly like"},
        {"no folder can be shown", exportAll, [](auto& b) { b.fake.refusesFolder = true; }, unsaved, 0,
         u"folder(s) were not checked."},
        {"a stop", exportAll, after(2, [](auto& b) { b.program.cmdStopAfterEmail(); }), unsaved, 2,
         u"User aborted"},
        {"the window is closed", exportAll, after(2, [](auto& b) { b.program.AskToClose(); }), unsaved, 2,
         u""},
        {"the client ends", exportAll, after(2, [](auto& b) { b.fake.End(); }), unsaved, 2, u""},
        {"mail comes behind the last one", inbox,
         after(3, [](auto& b) { b.fake.Arrive(MailRow(u"New"), 9); }), unsaved, 3, u""},
        {"one fails, and goes", inbox,
         [&](auto& b) {
             b.fake.dialogDelays = {2'100};
             after(2, [](auto& c) { c.fake.Remove(0); })(b);
         },
         unsaved, 2, u"; 1 are not."},
        {"behind all that the list had", inbox, after(3, [](auto& b) { b.fake.End(); }), unsaved, 3, u""},
        {"no client", exportAll, [](auto& b) { b.fake.End(); }, unusable, 0,
         u"Outlook Express cannot be used"},
        {"no database", exportAll, [](auto& b) { b.outside.databaseMakers.clear(); }, unusable, 0,
         u"cannot be opened, so exporting stays off"},
        {"no database, but nothing else than files are counted", count,
         [](auto& b) { b.outside.databaseMakers.clear(); }, unsaved, 0, u"4 email(s) to be saved."},
        {"files of which the database knows nothing", exportAll,
         [](auto& b) { b.files.AddFile(u"C:\\Store\\Local Folders\\Inbox\\0000_Mail0.eml"); }, unusable, 0,
         u"Nothing is exported, as saved.mdb has no record of any e-mail"},
        {"the store folder with its database is missing", exportAll,
         [](auto& b) {
             b.profile.values[u"Paths/Store"] = u"Q:\\gone";
             b.profile.values[u"Extras/Database In Store"] = u"1";
         },
         unsaved, 0, u"The store folder of the settings cannot be found: Q:\\gone"},
        {"the store folder is missing, and the settings' own gets no database for that", nowhere,
         [](auto& b) {
             b.profile.values[u"Extras/Database In Store"] = u"1";
             b.engine.create = [](const Text&, const Text&) { ADD_FAILURE() << "made"; };
             b.outside.databaseMakers = {b.engine};
         },
         unsaved, 0, u"cannot be found: Q:\\none"},
        {"a jump passes over what is there", jump, hasTwo, allSaved, 2, u"0 email(s) to be saved."},
        {"and that goes meanwhile", jump,
         [&](auto& b) {
             hasTwo(b);
             after(2, [&](auto& c) { c.files.Delete(kFirst); })(b);
         },
         unsaved, 2, u"1 email(s) to be saved."},
        {"mail comes on top of a folder", exportAll, after(2, mailComes), unsaved, 4, u"1 more were not"},
        {"and of the only one", inbox, after(2, mailComes), unsaved, 3, u"1 more were not"},
        {"an export folder cannot be made", exportAll,
         [](auto& b) { b.files.refused.insert(u"c:\\store\\local folders\\sent"); }, unsaved, 3,
         u"The export folder could not be made"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        Unattended bench;
        if (c.before) c.before(bench);
        EXPECT_EQ(bench.Run(c.switches), c.code);
        EXPECT_EQ(bench.fake.saved.size(), c.saved);
        EXPECT_TRUE(bench.Logged(c.says));
    }
}

TEST(UnattendedRun, DoesNothingWithWrongSwitches)
{
    for (const bool close : {false, true}) {
        ProgramBench bench;
        bench.window.onBox = [&] { bench.program.EndSession(); };
        bench.program.StartUp(ParseSwitches(close ? Words{"/close", "/exprot"} : Words{"/exprot"}));
        EXPECT_EQ(bench.program.Code(), ExitCode::wrongSwitches);
        EXPECT_EQ(bench.window.boxes.size(), close ? 0u : 1u);
        EXPECT_EQ(bench.Logged(u"This switch cannot be: /exprot"), close);
        EXPECT_EQ(bench.window.steps.back(), u"destroy");
        EXPECT_TRUE(bench.profile.written.empty() && bench.window.shown.size() <= 1);
    }
}

TEST(Captions, AreWrittenFromTheListThatIsOpen)
{
    using enum ExitCode;
    const std::vector<int> right = {1, 2, 5, 3, 4};
    const struct {
        const char* why;
        std::function<void(ProgramBench&)> before;
        std::vector<std::vector<int>> chosen; // From, Subject, To, Received, Sent
        Texts boxes;                          // how they begin
        ExitCode code;
    } cases[] = {
        {"at the third try",
         {},
         {{1, 1, 5, 3, 4}, {1, 2, 5, 3, -1}, right},
         {u"Choose another", u"Choose another", u"The titles of the columns stand"},
         allSaved},
        {"given up", {}, {}, {}, unusable},
        {"not written",
         [](auto& b) { b.profile.refuse = true; },
         {right},
         {u"The titles of the columns could not"},
         unusable},
        {"too few columns",
         [](auto& b) { b.fake.columnTitles.resize(4); },
         {},
         {u"Show a mail folder"},
         unusable},
        {"no client", [](auto& b) { b.fake.End(); }, {}, {u"Show a mail folder"}, unusable},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        ProgramBench bench;
        bench.fake.columnTitles = {u"!", u"Von", u"Betreff", u"Erhalten", u"Gesendet", u"To"};
        if (c.before) c.before(bench);
        bench.window.chosenColumns = c.chosen;
        if (c.code != allSaved) bench.window.onBox = [&] { bench.program.EndSession(); };
        bench.program.StartUp(ParseSwitches({"/captions"}));
        EXPECT_EQ(bench.program.Code(), c.code);
        ASSERT_EQ(bench.window.boxes.size(), c.boxes.size());
        for (std::size_t i = 0; i < c.boxes.size(); ++i)
            EXPECT_TRUE(bench.window.boxes[i].starts_with(c.boxes[i])) << ToUtf8(bench.window.boxes[i]);
        EXPECT_EQ(bench.window.steps.back(), u"destroy");
        EXPECT_TRUE(bench.profile.refuse || bench.profile.written.empty() == (c.code != allSaved));
        if (c.code != allSaved) continue;
        EXPECT_EQ(bench.window.knownColumns, (std::vector<int>{-1, -1, 5, -1, -1}));
        using Written = std::vector<std::pair<Text, Text>>;
        EXPECT_EQ(bench.profile.written, (Written{{u"Captions/From", u"Von"},
                                                  {u"Captions/Subject", u"Betreff"},
                                                  {u"Captions/To", u"To"},
                                                  {u"Captions/Received", u"Erhalten"},
                                                  {u"Captions/Sent", u"Gesendet"}}));
    }
}
