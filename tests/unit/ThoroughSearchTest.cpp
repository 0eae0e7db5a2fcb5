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

struct Cells { // of a row
    Text from = u"Ann Archer", subject = u"Minutes", to = u"bob@example.com", sent = kNoonText,
         received = kLater;
};
const std::string kReceived = "Tue, 3 Apr 2007 12:01:59 +0000";
struct Fields { // of the file of that row; Date and Received may be missing
    std::string from = "Ann Archer <ann@example.com>", subject = "Minutes", to = "bob@example.com",
                date = "Tue, 3 Apr 2007 12:00:30 +0000", received = kReceived;
};
std::string Header(const Fields& fields)
{
    const auto& [from, subject, to, date, received] = fields;
    return (received.empty() ? "" : "Received: from a by b; " + received + "\r\n") + "From: " + from +
           "\r\nTo: " + to + "\r\nSubject: " + subject + (date.empty() ? "" : "\r\nDate: " + date) +
           "\r\n\r\nText\r\n";
}

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
    bool IsFound(const Cells& row, const Fields& fields) { return IsFound(row, Header(fields)); }
};

using Places = std::vector<std::int32_t>;

// RFC 5322, RFC 2047, and what stands in real mail in breach of them.
TEST_F(ThoroughSearchTest, AFileIsKnownHoweverItIsWritten)
{
    std::string unixLines = Header({});
    std::erase(unixLines, '\r');
    EXPECT_TRUE(IsFound({}, unixLines)) << "lines of other systems";
    const Text longSubject(140, u'x');
    const std::tuple<const char*, Cells, Fields> cases[] = {
        {"as it is", {}, {}},
        {"a tab that a client drops", {.subject = u"Minutesof us"}, {.subject = "Minutes\r\n\tof us"}},
        {"and that another does not", {.subject = u"Minutes of us"}, {.subject = "Minutes\n\tof us"}},
        {"escape sequences", {.subject = u"????"}, {.subject = "\x1B$B;3ED\x1B(B"}},
        {"a zone of half hours", {}, {.date = "Tue, 3 Apr 2007 17:30:00 +0530"}},
        {"a zone by name", {}, {.date = "Tue, 3 Apr 2007 05:00:00 PDT"}},
        {"blanks in the time",
         {.received = u"03/04/2007 00:00"},
         {.received = "Tue, 3 Apr 2007 12: 01: 59 +0000"}},
        {"a name in a comment",
         {.from = u"ann@example.com", .subject = u""},
         {.from = "ann@example.com (Ann Archer)", .subject = ""}},
        {"a semicolon more", {}, {.received = "id 7; " + kReceived}},
        {"no server's stamp", {}, {.received = ""}},
        {"dated by the client", {.received = kNoonText}, {.received = ""}},
        {"a comma in the name", {.from = u"Archer, Ann"}, {.from = "\"Archer, Ann\" <ann@example.com>"}},
        {"two recipients", {.to = u"Bob; c@example.com"}, {.to = "Bob <b@example.com>,\r\n\tc@example.com"}},
        {"a name that the code page lacks",
         {.from = u"?????"},
         {.from = "=?utf-8?B?0JDQvdC90LA=?= =?utf-8?Q?=D0=B0?= <a@example.com>"}},
        {"and that the list shows",
         {.from = u"\u0410\u043d\u043d\u0430"},
         {.from = "=?koi8-r?B?4c7OwQ==?= <a@example.com>"}},
        {"a dash", {.subject = u"a \x16 b"}, {.subject = "=?windows-1252?Q?a_=96_b?="}},
        {"a cell that is cut", {.subject = longSubject.substr(0, 127)}, {.subject = std::string(140, 'x')}},
        {"a set that nobody knows", {}, {.subject = "=?x-home-made?Q?abc?="}},
        {"recipients that the client makes up", {.to = u"Undisclosed-Recipient:;"}, {.to = ""}},
        {"no date in the list", {.sent = u"", .received = u""}, {}},
        {"a date at the end of time",
         {.sent = u"", .received = u""},
         {.date = "Fri, 31 Dec 9999 23:59:59 -1400"}},
        {"no date in the file", {}, {.date = "", .received = ""}},
    };
    for (const auto& [why, row, file] : cases) EXPECT_TRUE(IsFound(row, file)) << why;
    for (auto& column : client.columns)
        if (column.title == u"To") column.title = u"Size";
    EXPECT_TRUE(IsFound({.to = u""}, Fields{})) << "a column less";
}

TEST_F(ThoroughSearchTest, NothingThatBothShowMayDiffer)
{
    const Cells rows[] = {
        {.from = u"Ann"},
        {.from = u""},
        {.subject = u"Minute"},
        {.subject = u"Minutes!"},
        {.subject = u""},
        {.subject = Text(127, u'M')},
        {.to = u"bob@example.org"},
        {.to = u""},
        {.sent = kLater},
        {.received = u"a cell without a date"}, // tells nothing
        {.received = u"04/04/2007 12:01"},
        {.received = kNoonText}, // its copy, which came as soon as it was sent
    };
    for (const Cells& row : rows)
        EXPECT_EQ(IsFound(row, Fields{}), row.received.size() > 16)
            << testing::PrintToString(row.subject + row.from);
    EXPECT_FALSE(IsFound({}, Fields{.subject = "", .received = ""}));
    client.columnsKnown = false;
    EXPECT_FALSE(IsFound({u"", u"", u""}, Fields{})) << "dates alone are no e-mail";
    EXPECT_FALSE(IsFound({u"", u"", u"", u"", u""}, "\r\n\r\n"));
}

TEST_F(ThoroughSearchTest, WhatIsAlikeIsGivenOnceAndWhatIsUnsureOnlyToOne)
{
    const std::string minutes = Header({}), undated = Header({.date = "", .received = ""}),
                      april5 = Header({.date = "Thu, 5 Apr 2007 09:00:00 +0000", .received = ""});
    const Cells plain, noDate{.sent = u"", .received = u""}, another{.sent = u""},
        other{.sent = u"05/04/2007 09:00", .received = u"05/04/2007 09:00"};
    // Recipients of whom it is not known how they are shown.
    const Cells group{.to = u"all:"}, unreceived{.to = u"all:", .received = u""};
    const auto toGroup = [](const std::string& received) {
        return Header({.to = "all:;", .received = received});
    };
    const Cells printed{.subject = u"\u30D7\u30EA\u30F3\u30C8", .sent = u"", .received = u""};
    const auto print = [](const std::string& subject) {
        return Header({.subject = subject, .date = "", .received = ""});
    };
    const struct {
        const char* why;
        std::vector<Cells> rows;
        std::vector<std::string> files;
        Places found;
    } cases[] = {
        {"twins", {plain, plain}, {minutes, minutes}, {0, 1}},
        {"a twin's file is gone", {plain, plain}, {minutes}, {0, -1}},
        {"more files", {plain}, {minutes, minutes}, {0}},
        {"two without a date that differ", {noDate, another}, {undated}, {-1, -1}},
        {"twins without a date", {noDate, noDate}, {undated}, {0, -1}},
        {"each might be the other's", {plain, other}, {undated}, {-1, -1}},
        {"a dated one has its own", {plain, noDate}, {minutes}, {0, -1}},
        {"it might be of a deleted e-mail", {plain, noDate}, {undated}, {-1, -1}},
        {"or of one with a date", {plain, noDate}, {minutes, april5}, {0, -1}},
        {"neither has one", {plain, noDate}, {minutes, undated}, {0, 1}},
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
    const auto row = [](const Text& time) { return Cells{.sent = u"03/07/2007 " + time, .received = u""}; };
    const auto file = [](const std::string& time, const std::string& to = "bob@example.com") {
        return Header({.to = to, .date = "Tue, 3 Jul 2007 " + time + " +0000", .received = ""});
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
            const auto written = [](std::int64_t moment) {
                const double date = DateFromSeconds(25569 * kDay + moment - 3600);
                return ToUtf8(FormatDate(date, u"dd ") +
                              EnglishLocale().MonthName(FieldsOf(date).month, true) +
                              FormatDate(date, u" yyyy hh:nn:ss -0100"));
            };
            const std::string subject = "Report " + std::to_string(below(3));
            rows.push_back({.subject = FromUtf8(subject), .sent = shown(sent), .received = shown(sent + 60)});
            auto& [listed, stored] = alike[{rows.back().subject, rows.back().sent}];
            ++listed;
            if (below(4) == 0) continue; // not saved
            ++stored;
            messages.push_back(
                Header({.subject = subject, .date = written(sent), .received = written(sent + 60)}));
        }
        std::shuffle(messages.begin(), messages.end(), random);
        const Places found = Found(rows, messages);
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (found[i] >= 0) --alike[{rows[i].subject, rows[i].sent}].second;
        for (const auto& [key, counts] : alike) EXPECT_EQ(counts.second, 0) << testing::PrintToString(key);
    }
}

} // namespace
