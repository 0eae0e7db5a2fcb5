#include "platform/win32/Dao.h"
#include "store/SavedMaintenance.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/windows/FakeDao.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr wchar_t kClass36[] = L"{6B5A2E01-52C5-4F0B-9D63-0C1D5B7A9E36}";
constexpr wchar_t kClass120[] = L"{6B5A2E01-52C5-4F0B-9D63-0C1D5B7A9120}";
constexpr char16_t kPath[] = u"C:\\Quill\\saved.mdb";
using Calls = std::vector<std::string>;

class Dao : public testing::Test {
protected:
    void SetUp() override
    {
        if (FakeRegistry::DaoIsInstalled()) GTEST_SKIP() << "a real engine is installed here";
        registry_.emplace();
    }
    void Install()
    {
        registry_->Name(L"DAO.DBEngine.36", kClass36);
        registry_->Serve(kClass36, dao);
    }
    // The class object itself lives until COM lets go of it.
    void TearDown() override
    {
        registry_.reset();
        EXPECT_EQ(dao.liveObjects, 0);
    }

    FakeDao dao;
    std::optional<FakeRegistry> registry_;
};

const Calls kOpening = {
    "engine.SetOption(59, 'Yes')",
    "engine.CreateWorkspace('VBDemoWorkspace', 'admin', '', 2)",
    "engine.OpenDatabase('C:\\Quill\\saved.mdb', 2, missing, missing)",
};

Text WordsOf(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const DatabaseError& error) {
        return error.Words();
    }
    return u"(no error)";
}

EmailEntry Entry(const Text& subject, const Text& crc)
{
    EmailEntry entry{};
    entry.Subject = subject;
    entry.Crc = crc;
    return entry;
}

} // namespace

TEST_F(Dao, OpensThroughAWorkspaceAndClosesBoth)
{
    Install();
    EXPECT_TRUE(IsDaoInstalled());
    EXPECT_EQ(dao.TakeCalls(), Calls{}); // looking starts nothing
    const auto database = OpenDaoDatabase(kPath);
    EXPECT_EQ(dao.TakeCalls(), kOpening);
    database->Close();
    EXPECT_EQ(dao.TakeCalls(), (Calls{"database.Close()", "workspace.Close()"}));
    database->Close(); // a second time is nothing
    EXPECT_EQ(dao.TakeCalls(), Calls{});
    EXPECT_EQ(WordsOf([&] { database->OpenRecordset(u"SELECT * FROM saved"); }), u"The database is closed");
}

TEST_F(Dao, AnswersWhetherAnEmailIsSaved)
{
    Install();
    dao.rows = {{u"O'Brien", u"Hi", u"A1"}};
    SavedEmails saved{OpenDaoDatabase(kPath)};
    dao.calls.clear();
    EXPECT_TRUE(IsSaved(saved, u"A1", u"O'Brien"));
    EXPECT_EQ(
        dao.TakeCalls(),
        (Calls{"database.OpenRecordset('SELECT * FROM saved WHERE (ecrc='A1') AND (efolder='O''Brien')')",
               "recordset.EOF", "recordset.BOF", "recordset.Close()"}));
    dao.rows.clear();
    EXPECT_FALSE(IsSaved(saved, u"A1", u""));
}

TEST_F(Dao, AddsARow)
{
    Install();
    SavedEmails saved{OpenDaoDatabase(kPath)};
    dao.calls.clear();
    AddSavedEmail(saved, u"Inbox\\O'Brien", Entry(u"\u00A3 \u65E5", u"A1"));
    EXPECT_EQ(
        dao.TakeCalls(),
        (Calls{"database.OpenRecordset('SELECT * FROM saved')", "recordset.AddNew()", "recordset.Fields",
               "fields.Item('efolder')", "field.Value = 'Inbox\\O'Brien'", "recordset.Fields",
               "fields.Item('esubject')", "field.Value = '\u00A3 \u65E5'", "recordset.Fields",
               "fields.Item('ecrc')", "field.Value = 'A1'", "recordset.Update()", "recordset.Close()"}));
    // Columns that refuse zero lengths take a null, which reads back as empty.
    AddSavedEmail(saved, u"Inbox", Entry(u"", u"B2"));
    EXPECT_EQ(dao.rows[1], (FakeDao::Row{u"Inbox", std::nullopt, u"B2"}));
}

TEST_F(Dao, WalksRowsAndFetchesEachColumnOnce)
{
    Install();
    Text withNul = u"a.b";
    withNul[1] = u'\0';
    dao.rows = {{u"Inbox", std::nullopt, u"A1"}, {u"Inbox", withNul, u"B2"}, {u"", u"x", u"C3"}};
    const auto database = OpenDaoDatabase(kPath);
    const auto rows = database->OpenRecordset(u"SELECT * FROM saved");
    dao.calls.clear();
    Text seen;
    for (; !rows->AtEnd(); rows->MoveNext())
        seen +=
            rows->Field(u"efolder") + u"/" + rows->Field(u"esubject") + u"/" + rows->Field(u"ecrc") + u";";
    EXPECT_EQ(seen, u"Inbox//A1;Inbox/" + withNul + u"/B2;/x/C3;");
    EXPECT_EQ(std::count(dao.calls.begin(), dao.calls.end(), "recordset.Fields"), 3);
    EXPECT_EQ(std::count(dao.calls.begin(), dao.calls.end(), "field.Value"), 9);
    dao.calls.clear();
    rows->Delete();
    EXPECT_EQ(dao.calls, Calls{"recordset.Delete()"});
    EXPECT_EQ(WordsOf([&] { rows->Field(u"nosuch"); }),
              u"The database engine failed at Item (error 8002000B)");
}

TEST_F(Dao, IsNotThereWithoutNameOrClass)
{
    EXPECT_FALSE(IsDaoInstalled());
    EXPECT_EQ(WordsOf([] { OpenDaoDatabase(kPath); }), u"Data Access Objects (DAO) are not installed");
    EXPECT_EQ(WordsOf([] { CreateDaoDatabase(kPath, u""); }), u"Data Access Objects (DAO) are not installed");
    registry_->Name(L"DAO.DBEngine.36", kClass36); // a name whose class is gone
    EXPECT_FALSE(IsDaoInstalled());
    registry_->Name(L"DAO.DBEngine.120", kClass120);
    registry_->Serve(kClass120, dao); // the later engine serves instead
    EXPECT_TRUE(IsDaoInstalled());
    OpenDaoDatabase(kPath);
    EXPECT_EQ(dao.calls.size(), kOpening.size() + 2);
}

TEST_F(Dao, PrefersTheEngineThatComesWithWindows)
{
    FakeDao later;
    Install();
    registry_->Name(L"DAO.DBEngine.120", kClass120);
    registry_->Serve(kClass120, later);
    OpenDaoDatabase(kPath);
    EXPECT_EQ(later.calls, Calls{});
    EXPECT_FALSE(dao.calls.empty());
    registry_.reset();
}

TEST_F(Dao, FailuresCarryTheEnginesWords)
{
    Install();
    const struct {
        FailWith how;
        const char16_t* words;
    } cases[] = {
        {FailWith::description, u"The engine cannot do this"},
        {FailWith::deferredDescription, u"Filled in later"},
        {FailWith::noDescription, u"The database engine failed at OpenDatabase (error 00000BEB)"},
        {FailWith::plainResult, u"The database engine failed at OpenDatabase (error 80020003)"},
    };
    for (const auto& c : cases) {
        dao.calls.clear();
        dao.failAt = 3;
        dao.failWith = c.how;
        EXPECT_EQ(WordsOf([] { OpenDaoDatabase(kPath); }), c.words);
        ASSERT_FALSE(dao.calls.empty());
        EXPECT_EQ(dao.calls.back(), "workspace.Close()"); // not left open
    }
}

// Every call of a session fails once: the failure is told, everything opened is closed and given back.
TEST_F(Dao, SurvivesTheFailureOfAnyCall)
{
    Install();
    const int resting = dao.liveObjects;
    for (std::size_t call = 1;; ++call) {
        dao.rows = {{u"Inbox", u"Hi", u"A1"}};
        dao.calls.clear();
        dao.failAt = call;
        const Text words = WordsOf([] {
            SavedEmails saved{OpenDaoDatabase(kPath)};
            IsSaved(saved, u"A1", u"Inbox");
            AddSavedEmail(saved, u"Inbox", Entry(u"Again", u"B2"));
            AddSavedEmail(saved, u"Inbox", Entry(u"Twice", u"B2"));
            CondenseDatabase(saved, [](int) { return true; });
            {
                const auto rows = saved.database->OpenRecordset(u"SELECT ecrc FROM saved");
                rows->Field(u"ecrc");
                rows->MoveNext();
                rows->Delete();
            }
            CloseSavedEmails(saved);
        });
        EXPECT_EQ(dao.liveObjects, resting) << "call " << call;
        if (dao.calls.size() < call) break; // no call left to fail
        const std::string& failed = dao.calls[call - 1];
        const bool ignored = failed.ends_with("Close()") || failed.starts_with("engine.SetOption");
        EXPECT_EQ(words, ignored ? u"(no error)" : u"The engine cannot do this") << failed;
        const bool begun = std::count(dao.calls.begin(), dao.calls.end(), "workspace.BeginTrans()") != 0 &&
                           failed != "workspace.BeginTrans()";
        const bool condensed =
            std::count(dao.calls.begin(), dao.calls.end(), "workspace.CommitTrans(1)") != 0 &&
            failed != "workspace.CommitTrans(1)";
        EXPECT_EQ(std::count(dao.calls.begin(), dao.calls.end(), "workspace.Rollback()"), begun && !condensed)
            << failed;
        if (begun) {
            EXPECT_EQ(dao.rows.at(2).empty(), condensed) << failed;
        }
        // What was opened is closed again, once.
        const bool workspaceOpened = call != 2, databaseOpened = call != 2 && call != 3;
        EXPECT_EQ(std::count(dao.calls.begin(), dao.calls.end(), "workspace.Close()"), workspaceOpened)
            << failed;
        EXPECT_EQ(std::count(dao.calls.begin(), dao.calls.end(), "database.Close()"), databaseOpened)
            << failed;
        ASSERT_LT(call, 100u);
    }
}

// The promise of the opening: what cannot be recorded is known before the first e-mail is saved.
TEST_F(Dao, FindsOutAtOpeningWhetherItCanBeWritten)
{
    Install();
    const struct {
        const char* why;
        std::function<void(FakeDao&)> change;
        const char16_t* reason;
    } cases[] = {
        {"as this program makes it", [](FakeDao&) {}, u""},
        {"a subject that is a text", [](FakeDao& d) { d.types[1] = 10, d.sizes[1] = 255; }, u""},
        {"a file that is write-protected", [](FakeDao& d) { d.databaseUpdatable = false; },
         u"The file is write-protected, or this user may not write it"},
        {"a table that is linked or has rights of its own", [](FakeDao& d) { d.recordsetUpdatable = false; },
         u"The database engine lets the table be read only"},
        {"CRCs that would not fit", [](FakeDao& d) { d.sizes[2] = 7; },
         u"The column ecrc takes 7 characters, but 8 are needed"},
        {"CRCs as numbers", [](FakeDao& d) { d.types[2] = 4; }, u"The column ecrc does not take text"},
    };
    FakeFiles files;
    files.AddFile(kPath);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        FakeDao engine;
        dao.types = engine.types, dao.sizes = engine.sizes;
        dao.databaseUpdatable = dao.recordsetUpdatable = true;
        dao.rows = {{u"Inbox", u"Hi", u"A1"}};
        c.change(dao);
        dao.calls.clear();
        SavedEmails saved;
        EXPECT_EQ(OpenSavedEmails(saved, files, kPath, {{nullptr, OpenDaoDatabase}}), u"");
        EXPECT_EQ(saved.whyReadOnly, c.reason);
        for (const std::string& call : dao.TakeCalls())
            for (const char* writes : {"AddNew", "Update(", "Delete", "Execute", "BeginTrans", " = "})
                EXPECT_EQ(call.find(writes), std::string::npos) << call;
        EXPECT_TRUE(IsSaved(saved, u"A1", u""));
        const bool writable = Text(c.reason).empty();
        EXPECT_EQ(saved.IsWritable(), writable);
        EXPECT_EQ(WordsOf([&] { AddSavedEmail(saved, u"Inbox", Entry(u"Again", u"B2")); }),
                  writable ? Text(u"(no error)")
                           : u"the database of saved emails cannot be written: " + Text(c.reason));
    }
}

TEST_F(Dao, CondensesInTransactions)
{
    Install();
    for (int i = 0; i < 2500; ++i) dao.rows.push_back({u"f", u"s", u"A1"});
    SavedEmails saved{OpenDaoDatabase(kPath)};
    dao.calls.clear();
    std::vector<int> percentages;
    const Condensed done = CondenseDatabase(saved, [&](int percent) {
        percentages.push_back(percent);
        return true;
    });
    EXPECT_EQ(done.removed, 2499);
    EXPECT_FALSE(dao.rows[0].empty());
    EXPECT_TRUE(std::all_of(dao.rows.begin() + 1, dao.rows.end(), [](auto& row) { return row.empty(); }));
    EXPECT_EQ(percentages, (std::vector<int>{10, 20, 30, 40, 50, 60, 70, 80, 90}));
    Calls transactions;
    for (const std::string& call : dao.calls)
        if (call.starts_with("workspace.")) transactions.push_back(call);
    EXPECT_EQ(transactions, (Calls{"workspace.BeginTrans()", "workspace.CommitTrans(1)", // to the disk
                                   "workspace.BeginTrans()", "workspace.CommitTrans(1)",
                                   "workspace.BeginTrans()", "workspace.CommitTrans(1)"}));
    dao.rows.clear();
    EXPECT_EQ(CondenseDatabase(saved, [](int) { return true; }).removed, 0) << "no row to go to";
}

TEST_F(Dao, AnEngineThatIsGoneEndsCondensing)
{
    Install();
    for (std::size_t call = 1;; ++call) {
        dao.rows = {{u"f", u"s", u"A1"}, {u"f", u"s", u"A1"}, {u"f", u"s", u"B2"}};
        SavedEmails saved{OpenDaoDatabase(kPath)};
        dao.calls.clear();
        dao.failAt = call;
        dao.failForGood = true;
        const Text words = WordsOf([&] { CondenseDatabase(saved, [](int) { return true; }); });
        const bool failed = dao.calls.size() >= call && !dao.calls[call - 1].ends_with("Close()");
        dao.failAt = 0;
        EXPECT_EQ(words, failed ? u"The engine cannot do this" : u"(no error)") << call;
        if (!failed) break;
        ASSERT_LT(call, 100u);
    }
    EXPECT_TRUE(dao.rows[1].empty());
}

TEST_F(Dao, CreatesAFileWithItsTable)
{
    Install();
    CreateDaoDatabase(kPath, kCreateSaved);
    EXPECT_EQ(
        dao.calls,
        (Calls{"engine.CreateDatabase('C:\\Quill\\saved.mdb', ';LANGID=0x0409;CP=1252;COUNTRY=0', 64)",
               "database.Execute('CREATE TABLE saved (efolder TEXT(255), esubject MEMO, ecrc TEXT(8))', 128)",
               "database.Close()"}));
}

TEST_F(Dao, LeavesNoFileWithoutItsTableAndTouchesNoOther)
{
    Install();
    const ScratchDirectory scratch;
    const Text path = scratch / u"saved.mdb";
    dao.makesFiles = true;
    for (const std::size_t failAt : {2, 3}) {
        dao.calls.clear();
        dao.failAt = failAt;
        EXPECT_EQ(WordsOf([&] { CreateDaoDatabase(path, u"CREATE TABLE saved"); }),
                  u"The engine cannot do this");
        EXPECT_FALSE(std::filesystem::exists(scratch.Path() / "saved.mdb")) << failAt;
    }
    std::ofstream(scratch.Path() / "saved.mdb") << "another's";
    dao.calls.clear();
    dao.failAt = 1; // the engine never replaces a file
    EXPECT_NE(WordsOf([&] { CreateDaoDatabase(path, u"CREATE TABLE saved"); }), u"(no error)");
    EXPECT_TRUE(std::filesystem::exists(scratch.Path() / "saved.mdb"));
}
