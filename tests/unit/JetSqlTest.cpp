// JetSqlTest.cpp: what the statement parser takes and what it refuses.
#include "jet/Sql.h"
#include "platform/Database.h"

#include <gtest/gtest.h>

using namespace jet;

namespace {

// The statement as it was understood: columns|table|column=value,...|order
std::string Understood(const Text& sql)
{
    const Select select = ParseSelect(sql);
    std::string out;
    for (const Text& column : select.columns) out += ToUtf8(column) + ",";
    out += "|" + ToUtf8(select.table) + "|";
    for (const Condition& condition : select.where)
        out += ToUtf8(condition.column) + "=" + ToUtf8(condition.value) + ",";
    out += "|";
    for (const Text& column : select.orderBy) out += ToUtf8(column) + ",";
    return out;
}

} // namespace

TEST(JetSql, TakesTheStatementsOfTheProgram)
{
    struct Case {
        const char* why;
        Text sql;
        std::string want;
    };
    const Case cases[] = {
        {"everything", u"SELECT * FROM saved", "|saved||"},
        {"asked per e-mail",
         u"SELECT * FROM saved WHERE (ecrc='CBF43926') AND (efolder='Local Folders\\O''Brien')",
         "|saved|ecrc=CBF43926,efolder=Local Folders\\O'Brien,|"},
        {"without a folder", u"SELECT * FROM saved WHERE ecrc='0'", "|saved|ecrc=0,|"},
        {"one folder's", u"SELECT ecrc FROM saved WHERE efolder='a)b AND c'",
         "ecrc,|saved|efolder=a)b AND c,|"},
        {"condensing", u"SELECT * FROM saved ORDER BY ecrc, efolder", "|saved||ecrc,efolder,"},
        {"keywords in any case, any white space, an end mark",
         u"select\t a ,b\r\nfrom T where((a = '')) order by a ;", "a,b,|T|a=,|a,"},
        {"names in brackets, with what words have not",
         u"SELECT [my column] FROM [a table; x] WHERE [order]='1'", "my column,|a table; x|order=1,|"},
        {"nothing but an apostrophe", u"SELECT * FROM t WHERE a=''''", "|t|a=',|"},
        {"nested", u"SELECT * FROM t WHERE (a='1' AND (b='2')) AND c='3'", "|t|a=1,b=2,c=3,|"},
    };
    for (const Case& c : cases) EXPECT_EQ(Understood(c.sql), c.want) << c.why;
}

TEST(JetSql, RefusesTheRest)
{
    const Text cases[] = {
        u"",
        u"DELETE FROM saved",
        u"SELECT",
        u"SELECT * FROM",
        u"SELECT * FROM saved; DROP TABLE saved",
        u"SELECT * FROM saved WHERE",
        u"SELECT * FROM saved WHERE ecrc",
        u"SELECT * FROM saved WHERE ecrc=1",
        u"SELECT * FROM saved WHERE ecrc='1",
        u"SELECT * FROM saved WHERE ecrc='1' OR efolder='2'",
        u"SELECT * FROM saved WHERE ecrc<>'1'",
        u"SELECT * FROM saved WHERE (ecrc='1'",
        u"SELECT * FROM saved WHERE ecrc='1')",
        u"SELECT * FROM saved WHERE ecrc='it's'",
        u"SELECT * FROM saved ORDER ecrc",
        u"SELECT * FROM saved ORDER BY ecrc DESC",
        u"SELECT * FROM saved, other",
        u"SELECT COUNT(*) FROM saved",
        u"SELECT *, ecrc FROM saved",
        u"SELECT * FROM [saved",
        u"SELECT * FROM t WHERE " + Text(100000, u'(') + u"a='1'",
    };
    for (const Text& sql : cases) EXPECT_THROW(ParseSelect(sql), DatabaseError) << ToUtf8(sql).substr(0, 80);
}

TEST(JetSql, TakesTheDescriptionOfATable)
{
    const NewTable table =
        ParseCreateTable(u"create TABLE [" + Text(64, u't') + u"] (a text(1), [b c] Memo,c TEXT ( 255 ));");
    EXPECT_EQ(table.name, Text(64, u't'));
    ASSERT_EQ(table.columns.size(), 3u);
    const struct {
        TextView name;
        unsigned characters;
    } wanted[] = {{u"a", 1}, {u"b c", 0}, {u"c", 255}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(table.columns[i].name, wanted[i].name);
        EXPECT_EQ(table.columns[i].characters, wanted[i].characters);
    }
}

TEST(JetSql, SaysWhatWasExpected)
{
    Text columns;
    for (int i = 0; i < 24; ++i) columns += u"c" + DecimalText(i) + u" MEMO, ";
    const struct {
        Text sql;
        const char* expected; // and what was found
    } cases[] = {
        {u"SELECT * FROM saved WHERE ecrc=1", "a text between apostrophes was expected, found \"1\""},
        {u"CREATE saved", "TABLE was expected, found \"saved\""},
        {u"CREATE TABLE [] (a MEMO)", "a name of 1 to 64 characters was expected, found \"\""},
        {u"CREATE TABLE t", "\"(\" was expected, found its end"},
        {u"CREATE TABLE t ()", "a name was expected, found \")\""},
        {u"CREATE TABLE t (a MEMO, A MEMO)", "another name for a column was expected, found \"A\""},
        {u"CREATE TABLE t (a NUMBER)", "TEXT or MEMO was expected, found \"NUMBER\""},
        {u"CREATE TABLE t (a TEXT)", "\"(\" was expected, found \")\""},
        {u"CREATE TABLE t (a TEXT(0))", "a number of characters, 1 to 255, was expected, found \"0\""},
        {u"CREATE TABLE t (a TEXT(256))", "a number of characters, 1 to 255, was expected, found \"256\""},
        {u"CREATE TABLE t (a TEXT())", "a number of characters, 1 to 255, was expected, found \")\""},
        {u"CREATE TABLE t (a TEXT('9'))", "a number of characters, 1 to 255, was expected, found \"9\""},
        {u"CREATE TABLE t (a MEMO) x", "the end of the statement was expected, found \"x\""},
        {u"CREATE TABLE t (" + columns + u"a MEMO)", "a table of fewer columns was expected, found \"a\""},
    };
    for (const auto& c : cases) {
        try {
            if (c.sql.starts_with(u"SELECT"))
                ParseSelect(c.sql);
            else
                ParseCreateTable(c.sql);
            ADD_FAILURE() << ToUtf8(c.sql);
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.what(), std::string("The SQL statement cannot be carried out: ") + c.expected);
        }
    }
}
