// MatchScoreTest.cpp: matching e-mails of the client's list with saved message files.
#include "folders/MatchScore.h"
#include "mail/HeaderDates.h"
#include "tests/support/Case.h"
#include "tests/support/PlainSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

constexpr double kNoon = 39175.5; // 3 April 2007 12:00
constexpr double kMinute = 1.0 / 1440;
const Text kNoonText = u"03/04/2007 12:00", kLaterText = u"03/04/2007 12:01",
           kNoDateText = u"01/01/1900 00:00";

EmailEntry Entry(Text subject, std::vector<Text> from, std::vector<Text> to, double sent, double received)
{
    return {std::move(from), std::move(subject), std::move(to), received, sent, {}, 0};
}

EmlSummary Record(Text subject, Text from, Text to, Text delivery, Text date, Text received)
{
    EmlSummary record;
    record.Subject = std::move(subject);
    record.FromKey = std::move(from);
    record.ToKey = std::move(to);
    record.DeliveryDateText = std::move(delivery);
    record.SentDateText = std::move(date);
    record.ReceivedDateText = std::move(received);
    return record;
}

class Dice {
public:
    explicit Dice(unsigned seed) : engine_(seed) {}
    int Below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
    template <class T, std::size_t n>
    const T& One(const T (&of)[n])
    {
        return of[Below(static_cast<int>(n))];
    }

private:
    std::mt19937 engine_;
};

// Few values, so that almost everything nearly matches; day counts below 2 are no dates.
EmailEntry RandomEntry(Dice& dice)
{
    const double dates[] = {kNoon, kNoon + kMinute, kNoListDate, 0, 0, 1.5};
    const Text texts[] = {u"", u"a", u"bird", u"bird a"};
    EmailEntry entry =
        Entry(dice.One(texts), {dice.One(texts)}, {dice.One(texts)}, dice.One(dates), dice.One(dates));
    if (dice.Below(4) == 0) entry.From.push_back(dice.One(texts));
    if (dice.Below(20) == 0) { // 200 checks and one of them failed are 100, too
        entry.From.assign(static_cast<std::size_t>(196 + dice.Below(5)), u"a");
        entry.To.assign(1, u"bird");
    }
    return entry;
}

EmlSummary RandomRecord(Dice& dice)
{
    const Text dates[] = {kNoonText, kLaterText, kNoDateText};
    const Text texts[] = {u"a", u"bird", u"bird a", u"a bird", u"\u00E4 bird at bay"};
    EmlSummary record = Record(dice.One(texts), dice.One(texts), dice.One(texts), dice.One(dates),
                               dice.One(dates), dice.One(dates));
    record.SubjectKey = dice.One(texts);
    return record;
}

} // namespace

TEST(MatchScoreTest, CountsWhatFits)
{
    const EmlSummary file = Record(u"Re: Plans", u"ann@example.com", u"bob@example.com; cid@example.com",
                                   kNoDateText, kNoonText, kLaterText);
    const Case<EmailEntry, int> cases[] = {
        {"all fits",
         Entry(u"Re: Plans", {u"ann@example.com"}, {u"bob@example.com", u"cid@example.com"}, kNoon,
               kNoon + kMinute),
         100},
        {"part of the subject is enough", Entry(u"Plan", {u""}, {u""}, kNoon, kNoon), 100},
        {"letter case of the subject counts", Entry(u"plan", {u"ann@example.com"}, {u""}, kNoon, kNoon), 0},
        {"no subject: no check of it", Entry(u"", {u"ann"}, {u""}, kNoon, kNoon), 100},
        {"letter case of senders counts", Entry(u"Plans", {u"Ann"}, {u""}, kNoon, kNoon), 50},
        {"one of two senders, recipients and dates are not looked at",
         Entry(u"Plans", {u"ann", u"dan"}, {u"nobody"}, 5, 5), 67},
        {"empty senders among others are no checks",
         Entry(u"Plans", {u"ann", u"", u"dan"}, {u""}, kNoon, kNoon), 67},
        {"without a first sender no sender is checked", Entry(u"Plans", {u"", u"dan"}, {u""}, kNoon, kNoon),
         100},
        {"one of two recipients", Entry(u"Plans", {u"ann"}, {u"bob", u"eve"}, kNoon, kNoon), 75},
        {"another minute", Entry(u"Plans", {u"ann"}, {u""}, kNoon + kMinute, kNoon), 67},
        {"seconds do not count", Entry(u"Plans", {u"ann"}, {u""}, kNoon + 0.9 * kMinute, kNoon), 100},
        {"received at the minute of Date", Entry(u"Plans", {u""}, {u""}, 0, kNoon), 100},
        {"received at another minute", Entry(u"Plans", {u""}, {u""}, 0, kNoon - kMinute), 50},
        {"a list without the column Sent: no Delivery-date fits",
         Entry(u"Plans", {u""}, {u""}, kNoListDate, kNoon), 100},
        {"below 1 January 1900 is no date", Entry(u"Plans", {u""}, {u""}, 1.99, 0), 100},
        {"nothing to check", Entry(u"", {u""}, {u""}, 0, 0), 100},
        {"one to check, and it fails", Entry(u"", {u"dan"}, {u""}, 0, 0), 0},
    };
    for (const auto& c : cases) EXPECT_EQ(MatchScore(c.given, file), c.want) << c.why;

    EmlSummary keyOnly = file;
    keyOnly.Subject = u"shown otherwise";
    keyOnly.SubjectKey = u"Plans";
    EXPECT_EQ(MatchScore(Entry(u"Plans", {u""}, {u""}, kNoon, kNoon), keyOnly), 100)
        << "the key's form counts as well";
    const EmlSummary twice = Record(u"Plans", u"", u"", kNoonText, kNoonText, kNoDateText);
    EXPECT_EQ(MatchScore(Entry(u"Plans", {u""}, {u""}, kNoon, 40000), twice), 100)
        << "a sent date that fits twice makes up for the received one";

    std::vector<Text> many(199, u"ann");
    many.back() = u"dan";
    EXPECT_EQ(MatchScore(Entry(u"", many, {u""}, 0, 0), file), 99) << "198 of 199";
    many.insert(many.begin(), u"ann");
    EXPECT_EQ(MatchScore(Entry(u"", many, {u""}, 0, 0), file), 100) << "199 of 200 are rounded";
}

TEST(RecordSearchTest, FindsWhatThePlainSearchFinds)
{
    int matches = 0, tries = 0;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        Dice dice(seed);
        std::vector<EmlSummary> records;
        const int count = seed % 10 == 0 ? 100 + dice.Below(200) : dice.Below(8);
        for (int i = 0; i < count; ++i) records.push_back(RandomRecord(dice));
        RecordSearch search(records);
        PlainSearch plain(records);
        for (int i = 0; i < 20; ++i, ++tries) {
            const EmailEntry entry = RandomEntry(dice);
            const int expected = plain.Match(entry);
            ASSERT_EQ(search.Match(entry), expected) << "seed " << seed << ", e-mail " << i;
            matches += expected >= 0;
        }
    }
    EXPECT_GT(matches, tries / 10) << "cases that match little show little";
    EXPECT_LT(matches, tries * 9 / 10);
}

TEST(RecordSearchTest, ManyEmailsInAnyOrderNeedNoSearchThroughAll)
{
    constexpr int kCount = 30000;
    const std::tuple<bool, bool, int, int> cases[] = {{true, true, 7, kCount},  {true, false, 7, 1},
                                                      {false, true, 7, kCount}, {false, true, 0, kCount},
                                                      {false, false, 7, 1},     {true, false, 0, 1}};
    for (const auto& [sentIsListed, isInOrder, apart, least] : cases) {
        std::vector<EmailEntry> entries;
        std::vector<EmlSummary> records;
        for (int i = 0; i < kCount; ++i) {
            const double sent =
                36526 + (i - (i % 10 == 0)) * apart * kMinute; // one in ten has that of the one before
            const Text minute = FormatListDate(sent, false);
            Text subject = DecimalText(100000 + i), to = u"bob@example.com";
            if (!sentIsListed) subject.swap(to);
            entries.push_back(
                Entry(subject, {u"ann@example.com"}, {to}, sentIsListed ? sent : kNoListDate, sent));
            records.push_back(Record(subject, u"ann@example.com", to, kNoDateText, minute, minute));
        }
        if (!isInOrder) std::shuffle(entries.begin(), entries.end(), std::mt19937(1));
        RecordSearch search(records);
        EXPECT_GE(std::count_if(entries.begin(), entries.end(),
                                [&](const EmailEntry& entry) { return search.Match(entry) >= 0; }),
                  least);
        EXPECT_LE(search.Compared(), kCount * (apart > 0 ? 1.2 : 3)) << sentIsListed << isInOrder << apart;
    }
}

TEST(RecordSearchTest, MinutesWithTooMuchTextAreSearchedFileByFile)
{
    std::vector<EmlSummary> records(100,
                                    Record(Text(25000, u'x'), u"", u"", kNoonText, kNoonText, kNoonText));
    records.insert(records.end(), 100,
                   Record(Text(25000, u'x'), u"", u"", kLaterText, kLaterText, kLaterText));
    records[99].SubjectKey = records[199].SubjectKey = u"bird";
    RecordSearch search(records);
    EXPECT_EQ(search.Match(Entry(u"bird", {}, {}, kNoon, kNoon)), 99);
    EXPECT_EQ(search.Compared(), 64 + 1) << "narrowed down by what the file is found by";
    EXPECT_EQ(search.Match(Entry(u"bird", {}, {}, kNoon + kMinute, kNoon + kMinute)), 199);
    EXPECT_EQ(search.Compared(), 64 + 1 + 100) << "it is too much by now";
}
