// EmlTest.cpp: the reader of saved messages, from bytes to the whole summary.
#include "mail/modEmailAnalysis.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/support/OneFile.h"
#include "text/DayCount.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

namespace {

struct Read {
    EmlSummary summary;
    Text error;
    int reads;
};

Read ReadFile(OneFile files, CodePage&& codePage = CodePage1252(),
              const Text& path = u"C:\\store\\Local Folders\\Inbox\\0001_a.eml")
{
    EnglishLocale locale;
    Read read;
    read.summary.Subject = u"of the file before";
    read.error = ReadEmlSummary(path, {files, codePage, locale, u"Local Folders"}, read.summary);
    read.reads = files.reads;
    return read;
}

Read ReadMessage(const std::string& content)
{
    OneFile files;
    files.content = content;
    return ReadFile(files);
}

// The lines of a message, ended as a mail client ends them.
std::string Lines(std::initializer_list<const char*> lines)
{
    std::string out;
    for (const char* line : lines) out.append(line).append("\r\n");
    return out;
}

} // namespace

// What a real one holds, in the forms of RFC 5322 and RFC 2047; each part has its own tables.
TEST(Eml, AMessageOfTodayFillsTheWholeSummary)
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
    EXPECT_EQ(got.SubjectKey, u" Bulbs \x16 part two") << "the client shows an en dash so";
    EXPECT_EQ(got.DeliveryDateText, u"14/11/2004 08:31");
    EXPECT_EQ(got.ReceivedDateText, u"14/11/2004 08:31");
    EXPECT_EQ(got.SentDateText, u"14/11/2004 08:30");
    EXPECT_DOUBLE_EQ(got.SentDate, 38305 + 30659 / 86400.0);
    EXPECT_TRUE(got.HasAttachment);
}

// Rules of this program's own, so that a header reads as the client's list shows it. (By RFC 5322, section
// 2.2.3, a tab would stay when lines are joined.)
TEST(Eml, HeaderLinesAreJoinedAndEndWithTheBlock)
{
    const std::tuple<const char*, std::string, Text, Text> cases[] = {
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
        {"a single character behind the last run of spaces is lost", "Subject: a  b", u"a", u""},
        {"values are joined, empty ones left out", "To: a\r\nTO:\r\nto:b\r\nX:\r\n\r\n", u"", u"a; b"},
        {"names must start the line", "Reply-To: x\r\n To: y\r\nSubject:z\r\nX:\r\n\r\n", u"z", u""},
        {"an empty block", "\r\n\r\nSubject: x", u"", u""},
        {"a NUL is a character", std::string("Subject: a\0b\r\nX:\r\n\r\n", 20), Text(u"a\0b", 3), u""},
    };
    for (const auto& [why, message, subject, to] : cases) {
        const Read read = ReadMessage(message);
        EXPECT_EQ(read.error, u"") << why;
        EXPECT_EQ(read.summary.Subject, subject) << why;
        EXPECT_EQ(read.summary.To, to) << why;
    }
    const EmlSummary twice =
        ReadMessage("From: a\r\nFrom: b\r\nCc: c\r\nCc: d\r\nBcc: e\r\nBcc: f\r\n").summary;
    EXPECT_EQ(twice.From + u" " + twice.FromKey + u" " + twice.Cc + u" " + twice.Bcc, u"a; b a; b c; d e; f");
}

// RFC 5322, sections 3.6.1 and 3.6.7; the first of several hops is the last on the way. Which text of it is
// the date: a rule of this program's own.
TEST(Eml, TheDateOfTheFirstHopAndOfTheFirstDateHeaderAreTaken)
{
    const std::tuple<const char*, const char*, const char16_t*, const char16_t*> cases[] = {
        {"of the time before the year had four digits",
         "Received: x; Fri, 13 Aug 99 09:05:30 EDT\r\ndate: Fri Aug 13 09:01:02 1999", u"13/08/1999 13:05",
         u"13/08/1999 09:01"},
        {"even when it has no date", "Received: x\r\nReceived: y; 4 Apr 2007", u"01/01/1900 00:00",
         u"01/01/1900 00:00"},
        {"or blanks instead", "Received: x; ; 4 Apr 2007", u"01/01/1900 00:00", u"01/01/1900 00:00"},
        {"or no value", "Received:\r\nReceived: y; 4 Apr 2007", u"01/01/1900 00:00", u"01/01/1900 00:00"},
        {"between the first and the second semicolon", "Received: x ; 3 Apr 2007 10:00:00; +0500",
         u"03/04/2007 10:00", u"01/01/1900 00:00"},
        {"no blank needs to follow a semicolon", "Received: x;3 Apr 2007 10:00:00;z; 4 Apr 2007",
         u"03/04/2007 10:00", u"01/01/1900 00:00"},
        {"two Date: headers are read as one", "Date: 3 Apr 2007 10:00:00 +0200\r\nDate: 1 Jan 2000",
         u"01/01/1900 00:00", u"03/04/2007 08:00"},
        {"an empty one does not hide the next", "Date:\r\nDate: 3 Apr 2007 10:00:00", u"01/01/1900 00:00",
         u"03/04/2007 10:00"},
    };
    for (const auto& [why, headers, received, sent] : cases) {
        const Read read = ReadMessage(std::string(headers) + "\r\nX:\r\n\r\n");
        EXPECT_EQ(read.error, u"") << why;
        EXPECT_EQ(read.summary.ReceivedDateText, received) << why;
        EXPECT_EQ(read.summary.SentDateText, sent) << why;
        EXPECT_EQ(read.summary.DeliveryDate, kNoListDate) << why;
    }
}

// The words are the system's for faults of these kinds.
TEST(Eml, AFaultIsToldAndLeavesTheSummaryEmpty)
{
    const std::tuple<const char*, const char*, const char16_t*> cases[] = {
        {"a month that is none", "From: a\r\nDate: 3 Foo 2007\r\nX:\r\n\r\n", u"Type mismatch"},
        {"the CR of the header block is a value", "Date:\r\n\r\n", u"Type mismatch"},
        {"the first fault is told", "Date: x\r\nTo: =?utf-8?b?====?=\r\nX:\r\n\r\n", u"Overflow"},
        {"but the delivery date comes before", "Delivery-date: x\r\nTo: =?utf-8?b?====?=\r\nX:\r\n\r\n",
         u"Type mismatch"},
        {"year 10000", "Date: 1 Jan 10000\r\nX:\r\n\r\n", u"Invalid procedure call or argument"},
    };
    for (const auto& [why, message, fault] : cases) {
        const Read read = ReadMessage(message);
        EXPECT_EQ(read.error, fault) << why;
        EXPECT_EQ(read.summary.FileName + read.summary.From + read.summary.Subject, u"") << why;
    }
    OneFile unreadable;
    for (const FileError error : {FileError::inUse, FileError::outOfMemory}) {
        unreadable.error = error;
        EXPECT_EQ(ReadFile(unreadable).error, Describe(error));
        EXPECT_EQ(ReadFile(unreadable).summary.Subject, u"");
    }
}

// A rule of this program's own: records name a folder from the first folder on.
TEST(Eml, APathIsTakenApartAtTheSeparatorsThatItHas)
{
    const std::tuple<const char*, const char16_t*, const char16_t*, const char16_t*, const char16_t*>
        cases[] = {
            {"from the first folder on", u"C:\\s\\LOCAL folders\\In\\a.EML", u"eml", u"a.EML",
             u"LOCAL folders\\In"},
            {"without it the whole path", u"C:\\s\\a.eml.txt", u"txt", u"a.eml.txt", u"C:\\s"},
            {"a backslash makes slashes letters", u"C:\\s/x\\b/a.eml", u"eml", u"b/a.eml", u"C:\\s/x"},
            {"the cut may take the backslashes away", u"C:\\Local Folders/a.eml", u"eml",
             u"Local Folders/a.eml", u"Local Folders"},
            {"a dot in a folder is none of the name", u"/s.eml/a", u"a", u"a", u"/s.eml"},
            {"root", u"/a.eml", u"eml", u"a.eml", u""},
            {"the first folder's name in the file's", u"/s/Local Folders.eml", u"eml", u"Local Folders.eml",
             u""},
        };
    OneFile files;
    for (const auto& [why, path, extension, name, folder] : cases) {
        EXPECT_EQ(FileExtension(path), extension) << why;
        EXPECT_EQ(FileNameOf(path), name) << why;
        EXPECT_EQ(FolderOf(path, u"Local Folders"), folder) << why;
        const Read read = ReadFile(files, CodePage1252(), path);
        EXPECT_EQ(read.reads, extension == Text(u"eml") ? 1 : 0) << why;
        EXPECT_EQ(read.summary.FileName, read.reads ? name : u"") << why;
    }
}

// RFC 2183, section 2; that its line must end right there is a rule of this program's own.
TEST(Eml, TheAttachmentMarkIsFoundAtEveryPlace)
{
    const std::string mark = "Content-Disposition: attachment;\r\n",
                      upper = "CONTENT-DISPOSITION: ATTACHMENT;\r\n";
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
    EXPECT_FALSE(HasAttachmentMark("Content-Disposition: attachment; filename=\"a.txt\"\r\n"));
}
