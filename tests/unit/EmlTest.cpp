// EmlTest.cpp: the reader of saved messages, from bytes to the whole summary.
#include "mail/modEmailAnalysis.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/support/OneFile.h"
#include "text/DayCount.h"

#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

namespace {

struct Read {
    EmlSummary summary;
    Text error;
    int reads;
};

Read ReadMessage(const std::string& content,
                 const Text& path = u"C:\\store\\Local Folders\\Inbox\\0001_a.eml",
                 FileError fileError = FileError::none)
{
    OneFile files;
    files.content = content;
    files.error = fileError;
    CodePage1252 codePage;
    EnglishLocale locale;
    Read read;
    read.error = ReadEmlSummary(path, {files, codePage, locale, u"Local Folders"}, read.summary);
    read.reads = files.reads;
    return read;
}

// The least of several tries, in seconds of the processor where the system tells them: whatever else the
// machine does only adds.
double SecondsToRead(const std::string& message)
{
    double least = 1e9;
    for (int i = 0; i < 5 && (i == 0 || least < 0.2); ++i) {
        const std::clock_t begin = std::clock();
        EXPECT_FALSE(ReadMessage(message).summary.HasAttachment);
        least = std::min(least, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    return least;
}

// The lines of a message, ended as a mail client ends them.
std::string Lines(std::initializer_list<const char*> lines)
{
    std::string out;
    for (const char* line : lines) out.append(line).append("\r\n");
    return out;
}

} // namespace

TEST(Eml, ReadsAWholeMessage)
{
    const Read read = ReadMessage(Lines({
        "Return-Path: <lists@garden.example>",
        "Delivery-date: Sun, 14 Nov 2004 08:31:37 +0000",
        "Received: from relay.example ([192.0.2.7]) by mx.example",
        "\twith SMTP id 17; Sun, 14 Nov 2004 08:31:05 +0000 (GMT)",
        "Received: from home by relay.example; Sun, 14 Nov 2004 10:00:00 +0100",
        "From: =?iso-8859-1?Q?J=F6rg_M=FCller?= <joerg@garden.example>",
        "To: \"Lee, Ann\" <ann@x.example>,",
        " bob@x.example, (Carol) <carol@x.example>",
        "CC: =?utf-8?B?w6k=?= <e@x.example>",
        "Bcc: =?utf-8?B?w6k=?= <d@x.example>",
        "Subject: =?windows-1252?Q?Bulbs_=96_part?=",
        "\t=?windows-1252?Q?_two?=",
        "Date: Sun, 14 Nov 2004 09:30:59 +0100",
        "X-Last: 1",
        "",
        "Content-Type: text/plain",
        "CONTENT-Disposition: attachment;",
        "\tfilename=\"a.txt\"",
        "Subject: in the body",
    }));
    const EmlSummary& got = read.summary;
    EXPECT_EQ(read.error, u"");
    EXPECT_EQ(read.reads, 1);
    EXPECT_EQ(got.FolderPath, u"Local Folders\\Inbox");
    EXPECT_EQ(got.FileName, u"0001_a.eml");
    EXPECT_EQ(got.From, u"J\u00F6rg M\u00FCller <joerg@garden.example>");
    EXPECT_EQ(got.FromKey, u"J\u00F6rg M\u00FCller");
    EXPECT_EQ(got.To, u"\"Lee, Ann\" <ann@x.example>, bob@x.example, (Carol) <carol@x.example>");
    EXPECT_EQ(got.ToKey, u"\"Lee, Ann\"; bob@x.example; \\(Carol\\)");
    EXPECT_EQ(got.Cc, u"=?utf-8?B?w6k=?= <e@x.example>");
    EXPECT_EQ(got.Bcc, u"=?utf-8?B?w6k=?= <d@x.example>");
    EXPECT_EQ(got.Subject, u"Bulbs \u2013 part two");
    EXPECT_EQ(got.SubjectKey, u" Bulbs \x16 part two");
    EXPECT_EQ(got.DeliveryDateText, u"14/11/2004 08:31");
    EXPECT_EQ(got.ReceivedDateText, u"14/11/2004 08:31");
    EXPECT_EQ(got.SentDateText, u"14/11/2004 08:30");
    EXPECT_DOUBLE_EQ(got.SentDate, 38305 + 30659 / 86400.0);
    EXPECT_TRUE(got.HasAttachment);
}

TEST(Eml, ReadsAnOldListMessage)
{
    const Read read = ReadMessage(Lines({
        "Received: by list.example (5.65/1.35) id AA01234; Fri, 13 Aug 99 09:05:30 EDT",
        "Received: from campus.example by list.example with UUCP",
        "date: Fri Aug 13 09:01:02 1999",
        "from: 'The Gardener, Sen.' <g@campus.example> (at home)",
        "To: Members: \"A. One\" <one@x.example>,",
        "\ttwo@x.example ; ,",
        "to: =?us-ascii?Q?Three?= <three@x.example>",
        "Subject: [garden] what's =?iso-8859-15?Q?10_=A4?= in =?ISO-8859-1?B?R+RydGVu?= ?",
        "",
        "Content-Disposition: attachment; filename=\"on the same line\"",
    }));
    const EmlSummary& got = read.summary;
    EXPECT_EQ(read.error, u"");
    EXPECT_EQ(got.From, u"'The Gardener, Sen.' <g@campus.example> (at home)");
    EXPECT_EQ(got.FromKey, u"'The Gardener, Sen.' \\(at home\\)");
    EXPECT_EQ(
        got.To,
        u"Members: \"A. One\" <one@x.example>,two@x.example ; ,; =?us-ascii?Q?Three?= <three@x.example>");
    EXPECT_EQ(got.ToKey, u"Members:  A. One; two@x.example; =?us-ascii?Q?Three?=");
    EXPECT_EQ(got.Subject, u"[garden] what's 10 \u20AC in G\u00E4rten ?\r");
    EXPECT_EQ(got.SubjectKey, u"[garden] what's 10 \u20AC in G\u00E4rten ?\r")
        << "two spaces before each word, made one";
    EXPECT_EQ(got.SentDateText, u"13/08/1999 09:01");
    EXPECT_EQ(got.ReceivedDateText, u"13/08/1999 13:05");
    EXPECT_EQ(got.DeliveryDateText, u"01/01/1900 00:00");
    EXPECT_FALSE(got.HasAttachment);
}

TEST(Eml, HeaderBlocks)
{
    struct Case {
        const char* why;
        std::string message;
        Text subject, to;
    };
    const Case cases[] = {
        {"the last header keeps the CR", "To: a\r\nSubject: x\r\n\r\nbody", u"x\r", u"a"},
        {"no empty line: all is header, the body's lines too", "Subject: a\r\nbody\r\nsubject:  b\r\n",
         u"a; b", u""},
        {"line feeds alone end no line", "Subject: a\nTo: b\n\n", u"a\nTo: b\n\n", u""},
        {"a tab joins without a space", "Subject: part one\r\n\tpart two\r\nX:\r\n\r\n", u"part onepart two",
         u""},
        {"a space joins with one", "Subject: part one\r\n part two\r\nX:\r\n\r\n", u"part one part two", u""},
        {"joining may lay bare another continued line", "Subject: a\r\r\n\t\n b\r\nTo: c\r\nX:\r\n\r\n",
         u"a b", u"c"},
        {"but one that a tab begins stays", "Subject: a\r\r\n\t\n\tb\r\nTo: c\r\nX:\r\n\r\n", u"a", u"c"},
        {"other tabs are spaces, and runs of them collapse", "Subject: a\t\tb\t\r\nX:\r\n\r\n", u"a b", u""},
        {"values are joined, empty ones left out", "To: a\r\nTO:\r\nto:b\r\nX:\r\n\r\n", u"", u"a; b"},
        {"names must start the line", "Reply-To: x\r\n To: y\r\nSubject:z\r\nX:\r\n\r\n", u"z", u""},
        {"nothing at all", "", u"", u""},
        {"an empty block", "\r\n\r\nSubject: x", u"", u""},
        {"a NUL is a character", std::string("Subject: a\0b\r\nX:\r\n\r\n", 20), Text(u"a\0b", 3), u""},
    };
    for (const Case& c : cases) {
        const Read read = ReadMessage(c.message);
        EXPECT_EQ(read.error, u"") << c.why;
        EXPECT_EQ(read.summary.Subject, c.subject) << c.why;
        EXPECT_EQ(read.summary.To, c.to) << c.why;
    }

    const EmlSummary twice =
        ReadMessage("From: a\r\nFrom: b\r\nCc: c\r\nCc: d\r\nBcc: e\r\nBcc: f\r\n").summary;
    EXPECT_EQ(twice.From + u" " + twice.Cc + u" " + twice.Bcc, u"a; b c; d e; f");
    EXPECT_EQ(twice.FromKey, u"a; b");
    EXPECT_EQ(
        ReadMessage("Delivery-date:\r\nDelivery-date: 3 Apr 2007 10:00:00\r\n").summary.DeliveryDateText,
        u"03/04/2007 10:00")
        << "an empty one does not hide the next";

    std::string block = "Subject: a  b\r\n";
    KeepHeaderBlock(block);
    EXPECT_EQ(block, "Subject: a b\r\n");
    block = "Subject: a  b";
    KeepHeaderBlock(block);
    EXPECT_EQ(block, "Subject: a ") << "a single character behind the last run is lost";
    EXPECT_EQ(HeaderValue("A:\r\nA: x\r\nB: y", "a:", true), "") << "the first line decides, empty or not";
    EXPECT_EQ(HeaderValue("A:\r\nA: x\r\nB: y", "a:", false), "x");
}

TEST(Eml, Dates)
{
    struct Case {
        const char* why;
        const char* headers;
        const char16_t *received, *sent;
    };
    const Case cases[] = {
        {"absent", "X: y", u"01/01/1900 00:00", u"01/01/1900 00:00"},
        {"only the first Received: counts",
         "Received: x; 3 Apr 2007 10:00:00 +0100\r\nReceived: y; 4 Apr 2007", u"03/04/2007 09:00",
         u"01/01/1900 00:00"},
        {"even when it has no date", "Received: x\r\nReceived: y; 4 Apr 2007", u"01/01/1900 00:00",
         u"01/01/1900 00:00"},
        {"between the first and the second semicolon", "Received: x ; 3 Apr 2007 10:00:00 ; z",
         u"03/04/2007 10:00", u"01/01/1900 00:00"},
        {"no blank needs to follow a semicolon", "Received: x;3 Apr 2007 10:00:00;z; 4 Apr 2007",
         u"03/04/2007 10:00", u"01/01/1900 00:00"},
        {"two Date: headers are read as one", "Date: 3 Apr 2007 10:00:00 +0200\r\nDate: 1 Jan 2000",
         u"01/01/1900 00:00", u"03/04/2007 08:00"},
    };
    for (const Case& c : cases) {
        const Read read = ReadMessage(std::string(c.headers) + "\r\nX:\r\n\r\n");
        EXPECT_EQ(read.error, u"") << c.why;
        EXPECT_EQ(read.summary.ReceivedDateText, c.received) << c.why;
        EXPECT_EQ(read.summary.SentDateText, c.sent) << c.why;
        EXPECT_EQ(read.summary.DeliveryDate, kNoListDate) << c.why;
    }
}

TEST(Eml, FaultsLeaveTheSummaryEmpty)
{
    struct Case {
        const char *why, *message;
        const char16_t* error;
    };
    const Case cases[] = {
        {"a month that is none", "From: a\r\nDate: 3 Foo 2007\r\nX:\r\n\r\n", u"Type mismatch"},
        {"the CR of the header block is a value", "Date:\r\n\r\n", u"Type mismatch"},
        {"base64 with a bad start", "Subject: =?utf-8?b?!AAA?=\r\nX:\r\n\r\n", u"Overflow"},
        {"the first fault is told", "Date: x\r\nTo: =?utf-8?b?====?=\r\nX:\r\n\r\n", u"Overflow"},
        {"but the delivery date comes before", "Delivery-date: x\r\nTo: =?utf-8?b?====?=\r\nX:\r\n\r\n",
         u"Type mismatch"},
        {"year 10000", "Date: 1 Jan 10000\r\nX:\r\n\r\n", u"Invalid procedure call or argument"},
    };
    for (const Case& c : cases) {
        const Read read = ReadMessage(c.message);
        EXPECT_EQ(read.error, c.error) << c.why;
        EXPECT_EQ(read.summary.FileName, u"") << c.why;
        EXPECT_EQ(read.summary.From, u"") << c.why;
    }
    const Read locked = ReadMessage("Subject: x", u"a.eml", FileError::inUse);
    EXPECT_EQ(locked.error, Describe(FileError::inUse));
    EXPECT_EQ(locked.summary.FileName, u"");
}

// A text that does not fit into memory is a fault of its file and of no other.
TEST(Eml, AFileLargerThanMemoryIsToldAsSuch)
{
    struct NoMemoryForFiles final : NoFiles {
        FileError ReadWhole(const Text&, std::string&) override { throw std::bad_alloc(); }
    } files;
    struct NoMemoryForText final : CodePage1252 {
        bool tooLong = false;
        Text FromAnsi(std::string_view bytes) override
        {
            if (bytes.size() < 1000) return CodePage1252::FromAnsi(bytes);
            if (tooLong) throw std::length_error("too long");
            throw std::bad_alloc();
        }
    } codePage;
    EnglishLocale locale;
    OneFile largeFile, unreadFile;
    unreadFile.error = FileError::outOfMemory;
    for (const char* name : {"From: ", "Bcc: ", "Received: ", "Subject: =?iso-8859-1?b?"})
        for (const bool tooLong : {false, true})
            for (Files* each : {static_cast<Files*>(&files), static_cast<Files*>(&largeFile),
                                static_cast<Files*>(&unreadFile)}) {
                largeFile.content = name + std::string(2000, 'Q') + "?=";
                codePage.tooLong = tooLong;
                EmlSummary summary;
                summary.Subject = u"old";
                EXPECT_EQ(ReadEmlSummary(u"/a.eml", {*each, codePage, locale, {}}, summary),
                          u"There is not enough memory to read the file")
                    << name << tooLong;
                EXPECT_EQ(summary.FileName + summary.Subject, u"") << name << tooLong;
            }
}

// Where 0x96 begins a character of two bytes, a single one reads as a question mark.
TEST(Eml, OnlyAnEnDashOfTheCodePageIsReplaced)
{
    struct NoEnDash final : CodePage1252 {
        Text FromAnsi(std::string_view bytes) override
        {
            Text text = CodePage1252::FromAnsi(bytes);
            std::replace(text.begin(), text.end(), u'\u2013', u'?');
            return text;
        }
    } codePage;
    OneFile files;
    files.content = "Subject: Who? What? \x96\r\nX:\r\n\r\n";
    EnglishLocale locale;
    EmlSummary summary;
    EXPECT_EQ(ReadEmlSummary(u"/a.eml", {files, codePage, locale, {}}, summary), u"");
    EXPECT_EQ(summary.SubjectKey, u"Who? What? ?");
    EXPECT_EQ(ReadMessage(files.content).summary.SubjectKey, u"Who? What? \x16");
}

TEST(Eml, Paths)
{
    struct Case {
        const char* why;
        const char16_t *path, *extension, *name, *folder;
    };
    const Case cases[] = {
        {"from the first folder on", u"C:\\s\\LOCAL folders\\In\\a.EML", u"eml", u"a.EML",
         u"LOCAL folders\\In"},
        {"without it the whole path", u"C:\\s\\a.eml.txt", u"txt", u"a.eml.txt", u"C:\\s"},
        {"a backslash makes slashes letters", u"C:\\s/x\\b/a.eml", u"eml", u"b/a.eml", u"C:\\s/x"},
        {"slashes", u"/s/Local Folders/a.b.eml", u"eml", u"a.b.eml", u"Local Folders"},
        {"the cut may take the backslashes away", u"C:\\Local Folders/a.eml", u"eml", u"Local Folders/a.eml",
         u"Local Folders"},
        {"a dot in a folder is none of the name", u"/s.eml/a", u"a", u"a", u"/s.eml"},
        {"no folder", u"eml", u"eml", u"eml", u""},
        {"root", u"/a.eml", u"eml", u"a.eml", u""},
        {"the first folder's name in the file's", u"/s/Local Folders.eml", u"eml", u"Local Folders.eml", u""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FileExtension(c.path), c.extension) << c.why;
        EXPECT_EQ(FileNameOf(c.path), c.name) << c.why;
        EXPECT_EQ(FolderOf(c.path, u"Local Folders"), c.folder) << c.why;
    }
    EXPECT_EQ(ReadMessage("Subject: x\r\nX:\r\n\r\n", u"C:\\a.eml.txt").reads, 0);
    EXPECT_EQ(ReadMessage("Subject: x\r\nX:\r\n\r\n", u"C:\\a.eml.txt").summary.FileName, u"");
    EXPECT_EQ(ReadMessage("Subject: x\r\nX:\r\n\r\n", u"C:\\a.EML").summary.Subject, u"x");
}

TEST(Eml, AttachmentMarkAtEveryPlace)
{
    const std::string mark = "Content-Disposition: attachment;\r\n";
    std::string upper = mark;
    for (char& c : upper) c = c >= 'a' && c <= 'z' ? char(c - 32) : c;
    for (std::size_t before = 0; before < 80; ++before) {
        EXPECT_TRUE(HasAttachmentMark(std::string(before, 'x') + mark)) << before;
        EXPECT_TRUE(HasAttachmentMark(mark.substr(0, before) + upper + "x")) << before;
        EXPECT_TRUE(HasAttachmentMark(std::string(before, '\n') + mark)) << before;
    }
    for (std::size_t i = 0; i < mark.size(); ++i) {
        std::string spoilt = mark + "\n";
        spoilt[i] = '_';
        EXPECT_FALSE(HasAttachmentMark(spoilt)) << i;
        EXPECT_FALSE(HasAttachmentMark(mark.substr(0, i))) << i;
    }
}

// Eight times the bytes take eight times as long, sixty-four times if each asks for all the others.
TEST(Eml, HostileFilesAreReadInTimeThatGrowsWithTheirSize)
{
    struct Case {
        const char *begin, *repeated, *end = "";
        std::string OfSize(std::size_t size) const
        {
            std::string message = begin;
            while (message.size() < size) message += repeated;
            return message += end;
        }
    };
    const Case cases[] = {
        {"Subject: ", "x"},
        {"Subject: ", "=?"},
        {"Subject: ", "=?iso-8859-1?q?"},
        {"Subject: ", "=?a?b?c"},
        {"Subject: ", " =?iso-8859-1?q?a?="},
        {"To: ", "<"},
        {"To: ", ">"},
        {"To: ", "a <b@c>, '\""},
        {"To: <a@b>", "<>"},
        {"To: ", "<a>", "@"},
        {"To: @", "<a>"},
        {"To: ", "<a@b>", "<"},
        {"To: ", "\"a, b\"; "},
        {"Date: ", "9"},
        {"Date: ", " "},
        {"Date: ", "a "},
        {"", "Subject: x\r\n"},
        {"", "\r\n\t"},
        {"", "\r\n "},
        {"", "  x"},
        {"", "\r"},
        {"", "To: a@b,\r\n"},
        {"", "content-disposition: attachment;\r"},
        {"", "\n"},
        {"", "Date: 1 Jan 2000\r\n"},
        {"Subject: =?iso-8859-1?b?", "QUJD", "?="},
        {"Subject: =?iso-8859-1?q?", "=", "?="},
    };
    constexpr std::size_t kSize = 1 << 13;
    for (const Case& c : cases) {
        const double small = SecondsToRead(c.OfSize(kSize)), large = SecondsToRead(c.OfSize(8 * kSize));
        EXPECT_LT(large, std::max(24 * small, 0.1))
            << c.begin << c.repeated << " in " << small << " and " << large;
    }
}
