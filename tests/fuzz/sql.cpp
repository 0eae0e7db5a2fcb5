// sql.cpp: statements for the embedded engine.
#include "jet/Sql.h"
#include "platform/Database.h"
#include "tests/fuzz/Require.h"

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Text sql = FromUtf8(BytesOf(data, size));
    try {
        const Text plain = Written(jet::ParseSelect(sql));
        Require(Written(jet::ParseSelect(plain)) == plain,
                "a statement that was understood can be written again");
    } catch (const DatabaseError& error) {
        Require(!error.Words().empty(), "a refusal has words");
    }
    return 0;
}
