// EnginesTest.cpp: database files of the embedded engine in the hands of DAO, and the other way round. On a
// system without DAO a stand-in takes its part that keeps its rows by the embedded engine: then this shows
// only that all of it runs. The directory that QUILLBOX_DATABASES names may hold more files to try, large
// ones for instance.
#include "platform/System.h"
#include "platform/win32/Automation.h"
#include "platform/win32/Dao.h"
#include "tests/support/JetSamples.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/windows/FakeDao.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

constexpr wchar_t kClass[] = L"{6B5A2E01-52C5-4F0B-9D63-0C1D5B7AE6E5}";

// Of each row, in any order: large files are too much to keep twice.
std::vector<std::size_t> HashesOf(Database& database)
{
    std::vector<std::size_t> found;
    const auto rows = database.OpenRecordset(u"SELECT * FROM saved");
    for (; !rows->AtEnd(); rows->MoveNext())
        found.push_back(std::hash<Text>()(Value(*rows, u"efolder") + u'\t' + Value(*rows, u"esubject") +
                                          u'\t' + Value(*rows, u"ecrc")));
    std::sort(found.begin(), found.end());
    return found;
}

class Engines : public testing::Test {
protected:
    Engines()
    {
        if (FakeRegistry::DaoIsInstalled()) return;
        registry_.emplace();
        standIn_.made = [this](const Text& path) {
            CreateJetDatabase(files_, path, kCreateSaved, kSampleDate);
        };
        standIn_.opened = [this](const Text& path) {
            path_ = path;
            standIn_.rows.clear();
            const auto database = OpenJetDatabase(files_, path, OpenMode::read);
            const auto rows = database->OpenRecordset(u"SELECT * FROM saved");
            for (; !rows->AtEnd(); rows->MoveNext())
                standIn_.rows.push_back(
                    {Value(*rows, u"efolder"), Value(*rows, u"esubject"), Value(*rows, u"ecrc")});
        };
        standIn_.extended = [this](const FakeDao::Row& row) {
            AddRow(*OpenJetDatabase(files_, path_),
                   {row[0].value_or(u""), row[1].value_or(u""), row[2].value_or(u"")});
        };
        standIn_.compacted = [](const Text& from, const Text& to) { fs::copy_file(from, to); };
    }

    void SetUp() override
    {
        // Only Wine lets a stand-in be registered by everybody.
        const bool isWine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
        if (!registry_) return;
        if (!isWine) GTEST_SKIP() << "DAO is not installed";
        registry_->Name(L"DAO.DBEngine.36", kClass);
        registry_->Serve(kClass, standIn_);
    }

    std::vector<std::size_t> RowsByDao(const Text& path) { return HashesOf(*OpenDaoDatabase(path)); }
    std::vector<std::size_t> RowsByUs(const Text& path)
    {
        return HashesOf(*OpenJetDatabase(files_, path, OpenMode::read));
    }
    // The number of rows, when both read the same ones.
    std::size_t ReadByBoth(const Text& path)
    {
        const std::vector<std::size_t> ours = RowsByUs(path), theirs = RowsByDao(path);
        EXPECT_EQ(ours.size(), theirs.size());
        EXPECT_TRUE(ours == theirs) << "other rows";
        return theirs.size();
    }
    void Compact(const Text& from, const Text& to)
    {
        CLSID type;
        IDispatch* engine = nullptr;
        for (const wchar_t* const name : {L"DAO.DBEngine.36", L"DAO.DBEngine.120"})
            if (!engine && SUCCEEDED(CLSIDFromProgID(name, &type)))
                (void)CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                       reinterpret_cast<void**>(&engine));
        ASSERT_TRUE(engine);
        std::array<Variant, 2> paths = {Variant{TextView(from)}, Variant{TextView(to)}};
        AutomationObject(engine).Call(u"CompactDatabase", paths);
    }
    // Read, extended and compacted by both.
    void Try(const fs::path& file)
    {
        const Text name = file.filename().u16string(), path = scratch_ / name;
        fs::copy_file(file, scratch_.Path() / name);
        const std::size_t rows = ReadByBoth(path);
        AddRow(*OpenDaoDatabase(path), {u"Folder \u0416", Text(1500, u'\u03A9'), u"DA0"});
        EXPECT_EQ(ReadByBoth(path), rows + 1) << "extended by DAO";
        AddRow(*OpenJetDatabase(files_, path), {u"O'Brien", u"", u"E1"});
        AddRow(*OpenJetDatabase(files_, path), {u"Inbox", Text(3000, u'x'), u"E2"});
        EXPECT_EQ(ReadByBoth(path), rows + 3) << "extended by us";
        const Text compacted = scratch_ / (u"compacted-" + name);
        ASSERT_NO_FATAL_FAILURE(Compact(path, compacted));
        EXPECT_EQ(ReadByBoth(compacted), rows + 3) << "compacted";
        const auto ours = OpenJetDatabase(files_, compacted);
        const Text refusal = ours->PrepareForWriting(u"saved", {}).refusal;
        EXPECT_EQ(ToUtf8(refusal), "") << "compacted";
        if (refusal.empty()) AddRow(*ours, {u"Inbox", u"behind", u"E3"});
        ours->Close();
        EXPECT_EQ(ReadByBoth(compacted), rows + 3 + refusal.empty()) << "extended behind compacting";
        std::printf("%s: %u rows, %llu pages\n", ToUtf8(name).c_str(), static_cast<unsigned>(rows),
                    static_cast<unsigned long long>(fs::file_size(file) / jet::kPageSize));
        fs::remove(path);
        fs::remove(compacted);
    }

    FakeDao standIn_; // outlives the registry's hold on it
    std::optional<FakeRegistry> registry_;
    ScratchDirectory scratch_;
    SystemFiles files_;
    Text path_; // of the file that the stand-in has opened
};

} // namespace

TEST_F(Engines, ReadExtendAndCompactEachOthersFiles)
{
    const fs::path made = scratch_.Path() / "made";
    fs::create_directory(made);
    const auto path = [&](const char* name) { return (made / name).u16string(); };
    for (const char* name : {"empty.mdb", "some.mdb"})
        CreateJetDatabase(files_, path(name), kCreateSaved, kSampleDate);
    const auto some = OpenJetDatabase(files_, path("some.mdb"));
    for (std::size_t i = 0; i < 40; ++i)
        AddRow(*some,
               {u"Folder " + DecimalText(static_cast<std::int64_t>(i % 3)), Text(i * 40, u'\u017D'), u"A1"});
    some->OpenRecordset(u"SELECT * FROM saved")->Delete();
    some->Close();
    std::vector<fs::path> databases = {made / "empty.mdb", made / "some.mdb"};
    if (const char* directory = std::getenv("QUILLBOX_DATABASES"))
        for (const auto& entry : fs::directory_iterator(directory)) databases.push_back(entry.path());
    for (const fs::path& database : databases) {
        SCOPED_TRACE(database.filename().string());
        try {
            Try(database);
        } catch (const DatabaseError& error) {
            ADD_FAILURE() << error.what();
        }
    }
}

TEST_F(Engines, ATableOfDaosIsExtended)
{
    const Text theirs = scratch_ / u"theirs.mdb";
    CreateDaoDatabase(theirs, kCreateSaved);
    const auto database = OpenJetDatabase(files_, theirs);
    EXPECT_EQ(ToUtf8(database->PrepareForWriting(u"saved", {{u"ecrc", 8, false}}).refusal), "");
    AddRow(*database, {u"Inbox", Text(500, u's'), u"E1"});
    database->Close();
    EXPECT_EQ(ReadByBoth(theirs), 1u);
}
