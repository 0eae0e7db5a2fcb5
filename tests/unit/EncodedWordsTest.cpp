// EncodedWordsTest.cpp: encoded words in both modes, base64, and text that holds other bytes.
#include "mail/EncodedWords.h"
#include "mail/modUTF8.h"
#include "platform/posix/CodePage1252.h"
#include "tests/support/Case.h"
#include "text/Numbers.h"

#include <gtest/gtest.h>

// RFC 2047, section 2. A word that is never closed and question marks in the text: as the client's list has
// it.
TEST(EncodedWords, AValueIsSplitIntoPlainTextAndClosedWords)
{
    const Case<const char16_t*> cases[] = {
        // segments between bars, words with "W" before them
        {"no word", u"a ? b", u"|a ? b"},
        {"words side by side", u"=?a?b?c?==?d?e?f?=", u"|W=?a?b?c?=|W=?d?e?f?="},
        {"a payload that starts with an escape does not end the word", u"=?a?q?=41?=", u"|W=?a?q?=41?="},
        {"three question marks are no word", u"=?a?q?=", u"|=?a?q?="},
        {"never closed: plain to the end", u"x =?a?q?b =?c", u"|x |=?a?q?b =?c"},
        {"a word in an unclosed one closes it", u"=?a =?b?q?c?= d", u"|W=?a =?b?q?c?=| d"},
        {"question marks in the payload", u"=?a?q?b??c?=", u"|W=?a?q?b??c?="},
    };
    for (const auto& c : cases) {
        Text got;
        for (const HeaderSegment& segment : SplitEncodedWords(c.given))
            got.append(segment.isWord ? u"|W" : u"|").append(segment.text);
        EXPECT_EQ(got, c.want) << c.why;
    }
}

// RFC 2047 for the words, the published tables of ISO-8859-1, ISO-8859-15 and Windows-1252 for their
// characters. Kept: what the second column shows otherwise is how the client's list shows it.
TEST(EncodedWords, WordsAreDecodedForTheReaderAndAsTheListShowsThem)
{
    const std::tuple<const char*, Text, Text, Text> cases[] = {
        {"unknown set: as it stands", u"=?koi8-r?q?a_=41?=", u"=?koi8-r?q?a_=41?=", u"=?koi8-r?q?a_=41?="},
        {"never closed: as it stands, though the set is known", u"=?iso-8859-1?q?a_b", u"=?iso-8859-1?q?a_b",
         u"=?iso-8859-1?q?a_b"},
        {"the space between words goes, one comes before each", u"=?iso-8859-1?q?a?= =?ISO-8859-1?Q?b?=",
         u"ab", u" a b"},
        {"a single space at the start goes too", u" =?iso-8859-1?q?a?=", u"a", u" a"},
        {"and one before a word that is never closed", u"=?iso-8859-1?q?a?= =?x", u"a=?x", u" a=?x"},
        {"two spaces are text", u"=?iso-8859-1?q?a?=  =?iso-8859-1?q?bc?=", u"a bc", u" a bc"},
        {"ISO-8859-1 is read as Windows-1252", u"=?iso-8859-1?q?=80=A4?=", u"\u20AC\u00A4", u" \u20AC\u00A4"},
        {"ISO-8859-15 first, ISO-8859-1 where it has nothing", u"=?iso-8859-15?q?=A4=BE=E9=80?=",
         u"\u20AC\u0178\u00E9", u" \u20AC\u0178\u00E9"},
        {"spelt-out delete, plain no-break space, undefined bytes", u"=?windows-1252?q?=7F=A0x=81y=00=1F?=",
         u"DEL xy", u" DEL xy"},
        {"escapes in small letters", u"=?windows-1252?q?=e9=C3?=", u"\u00E9\u00C3", u" \u00E9\u00C3"},
        {"a pair that is not hexadecimal vanishes", u"=?windows-1252?q?a=ZZb=4Gc?=", u"abc", u" abc"},
        {"an escape cut off at the end", u"=?windows-1252?q?a=4?=", u"a", u" a"},
        {"underscores and escapes are read in base64 too", u"=?iso-8859-1?B?YV9iPTQx?=", u"a bA", u" a bA"},
        {"raw bytes pass", u"=?iso-8859-1?q?\u201C\u00E9?=", u"\u201C\u00E9", u" \u201C\u00E9"},
        {"an unknown encoding is quoted text", u"=?iso-8859-1?x?a_b?=", u"a b", u" a b"},
        {"UTF-8: the bytes for comparison, the text for display", u"=?utf-8?b?w6nigqw=?=", u"\u00E9\u20AC",
         u"\u00C3\u00A9\u00E2\u201A\u00AC"},
        {"UTF-8 undefined bytes come back", u"=?UTF-8?B?w4Edw50=?=", u"\u00C1\x1D\u00DD",
         u"\u00C3\u0081\x1D\u00C3\u009D"},
        {"quoted UTF-8 keeps its escapes", u"=?utf-8?q?a_=C3=A9?=", u"a_=C3=A9", u"a_=C3=A9"},
        {"a NUL ends a UTF-8 word", u"=?utf-8?b?YQBi?=c", u"ac", Text(u"a\0bc", 4)},
        {"and is a character elsewhere", u"=?iso-8859-1?b?YQBi?=", Text(u"a\0b", 3), Text(u" a\0b", 4)},
        {"bad UTF-8", u"=?utf-8?b?4oJh?=", u"\uFFFDa", u"\u00E2\u201Aa"},
        {"an empty payload adds nothing at all", u"a=?iso-8859-1?q?\?=b", u"ab", u"ab"},
        {"a payload that decodes to nothing still adds the space", u"a=?iso-8859-1?b?QQ?=b", u"ab", u"a b"},
        {"runs of spaces collapse in the end, loss included", u"=?iso-8859-1?q?a__b__c?=", u"a b ", u" a b "},
    };
    CodePage1252 codePage;
    for (const auto& [why, value, shown, comparison] : cases) {
        EXPECT_EQ(DecodeHeaderText(value, false, codePage), shown) << why;
        EXPECT_EQ(DecodeHeaderText(value, true, codePage), comparison) << why;
    }
}

// RFC 4648, section 4. What breaks it (padding in the wrong place, characters of no meaning): rules of this
// program's own.
TEST(EncodedWords, Base64IsDecodedInWholeGroups)
{
    const Case<const char16_t*, Text> cases[] = {
        {"two of them", u"QQ==", u"A"},
        {"a third takes nothing more", u"QUJDRA===", u"ABCD"},
        {"an incomplete group is ignored", u"QUJDRA", u"ABC"},
        {"but padding in it counts", u"QUJD=", u"AB"},
        {"a wrong character counts as 64 and spoils its own bits", u"Q!JD", {u'D', 2, u'C'}},
        {"high bytes through the code page", u"gJaB", u"\u20AC\u2013\u0081"},
    };
    CodePage1252 codePage;
    for (const auto& c : cases) EXPECT_EQ(Base64Decode(c.given, codePage), c.want) << c.why;
    for (const char16_t* bad : {u"!AAA", u"====", u"QUJD AAA", u"QUJD\u00E9AAA"})
        EXPECT_THROW(Base64Decode(bad, codePage), ValueFault) << "a wrong first character of a group";
}

// RFC 3629, read from characters that each stand for one byte.
TEST(EncodedWords, TextThatHoldsUtf8BytesIsRecognised)
{
    CodePage1252 codePage;
    EXPECT_TRUE(IsUtf8Text(u"\u00C3\u00A9", codePage));
    EXPECT_FALSE(IsUtf8Text(u"plain", codePage)) << "no character of several bytes";
    EXPECT_FALSE(IsUtf8Text(u"\u00E9t\u00E9", codePage));
    EXPECT_FALSE(IsUtf8Text(u"\u00C3\u00A9\u00C3", codePage)) << "cut off";
    EXPECT_TRUE(IsUtf8Text(u"\u00EF\u00BF\u00BD", codePage)) << "an encoded U+FFFD is valid";
    EXPECT_EQ(Utf8ToText(u"\u00C3\u00A9", codePage), u"\u00E9");
    EXPECT_EQ(Utf8ToText(u"\u00E9", codePage, BytesIn::ansi), u"\u00E9");
    EXPECT_EQ(TextToBytes(u"\u20AC\u0416", codePage), "\x80?");
    EXPECT_EQ(codePage.FromAnsi("a\x80\x9F\xE9"), u"a\u20AC\u0178\u00E9");
    EXPECT_EQ(TextToBytes(u"\u20AC", codePage, BytesIn::utf8), "\xE2\x82\xAC");
}
