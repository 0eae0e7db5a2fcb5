// JetSqlTest.cpp: what the statement parser takes and what it refuses.
#include "jet/Sql.h"
#include "platform/Database.h"
#include "tests/support/Case.h"

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
    const Case<Text, std::string> cases[] = {
        {"asked per e-mail",
         u"SELECT * FROM saved WHERE (ecrc='CBF43926') AND (efolder='Local Folders\\O''Brien')",
         "|saved|ecrc=CBF43926,efolder=Local Folders\\O'Brien,|"},
        {"one folder's", u"SELECT ecrc FROM saved WHERE efolder='a)b AND c'",
         "ecrc,|saved|efolder=a)b AND c,|"},
        {"condensing", u"SELECT * FROM saved ORDER BY ecrc, efolder", "|saved||ecrc,efolder,"},
        {"keywords in any case, any white space, an end mark",
         u"select\t a ,b\r\nfrom T where((a = '')) order by a ;", "a,b,|T|a=,|a,"},
        {"names in brackets, with what words have not",
         u"SELECT [my column] FROM [a table; x] WHERE [order]='1'", "my column,|a table; x|order=1,|"},
        {"nothing but an apostrophe", u"SELECT * FROM t WHERE a=''''", "|t|a=',|"},
    };
    for (const auto& c : cases) EXPECT_EQ(Understood(c.given), c.want) << c.why;
}

TEST(JetSql, TakesTheDescriptionOfATable)
{
    const NewTable table =
        ParseCreateTable(u"create TABLE [" + Text(64, u't') + u"] (a text(1), [b c] Memo,c TEXT ( 255 ));");
    std::string columns;
    for (const NewColumn& column : table.columns)
        columns += ToUtf8(column.name) + " " + std::to_string(column.characters) + ",";
    EXPECT_EQ(table.name, Text(64, u't'));
    EXPECT_EQ(columns, "a 1,b c 0,c 255,");
}

TEST(JetSql, SaysWhatWasExpected)
{
    const Text select = u"SELECT * FROM saved", where = select + u" WHERE ", create = u"CREATE TABLE t ";
    const char* const characters = "a number of characters, 1 to 255, was expected, found ";
    Text columns;
    for (int i = 0; i < 24; ++i) columns += u"c" + DecimalText(i) + u" MEMO, ";
    const std::pair<Text, std::string> cases[] = {
        {u"", "SELECT was expected, found its end"},
        {u"SELECT * FROM", "a name was expected, found its end"},
        {u"SELECT *, ecrc FROM saved", "FROM was expected, found \",\""},
        {u"SELECT * FROM [saved", "a bracket is not closed"},
        {select + u"; DROP TABLE saved", "the end of the statement was expected, found \"DROP\""},
        {select + u" ORDER ecrc", "BY was expected, found \"ecrc\""},
        {where + u"ecrc", "\"=\" was expected, found its end"},
        {where + u"ecrc=1", "a text between apostrophes was expected, found \"1\""},
        {where + u"ecrc='1", "a text is not closed"},
        {where + u"(ecrc='1'", "\")\" was expected, found its end"},
        {where + Text(100000, u'(') + u"a='1'", "fewer parentheses was expected, found \"(\""},
        {u"CREATE saved", "TABLE was expected, found \"saved\""},
        {u"CREATE TABLE [] (a MEMO)", "a name of 1 to 64 characters was expected, found \"\""},
        {create + u"(a MEMO, A MEMO)", "another name for a column was expected, found \"A\""},
        {create + u"(a NUMBER)", "TEXT or MEMO was expected, found \"NUMBER\""},
        {create + u"(a TEXT(0))", characters + std::string("\"0\"")},
        {create + u"(a TEXT(256))", characters + std::string("\"256\"")},
        {create + u"(a TEXT('9'))", characters + std::string("\"9\"")},
        {create + u"(a MEMO) x", "the end of the statement was expected, found \"x\""},
        {create + u"(" + columns + u"a MEMO)", "a table of fewer columns was expected, found \"a\""},
        {create + u"(" + Text(65, u'a') + u" MEMO)",
         "a name of 1 to 64 characters was expected, found \"" + std::string(65, 'a') + "\""},
    };
    for (const auto& [sql, words] : cases) {
        try {
            if (sql.starts_with(u"CREATE"))
                (void)ParseCreateTable(sql);
            else
                (void)ParseSelect(sql);
            ADD_FAILURE() << words;
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.what(), "The SQL statement cannot be carried out: " + words);
        }
    }
}
