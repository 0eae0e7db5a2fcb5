// Lmdb.h: records of saved e-mails in LMDB, which knows keys and values and no SQL: how little a question and
// a durable row can cost. The key is what makes a record, the value its subject.
#pragma once
#include "bench/SavedRows.h"

#include <lmdb.h>
#include <span>

class Lmdb {
public:
    explicit Lmdb(const std::string& path)
    {
        constexpr std::size_t kMostBytes = std::size_t{1} << 30;
        Need(mdb_env_create(&environment_));
        Need(mdb_env_set_mapsize(environment_, kMostBytes));
        Need(mdb_env_open(environment_, path.c_str(), MDB_NOSUBDIR, 0600));
        Need(mdb_txn_begin(environment_, nullptr, MDB_RDONLY, &reading_));
        Need(mdb_dbi_open(reading_, nullptr, 0, &table_));
        mdb_txn_reset(reading_);
    }
    ~Lmdb()
    {
        mdb_txn_abort(reading_);
        mdb_env_close(environment_);
    }
    Lmdb(const Lmdb&) = delete;

    // On disk when this returns.
    void Add(std::span<const SavedRow> rows)
    {
        MDB_txn* transaction = nullptr;
        Need(mdb_txn_begin(environment_, nullptr, 0, &transaction));
        for (const SavedRow& row : rows) {
            std::string keyBytes = KeyOf(row.crc, row.folder), valueBytes = row.subject;
            MDB_val key = ValueOf(keyBytes), value = ValueOf(valueBytes);
            Need(mdb_put(transaction, table_, &key, &value, 0));
        }
        Need(mdb_txn_commit(transaction));
    }
    bool Has(const std::string& crc, const std::string& folder)
    {
        std::string bytes = KeyOf(crc, folder);
        MDB_val key = ValueOf(bytes), value{};
        Need(mdb_txn_renew(reading_));
        const int answer = mdb_get(reading_, table_, &key, &value);
        mdb_txn_reset(reading_);
        if (answer != MDB_NOTFOUND) Need(answer);
        return answer == 0;
    }

private:
    static void Need(int answer)
    {
        if (answer != 0) Fail(std::string("LMDB: ") + mdb_strerror(answer));
    }
    static std::string KeyOf(const std::string& crc, const std::string& folder)
    {
        return crc + '\n' + folder;
    }
    static MDB_val ValueOf(std::string& bytes) { return {bytes.size(), bytes.data()}; }

    MDB_env* environment_ = nullptr;
    MDB_dbi table_ = 0;
    MDB_txn* reading_ = nullptr;
};
