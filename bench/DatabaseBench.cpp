// DatabaseBench.cpp: what the program asks of saved.mdb, beside what people would use instead: mdb-export for
// all rows, SQLite for questions and condensing, LMDB for questions and additions, and the work that cannot
// be left out (reading the file, waiting for the disk).
//   bench-database [--rows=N] [options of Google Benchmark]
#include "bench/Lmdb.h"
#include "platform/posix/PosixFiles.h"
#include "store/SavedMaintenance.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <unistd.h>

namespace {

Sample& SampleOf(std::size_t count)
{
    static std::map<std::size_t, std::unique_ptr<Sample>> samples;
    std::unique_ptr<Sample>& sample = samples[count];
    if (!sample) sample = std::make_unique<Sample>(count);
    return *sample;
}

PosixFiles files;

std::string CopyOf(const std::string& path)
{
    const std::string copy = path + ".copy";
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    return copy;
}

SavedEmails Opened(const std::string& path)
{
    SavedEmails saved;
    const Text why =
        OpenSavedEmails(saved, files, FromUtf8(path),
                        {{nullptr, [](const Text& file) { return OpenJetDatabase(files, file); }}});
    if (!saved.IsWritable()) Fail(ToUtf8(why + saved.whyReadOnly));
    return saved;
}

// All rows.

// take(value) for each, row by row.
template <class Take>
void ReadAllHere(const std::string& path, Take take)
{
    const auto database = OpenJetDatabase(files, FromUtf8(path), OpenMode::read);
    const auto rows = database->OpenRecordset(u"SELECT * FROM saved");
    const std::size_t columns[] = {rows->Column(u"efolder"), rows->Column(u"esubject"),
                                   rows->Column(u"ecrc")};
    for (; !rows->AtEnd(); rows->MoveNext())
        for (const std::size_t column : columns) take(rows->Field(column));
}

std::string AllHere(const std::string& path)
{
    std::string text;
    int column = 0;
    ReadAllHere(path, [&](const Text& value) { text += ToUtf8(value) + (++column % 3 ? '\t' : '\n'); });
    return text;
}

std::string Exported(const std::string& path)
{
    std::FILE* const pipe = ::popen(("mdb-export -H -Q -d '\t' -R '\n' '" + path + "' saved").c_str(), "r");
    if (!pipe) Fail("mdb-export cannot be run");
    std::string all(1 << 16, '\0'), text;
    while (const std::size_t got = std::fread(all.data(), 1, all.size(), pipe)) text.append(all, 0, got);
    ::pclose(pipe);
    return text;
}

std::string AsText(const std::vector<SavedRow>& rows)
{
    std::string text;
    for (const SavedRow& row : rows) text += row.folder + '\t' + row.subject + '\t' + row.crc + '\n';
    return text;
}

// Questions: every second one is answered with yes.

struct Question {
    SavedRow row;
    Text folder, crc;
    std::string sql;
    bool answer;
};

std::vector<Question> Questions(const Sample& sample)
{
    std::mt19937 random(1);
    std::vector<Question> questions;
    constexpr int kQuestions = 100'000; // pages of a large file are not all in memory then
    for (int i = 0; i < kQuestions; ++i) {
        SavedRow row = sample.rows[random() % sample.rows.size()];
        if (i % 2) row.crc[0] = 'G';
        questions.push_back(
            {row, FromUtf8(row.folder), FromUtf8(row.crc),
             "SELECT * FROM saved WHERE (ecrc='" + row.crc + "') AND (efolder='" + row.folder + "')",
             i % 2 == 0});
    }
    return questions;
}

bool AskSqlite(Sqlite& database, const Question& question)
{
    bool found = false;
    database.Select(question.sql, [&](sqlite3_stmt*) {
        found = true;
        return false;
    });
    return found;
}

// A folder's CRCs.

Text CrcsFromSqlite(Sqlite& database, const std::string& folder)
{
    Text list = u",";
    database.Select("SELECT ecrc FROM saved WHERE efolder='" + folder + "'", [&](sqlite3_stmt* row) {
        list += FromAscii(Sqlite::Column(row, 0)) + u",";
        return true;
    });
    return list;
}

// Condensing.

int CondenseSqlite(Sqlite& database)
{
    std::vector<sqlite3_int64> repeated;
    std::string crc, folder;
    database.Run("BEGIN");
    database.Select("SELECT ecrc, efolder, rowid FROM saved ORDER BY ecrc, efolder, rowid",
                    [&](sqlite3_stmt* row) {
                        std::string nextCrc = Sqlite::Column(row, 0), nextFolder = Sqlite::Column(row, 1);
                        if (nextCrc == crc && nextFolder == folder)
                            repeated.push_back(sqlite3_column_int64(row, 2));
                        crc = std::move(nextCrc);
                        folder = std::move(nextFolder);
                        return true;
                    });
    sqlite3_stmt* const remove = database.Prepared("DELETE FROM saved WHERE rowid=?");
    for (const sqlite3_int64 id : repeated) {
        sqlite3_bind_int64(remove, 1, id);
        sqlite3_step(remove);
        sqlite3_reset(remove);
    }
    sqlite3_finalize(remove);
    database.Run("COMMIT");
    return static_cast<int>(repeated.size());
}

std::string Unsorted(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    std::string sorted;
    for (const std::string& line : lines) sorted += line + '\n';
    return sorted;
}

void CheckAnswers(const Sample& sample)
{
    const std::string wanted = Unsorted(AsText(sample.rows));
    if (Unsorted(AllHere(sample.JetPath())) != wanted) Fail("rows are not those that were added");
    if (Unsorted(Exported(sample.JetPath())) != wanted) Fail("mdb-export has other rows");
    SavedEmails saved = Opened(sample.JetPath());
    Sqlite sqlite(sample.SqlitePath());
    Lmdb lmdb(sample.LmdbPath());
    lmdb.Add(sample.rows);
    for (const Question& question : Questions(sample))
        if (IsSaved(saved, question.crc, question.folder) != question.answer ||
            AskSqlite(sqlite, question) != question.answer ||
            lmdb.Has(question.row.crc, question.row.folder) != question.answer)
            Fail("another answer: " + question.sql);
    const std::string folder = sample.rows[0].folder;
    const auto crcs = [](const Text& list) {
        std::vector<Text> all = SplitAt(list, u",");
        std::sort(all.begin(), all.end());
        return all;
    };
    if (crcs(FolderCrcList(saved, FromUtf8(folder), u",", [] {})) != crcs(CrcsFromSqlite(sqlite, folder)))
        Fail("other CRCs of a folder");
    CloseSavedEmails(saved);
    SavedEmails condensed = Opened(CopyOf(sample.JetPath()));
    Sqlite other(CopyOf(sample.SqlitePath()));
    if (CondenseDatabase(condensed, [](int) { return true; }).removed != CondenseSqlite(other))
        Fail("other repeated rows");
}

void RegisterQuestions(const std::string& among, std::size_t count)
{
    const std::string name = "ask/" + among;
    Register(
        name + "/quillbox",
        [count](benchmark::State& state) {
            const std::vector<Question> questions = Questions(SampleOf(count));
            SavedEmails saved = Opened(SampleOf(count).JetPath());
            std::size_t next = 0;
            benchmark::DoNotOptimize(IsSaved(saved, u"0", u"x"));
            for (auto _ : state) {
                const Question& question = questions[next++ % questions.size()];
                benchmark::DoNotOptimize(IsSaved(saved, question.crc, question.folder));
            }
        },
        benchmark::kMicrosecond);
    Register(
        name + "/sqlite",
        [count](benchmark::State& state) {
            const std::vector<Question> questions = Questions(SampleOf(count));
            Sqlite database(SampleOf(count).SqlitePath());
            std::size_t next = 0;
            for (auto _ : state)
                benchmark::DoNotOptimize(AskSqlite(database, questions[next++ % questions.size()]));
        },
        benchmark::kMicrosecond);
}

void RegisterAll(std::size_t count)
{
    Register("rows/quillbox", [count](benchmark::State& state) {
        for (auto _ : state)
            ReadAllHere(SampleOf(count).JetPath(),
                        [](const Text& value) { benchmark::DoNotOptimize(value.data()); });
    });
    Register("rows/mdb-export", [count](benchmark::State& state) {
        for (auto _ : state) benchmark::DoNotOptimize(Exported(SampleOf(count).JetPath()));
    });
    RegisterQuestions("tenth", count / 10);
    RegisterQuestions("all", count);
    RegisterQuestions("tenfold", count * 10);
    Register(
        "ask/all/lmdb",
        [count](benchmark::State& state) {
            const std::vector<Question> questions = Questions(SampleOf(count));
            Lmdb database(SampleOf(count).LmdbPath());
            std::size_t next = 0;
            for (auto _ : state) {
                const SavedRow& asked = questions[next++ % questions.size()].row;
                benchmark::DoNotOptimize(database.Has(asked.crc, asked.folder));
            }
        },
        benchmark::kMicrosecond);
    Register("open/quillbox", [count](benchmark::State& state) {
        const Question question = Questions(SampleOf(count))[0];
        for (auto _ : state) {
            SavedEmails saved = Opened(SampleOf(count).JetPath());
            benchmark::DoNotOptimize(IsSaved(saved, question.crc, question.folder));
        }
    });
    Register("open/read-and-decode", [count](benchmark::State& state) {
        for (auto _ : state) benchmark::DoNotOptimize(ReadAndDecode(files, SampleOf(count).JetPath()));
    });
    Register("add/quillbox", [count](benchmark::State& state) {
        SavedEmails saved = Opened(CopyOf(SampleOf(count).JetPath()));
        for (auto _ : state)
            AddSavedEmail(saved, u"Local Folders\\Inbox", {{}, u"Re: minutes", {}, {}, {}, u"1234ABCD"});
    });
    Register("add/lmdb", [count](benchmark::State& state) {
        Lmdb database(CopyOf(SampleOf(count).LmdbPath()));
        SavedRow row{"Local Folders\\Inbox", "Re: minutes", {}};
        int number = 0;
        for (auto _ : state) {
            row.crc = std::to_string(++number);
            database.Add({&row, 1});
        }
    });
    Register("add/two-pages-synced", [count](benchmark::State& state) {
        FileError error = FileError::none;
        const auto file = files.Open(FromUtf8(CopyOf(SampleOf(count).JetPath())), OpenMode::exclusive, error);
        std::string page(jet::kPageSize, 'x');
        const std::uint64_t last = file->Size() - jet::kPageSize, other = 2 * jet::kPageSize;
        for (auto _ : state) {
            for (int times = 0; times < 2; ++times) {
                ++page[0];
                if (file->WriteAt(times == 0 ? last : other, page.data(), page.size()) != FileError::none ||
                    file->Flush() != FileError::none)
                    Fail("cannot write");
            }
        }
    });
    Register("crcs/quillbox", [count](benchmark::State& state) {
        SavedEmails saved = Opened(SampleOf(count).JetPath());
        const Text folder = FromUtf8(SampleOf(count).rows[0].folder);
        FolderCrcList(saved, folder, u",", [] {}); // the first reads all rows
        for (auto _ : state) benchmark::DoNotOptimize(FolderCrcList(saved, folder, u",", [] {}));
    });
    Register("crcs/sqlite", [count](benchmark::State& state) {
        Sqlite database(SampleOf(count).SqlitePath());
        for (auto _ : state)
            benchmark::DoNotOptimize(CrcsFromSqlite(database, SampleOf(count).rows[0].folder));
    });
    Register("condense/quillbox", [count](benchmark::State& state) {
        for (auto _ : state) {
            state.PauseTiming();
            SavedEmails saved = Opened(CopyOf(SampleOf(count).JetPath()));
            ::sync();
            state.ResumeTiming();
            benchmark::DoNotOptimize(CondenseDatabase(saved, [](int) { return true; }));
        }
    });
    Register("condense/sqlite", [count](benchmark::State& state) {
        for (auto _ : state) {
            state.PauseTiming();
            Sqlite database(CopyOf(SampleOf(count).SqlitePath()));
            ::sync();
            state.ResumeTiming();
            benchmark::DoNotOptimize(CondenseSqlite(database));
        }
    });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const std::size_t rows = SizeOption(argc, argv, "--rows=", 100000);
    CheckAnswers(SampleOf(rows));
    RegisterAll(rows);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
