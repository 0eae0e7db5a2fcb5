// ThoroughSearchTest.cpp: which file is which e-mail: what every mailer writes, every zone, and no false
// match.
#include "folders/ThoroughSearch.h"
#include "mail/HeaderDates.h"
#include "mail/MessageDates.h"
#include "oe/MessageDetails.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kNoon = 1175601600;    // 3 April 2007 12:00
constexpr std::int64_t kJanuary = 1168430400; // 10 January 2007 12:00
const Text kNoonText = u"03/04/2007 12:00", kLater = u"03/04/2007 12:01";

struct Cells {
    Text from, subject, to, sent, received;
};
const Cells kPlain = {u"Ann Archer", u"Minutes", u"bob@example.com", kNoonText, kLater};

std::string Header(const std::string& from, const std::string& subject, const std::string& to,
                   const std::string& date, const std::string& received)
{
    return (received.empty() ? "" : "Received: from a by b; " + received + "\r\n") + "From: " + from +
           "\r\nTo: " + to + "\r\nSubject: " + subject + (date.empty() ? "" : "\r\nDate: " + date) +
           "\r\n\r\nText\r\n";
}
const std::string kDate = "Tue, 3 Apr 2007 12:00:30 +0000", kReceived = "Tue, 3 Apr 2007 12:01:59 +0000";
const std::string kMinutes =
    Header("Ann Archer <ann@example.com>", "Minutes", "bob@example.com", kDate, kReceived);

struct ThoroughSearchTest : testing::Test, OeBench {
    ThoroughSearchTest() : OeBench({})
    {
        client.columns = {{u"From", 0}, {u"Subject", 1}, {u"To", 2}, {u"Sent", 3}, {u"Received", 4}};
        client.columnsKnown = true;
    }
    EmailEntry EntryOf(const Cells& cells)
    {
        const auto date = [this](const Text& cell) {
            return AdjustedDate(client, ParseListDate(cell, locale));
        };
        return {AddressesIn(cells.from),
                SubjectIn(cells.subject, codePage),
                AddressesIn(cells.to),
                date(cells.received),
                date(cells.sent),
                u"C",
                0};
    }
    std::vector<std::int32_t> Found(const std::vector<Cells>& rows, const std::vector<std::string>& messages)
    {
        std::vector<EmailEntry> entries;
        std::vector<const EmailEntry*> pointers;
        std::vector<ShownEmail> shown;
        for (const Cells& cells : rows) entries.push_back(EntryOf(cells));
        for (const EmailEntry& entry : entries) pointers.push_back(&entry);
        for (const std::string& message : messages) shown.push_back(ShownOf(message, codePage));
        return SearchThoroughly(client, pointers, shown, [] {});
    }
    bool IsFound(const Cells& row, const std::string& message) { return Found({row}, {message})[0] == 0; }
};

using Places = std::vector<std::int32_t>;

// RFC 5322, RFC 2047, and what stands in real mail in breach of them.
TEST_F(ThoroughSearchTest, AFileIsKnownHoweverItIsWritten)
{
    std::string unixLines = kMinutes;
    std::erase(unixLines, '\r');
    const Text longSubject(140, u'x');
    const std::string ann = "Ann Archer <ann@example.com>", bob = "bob@example.com";
    const struct {
        const char* why;
        Cells row;
        std::string message;
    } cases[] = {
        {"as it is", kPlain, kMinutes},
        {"lines of other systems", kPlain, unixLines},
        {"a tab that a client drops",
         {u"Ann Archer", u"Minutesof us", u"bob@example.com", kNoonText, kLater},
         Header(ann, "Minutes\r\n\tof us", bob, kDate, kReceived)},
        {"and that another does not",
         {u"Ann Archer", u"Minutes of us", u"bob@example.com", kNoonText, kLater},
         Header(ann, "Minutes\n\tof us", bob, kDate, kReceived)},
        {"escape sequences",
         {u"Ann Archer", u"????", u"bob@example.com", kNoonText, kLater},
         Header(ann, "\x1B$B;3ED\x1B(B", bob, kDate, kReceived)},
        {"a zone of half hours", kPlain,
         Header(ann, "Minutes", bob, "Tue, 3 Apr 2007 17:30:00 +0530", kReceived)},
        {"a zone by name", kPlain, Header(ann, "Minutes", bob, "Tue, 3 Apr 2007 05:00:00 PDT", kReceived)},
        {"blanks in the time",
         {u"Ann Archer", u"Minutes", u"bob@example.com", kNoonText, u"03/04/2007 00:00"},
         Header(ann, "Minutes", bob, kDate, "Tue, 3 Apr 2007 12: 01: 59 +0000")},
        {"a name in a comment",
         {u"ann@example.com", u"", u"bob@example.com", kNoonText, kLater},
         Header("ann@example.com (Ann Archer)", "", bob, kDate, kReceived)},
        {"a semicolon more", kPlain, Header(ann, "Minutes", bob, kDate, "id 7; " + kReceived)},
        {"no server's stamp", kPlain, Header(ann, "Minutes", bob, kDate, "")},
        {"dated by the client",
         {u"Ann Archer", u"Minutes", u"bob@example.com", kNoonText, kNoonText},
         Header(ann, "Minutes", bob, kDate, "")},
        {"a comma in the name",
         {u"Archer, Ann", u"Minutes", u"bob@example.com", kNoonText, kLater},
         Header("\"Archer, Ann\" <ann@example.com>", "Minutes", bob, kDate, kReceived)},
        {"two recipients",
         {u"Ann Archer", u"Minutes", u"Bob; c@example.com", kNoonText, kLater},
         Header(ann, "Minutes", "Bob <b@example.com>,\r\n\tc@example.com", kDate, kReceived)},
        {"a name that the code page lacks",
         {u"?????", u"Minutes", u"bob@example.com", kNoonText, kLater},
         Header("=?utf-8?B?0JDQvdC90LA=?= =?utf-8?Q?=D0=B0?= <a@example.com>", "Minutes", bob, kDate,
                kReceived)},
        {"and that the list shows",
         {u"\u0410\u043d\u043d\u0430", u"Minutes", u"bob@example.com", kNoonText, kLater},
         Header("=?koi8-r?B?4c7OwQ==?= <a@example.com>", "Minutes", bob, kDate, kReceived)},
        {"a dash",
         {u"Ann Archer", u"a \x16 b", u"bob@example.com", kNoonText, kLater},
         Header(ann, "=?windows-1252?Q?a_=96_b?=", bob, kDate, kReceived)},
        {"a cell that is cut",
         {u"Ann Archer", longSubject.substr(0, 127), u"bob@example.com", kNoonText, kLater},
         Header(ann, std::string(140, 'x'), bob, kDate, kReceived)},
        {"a set that nobody knows",
         {u"Ann Archer", u"Minutes", u"bob@example.com", kNoonText, kLater},
         Header(ann, "=?x-home-made?Q?abc?=", bob, kDate, kReceived)},
        {"recipients that the client makes up",
         {u"Ann Archer", u"Minutes", u"Undisclosed-Recipient:;", kNoonText, kLater},
         Header(ann, "Minutes", "", kDate, kReceived)},
        {"no date in the list", {u"Ann Archer", u"Minutes", u"bob@example.com", u"", u""}, kMinutes},
        {"a date at the end of time",
         {u"Ann Archer", u"Minutes", u"bob@example.com", u"", u""},
         Header(ann, "Minutes", bob, "Fri, 31 Dec 9999 23:59:59 -1400", kReceived)},
        {"no date in the file", kPlain, Header(ann, "Minutes", bob, "", "")},
    };
    for (const auto& c : cases) EXPECT_TRUE(IsFound(c.row, c.message)) << c.why;
    for (auto& column : client.columns)
        if (column.title == u"To") column.title = u"Size";
    EXPECT_TRUE(IsFound({u"Ann Archer", u"Minutes", u"", kNoonText, kLater}, kMinutes)) << "a column less";
}

TEST_F(ThoroughSearchTest, NothingThatBothShowMayDiffer)
{
    const auto with = [](Text Cells::*cell, const Text& text) {
        Cells row = kPlain;
        row.*cell = text;
        return row;
    };
    const Cells rows[] = {
        with(&Cells::from, u"Ann"),
        with(&Cells::from, u""),
        with(&Cells::subject, u"Minute"),
        with(&Cells::subject, u"Minutes!"),
        with(&Cells::subject, u""),
        with(&Cells::subject, Text(127, u'M')),
        with(&Cells::to, u"bob@example.org"),
        with(&Cells::to, u""),
        with(&Cells::sent, kLater),
        with(&Cells::received, u"a cell without a date"), // tells nothing
        with(&Cells::received, u"04/04/2007 12:01"),
        with(&Cells::received, kNoonText), // its copy, which came as soon as it was sent
    };
    for (const Cells& row : rows)
        EXPECT_EQ(IsFound(row, kMinutes), row.received.size() > 16)
            << testing::PrintToString(row.subject + row.from);
    EXPECT_FALSE(IsFound(kPlain, Header("Ann Archer <ann@example.com>", "", "bob@example.com", kDate, "")));
    client.columnsKnown = false;
    EXPECT_FALSE(IsFound({u"", u"", u"", kNoonText, kLater}, kMinutes)) << "dates alone are no e-mail";
    EXPECT_FALSE(IsFound({u"", u"", u"", u"", u""}, "\r\n\r\n"));
}

TEST_F(ThoroughSearchTest, WhatIsAlikeIsGivenOnceAndWhatIsUnsureOnlyToOne)
{
    const std::string undated = Header("Ann Archer <ann@example.com>", "Minutes", "bob@example.com", "", "");
    const std::string april5 = Header("Ann Archer <ann@example.com>", "Minutes", "bob@example.com",
                                      "Thu, 5 Apr 2007 09:00:00 +0000", "");
    Cells noDate = kPlain, other = kPlain;
    noDate.sent = noDate.received = u"";
    Cells another = noDate;
    another.received = kLater;
    other.sent = other.received = u"05/04/2007 09:00";
    // Recipients of whom it is not known how they are shown.
    const Cells group = {u"Ann Archer", u"Minutes", u"all:", kNoonText, kLater},
                unreceived = {u"Ann Archer", u"Minutes", u"all:", kNoonText, u""};
    const auto toGroup = [](const std::string& received) {
        return Header("Ann Archer <ann@example.com>", "Minutes", "all:;", kDate, received);
    };
    const Cells printed = {u"Ann Archer", u"\u30D7\u30EA\u30F3\u30C8", u"bob@example.com", u"", u""};
    const auto print = [](const std::string& subject) {
        return Header("Ann Archer <ann@example.com>", subject, "bob@example.com", "", "");
    };
    const struct {
        const char* why;
        std::vector<Cells> rows;
        std::vector<std::string> files;
        Places found;
    } cases[] = {
        {"twins", {kPlain, kPlain}, {kMinutes, kMinutes}, {0, 1}},
        {"a twin's file is gone", {kPlain, kPlain}, {kMinutes}, {0, -1}},
        {"more files", {kPlain}, {kMinutes, kMinutes}, {0}},
        {"two without a date that differ", {noDate, another}, {undated}, {-1, -1}},
        {"twins without a date", {noDate, noDate}, {undated}, {0, -1}},
        {"each might be the other's", {kPlain, other}, {undated}, {-1, -1}},
        {"a dated one has its own", {kPlain, noDate}, {kMinutes}, {0, -1}},
        {"it might be of a deleted e-mail", {kPlain, noDate}, {undated}, {-1, -1}},
        {"or of one with a date", {kPlain, noDate}, {kMinutes, april5}, {0, -1}},
        {"neither has one", {kPlain, noDate}, {kMinutes, undated}, {0, 1}},
        {"twins but for a server's stamp",
         {group, unreceived, group},
         {toGroup(""), toGroup(kReceived), toGroup(kReceived)},
         {1, 0, 2}},
        {"stamped twice at the same time",
         {group, group},
         {toGroup(kReceived), toGroup(kReceived + "\r\nDelivery-Date: " + kReceived)},
         {0, 1}},
        {"and only the stamped one is saved", {group, unreceived}, {toGroup(kReceived)}, {0, -1}},
        {"sent in two sets",
         {printed, printed},
         {print("=?utf-8?B?44OX44Oq44Oz44OI?="), print("=?ISO-2022-JP?B?GyRCJVclaiVzJUgbKEI=?=")},
         {0, 1}},
    };
    for (const auto& c : cases) EXPECT_EQ(Found(c.rows, c.files), c.found) << c.why;
}

// Half an hour of summer time, as on Lord Howe Island, from April on, half hours in winter, too.
int SummerZone(std::int64_t moment)
{
    const std::int64_t day = moment / kDay % 365;
    return 9 * 60 + 30 + (day > 90 && day < 270 ? 60 : 0);
}

// By the rule of that day it is one e-mail's file, by today's another's.
TEST_F(ThoroughSearchTest, WhatComesEachHourIsKnownOnlyByItsNeighbours)
{
    clock.zone = SummerZone;
    clock.universalNow = kJanuary;
    const auto row = [](const Text& time) {
        return Cells{u"Ann Archer", u"Minutes", u"bob@example.com", u"03/07/2007 " + time, u""};
    };
    const auto file = [](const std::string& time, const std::string& to = "bob@example.com") {
        return Header("Ann Archer <ann@example.com>", "Minutes", to, "Tue, 3 Jul 2007 " + time + " +0000",
                      "");
    };
    const std::vector<Cells> rows = {row(u"21:30"), row(u"22:30"), row(u"23:30")};
    EXPECT_EQ(Found(rows, {file("12:00")}), (Places{-1, -1, -1}));
    EXPECT_EQ(Found({rows[1]}, {file("12:00", "all:;")}), Places{0}) << "by one rule alone";
    EXPECT_EQ(Found(rows, {file("12:00"), file("13:00")}), (Places{-1, 0, -1})) << "by both";
    EXPECT_EQ(Found(rows, {file("12:00"), file("11:00")}), (Places{1, 0, -1}));
}

// What was saved is found, what was not is not, whatever rule the client shows its dates by, in any order of
// list and files, with many of the same minute, sender and subject.
TEST_F(ThoroughSearchTest, ExactlyTheFilesThatAreGoneAreMissed)
{
    clock.zone = SummerZone;
    for (unsigned seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&random](unsigned limit) { return random() % limit; };
        const bool byToday = seed % 2 == 1;
        clock.universalNow = seed % 3 ? kNoon + 60 * kDay : kJanuary;
        settings.timeOffset = seed % 5 == 0 ? 2.0f : 0.0f;
        std::vector<Cells> rows;
        std::vector<std::string> messages;
        std::map<std::vector<Text>, std::pair<int, int>> alike; // rows and files
        for (int i = 0; i < 200; ++i) {
            const std::int64_t sent = kJanuary + below(180) * kDay + below(3) * 3600;
            const auto shown = [&](std::int64_t moment) {
                const int east = SummerZone(byToday ? clock.universalNow : moment);
                return FormatDate(DateFromSeconds(25569 * kDay + moment + east * 60), u"dd/mm/yyyy hh:nn");
            };
            const auto written = [&](std::int64_t moment) {
                return ToUtf8(FormatDate(DateFromSeconds(25569 * kDay + moment - 3600),
                                         u"dd Xmm yyyy hh:nn:ss")) +
                       " -0100";
            };
            const auto name = [](std::string date) { // of the month
                static const char* const kNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
                return date.replace(date.find('X'), 3,
                                    kNames[std::stoi(date.substr(date.find('X') + 1, 2)) - 1]);
            };
            const std::string subject = "Report " + std::to_string(below(3));
            rows.push_back(
                {u"Ann Archer", FromUtf8(subject), u"bob@example.com", shown(sent), shown(sent + 60)});
            auto& [listed, stored] = alike[{rows.back().subject, rows.back().sent}];
            ++listed;
            if (below(4) == 0) continue; // not saved
            ++stored;
            messages.push_back(Header("Ann Archer <ann@example.com>", subject, "bob@example.com",
                                      name(written(sent)), name(written(sent + 60))));
        }
        std::shuffle(messages.begin(), messages.end(), random);
        const Places found = Found(rows, messages);
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (found[i] >= 0) --alike[{rows[i].subject, rows[i].sent}].second;
        for (const auto& [key, counts] : alike) EXPECT_EQ(counts.second, 0) << testing::PrintToString(key);
    }
}

} // namespace
