// MessageFieldsTest.cpp: messages as their senders meant them: fields, readable texts, addresses, dates.
#include "mail/AddressList.h"
#include "mail/MessageDates.h"
#include "mail/ReadableText.h"
#include "platform/Charsets.h"
#include "platform/posix/CodePage1252.h"
#include "tests/support/Case.h"

#include <gtest/gtest.h>

namespace {

std::string Drawn(const MessageFields& message)
{
    std::string drawn;
    for (const MessageField& field : message.fields) drawn += field.name + "=" + field.value + "|";
    return drawn + (message.ended ? "+" : "-") + std::to_string(message.bodyAt);
}

} // namespace

// RFC 5322, section 2.2, and what is met in breach of it.
TEST(MessageFields, AreReadWithAnyLineEnds)
{
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"From: a\r\nSubject: one\r\n\ttwo\r\n  three \r\n\r\nbody: x", "from=a|subject=one two three|+41"},
        {"A: 1\nB:2\n\nC: 3", "a=1|b=2|+10"},
        {"A: 1\rB:2\r\rC: 3", "a=1|b=2|+10"},
        {"From a@b Mon Jan  1\n: nameless\nno field\nA : 1\nB\tC: 2\n\n", "a=1|+54"},
        {"\r\n\r\nA: 1\r\n\r\n", "a=1|+12"},
        {"A: 1\r\n \r\n\r\n", "a=1|+11"},
        {"A: 1\r\nSubj", "a=1|-10"},
        {" folded onto nothing\n\n", "-22"},
        {"", "-0"},
    };
    for (const auto& [message, want] : cases) EXPECT_EQ(Drawn(ReadMessageFields(message)), want) << message;
}

TEST(MessageFields, AParameterStandsBehindASemicolon)
{
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"multipart/mixed; boundary=\"a;b\\\"c\"; x=y", "a;b\"c"},
        {"multipart/mixed; charset=x; BOUNDARY = plain; y", "plain"},
        {"multipart/mixed; x=\"; boundary=no\"; boundary=yes", "yes"},
        {"multipart/mixed; boundaryless=1", ""},
        {"boundary=first", ""},
    };
    for (const auto& [value, want] : cases) EXPECT_EQ(FieldParameter(value, "boundary"), want) << value;
}

// RFC 2183, section 2: the word in front of the parameters.
TEST(MessageFields, AnAttachmentIsMarkedInAPartsHeader)
{
    const std::string multi = "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b";
    const std::pair<std::string, bool> cases[] = {
        {multi + "\r\nContent-Disposition: ATTACHMENT\r\n", true},
        {multi + "\ncontent-disposition:attachment; filename=a\n", true},
        {multi + "\r\nContent-Disposition: inline; filename=attachment\r\n", false},
        {multi + "\r\n> Content-Disposition: attachment\r\n", false},
        {"Subject: x\r\n\r\nquoted:\r\nContent-Disposition: attachment\r\n", false},
        {"Content-Disposition: attachment; filename=a\r\n\r\nbytes", true},
    };
    for (const auto& [message, want] : cases)
        EXPECT_EQ(HasAttachment(message, ReadMessageFields(message)), want) << message;
}

// RFC 2047; the characters by the Unicode Consortium's tables of the sets.
TEST(ReadableText, EncodedWordsAreDecoded)
{
    const Case<std::string_view, Text> cases[] = {
        {"quoted UTF-8", "=?utf-8?Q?caf=C3=A9_au_lait=3F?=", u"caf\u00E9 au lait?"},
        {"blanks between words do not count", "=?UTF-8?B?w6k=?=  =?utf-8?b?w6g=?= e", u"\u00E9\u00E8 e"},
        {"a character cut in two", "=?utf-8?Q?a=C3?= =?Utf-8?Q?=A9b?=", u"a\u00E9b"},
        {"Cyrillic", "=?koi8-r?B?8NLJ18XU?=", u"\u041F\u0440\u0438\u0432\u0435\u0442"},
        {"the same, in two sets",
         "=?windows-1251?Q?=CF=F0?= =?KOI8-R?Q?=C9=D7?=", u"\u041F\u0440\u0438\u0432"},
        {"Japanese", "=?Shift_JIS?B?k/qWew==?=", u"\u65E5\u672C"},
        {"ISO-8859-1 is Windows-1252", "=?iso-8859-1?Q?=93x=94?=", u"\u201Cx\u201D"},
        {"Japanese in escape sequences",
         "=?ISO-2022-JP?B?GyRCJVclaiVzJUgbKEI=?=", u"\u30D7\u30EA\u30F3\u30C8"},
        {"over two words, with Latin ones",
         "a =?iso-2022-jp?B?GyRCRnxLXBsoQkIg?= =?ISO-2022-JP?B?Q34bKElcGyhK?=", u"a \u65E5\u672CB C~\uFF9C"},
        {"from both halves of a row and of the sets",
         "=?iso-2022-jp?Q?=1B$B%=5F%`=5F!=1B(B?=", u"\u30DF\u30E0\u6F3E"},
        {"half a character", "=?iso-2022-jp?Q?=1B$BF|K?=", u"\u65E5K"},
        {"seven bits", "=?UTF-7?B?TStBUHctbGxlcg==?=", u"M\u00FCller"},
        {"a language", "=?iso-8859-2*pl?Q?=A3=F3d=BC?=", u"\u0141\u00F3d\u017A"},
        {"within a word, as some send it", "Re:=?utf-8?Q?=C3=A9?=x", u"Re:\u00E9x"},
        {"two runs of spaces, and what stands behind", "a  b   c", u"a  b   c"},
        {"an unknown set", "=?x-unknown?Q?=41?=", u"=?x-unknown?Q?=41?="},
        {"never closed", "=?utf-8?Q?abc", u"=?utf-8?Q?abc"},
        {"no encoding", "=?utf-8?X?abc?= =?utf-8?", u"=?utf-8?X?abc?= =?utf-8?"},
        {"half an escape", "=?utf-8?Q?a=4=zz?=", u"a=4=zz"},
        {"control characters", "=?utf-8?Q?a=0D=0Ab=00c?=", u"a  b c"},
        {"bad bytes", "=?utf-8?Q?=FFa?=", u"\uFFFDa"},
        {"raw UTF-8", "caf\xC3\xA9", u"caf\u00E9"},
        {"raw bytes of the body's set", "\xCF\xF0", u"\u041F\u0440"},
    };
    CodePage1252 codePage;
    for (const auto& c : cases)
        EXPECT_EQ(ToUtf8(ReadableText(c.given, "windows-1251", codePage)), ToUtf8(c.want)) << c.why;
    EXPECT_EQ(ReadableText("\xE9t\xE9", "x-unknown", codePage), u"\u00E9t\u00E9") << "else of the code page";
}

// RFC 5322, section 3.4, and what is met in breach of it.
TEST(AddressList, EachAddressStandsAlone)
{
    // want: name<address>|
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"\"Lee, Ann\" <ann@x.example>,\tbob@x.example", "Lee, Ann<ann@x.example>|<bob@x.example>|"},
        {"carol@x.example (Carol (home))", "Carol (home)<carol@x.example>|"},
        {"Friends: a@x, \"B; C\" <b@x>;, d@x", "<a@x>|B; C<b@x>|<d@x>|"},
        {"undisclosed-recipients:;", ""},
        {"\"say \\\"hi\\\"\" <h@x>; i@x", "say \"hi\"<h@x>|<i@x>|"},
        {"=?utf-8?Q?J=C3=B6rg?= Mann <>", "=?utf-8?Q?J=C3=B6rg?= Mann<>|"},
        {"Just A Name, <open@x", "Just A Name<>|<open@x>|"},
        {"J <\"a>b, c\"@x>, d@x", "J<\"a>b, c\"@x>|<d@x>|"},
        {"\"never closed", "never closed<>|"},
        {" , ;", ""},
    };
    for (const auto& [value, want] : cases) {
        std::string drawn;
        for (const MailAddress& each : ReadAddresses(value)) drawn += each.name + "<" + each.address + ">|";
        EXPECT_EQ(drawn, want) << value;
    }
}

// RFC 5322, sections 3.3 and 4.3, and forms that mail of the nineties has.
TEST(MessageDates, AreMomentsInUniversalTime)
{
    // want: "-": no date
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"Sun, 14 Nov 2004 09:30:59 +0100", "2004-11-14 08:30:59 0"},
        {"14 Nov 04 09:30 -0330 (EST)", "2004-11-14 13:00:00 0"},
        {"Sun, 14-Nov-2004 23:30:00 EST", "2004-11-15 04:30:00 1"},
        {"Sun Nov 14 09:30:59 2004", "2004-11-14 09:30:59 0"},
        {"Sun, 14 Nov 2004 09:30:59+0530", "2004-11-14 04:00:59 0"},
        {"Sun, 14 November 104 9:30:59 CEST", "2004-11-14 07:30:59 0"},
        {"Fri, 31 Dec 1999 23:59:60 GMT", "2000-01-01 00:00:00 6"},
        {"Thu, 1 Jan 70 00:00:00 +0000", "1970-01-01 00:00:00 4"},
        {"Mon, 29 Feb 1904 12:00:00 pm", "1904-02-29 12:00:00 1"},
        {"14 Nov 2004 09:30:59 +9999", "2004-11-14 09:30:59 0"},
        {"14 Nov 2004", "2004-11-14 00:00:00 0"},
        {"31 Dec 9998 23:59:59 -1400", "9999-01-01 13:59:59 5"},
        {"31 Dec 9999 23:59:59 -1400", "-"}, // no date of the calendar
        {"14 Nov 1601 00:00:00", "-"},
        {"31 Feb 2004 00:00:00", "-"},
        {"14 Nov 2004 25:00:00", "-"},
        {"14 Nov 2004 12: 31: 43 -0500", "-"},
        {"14 Nov 99999 09:30:00", "-"},
        {"Nov 2004 09:30:00", "-"},
        {"", "-"},
    };
    for (const auto& [value, want] : cases) {
        std::string got = "-";
        if (const auto seconds = ReadMessageDate(value)) {
            const DateFields at = FieldsOfMoment(*seconds);
            char text[64];
            std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d %d", at.year, at.month, at.day,
                          at.hour, at.minute, at.second, at.weekday);
            got = text;
        }
        EXPECT_EQ(got, want) << value;
    }
    const auto dateOf = [](const char* header) {
        return DateOfMessage(ReadMessageFields(header)).value_or(-1);
    };
    EXPECT_EQ(dateOf("Received: x; 1 Jan 1970 00:00:09 +0000\nDate: 1 Jan 1970 00:00:07 +0000\n\n"), 7);
    EXPECT_EQ(dateOf("Received: by a; from b; 1 Jan 1970 00:00:09 +0000\nDate: soon\n\n"), 9);
    EXPECT_EQ(dateOf("Subject: none\n\n"), -1);
}
