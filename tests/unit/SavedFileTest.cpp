// SavedFileTest.cpp: the extras "Verify Saved" and "File Date": when a file is an e-mail's, and its date.
#include "folders/SavedFile.h"
#include "tests/support/RunBench.h"

#include <gtest/gtest.h>

namespace {

constexpr const char kDate[] = "Tue, 3 Apr 2007 10:15:20 +0000";
const Text kPath = u"C:\\Store\\a.eml";

std::string MessageWith(const std::string& subject, const std::string& from, const std::string& date)
{
    return "From: " + from + "\r\nSubject: " + subject + "\r\nDate: " + date + "\r\n\r\nBody\r\n";
}

EmailEntry EntryOf(const Text& subject, const Text& from)
{
    EmailEntry entry;
    entry.Subject = subject;
    entry.From = {from};
    entry.Sent = DateFromSeconds(SecondsOf(DateFromYmd(2007, 4, 3)) + 10 * 3600 + 15 * 60);
    return entry;
}

// By what the message standards and the client's list leave open; "contradicts" is what no program shows so.
TEST(VerifySaved, OnlyWhatBothSidesShowForCertainContradicts)
{
    const struct {
        const char* why;
        Text listed, sender;
        std::string subject, from, date;
        Text want = {};
    } cases[] = {
        {"the same", u"Plan", u"Ann Archer", "Plan", "Ann Archer <a@b.c>", kDate},
        {"blanks, signs and letter case", u"Re: a plan", u"ann archer", "RE:  A\r\n\tPlan!",
         "\"Ann (Archer)\" <a@b.c>", kDate},
        {"an address", u"Plan", u"a@b.c", "Plan", "a@b.c", kDate},
        {"a long one is cut", Text(128, u'x'), u"Ann", std::string(200, 'x'), "Ann <a@b.c>", kDate},
        {"encoded in plain letters", u"Plan B", u"Ann", "=?utf-8?q?Plan_B?=", "=?iso-8859-1?q?Ann?= <a@b.c>",
         kDate},
        {"letters beyond ASCII", u"Pl?n", u"J?rg", "=?utf-8?b?UGzDpG4=?=", "=?utf-8?b?SsO2cmc=?= <a@b.c>",
         kDate},
        {"a letter that is shown by another", u"Plan", u"Ann", "=?utf-8?b?UGzDpG4=?=", "Ann <a@b.c>", kDate},
        {"a character set that is not known", u"Plan", u"Ann",
         "=?big5?b?pECk6Q==?=", "=?big5?b?pECk6Q==?= <a@b.c>", kDate},
        {"escape sequences", u"Plan", u"Ann", "\x1B$B;3ED\x1B(B", "Ann <a@b.c>", kDate},
        {"no subject on one side", u"", u"Ann", "Plan", "Ann <a@b.c>", kDate},
        {"another subject", u"Plan", u"Ann", "Bill", "Ann <a@b.c>", kDate, u"its subject is another one"},
        {"one that goes on", u"Plan 1", u"Ann", "Plan 12", "Ann <a@b.c>", kDate,
         u"its subject is another one"},
        {"another encoded one", u"Plan", u"Ann", "=?utf-8?q?Bill?=", "Ann <a@b.c>", kDate,
         u"its subject is another one"},
        {"another sender", u"Plan", u"Ann", "Plan", "Bob <b@b.c>", kDate, u"its sender is another one"},
        {"a zone of half hours", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "Tue, 03 Apr 2007 15:45:00 +0530"},
        {"the reader's zone is far off", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "3 Apr 2007 01:00 -0300"},
        {"the minute is rounded", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "Tue, 3 Apr 2007 10:14:50 +0000"},
        {"another minute", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "Tue, 3 Apr 2007 10:20:20 +0000",
         u"its date is another one"},
        {"another day", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "Thu, 5 Apr 2007 10:15:20 +0000",
         u"its date is another one"},
        {"a zone by name", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "Thu, 5 Apr 2007 10:20:20 CET",
         u"its date is another one"},
        {"no time that can be read is not certain", u"Plan", u"Ann", "Plan", "Ann <a@b.c>",
         "Thu, 5 Apr 2007 10.20"},
        {"nor are two digits of a year", u"Plan", u"Ann", "Plan", "Ann <a@b.c>",
         "Thu, 5 Apr 99 10:20:20 +0000"},
        {"nor is nonsense", u"Plan", u"Ann", "Plan", "Ann <a@b.c>", "yesterday"},
        {"a damaged word", u"Plan", u"Ann", "=?utf-8?b?=QUJD?=", "Ann <a@b.c>", kDate},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        RunBench bench(0);
        bench.files.AddFile(kPath, MessageWith(c.subject, c.from, c.date));
        EXPECT_EQ(WhyNotVerified(bench.run, EntryOf(c.listed, c.sender), kPath), c.want);
    }
}

TEST(VerifySaved, AFileIsWaitedForUntilItIsWhole)
{
    // wholeAfter: milliseconds
    // recorded: of two e-mails
    const std::pair<int, int> cases[] = {{0, 2}, {5000, 2}, {100'000, 0}};
    for (const auto& [wholeAfter, recorded] : cases) {
        SCOPED_TRACE(wholeAfter);
        RunBench bench(2);
        bench.view.options.verifySaved = true;
        bench.fake.wholeAfter = wholeAfter;
        bench.Export();
        EXPECT_EQ(static_cast<int>(bench.Records().size()), recorded);
        EXPECT_EQ(bench.files.files.size(), 2u) << "the files stay";
        EXPECT_EQ(bench.Count(u"Not taken for saved, as it is empty, or still being written"), 2 - recorded);
        EXPECT_TRUE(bench.Logged(recorded == 2 ? u"2 passed, 0 failed" : u"0 passed, 2 failed"));
        EXPECT_LE(bench.fake.sleptMilliseconds, 2 * 61'000);
    }
}

TEST(VerifySaved, AFileThatIsStillBeingWrittenIsNotWhole)
{
    RunBench bench(0);
    bench.files.AddFile(kPath, MessageWith("Plan", "Ann", kDate));
    bench.files.inUse.insert(FakeFiles::Key(kPath));
    EXPECT_EQ(WhyNotVerified(bench.run, EntryOf(u"Plan", u"Ann"), kPath),
              u"it is empty, or still being written");
    bench.fake.Later(3000, [&] { bench.files.inUse.clear(); });
    EXPECT_EQ(WhyNotVerified(bench.run, EntryOf(u"Plan", u"Ann"), kPath), u"");
    bench.files.inUse.insert(FakeFiles::Key(kPath));
    bench.flags.closing = true;
    const int slept = bench.fake.sleptMilliseconds;
    EXPECT_NE(WhyNotVerified(bench.run, EntryOf(u"Plan", u"Ann"), kPath), u"");
    EXPECT_EQ(bench.fake.sleptMilliseconds, slept) << "nobody waits for it when the program closes";
}

TEST(FileDate, IsTheDateOnWhichTheEmailWasSent)
{
    for (const bool extra : {false, true}) {
        RunBench bench({MailRow(u"A"), MailRow(u"B", u""), MailRow(u"C", u"05/04/2007 23:59")}, {});
        bench.view.options.fileDate = extra;
        bench.Export();
        std::map<Text, double> want;
        if (extra) {
            want[FakeFiles::Key(kDirectory + u"0000_A.eml")] = EntryOf(u"", u"").Sent;
            want[FakeFiles::Key(kDirectory + u"0002_C.eml")] =
                DateFromSeconds(SecondsOf(DateFromYmd(2007, 4, 5)) + 24 * 3600 - 60);
        }
        EXPECT_EQ(bench.files.lastChanges, want) << "a date that is not known leaves a file alone";
    }
}

TEST(FileDate, AFailureIsToldAndCostsNothing)
{
    RunBench bench(1);
    DateSavedFile(bench.run, EntryOf(u"", u""), u"C:\\Store\\gone.eml");
    EXPECT_TRUE(bench.Logged(u"The file's date could not be set: C:\\Store\\gone.eml"));
}

} // namespace
