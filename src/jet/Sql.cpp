#include "jet/Sql.h"

#include "platform/Database.h"

#include <algorithm>

namespace jet {

namespace {

constexpr int kDeepestParentheses = 64;
constexpr std::size_t kLongestName = 64, kMostNewColumns = 24;
constexpr unsigned kLongestText = 255;
constexpr TextView kNumberOfCharacters = u"a number of characters, 1 to 255,";

enum class TokenKind { end, word, name, text, symbol };
struct Token {
    TokenKind kind = TokenKind::end;
    Text text; // without brackets, quotes and doubled apostrophes
};

bool IsWordUnit(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') ||
           (unit >= u'A' && unit <= u'Z') || unit == u'_' || unit >= 0x80;
}

class Parser {
public:
    explicit Parser(TextView sql) : rest_(sql) { Advance(); }

    Select SelectStatement()
    {
        Select select;
        NeedWord(u"SELECT");
        if (!TakeSymbol(u"*")) select.columns = Names();
        NeedWord(u"FROM");
        select.table = Name();
        if (TakeWord(u"WHERE")) Conditions(select.where, 0);
        if (TakeWord(u"ORDER")) {
            NeedWord(u"BY");
            select.orderBy = Names();
        }
        NeedEnd();
        return select;
    }

    NewTable CreateStatement()
    {
        NeedWord(u"CREATE");
        NeedWord(u"TABLE");
        NewTable table{NewName(), {}};
        NeedSymbol(u"(");
        do {
            if (table.columns.size() == kMostNewColumns) Fail(u"a table of fewer columns");
            table.columns.push_back(ColumnOf(table));
        } while (TakeSymbol(u","));
        NeedSymbol(u")");
        NeedEnd();
        return table;
    }

private:
    [[noreturn]] void Fail(TextView expected) const
    {
        const Text found = token_.kind == TokenKind::end ? u"its end" : u"\"" + token_.text + u"\"";
        throw DatabaseError(u"The SQL statement cannot be carried out: " + Text(expected) +
                            u" was expected, found " + found);
    }

    void Advance()
    {
        while (!rest_.empty() &&
               (rest_.front() == u' ' || (rest_.front() >= u'\t' && rest_.front() <= u'\r')))
            rest_.remove_prefix(1);
        token_ = {};
        if (rest_.empty()) return;
        if (rest_.front() == u'\'') {
            TakeText();
        } else if (rest_.front() == u'[') {
            const std::size_t close = rest_.find(u']');
            if (close == TextView::npos) Unclosed(u"bracket");
            token_ = {TokenKind::name, Text(rest_.substr(1, close - 1))};
            rest_.remove_prefix(close + 1);
        } else {
            std::size_t length = 0;
            while (length < rest_.size() && IsWordUnit(rest_[length])) ++length;
            token_ = {length > 0 ? TokenKind::word : TokenKind::symbol,
                      Text(rest_.substr(0, length > 0 ? length : 1))};
            rest_.remove_prefix(token_.text.size());
        }
    }

    void TakeText()
    {
        token_.kind = TokenKind::text;
        for (;;) {
            rest_.remove_prefix(1); // the opening apostrophe, or the second of two
            const std::size_t close = rest_.find(u'\'');
            if (close == TextView::npos) Unclosed(u"text");
            token_.text += rest_.substr(0, close);
            rest_.remove_prefix(close + 1);
            if (rest_.empty() || rest_.front() != u'\'') return;
            token_.text += u'\'';
        }
    }

    [[noreturn]] static void Unclosed(TextView what)
    {
        throw DatabaseError(u"The SQL statement cannot be carried out: a " + Text(what) + u" is not closed");
    }

    bool TakeIf(TokenKind kind, TextView text)
    {
        if (token_.kind != kind || !EqualNoCase(token_.text, text)) return false;
        Advance();
        return true;
    }
    bool TakeSymbol(TextView symbol) { return TakeIf(TokenKind::symbol, symbol); }
    bool TakeWord(TextView word) { return TakeIf(TokenKind::word, word); }
    void NeedWord(TextView word)
    {
        if (!TakeWord(word)) Fail(word);
    }
    void NeedSymbol(TextView symbol)
    {
        if (!TakeSymbol(symbol)) Fail(u"\"" + Text(symbol) + u"\"");
    }

    void NeedEnd()
    {
        (void)TakeSymbol(u";");
        if (token_.kind != TokenKind::end) Fail(u"the end of the statement");
    }

    Text Name()
    {
        if (token_.kind != TokenKind::word && token_.kind != TokenKind::name) Fail(u"a name");
        Text name = token_.text;
        Advance();
        return name;
    }

    Text NewName()
    {
        if (token_.text.empty() || token_.text.size() > kLongestName) Fail(u"a name of 1 to 64 characters");
        return Name();
    }

    NewColumn ColumnOf(const NewTable& table)
    {
        const bool isThere =
            std::any_of(table.columns.begin(), table.columns.end(),
                        [this](const NewColumn& column) { return EqualNoCase(column.name, token_.text); });
        if (isThere) Fail(u"another name for a column");
        NewColumn column{NewName(), 0};
        if (TakeWord(u"MEMO")) return column;
        if (!TakeWord(u"TEXT")) Fail(u"TEXT or MEMO");
        NeedSymbol(u"(");
        column.characters = Characters();
        NeedSymbol(u")");
        return column;
    }

    unsigned Characters()
    {
        unsigned number = 0;
        for (char16_t unit : token_.text) {
            if (unit < u'0' || unit > u'9' || number > kLongestText) Fail(kNumberOfCharacters);
            number = number * 10 + (unit - u'0');
        }
        if (token_.kind != TokenKind::word || number < 1 || number > kLongestText) Fail(kNumberOfCharacters);
        Advance();
        return number;
    }

    std::vector<Text> Names()
    {
        std::vector<Text> names;
        do names.push_back(Name());
        while (TakeSymbol(u","));
        return names;
    }

    void Conditions(std::vector<Condition>& conditions, int depth)
    {
        if (depth > kDeepestParentheses) Fail(u"fewer parentheses");
        do {
            if (TakeSymbol(u"(")) {
                Conditions(conditions, depth + 1);
                NeedSymbol(u")");
                continue; // to the AND
            }
            Condition condition{Name(), {}};
            NeedSymbol(u"=");
            if (token_.kind != TokenKind::text) Fail(u"a text between apostrophes");
            condition.value = token_.text;
            Advance();
            conditions.push_back(std::move(condition));
        } while (TakeWord(u"AND"));
    }

    TextView rest_;
    Token token_;
};

} // namespace

Select ParseSelect(TextView sql)
{
    return Parser(sql).SelectStatement();
}

NewTable ParseCreateTable(TextView sql)
{
    return Parser(sql).CreateStatement();
}

} // namespace jet
