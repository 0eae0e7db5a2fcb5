// SavedRows.h: made-up records of saved e-mails, as a saved.mdb and as an SQLite database.
#pragma once
#include "bench/Bench.h"
#include "tests/support/JetSamples.h"

#include <cstdio>
#include <fstream>
#include <random>
#include <sqlite3.h>

struct SavedRow {
    std::string folder, subject, crc;
    bool operator==(const SavedRow&) const = default;
};

// One in ten repeats an earlier one; subjects are of one to twelve words, one in five of another script.
inline std::vector<SavedRow> MadeRows(std::size_t count)
{
    std::mt19937 random(20070403);
    const char* const words[] = {
        "minutes", "of", "the", "meeting", "Re:", "Fwd:", "invoice", "2007", "holiday", "photos"};
    const char* const others[] = {"Ответ:", "встреча", "в", "среду", "Grüße", "aus", "Köln", "会議"};
    std::vector<SavedRow> rows;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && random() % 10 == 0) {
            rows.push_back(rows[random() % i]);
            continue;
        }
        SavedRow& row = rows.emplace_back();
        row.folder = "Local Folders\\Folder " + std::to_string(random() % 50);
        const bool other = random() % 5 == 0;
        for (std::size_t word = 1 + random() % 12; word > 0; --word)
            row.subject += (row.subject.empty() ? "" : " ") +
                           std::string(other ? others[random() % 8] : words[random() % 10]);
        char crc[9];
        std::snprintf(crc, sizeof crc, "%X", static_cast<unsigned>(random()));
        row.crc = crc;
    }
    return rows;
}

inline const std::filesystem::path& Directory()
{
    static const ScratchFolder scratch;
    return scratch.Path();
}

// SQLite with what makes it fast: an index for each kind of question, and as much memory and the file for
// itself as the engine has it.
class Sqlite {
public:
    explicit Sqlite(const std::string& path)
    {
        if (sqlite3_open(path.c_str(), &database_) != SQLITE_OK) Fail(sqlite3_errmsg(database_));
        Run("PRAGMA synchronous=FULL");
        Run("PRAGMA cache_size=-32000"); // KB
        Run("PRAGMA locking_mode=EXCLUSIVE");
    }
    ~Sqlite() { sqlite3_close(database_); }
    Sqlite(const Sqlite&) = delete;

    void Run(const std::string& sql)
    {
        if (sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
            Fail(sql + ": " + sqlite3_errmsg(database_));
    }
    // row(statement) for each; false from it ends.
    template <class Row>
    void Select(const std::string& sql, Row row)
    {
        sqlite3_stmt* const statement = Prepared(sql);
        while (sqlite3_step(statement) == SQLITE_ROW && row(statement)) continue;
        sqlite3_finalize(statement);
    }
    sqlite3_stmt* Prepared(const std::string& sql)
    {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            Fail(sql + ": " + sqlite3_errmsg(database_));
        return statement;
    }
    static std::string Column(sqlite3_stmt* statement, int column)
    {
        return reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    }

private:
    sqlite3* database_ = nullptr;
};

// The same rows as a database of each kind.
class Sample {
public:
    explicit Sample(std::size_t count) : rows(MadeRows(count)), base(Directory() / std::to_string(count))
    {
        SavedSample sample; // in memory: there is nothing to wait for
        const auto adding = sample.database->OpenRecordset(u"SELECT * FROM saved");
        const std::size_t folder = adding->Column(u"efolder"), subject = adding->Column(u"esubject"),
                          crc = adding->Column(u"ecrc");
        for (const SavedRow& row : rows) {
            adding->AddNew();
            adding->SetField(folder, FromUtf8(row.folder));
            adding->SetField(subject, FromUtf8(row.subject));
            adding->SetField(crc, FromUtf8(row.crc));
            adding->Update();
        }
        std::ofstream(JetPath(), std::ios::binary) << sample.Image().Bytes();
        MakeSqlite();
    }

    std::string JetPath() const { return base.string() + ".mdb"; }
    std::string SqlitePath() const { return base.string() + ".sqlite"; }
    std::string LmdbPath() const { return base.string() + ".lmdb"; } // made by who opens it

    const std::vector<SavedRow> rows;

private:
    void MakeSqlite() const;
    std::filesystem::path base;
};

inline void Sample::MakeSqlite() const
{
    Sqlite database(SqlitePath());
    database.Run("CREATE TABLE saved (efolder TEXT COLLATE NOCASE, esubject TEXT, ecrc TEXT COLLATE NOCASE)");
    database.Run("CREATE INDEX byCrc ON saved (ecrc)");
    database.Run("CREATE INDEX byFolder ON saved (efolder)");
    database.Run("BEGIN");
    sqlite3_stmt* const add = database.Prepared("INSERT INTO saved VALUES (?, ?, ?)");
    for (const SavedRow& row : rows) {
        int place = 0;
        for (const std::string* value : {&row.folder, &row.subject, &row.crc})
            sqlite3_bind_text(add, ++place, value->data(), static_cast<int>(value->size()), SQLITE_STATIC);
        sqlite3_step(add);
        sqlite3_reset(add);
    }
    sqlite3_finalize(add);
    database.Run("COMMIT");
    database.Run("ANALYZE"); // which index helps
}

// What opening cannot do without: the bytes of the file, and a text from each value. Rows and values are
// taken apart by their layout in files that this program makes.
inline std::size_t ReadAndDecode(Files& files, const std::string& path)
{
    std::string bytes;
    if (files.ReadWhole(FromUtf8(path), bytes) != FileError::none) Fail("cannot read " + path);
    const auto number = [&](std::size_t at) {
        return static_cast<unsigned char>(bytes[at]) |
               static_cast<std::size_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
    };
    std::size_t units = 0;
    Text text;
    const auto decode = [&](std::size_t at, std::size_t end) {
        text.clear();
        if (end - at >= 2 && number(at) == 0xFEFF) {
            for (at += 2; at < end; ++at) text += static_cast<unsigned char>(bytes[at]);
        } else {
            for (; at + 1 < end; at += 2) text += static_cast<char16_t>(number(at));
        }
        units += text.size();
    };
    for (std::size_t page = 0; page < bytes.size(); page += jet::kPageSize) {
        const bool rows = bytes[page] == 1 && number(page + 4) == kDefinition;
        const bool longValues = bytes[page] == 1 && bytes.compare(page + 4, 4, "LVAL") == 0;
        if (!rows && !longValues) continue;
        std::size_t end = jet::kPageSize;
        for (std::size_t slot = 0; slot < number(page + 12); ++slot) {
            const std::size_t start = number(page + 14 + 2 * slot) & 0x1FFF;
            if (longValues) {
                decode(page + start, page + end);
            } else { // ... efolder esubject ecrc end, ecrc, esubject, efolder (2 each) 3 (2) mask (1)
                const std::size_t table = page + end - 11;
                for (std::size_t column = 0; column < 3; ++column) {
                    std::size_t from = page + start + number(table + 6 - 2 * column);
                    const std::size_t to = page + start + number(table + 4 - 2 * column);
                    if (column == 1 && to > from) from += 12; // the header of a long value
                    if (to > from) decode(from, to);
                }
            }
            end = start;
        }
    }
    return units;
}
