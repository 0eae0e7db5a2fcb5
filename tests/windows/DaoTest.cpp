// DaoTest.cpp: databases through an engine that stands in for DAO: what it is asked, and that its failures
// are told and lose nothing.
#include "platform/win32/Dao.h"
#include "store/SavedMaintenance.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/windows/FakeDao.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>

namespace {

constexpr wchar_t kClass36[] = L"{6B5A2E01-52C5-4F0B-9D63-0C1D5B7A9E36}";
constexpr wchar_t kClass120[] = L"{6B5A2E01-52C5-4F0B-9D63-0C1D5B7A9120}";
constexpr char16_t kPath[] = u"C:\\Quill\\saved.mdb";
const Text kNoError = u"(no error)", kTold = u"The engine cannot do this";
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
    long Count(const std::string& call) const { return std::count(dao.calls.begin(), dao.calls.end(), call); }

    FakeDao dao;
    std::optional<FakeRegistry> registry_;
};

template <class Operation>
Text WordsOf(Operation operation)
{
    try {
        operation();
    } catch (const DatabaseError& error) {
        return error.Words();
    }
    return kNoError;
}

void Add(SavedEmails& saved, const Text& subject, const Text& crc)
{
    EmailEntry entry;
    entry.Subject = subject;
    entry.Crc = crc;
    AddSavedEmail(saved, u"O'Brien", entry);
}

Condensed Condense(SavedEmails& saved)
{
    return CondenseDatabase(saved, [](int) { return true; });
}

} // namespace

TEST_F(Dao, AddsFindsAndReadsRows)
{
    Install();
    SavedEmails saved{OpenDaoDatabase(kPath)};
    EXPECT_FALSE(IsSaved(saved, u"A1", u"")) << "no row";
    const Text withNul(u"\u00A3\0\u65E5", 3);
    Add(saved, withNul, u"A1");
    Add(saved, u"", u"B2");
    EXPECT_EQ(dao.rows,
              (std::vector<FakeDao::Row>{{u"O'Brien", withNul, u"A1"}, {u"O'Brien", std::nullopt, u"B2"}}))
        << "columns that refuse zero lengths take a null";
    EXPECT_TRUE(IsSaved(saved, u"A1", u"O'Brien"));
    EXPECT_EQ(Count("engine.SetOption(59, 'Yes')"), 1) << "what is added is on the disk at once";
    EXPECT_EQ(Count("database.OpenRecordset('SELECT * FROM saved WHERE (ecrc='A1') AND "
                    "(efolder='O''Brien')')"),
              1);

    dao.calls.clear();
    const auto rows = saved.database->OpenRecordset(u"SELECT * FROM saved");
    const std::size_t subject = rows->Column(u"esubject"), crc = rows->Column(u"ecrc");
    Text seen;
    for (; !rows->AtEnd(); rows->MoveNext()) seen += rows->Field(subject) + rows->Field(crc) + u";";
    EXPECT_EQ(seen, withNul + u"A1;B2;");
    EXPECT_EQ(Count("recordset.Fields"), 2) << "each column is fetched once";
    EXPECT_EQ(WordsOf([&] { rows->Column(u"nosuch"); }),
              u"The database engine failed at Item (error 8002000B)");
}

TEST_F(Dao, IsNotThereWithoutNameOrClassAndServesInItsOrder)
{
    const Text missing = u"Data Access Objects (DAO) are not installed";
    EXPECT_EQ(WordsOf([] { OpenDaoDatabase(kPath); }), missing);
    EXPECT_EQ(WordsOf([] { CreateDaoDatabase(kPath, u""); }), missing);
    registry_->Name(L"DAO.DBEngine.36", kClass36); // a name whose class is gone
    EXPECT_FALSE(IsDaoInstalled());
    FakeDao later;
    registry_->Name(L"DAO.DBEngine.120", kClass120);
    registry_->Serve(kClass120, later); // serves instead
    EXPECT_TRUE(IsDaoInstalled());
    OpenDaoDatabase(kPath);
    EXPECT_FALSE(later.TakeCalls().empty());
    registry_->Serve(kClass36, dao); // comes with Windows, and first
    OpenDaoDatabase(kPath);
    EXPECT_EQ(later.calls, Calls{});
    EXPECT_FALSE(dao.calls.empty());
    registry_.reset();
}

TEST_F(Dao, FailuresCarryTheEnginesWords)
{
    Install();
    const std::pair<FailWith, const char16_t*> cases[] = {
        {FailWith::description, u"The engine cannot do this"},
        {FailWith::deferredDescription, u"Filled in later"},
        {FailWith::noDescription, u"The database engine failed at OpenDatabase (error 00000BEB)"},
        {FailWith::plainResult, u"The database engine failed at OpenDatabase (error 80020003)"},
    };
    dao.failAt = 3;
    for (const auto& [how, words] : cases) {
        dao.calls.clear();
        dao.failWith = how;
        EXPECT_EQ(WordsOf([] { OpenDaoDatabase(kPath); }), words);
        EXPECT_EQ(Count("workspace.Close()"), 1) << "not left open";
    }
}

// Every call of a session fails, once or with all that follow: the failure is told, and everything that was
// opened is closed and given back.
TEST_F(Dao, SurvivesTheFailureOfAnyCall)
{
    Install();
    const int resting = dao.liveObjects;
    for (std::size_t n = 2;; ++n) {
        const std::size_t call = n / 2;
        SCOPED_TRACE(call);
        dao.failForGood = n % 2 != 0;
        dao.rows = {{u"O'Brien", u"Hi", u"A1"}};
        dao.calls.clear();
        dao.failAt = call;
        const Text words = WordsOf([] {
            SavedEmails saved{OpenDaoDatabase(kPath)};
            IsSaved(saved, u"A1", u"O'Brien");
            for (const Text subject : {u"Again", u"Twice"}) Add(saved, subject, u"B2");
            Condense(saved);
            const auto rows = saved.database->OpenRecordset(u"SELECT ecrc FROM saved");
            rows->MoveNext();
            rows->Delete();
        });
        EXPECT_EQ(dao.liveObjects, resting);
        if (dao.calls.size() < call) break; // no call left to fail
        ASSERT_LT(call, 100u);
        const std::string& failed = dao.calls[call - 1];
        const bool ignored = failed.ends_with("Close()") || failed.starts_with("engine.SetOption");
        if (!ignored || !dao.failForGood) {
            EXPECT_EQ(words, ignored ? kNoError : kTold) << failed;
        }
        EXPECT_EQ(Count("workspace.Close()"), call != 2 && !(dao.failForGood && call < 2)) << failed;
        EXPECT_EQ(Count("database.Close()"), call > 3 || (call == 1 && !dao.failForGood)) << failed;
        if (dao.failForGood) continue;
        const auto done = [&](const std::string& step) { return Count(step) != 0 && failed != step; };
        const bool begun = done("workspace.BeginTrans()"), stored = done("workspace.CommitTrans(1)");
        EXPECT_EQ(Count("workspace.Rollback()"), begun && !stored) << failed;
        EXPECT_TRUE(!begun || dao.rows.at(2).empty() == stored) << failed;
    }
}

// The promise of the opening: what cannot be recorded is known before the first e-mail is saved.
TEST_F(Dao, FindsOutAtOpeningWhetherItCanBeWritten)
{
    Install();
    const struct {
        const char* why;
        void (*change)(FakeDao&);
        Text reason;
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
        const FakeDao usual;
        dao.types = usual.types, dao.sizes = usual.sizes;
        dao.databaseUpdatable = dao.recordsetUpdatable = true;
        dao.rows = {{u"O'Brien", u"Hi", u"A1"}};
        c.change(dao);
        dao.calls.clear();
        SavedEmails saved;
        EXPECT_EQ(OpenSavedEmails(saved, files, kPath, {{nullptr, OpenDaoDatabase}}), u"");
        EXPECT_EQ(saved.whyReadOnly, c.reason);
        EXPECT_EQ(saved.IsWritable(), c.reason.empty());
        for (const std::string& call : dao.calls)
            for (const char* writes : {"AddNew", "Update(", "Delete", "Execute", "BeginTrans", " = "})
                EXPECT_EQ(call.find(writes), std::string::npos) << call;
        EXPECT_TRUE(IsSaved(saved, u"A1", u""));
    }
}

TEST_F(Dao, CreatesAFileWithItsTableOrNoneAndTouchesNoOther)
{
    Install();
    CreateDaoDatabase(kPath, kCreateSaved);
    EXPECT_EQ(
        dao.TakeCalls(),
        (Calls{"engine.CreateDatabase('C:\\Quill\\saved.mdb', ';LANGID=0x0409;CP=1252;COUNTRY=0', 64)",
               "database.Execute('CREATE TABLE saved (efolder TEXT(255), esubject MEMO, ecrc TEXT(8))', 128)",
               "database.Close()"}));

    const ScratchDirectory scratch;
    const std::filesystem::path path = scratch.Path() / "saved.mdb";
    const auto create = [&] { CreateDaoDatabase(scratch / u"saved.mdb", kCreateSaved); };
    dao.made = [](const Text& made) { std::ofstream{std::filesystem::path(made)}; };
    for (dao.failAt = 2; dao.failAt <= 3; ++dao.failAt) {
        dao.calls.clear();
        EXPECT_EQ(WordsOf(create), kTold);
        EXPECT_FALSE(std::filesystem::exists(path)) << dao.failAt;
    }
    std::ofstream(path) << "another's";
    dao.calls.clear();
    dao.failAt = 1; // the engine never replaces a file
    EXPECT_EQ(WordsOf(create), kTold);
    EXPECT_TRUE(std::filesystem::exists(path));
}
