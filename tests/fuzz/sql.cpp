// sql.cpp: statements for the embedded engine.
#include "jet/Sql.h"
#include "tests/fuzz/Require.h"
#include "tests/support/JetSamples.h"

namespace {

Text Bracketed(const std::vector<Text>& names)
{
    Text list;
    for (const Text& name : names) list += (list.empty() ? u"[" : u", [") + name + u"]";
    return list;
}

Text Quoted(const Text& value)
{
    return u"'" + ReplaceAll(value, u"'", u"''") + u"'";
}

// The statement that says the same in the plainest form.
Text Written(const jet::Select& select)
{
    Text sql = u"SELECT " + (select.columns.empty() ? u"*" : Bracketed(select.columns)) + u" FROM [" +
               select.table + u"]";
    for (std::size_t i = 0; i < select.where.size(); ++i) {
        sql += i == 0 ? u" WHERE " : u" AND ";
        sql += u"[" + select.where[i].column + u"]=" + Quoted(select.where[i].value);
    }
    if (!select.orderBy.empty()) sql += u" ORDER BY " + Bracketed(select.orderBy);
    return sql;
}

Text Written(const jet::NewTable& table)
{
    Text columns;
    for (const jet::NewColumn& column : table.columns)
        columns += (columns.empty() ? u"[" : u", [") + column.name +
                   (column.IsMemo() ? u"] MEMO" : u"] TEXT(" + DecimalText(column.characters) + u")");
    return u"CREATE TABLE [" + table.name + u"] (" + columns + u")";
}

template <class Parse>
void ParseTwice(Parse parse, const Text& sql)
{
    try {
        const Text plain = Written(parse(sql));
        Require(Written(parse(plain)) == plain, "a statement that was understood can be written again");
    } catch (const DatabaseError& error) {
        Require(!error.Words().empty(), "a refusal has words");
    }
}

// What is made of a description has its table and columns.
void MakeTable(const Text& sql)
{
    MemoryFiles files;
    try {
        CreateJetDatabase(files, kSavedPath, sql, kSampleDate);
    } catch (const DatabaseError&) {
        return; // no description, or a name of other letters
    }
    const jet::NewTable table = jet::ParseCreateTable(sql);
    std::vector<Text> columns;
    for (const jet::NewColumn& column : table.columns) columns.push_back(column.name);
    const auto database = OpenJetDatabase(files, kSavedPath);
    Require(database->ColumnNames(table.name) == columns, "the columns are those described");
    Require(database->PrepareForWriting(table.name, {}).refusal.empty(), "a new table can be written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Text sql = FromUtf8(BytesOf(data, size));
    ParseTwice(jet::ParseSelect, sql);
    ParseTwice(jet::ParseCreateTable, sql);
    MakeTable(sql);
    return 0;
}
