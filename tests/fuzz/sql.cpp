// sql.cpp: statements for the embedded engine.
#include "jet/Sql.h"
#include "tests/fuzz/Require.h"
#include "tests/support/JetSamples.h"

#include <algorithm>

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

// What a statement finds among a few rows, told by looking at each of them.
void FindRows(const Text& sql)
{
    using Rows = std::vector<std::vector<Text>>;
    static const std::vector<Text> names = {u"efolder", u"esubject", u"ecrc"};
    static const Rows rows = {
        {u"Inbox", u"Hello", u"A1"}, {u"INBOX", u"", u"a1"},      {u"", u"hello", u"B2"},
        {u"Sent", u"x", u"A1"},      {u"inbox", u"HELLO", u""},   {u"Inbox", u"Hello", u"A1"},
        {u"b", u"x", u"B2"},         {u"O'Brien", u"\xC4", u"C"}, {u"B", u"\xE4", u"c"}};
    static SavedSample* const sample = [] {
        auto* made = new SavedSample;
        made->Add(rows);
        return made;
    }();
    try {
        const jet::Select select = jet::ParseSelect(sql);
        if (!EqualNoCase(select.table, u"saved")) return;
        const auto opened = sample->database->OpenRecordset(sql);
        const auto columnOf = [](const Text& name) {
            const auto same = [&](const Text& known) { return EqualNoCase(known, name); };
            const auto found = std::find_if(names.begin(), names.end(), same);
            Require(found != names.end(), "a column that is not there is refused");
            return static_cast<std::size_t>(found - names.begin());
        };
        Rows wanted;
        for (const auto& row : rows)
            if (std::all_of(select.where.begin(), select.where.end(), [&](const jet::Condition& condition) {
                    return EqualNoCase(row[columnOf(condition.column)], condition.value);
                }))
                wanted.push_back(row);
        std::stable_sort(wanted.begin(), wanted.end(), [&](const auto& a, const auto& b) {
            for (const Text& name : select.orderBy) {
                const Text left = FoldCase(a[columnOf(name)]), right = FoldCase(b[columnOf(name)]);
                if (left != right) return left < right;
            }
            return false;
        });
        const std::vector<Text>& columns = select.columns.empty() ? names : select.columns;
        Require(static_cast<std::size_t>(opened->Count()) == wanted.size(), "as many rows");
        for (const auto& row : wanted) {
            for (const Text& name : columns)
                Require(Value(*opened, name) == row[columnOf(name)], "the same rows in the same order");
            opened->MoveNext();
        }
        Require(opened->AtEnd(), "and then no more");
    } catch (const DatabaseError& error) {
        Require(!error.Words().empty(), "a refusal has words");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Text sql = FromUtf8(BytesOf(data, size));
    ParseTwice(jet::ParseSelect, sql);
    ParseTwice(jet::ParseCreateTable, sql);
    MakeTable(sql);
    FindRows(sql);
    return 0;
}
