// MemoryDatabase.h: a table in memory that answers the two questions the program asks of its database.
#pragma once
#include "platform/Database.h"

#include <algorithm>
#include <map>
#include <vector>

using MemoryRows = std::vector<std::map<Text, Text>>;

struct MemoryDatabase : Database {
    explicit MemoryDatabase(MemoryRows& table) : rows(table) {}

    MemoryRows& rows;
    std::vector<Text> statements;
    bool failAdds = false;
    Readiness readiness; // what PrepareForWriting answers

    struct Rows : Recordset {
        Rows(MemoryDatabase& owner, std::size_t found) : database(owner), count(found), left(found) {}
        MemoryDatabase& database;
        std::size_t count, left;
        std::map<Text, Text> added;

        bool AtBeginning() override { return count == 0; }
        bool AtEnd() override { return left == 0; }
        void MoveNext() override { --left; }
        std::int32_t Count() override { return static_cast<std::int32_t>(count); }
        Text Field(const Text&) override { return {}; }
        void Delete() override {}
        void AddNew() override { added.clear(); }
        void SetField(const Text& name, const Text& value) override { added[name] = value; }
        void Update() override
        {
            if (database.failAdds) throw DatabaseError(u"the disk is full");
            database.rows.push_back(added);
        }
    };

    // A row is found when the statement holds its CRC and its folder as quoted texts.
    std::unique_ptr<Recordset> OpenRecordset(const Text& sql) override
    {
        statements.push_back(sql);
        const bool all = sql.find(u"WHERE") == Text::npos;
        const auto found = std::count_if(rows.begin(), rows.end(), [&](const auto& row) {
            const Text folder = ReplaceAll(row.at(u"efolder"), u"'", u"''");
            return all || (sql.find(u"ecrc='" + row.at(u"ecrc") + u"'") != Text::npos &&
                           sql.find(u"efolder='" + folder + u"'") != Text::npos);
        });
        return std::make_unique<Rows>(*this, static_cast<std::size_t>(found));
    }
    Readiness PrepareForWriting(const Text&, const std::vector<ColumnNeed>&) override { return readiness; }
    std::unique_ptr<DeletionBatch> BeginDeletions() override { return nullptr; }
    void Close() noexcept override {}
};
