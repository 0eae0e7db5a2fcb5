// ClientTextTest.cpp: what the stand-in client's list shows of header bytes, and its command line.
#include "demo/client/Addresses.h"
#include "demo/client/Dates.h"
#include "demo/client/HeaderText.h"
#include "demo/client/Options.h"
#include "demo/client/Summary.h"
#include "demo/mailbox/Headers.h"

#include <gtest/gtest.h>

namespace {

// RFC 5322, section 2.2; how lines join: as Quillbox finds it in the list of the client.
TEST(ClientTextTest, HeaderValuesAreFoundAndUnfolded)
{
    const struct {
        const char* why;
        std::string_view headers;
        const char *name, *value;
    } cases[] = {
        {"any letter case, blanks trimmed", "sUBJECT : \t a b \r\n", "Subject", "a b"},
        {"folded at a blank: it stays", "Subject: a\r\n b\r\n", "Subject", "a b"},
        {"folded at a tab: nothing stays", "Subject: a\r\n\tb\r\n", "Subject", "ab"},
        {"the first of two", "To: a\nTo: b\n", "To", "a"},
        {"no prefix match", "Reply-To: a\r\n", "To", ""},
        {"a line that is no field", "garbage\r\nTo: a\r\n", "To", "a"},
    };
    for (const auto& c : cases) EXPECT_EQ(HeaderValue(c.headers, c.name), c.value) << c.why;
    EXPECT_EQ(HeaderBlock("A: b\r\n\r\nTo: body"), "A: b\r\n");
    EXPECT_EQ(HeaderBlock("A: b\n\nTo: body"), "A: b\n");
    EXPECT_EQ(HeaderBlock("\r\nTo: body"), "");
}

// RFC 2047; what breaks it as a tolerant mail client shows it.
TEST(ClientTextTest, EncodedWordsAreDecoded)
{
    const struct {
        const char* why;
        std::string_view value;
        const wchar_t* text;
    } cases[] = {
        {"quoted", "=?iso-8859-1?Q?Gr=FC=DFe_x=5F?= end", L"Gr\u00FC\u00DFe x_ end"},
        {"base64", "=?UTF-8?b?4oKsIDU=?=", L"\u20AC 5"},
        {"the blank between two words goes", "=?utf-8?Q?a?=  =?utf-8?Q?b?= c", L"ab c"},
        {"a character cut in two", "=?utf-8?Q?=E2=82?= =?utf-8?Q?=AC?=", L"\u20AC"},
        {"Latin-9", "=?iso-8859-15?Q?=A4?=", L"\u20AC"},
        {"Cyrillic", "=?koi8-r?B?0NLJ18XU?=", L"\u043F\u0440\u0438\u0432\u0435\u0442"},
        {"a language behind the charset", "=?us-ascii*en?Q?a?=", L"a"},
        {"an unknown charset stays", "=?x-none?Q?a_b?=", L"=?x-none?Q?a_b?="},
        {"a word that never ends", "=?utf-8?Q?a", L"=?utf-8?Q?a"},
        {"an escape that is none", "=?utf-8?Q?a=ZZ=4?=", L"a=ZZ=4"},
        {"control characters", "=?utf-8?Q?a=0D=0Ab=00c?=", L"a  b c"},
        {"raw UTF-8", "\xC3\xA9", L"\u00E9"},
        {"raw, not UTF-8", "\xC9preuves \x80", L"\u00C9preuves \u20AC"},
    };
    for (const auto& c : cases) EXPECT_EQ(DecodeHeader(c.value, {}), c.text) << c.why;
    EXPECT_EQ(DecodeHeader("\xE1", {28595}), L"\u0441") << "the declared character set";
    EXPECT_EQ(DecodeHeader("\xE9", {65001}), L"\u00E9") << "unless the bytes do not fit it";
    EXPECT_EQ(CodePageOf("no-such-charset"), 0u);
    EXPECT_EQ(CodePageOf("iso-8859-77"), 0u);
}

// The forms of RFC 5322, section 3.4, as the client shows them.
TEST(ClientTextTest, AddressesAreShownByNameOrBare)
{
    const struct {
        const char* why;
        std::string_view value;
        const wchar_t* text;
    } cases[] = {
        {"names", "Ann <a@x.org>, \"Bo\" <b@x.org>", L"Ann; Bo"},
        {"bare addresses", "a@x.org,b@x.org; <c@x.org>", L"a@x.org; b@x.org; c@x.org"},
        {"a comma inside quotes", "\"Doe, \\\"J\\\"\" <j@x.org>", L"Doe, \"J\""},
        {"a comma inside an encoded word", "=?iso-8859-1?Q?Doe,_J=FC?= <j@x.org>", L"Doe, J\u00FC"},
        {"a comment beside brackets", "Jo (Sales, 2nd) <j@x.org>", L"Jo (Sales, 2nd)"},
        {"a comment beside a bare address", "j@x.org (Jo)", L"j@x.org"},
        {"a group", "Team: a@x.org, Bo <b@x.org>;, c@x.org", L"a@x.org; Bo; c@x.org"},
        {"an empty group", "undisclosed-recipients:;", L"undisclosed-recipients:"},
        {"empty pieces", " , ,a@x.org,", L"a@x.org"},
        {"quotes and brackets that never close", "\"Ann <a@x.org>", L"Ann <a@x.org>"},
        {"nothing", "", L""},
    };
    for (const auto& c : cases) EXPECT_EQ(DisplayNames(c.value, {}), c.text) << c.why;
}

// RFC 5322, sections 3.3 and 4.3, and other forms that mail holds.
TEST(ClientTextTest, DatesAreReadInManyShapes)
{
    // Year, month, day, hour, minute and second as one number; minutes east of Universal Time.
    const struct {
        const char* text;
        long long moment;
        int east;
    } cases[] = {
        {"Tue, 3 Apr 2007 10:15:07 +0100", 20070403101507, 60},
        {"3 Apr 07 10:15 EST", 20070403101500, -300},
        {"Tue Apr  3 10:15:07 2007", 20070403101507, 0},
        {"Tue, 03-Apr-2007 10:15:07 GMT (comment 5:00)", 20070403101507, 0},
        {"2007-04-03 10:15:07 -0930", 20070403101507, -570},
        {"4/3/2007 10:15:07 PM", 20070403221507, 0},
        {"12 April 1999 12:30 am", 19990412003000, 0},
        {"Wed, 31 Dec 2008 23:59:60 +0000", 20081231235960, 0},
        {"Tue, 3 Foo 2007 10:15:00", -1, 0},
        {"3 Apr 2007 24:15:00", -1, 0},
        {"soon", -1, 0},
    };
    for (const auto& c : cases) {
        const std::optional<Moment> m = ParseDate(c.text);
        const long long day = m ? (m->year * 100LL + m->month) * 100 + m->day : 0;
        EXPECT_EQ(m ? ((day * 100 + m->hour) * 100 + m->minute) * 100 + m->second : -1, c.moment) << c.text;
        EXPECT_EQ(m ? m->minutesEast : 0, c.east) << c.text;
    }
    EXPECT_EQ(ShowDate({1500, 1, 1, 0, 0, 0, 0}), L"") << "before the system's calendar";
    EXPECT_EQ(ShowDate({2007, 2, 30, 0, 0, 0, 0}), L"") << "no such day";
}

TEST(ClientTextTest, SummaryTakesTheTopmostReceivedField)
{
    const Summary s = Summarise(
        "Received: a; Tue, 3 Apr 2007 10:15:00 +0000\r\nReceived: b; Mon, 1 Jan 2001 00:00:00 +0000\r\n"
        "Content-Type: multipart/mixed; boundary=x\r\nImportance: HIGH\r\n\r\nSubject: body");
    EXPECT_EQ(s.received, ShowDate({2007, 4, 3, 10, 15, 0, 0}));
    EXPECT_NE(s.received, L"");
    EXPECT_EQ(s.sent + s.subject + s.from + s.to, L"");
    EXPECT_TRUE(s.attachment);
    EXPECT_TRUE(s.urgent);
}

// A mistake in a script must not pass for a client that behaves.
TEST(ClientTextTest, MistakesOnTheCommandLineAreRefused)
{
    Options o;
    EXPECT_EQ(
        ParseOptions({L"--mail", L"x", L"--column-titles=A,,B", L"--dialog-delays=2100,0,5",
                      L"--at=LVM_GETITEMW:120:arrive:2", L"--at", L"save:0:box:replace", L"--hang-after=0"},
                     o),
        L"");
    EXPECT_EQ(o.mail, L"x");
    EXPECT_EQ(o.columnTitles, (std::vector<std::wstring>{L"A", L"", L"B"}));
    EXPECT_EQ(o.dialogDelays, (std::vector<int>{2100, 0, 5}));
    EXPECT_EQ(o.mishaps.size(), 2u) << "none for a count of 0";
    for (const wchar_t* wrong :
         {L"", L"--slow=1s", L"--close-after=-1", L"--dialog-delays=1,,2", L"--at=down:1", L"--at=up:1:lose",
          L"--at=down:-1:lose", L"--at=down:1:late:5", L"--at=save:1:box:big", L"--tree"}) {
        Options ignored;
        EXPECT_NE(ParseOptions({*wrong ? L"--mail=x" : L"--no-tree", *wrong ? wrong : L"--no-list"}, ignored),
                  L"")
            << wrong;
    }
}

} // namespace
