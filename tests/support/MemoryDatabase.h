// MemoryDatabase.h: a table in memory that answers the two questions the program asks of its database.
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

    struct Rows : Recordset {
        Rows(MemoryDatabase& owner, bool empty) : database(owner), none(empty) {}
        MemoryDatabase& database;
        bool none;
        std::map<Text, Text> added;

        bool AtBeginning() override { return none; }
        bool AtEnd() override { return none; }
        void MoveNext() override {}
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
        bool found = sql.find(u"WHERE") == Text::npos && !rows.empty();
        for (const auto& row : rows)
            found = found || (sql.find(u"ecrc='" + row.at(u"ecrc") + u"'") != Text::npos &&
                              sql.find(u"efolder='" + ReplaceAll(row.at(u"efolder"), u"'", u"''") + u"'") !=
                                  Text::npos);
        return std::make_unique<Rows>(*this, !found);
    }
    void Close() noexcept override {}
};
