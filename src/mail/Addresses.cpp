#include "mail/Addresses.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// The characters that a list is gone over for. Most lists have few of them: for what is not there, none of
// the passes is made.
enum Marks : unsigned char { escapes = 1, placeholders = 2, parentheses = 4, colons = 8, separators = 16 };

constexpr std::array<unsigned char, 128> MakeMarks()
{
    std::array<unsigned char, 128> marks{};
    const auto set = [&marks](TextView units, Marks mark) {
        for (const char16_t unit : units) marks[unit] = mark;
    };
    set(u"\\\r\n", escapes);
    set(u"\1\2\3\4", placeholders);
    set(u"()\5\6", parentheses);
    set(u":", colons);
    set(u",;", separators);
    return marks;
}

constexpr std::array<unsigned char, 128> kMarks = MakeMarks();

unsigned MarksOf(TextView value) // or more: units that are alike in their last seven bits count the same
{
    unsigned marks = 0;
    for (const char16_t unit : value) marks |= kMarks[unit % kMarks.size()];
    return marks;
}

// Escaped characters stand as control characters while a list is taken apart. Kept: such a control character
// in the list itself comes out as the escape.
constexpr char16_t kEscapable[] = {u'\'', u'"', u'<', u'>'};

// Escapes become placeholders 1 to 4, line breaks one space each.
Text ProtectEscapes(TextView value)
{
    Text text(value);
    std::size_t size = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        char16_t unit = value[i];
        if (unit == u'\\' || unit == u'\r' || unit == u'\n') {
            const char16_t next = i + 1 < value.size() ? value[i + 1] : u'\0';
            const char16_t* escaped = std::find(std::begin(kEscapable), std::end(kEscapable), next);
            if (unit != u'\\') {
                if (unit == u'\r' && next == u'\n') ++i;
                unit = u' ';
            } else if (escaped != std::end(kEscapable)) {
                unit = static_cast<char16_t>(escaped - kEscapable + 1);
                ++i;
            }
        }
        text[size++] = unit;
    }
    text.resize(size);
    return text;
}

Text RestoreEscapes(TextView value)
{
    Text out;
    out.reserve(value.size());
    for (const char16_t unit : value) {
        if (unit >= 1 && unit <= 4)
            out.append({u'\\', kEscapable[unit - 1]});
        else
            out += unit;
    }
    return out;
}

struct Separators {
    std::vector<std::size_t> positions; // ascending, outside quotes
    bool commas = false, semicolons = false;
    bool quotedCommas = false, quotedSemicolons = false;
};

// The quote character is the one of ' and " that comes first; a separator inside a quoted name is none.
Separators FindSeparators(TextView value)
{
    Separators found;
    char16_t quote = 0;
    std::size_t before = 0, total = 0; // of quotes; all are counted when it first matters
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == u'\'' || value[i] == u'"') {
            if (before == 0) quote = value[i];
            if (value[i] == quote) ++before;
        }
        const bool comma = value[i] == u',';
        const bool semicolon = value[i] == u';' && i + 1 < value.size() && value[i + 1] == u' ';
        if (!comma && !semicolon) continue;
        const bool open = before % 2 == 1;
        if (open && total == 0)
            total = static_cast<std::size_t>(std::count(value.begin(), value.end(), quote));
        const bool quoted = open && (total - before) % 2 == 1;
        if (!quoted) found.positions.push_back(i);
        (quoted ? (comma ? found.quotedCommas : found.quotedSemicolons)
                : (comma ? found.commas : found.semicolons)) = true;
    }
    return found;
}

// A piece of an address list that is eaten from the front. A mark found ahead is remembered, so that the
// whole piece is searched once for each of them.
class PieceReader {
public:
    explicit PieceReader(TextView piece)
        : piece_(piece), open_(piece.find(u'<')), close_(piece.find(u'>')), at_(piece.find(u'@'))
    {
    }
    bool AtEnd() const { return start_ == piece_.size(); }
    std::size_t Start() const { return start_; }

    // Positions in the whole piece; npos when there is none in what is left.
    std::size_t Open() { return Next(open_, u'<'); }
    std::size_t Close() { return Next(close_, u'>'); }
    std::size_t At() { return Next(at_, u'@'); }

    TextView TakeUntil(std::size_t end)
    {
        const TextView taken = piece_.substr(start_, end - start_);
        start_ = end;
        return taken;
    }

private:
    std::size_t Next(std::size_t& known, char16_t mark)
    {
        if (known != TextView::npos && known < start_) known = piece_.find(mark, start_);
        return known;
    }

    TextView piece_;
    std::size_t start_ = 0;
    std::size_t open_, close_, at_;
};

void TrimSpacesIn(Text& text)
{
    text.resize(text.find_last_not_of(u' ') + 1); // npos + 1 is 0
    text.erase(0, std::min(text.find_first_not_of(u' '), text.size()));
}

// The display name of a piece, quotes included, or its address without the brackets.
Text NameOrAddress(TextView piece)
{
    Text outside;
    TextView address;
    PieceReader reader(piece);
    if (reader.Open() == TextView::npos || reader.Close() == TextView::npos)
        outside = reader.TakeUntil(piece.size());
    while (!reader.AtEnd()) {
        const std::size_t open = reader.Open(), close = reader.Close();
        if (close == TextView::npos)
            outside += reader.TakeUntil(piece.size());
        else if (open != TextView::npos && open > reader.Start())
            outside += reader.TakeUntil(open);
        else if (reader.At() < close)
            address = reader.TakeUntil(close + 1); // the last one wins
        else
            outside += reader.TakeUntil(close + 1); // brackets without "@" hold no address
    }
    CollapseSpacesIn(outside);
    TrimSpacesIn(outside);
    if (outside.empty() && address.size() >= 3) outside = address.substr(1, address.size() - 2);
    return outside;
}

// The quotes of a group's name become spaces.
Text CleanGroupName(Text piece)
{
    if (piece.find(u": ") == Text::npos) return piece;
    std::replace(piece.begin(), piece.end(), u'"', u' ');
    std::replace(piece.begin(), piece.end(), u'\'', u' ');
    TrimSpacesIn(piece);
    return piece;
}

// Every parenthesis behind exactly one backslash.
Text EscapeParens(TextView text)
{
    Text out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        if (text[i] == u'\\' && (next == u'(' || next == u')')) {
            out.append({u'\\', next});
            ++i;
        } else if (text[i] == u'(' || text[i] == u')') {
            out.append({u'\\', text[i]});
        } else if (text[i] == 5 || text[i] == 6) {
            out.append({u'\\', text[i] == 5 ? u'(' : u')'}); // Kept: the placeholders of escaped parentheses
        } else {
            out += text[i];
        }
    }
    return out;
}

TextView StripTrailing(TextView text, char16_t what)
{
    while (text.ends_with(what)) text.remove_suffix(1);
    return text;
}

TextView StripEdges(TextView text, char16_t what)
{
    while (text.starts_with(what)) text.remove_prefix(1);
    return StripTrailing(text, what);
}

} // namespace

Text DetagAddressList(TextView value, bool listMode)
{
    if (listMode) return AddressSeparator(value);
    unsigned marks = MarksOf(value);
    Text unescaped;
    if (marks & escapes) {
        value = unescaped = ProtectEscapes(value);
        marks |= placeholders;
    }
    Separators found;
    if (marks & separators) found = FindSeparators(value);

    Text joined;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= found.positions.size(); ++i) {
        const std::size_t end = i < found.positions.size() ? found.positions[i] : value.size();
        const TextView piece = TrimSpaces(value.substr(start, end - start));
        start = end + 1; // the space of "; " goes with the next piece
        Text name = NameOrAddress(piece);
        if (marks & colons) name = CleanGroupName(std::move(name));
        if (marks & parentheses) name = EscapeParens(name);
        if (joined.empty())
            joined = std::move(name);
        else if (!name.empty())
            joined.append(u"; ").append(name);
    }
    if (marks & placeholders) return RestoreEscapes(joined);
    return joined;
}

Text AddressSeparator(TextView value)
{
    const Separators found = FindSeparators(ProtectEscapes(value));
    if (found.semicolons) return u"; ";
    if (found.commas) return u",";
    if (found.quotedSemicolons) return u"; ";
    return found.quotedCommas ? u"," : u"";
}

Text BareAddressOf(TextView value)
{
    const std::size_t at = value.find(u'@');
    if (at != TextView::npos) {
        const std::size_t before = FindAnyOf(value, u"\" <,;'", at + 1, false, true);
        const std::size_t behind = FindAnyOf(value, u"\" >,;'", at + 1, true, false);
        return Text(value.substr(before, behind - 1 - before));
    }
    const TextView bare = StripEdges(StripEdges(TrimSpaces(value), u'\''), u'"');
    Text out = ReplaceAll(ReplaceAll(StripTrailing(bare, u';'), u"(", u"\\("), u")", u"\\)");
    CollapseSpacesIn(out);
    return Text(TrimSpaces(out));
}

std::size_t FindAnyOf(TextView text, TextView characters, std::size_t start, bool endIfNone, bool backwards)
{
    const auto isOneOf = [characters](char16_t unit) {
        return FindNoCase(characters, {&unit, 1}) != TextView::npos;
    };
    if (backwards) {
        for (std::size_t i = std::min(start, text.size()); i > 0; --i)
            if (isOneOf(text[i - 1])) return i;
        return 0;
    }
    for (std::size_t i = std::max<std::size_t>(start, 1); i <= text.size(); ++i)
        if (isOneOf(text[i - 1])) return i;
    return endIfNone ? text.size() + 1 : 0;
}
