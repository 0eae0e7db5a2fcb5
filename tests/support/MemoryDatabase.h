// MemoryDatabase.h: a table in memory that answers what the program asks of its database.
#pragma once
#include "platform/Database.h"

#include <map>
#include <vector>

using MemoryRows = std::vector<std::map<Text, Text>>;

struct MemoryDatabase : Database {
    explicit MemoryDatabase(MemoryRows& table) : rows(table) {}

    MemoryRows& rows;
    std::vector<Text> statements;
    bool failAdds = false;
    Readiness readiness; // what PrepareForWriting answers; the refusal "throw": it fails

    struct Rows : Recordset {
        Rows(MemoryDatabase& owner, MemoryRows matches) : database(owner), found(std::move(matches)) {}
        MemoryDatabase& database;
        MemoryRows found;
        std::size_t place = 0;
        std::map<Text, Text> added;

        bool AtBeginning() override { return found.empty(); }
        bool AtEnd() override { return place == found.size(); }
        void MoveNext() override { ++place; }
        std::int32_t Count() override { return static_cast<std::int32_t>(found.size()); }
        Text Field(const Text& name) override { return found[place].at(name); }
        void Delete() override {}
        void AddNew() override { added.clear(); }
        void SetField(const Text& name, const Text& value) override { added[name] = value; }
        void Update() override
        {
            if (database.failAdds) throw DatabaseError(u"the disk is full");
            database.rows.push_back(added);
        }
    };

    // A row is found when each text that the statement compares with is its own.
    std::unique_ptr<Recordset> OpenRecordset(const Text& sql) override
    {
        statements.push_back(sql);
        MemoryRows found;
        for (const auto& row : rows)
            if (Fits(sql, row, u"ecrc") && Fits(sql, row, u"efolder")) found.push_back(row);
        return std::make_unique<Rows>(*this, std::move(found));
    }
    static bool Fits(const Text& sql, const std::map<Text, Text>& row, const Text& column)
    {
        if (sql.find(column + u"='") == Text::npos) return true;
        return sql.find(column + u"='" + ReplaceAll(row.at(column), u"'", u"''") + u"'") != Text::npos;
    }
    Readiness PrepareForWriting(const Text&, const std::vector<ColumnNeed>&) override
    {
        return readiness.refusal == u"throw" ? throw DatabaseError(u"The engine is broken") : readiness;
    }
    std::unique_ptr<DeletionBatch> BeginDeletions() override { return nullptr; }
    void Close() noexcept override {}
};
