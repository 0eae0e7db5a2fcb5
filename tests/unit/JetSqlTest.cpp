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

TEST(JetSql, SaysWhatWasExpected)
{
    try {
        ParseSelect(u"SELECT * FROM saved WHERE ecrc=1");
        FAIL();
    } catch (const DatabaseError& error) {
        EXPECT_STREQ(error.what(),
                     "The SQL statement cannot be carried out: a text between apostrophes was expected, "
                     "found \"1\"");
    }
}
