// AddressesTest.cpp: address lists reduced to names and bare addresses.
#include "mail/Addresses.h"
#include "tests/support/Case.h"

#include <gtest/gtest.h>

using AddressCase = Case<const char16_t*>;

// What the client's list shows of address fields (RFC 5322, section 3.4) of every kind. Kept: where it shows
// something odd, so does this.
TEST(Addresses, AListIsReducedToTheNamesThatTheClientShows)
{
    const Case<Text> cases[] = {
        {"name before address", u"Ann Lee <a@x.org>", u"Ann Lee"},
        {"a comma in a quoted name, quotes stay", u"\"Lee, Ann\" <a@x.org>, b@x.org",
         u"\"Lee, Ann\"; b@x.org"},
        {"apostrophes quote when they come first", u"'Lee, Ann' <a@x.org>, b@x.org", u"'Lee, Ann'; b@x.org"},
        {"but not behind a double quote", u"\"O'Lee, Ann\" <a@x.org>, b@x.org", u"\"O'Lee, Ann\"; b@x.org"},
        {"nor beside one: the other quote is a letter", u"\"Ann\" <a@x.org>, 'Lee, Bo' <b@x.org>",
         u"\"Ann\"; 'Lee; Bo'"},
        {"whichever comes first", u"'Ann' <a@x.org>, \"Lee, Bo\" <b@x.org>", u"'Ann'; \"Lee; Bo\""},
        {"a single apostrophe quotes nothing", u"O'Lee <a@x.org>, b@x.org", u"O'Lee; b@x.org"},
        {"semicolon and space separate", u"Ann <a@x.org>; b@x.org", u"Ann; b@x.org"},
        {"a bare semicolon does not", u"a@x.org;b@x.org", u"a@x.org;b@x.org"},
        {"empty pieces vanish", u"a@x.org,, b@x.org,", u"a@x.org; b@x.org"},
        {"a comment's parentheses are escaped", u"Ann (home) <a@x.org>", u"Ann \\(home\\)"},
        {"once only", u"Ann \\(home) <a@x.org>", u"Ann \\(home\\)"},
        {"escaped quotes are no quotes and stay escaped", u"\"Ann \\\"A, B\\\" Lee\" <a@x.org>",
         u"\"Ann \\\"A, B\\\" Lee\""},
        {"escaped brackets are no brackets", u"\\<x@y\\> <a@x.org>", u"\\<x@y\\>"},
        {"brackets without an address are a name", u"<nobody>", u"<nobody>"},
        {"the last address wins", u"<a@x.org><b@x.org>", u"b@x.org"},
        {"no closing bracket behind the address", u"> Ann <a@x.org", u"> Ann <a@x.org"},
        {"an address without opening bracket loses its first letter", u"<x><> a@x.org>", u"<x><>"},
        {"nothing but an address and a bracket", u"<@><b>a@x.org>", u"<b>"},
        {"too short to be an address", u"<@", u"<@"},
        {"line breaks are spaces", u"Ann\r\nLee <a@x.org>,\nb@x.org\r", u"Ann Lee; b@x.org"},
        {"spaces in a name collapse", u"Ann   Lee <a@x.org>", u"Ann Lee"},
        {"a last single letter is lost", u"Ann  L <a@x.org>", u"Ann L"},
        {"and here it is", u"Ann  L<a@x.org>", u"Ann"},
        {"a group loses its quotes", u"\"Friends\": 'Ann' <a@x.org>", u"Friends :  Ann"},
        {"not without a blank behind the colon", u"\"Friends\":'Ann' <a@x.org>", u"\"Friends\":'Ann'"},
        {"control characters come out as what they stand for", Text{1, u'a', 2, 5}, u"\\'a\\\"\\("},
        {"each by itself", Text{3}, u"\\<"},
        {"the last, too", Text{4}, u"\\>"},
        {"parentheses, too", Text{6}, u"\\)"},
        {"a single parenthesis", u"Ann) <a@x.org>", u"Ann\\)"},
        {"a line break of one character", u"Ann\rLee", u"Ann Lee"},
        {"or the other", u"Ann\nLee", u"Ann Lee"},
        {"empty", u"", u""},
    };
    for (const auto& c : cases) EXPECT_EQ(DetagAddressList(c.given, false), c.want) << c.why;
}

// A rule of this program's own for lists that the client joined.
TEST(Addresses, TheSeparatorOfAListIsTheOneOutsideQuotes)
{
    const AddressCase cases[] = {
        {"empty", u"", u""},
        {"comma", u"a@x.org, b@x.org", u","},
        {"semicolon", u"a@x.org; b@x.org", u"; "},
        {"the semicolon wins, wherever it stands", u"a@x.org; b@x.org, c@x.org", u"; "},
        {"a quoted one does not", u"\"a; b\", c", u","},
        {"unless there is no other", u"\"Lee, Ann\"", u","},
        {"a quoted semicolon before a quoted comma", u"\"a; b, c\"", u"; "},
        {"escaped quotes quote nothing", u"\\\"a, b\\\"", u","},
    };
    for (const AddressCase& c : cases) {
        EXPECT_EQ(AddressSeparator(c.given), c.want) << c.why;
        EXPECT_EQ(DetagAddressList(c.given, true), c.want) << c.why;
    }
}

// A rule of this program's own for cells of the client's list and keys of files, which it makes comparable.
TEST(Addresses, TheBareAddressOrACleanedNameRemains)
{
    const AddressCase cases[] = {
        {"between brackets", u"Ann <a@x.org>", u"a@x.org"},
        {"between quotes", u"\"a@x.org\"", u"a@x.org"},
        {"between separators", u"Ann;a@x.org;b", u"a@x.org"},
        {"the first of several", u"Ann a@x.org, b@y.org", u"a@x.org"},
        {"an opening bracket behind it is part of it", u"a@x<y> z", u"a@x<y"},
        {"nothing around the sign", u" @ ", u"@"},
        {"name in quotes", u" 'Ann  Lee' ", u"Ann Lee"},
        {"quotes in quotes, but only from the outside in", u"'\"Ann\"'", u"Ann"},
        {"the other way round the inner ones stay", u"\"'Ann'\"", u"'Ann'"},
        {"trailing semicolons", u"Ann;;", u"Ann"},
        {"a semicolon keeps the quote before it", u"'Ann';", u"Ann'"},
        {"parentheses escaped, again where they were", u"Ann (home) \\(x\\)", u"Ann \\(home\\) \\\\(x\\\\)"},
        {"a last single letter is lost", u"Ann  L", u"Ann"},
        {"empty", u"", u""},
    };
    for (const AddressCase& c : cases) EXPECT_EQ(BareAddressOf(c.given), c.want) << c.why;
}

TEST(Addresses, CharactersAreSoughtFromAPlaceCountedFrom1InEitherDirection)
{
    EXPECT_EQ(FindAnyOf(u"abcB", u"b", 3, false, false), 4u) << "in any letter case";
    EXPECT_EQ(FindAnyOf(u"abcB", u"xb", 3, false, true), 2u);
    EXPECT_EQ(FindAnyOf(u"abc", u"x", 1, false, false), 0u);
    EXPECT_EQ(FindAnyOf(u"abc", u"x", 1, true, false), 4u);
    EXPECT_EQ(FindAnyOf(u"abc", u"x", 3, true, true), 0u) << "backwards there is no end to answer";
}
