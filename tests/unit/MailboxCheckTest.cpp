// MailboxCheckTest.cpp: when an export counts as whole.
#include "demo/mailbox/Check.h"
#include "tests/support/MailDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace {

const char kFirst[] = "Subject: one\r\n\r\nA";
const char kSecond[] = "Subject: two\r\n\r\nB";
const char kTwin[] = "Subject: one\r\n\r\nC"; // same details as the first, other text

std::string LogOf(const std::string& folder, int count, const std::string& outcome)
{
    const std::string stamp = "03/04/2007 10:15:00 ";
    return stamp + "Folder " + folder + "\r\n" + stamp + "-- Exporting 0 to " + std::to_string(count - 1) +
           " messages.\r\n" + stamp + "- Exporting one\r\n" + stamp + outcome + "\r\n" + stamp +
           "Export complete\r\n";
}

class MailboxCheckTest : public testing::Test {
protected:
    std::size_t Problems(std::u16string_view folder, const std::string& log)
    {
        input.store = store.Path();
        input.log = ReadExportLog(log);
        result = CheckFolder(root, folder, input);
        return result.problems.size();
    }
    bool Says(const std::string& words) const
    {
        return std::any_of(result.problems.begin(), result.problems.end(), [&](const std::string& problem) {
            return problem.find(words) != std::string::npos;
        });
    }

    MailFolder root{u"Local Folders",
                    {},
                    {{u"Inbox", {{u"1", kFirst}, {u"2", kSecond}, {u"3", kTwin}}, {}},
                     {u"Pro?", {{u"1", kSecond}}, {{u"Sub", {{u"1", kFirst}}, {}}}},
                     {u"Pro_", {{u"1", kFirst}}, {}}}};
    MailDirectory store;
    CheckInput input;
    CheckResult result;
};

TEST_F(MailboxCheckTest, ReadsTheOutcomesOfALog)
{
    const auto log = ReadExportLog(LogOf("-Inbox", 3, "1 passed, 0 failed, 2 skipped") +
                                   "03/04/2007 10:15:00 1 passed, 0 failed, 2 skipped today\nshort\n" +
                                   LogOf("caf\xE9", 2, "2 passed, 0 failed, 0 skipped"));
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].folder, "Inbox");
    EXPECT_EQ(log[0].messages, 3u);
    EXPECT_EQ(log[0].skipped, 2u);
    EXPECT_EQ(SkippedForGood(log, u"Inbox", 3), 2u);
    EXPECT_EQ(SkippedForGood(log, u"Inbox", 4), 0u) << "another folder of that name";
    EXPECT_EQ(SkippedForGood(log, u"caf\u00E9", 2), 0u);
}

TEST_F(MailboxCheckTest, ClosingLineAgreesWithTheDisk)
{
    const auto line = [](const std::string& words) { return "03/04/2007 10:15:00 " + words + "\r\n"; };
    const std::string inbox = LogOf("-Inbox", 3, "2 passed, 0 failed, 1 skipped"),
                      empty = LogOf("Inbox", 0, "0 passed, 0 failed, 0 skipped"),
                      all = line("Exporting Outlook Express folders") + inbox +
                            LogOf("Sub", 1, "1 passed, 0 failed, 0 skipped"),
                      good = line("2 of 3 e-mail(s) handled in this run are saved; 1 are not.");
    std::string begun = inbox;
    begun.replace(begun.find("Exporting 0 to 2"), 16, "Exporting 5 to 7");
    const std::u16string name = u"Inbox", other = u"Outbox";
    const struct {
        const char* why;
        std::string log;
        const std::u16string* folder;
        std::size_t messages, stored, problems;
    } cases[] = {
        {"the truth", inbox + good, &name, 3, 2, 0},
        {"too few is no lie", inbox + good, &name, 3, 3, 0},
        {"too many", inbox + good, &name, 3, 1, 2},
        {"one that nobody speaks of", inbox + good, &name, 4, 2, 1},
        {"not looked at",
         inbox +
             line("2 of 3 e-mail(s) handled in this run are saved; 1 are not. 1 more were not looked at."),
         &name, 4, 2, 0},
        {"does not add up", inbox + line("2 of 3 e-mail(s) handled in this run are saved; 0 are not."), &name,
         2, 2, 1},
        {"another text is no closing line",
         inbox + line("2 of 3 e-mail(s) handled in this run are saved; 1 are not. Really."), &name, 3, 2, 1},
        {"none", inbox, &name, 3, 2, 1},
        {"none, and the next run's", inbox + line("Started Quillbox") + inbox + good, &name, 3, 2, 1},
        {"nothing was there to do", empty, &name, 0, 0, 0},
        {"another folder's", inbox + good, &other, 9, 0, 0},
        {"one for all folders", all + good, nullptr, 3, 2, 0},
        {"of all folders, too many", all + good, nullptr, 3, 1, 2},
        {"of all folders, asked for one", all + good, &name, 3, 0, 0},
        {"of one folder, asked for all", inbox + good, nullptr, 9, 2, 0},
        {"only the last can tell",
         inbox + good + inbox + line("3 of 3 e-mail(s) handled in this run are saved; 0 are not."), &name, 3,
         3, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HoldClosingLinesAgainst(ReadClosingLines(c.log), c.folder, c.messages, c.stored).size(),
                  c.problems)
            << c.why;
}

TEST_F(MailboxCheckTest, FileOfTheRowWithTheSameBytesIsAnExport)
{
    store.Write("Local Folders/Inbox/0000_one.eml", kFirst);
    store.Write("Local Folders/Inbox/0001a.EML", kSecond);
    store.Write("Local Folders/Inbox/0002_one.eml", kTwin);
    EXPECT_EQ(Problems(u"Inbox", ""), 0u);
    EXPECT_EQ(result.exported, 3u);
    EXPECT_EQ(result.messages, 3u);
}

TEST_F(MailboxCheckTest, WrongNumberOrBytesIsNone)
{
    const char* strays[] = {"00001_two.eml", "001_two.eml", "10001_two.eml", "0001_two.txt", "x0001_two.eml"};
    for (const char* name : strays) store.Write(std::string("Local Folders/Inbox/") + name, kSecond);
    store.Write("Local Folders/Inbox/0000_one.eml", std::string(kFirst) + " ");
    store.Write("Local Folders/Inbox/0002_one.eml", kFirst); // of the same length
    EXPECT_EQ(Problems(u"Inbox", ""), 4u + 5u + 2u);
    EXPECT_EQ(result.exported, 0u);
    EXPECT_TRUE(Says("Inbox: row 1 (2) is not stored"));
    EXPECT_TRUE(Says("Inbox: 3 not stored, 0 reported as skipped for good"));
    for (const char* name : strays)
        EXPECT_TRUE(Says(std::string(name) + " is no e-mail of the folder")) << name;
    EXPECT_TRUE(Says("0000_one.eml holds no e-mail of the folder"));
    EXPECT_TRUE(Says("0002_one.eml holds another e-mail than its name says: that of row 0"));
}

// All are stored, and yet there is a file whose name lies.
TEST_F(MailboxCheckTest, EveryFileHoldsWhatItsNameSays)
{
    for (const char* name : {"0000_one.eml", "0002_one.eml", "0001_two.eml"})
        store.Write(std::string("Local Folders/Inbox/") + name, name[3] == '0'   ? kFirst
                                                                : name[3] == '1' ? kSecond
                                                                                 : kTwin);
    EXPECT_EQ(Problems(u"Inbox", ""), 0u);
    for (const char* name : {"0001_twoa.eml", "0003_one.eml"}) {
        store.Write(std::string("Local Folders/Inbox/") + name, kFirst);
        EXPECT_EQ(Problems(u"Inbox", ""), 1u) << name;
        EXPECT_EQ(result.exported, 3u) << name;
        std::filesystem::remove(store.Path() / "Local Folders/Inbox" / name);
    }
}

TEST_F(MailboxCheckTest, MovedRowsAreKnownByTheirSubjects)
{
    root.folders = {{u"Inbox",
                     {{u"1", kFirst},
                      {u"2", kSecond},
                      {u"3", "Subject: Re: a \"b\" <c> - three\r\n\r\n"},
                      {u"4", "Subject: one a\r\n\r\n"}},
                     {}}};
    input.rows = Rows::move;
    const auto put = [this](const char* name, const std::string& bytes) {
        store.Write(std::string("Local Folders/Inbox/") + name, bytes);
    };
    put("0007_one.eml", kFirst);
    put("0000_two.eml", kSecond);
    put("0000_Reabc-three.eml", root.folders[0].messages[2].bytes);
    put("0002_onea.eml", root.folders[0].messages[3].bytes); // a name of its own, not a second "one"
    EXPECT_EQ(Problems(u"Inbox", ""), 0u);
    put("0001_twoa.eml", kSecond); // saved once more
    EXPECT_EQ(Problems(u"Inbox", ""), 0u);
    put("0001_two.eml", kFirst);
    put("0003_three.eml", kFirst);
    EXPECT_EQ(Problems(u"Inbox", ""), 2u);
    EXPECT_TRUE(Says("0001_two.eml holds another e-mail than its name says: that of row 0"));
    EXPECT_TRUE(Says("0003_three.eml is no e-mail of the folder"));
    root.folders[0].messages.push_back({u"5", kTwin});
    Problems(u"Inbox", "");
    EXPECT_TRUE(Says("two messages with the subject \"one\""));
}

TEST_F(MailboxCheckTest, FilesAndRecordsTellOfTheSameEmails)
{
    constexpr char kAll[] = R"({"efolder": "local folders\\inbox", "esubject": "one", "ecrc": "A"}
{"efolder": "Local Folders\\Inbox", "esubject": "tw\u006f", "ecrc": "B"}
{"efolder": "Local Folders\\Inbox", "esubject": "Gr\u00fc\"\\e", "ecrc": null}
)";
    const std::string all = kAll;
    const std::size_t second = all.find('\n') + 1, third = all.find('\n', second) + 1;
    root.folders[0].messages[2].bytes = "Subject: =?iso-8859-1?Q?Gr=FC=22=5Ce?=\r\n\r\n";
    store.Write("Local Folders/Inbox/0000_one.eml", kFirst);
    store.Write("Local Folders/Inbox/0001_two.eml", kSecond);
    store.Write("Local Folders/Inbox/0002_Gre.eml", root.folders[0].messages[2].bytes);
    const struct {
        std::string records;
        const char* problem;
    } cases[] = {
        {all, ""},
        {all.substr(0, third), "1 more files have no record"},
        {all.substr(second), "0000_one.eml has no record"},
        {all + all.substr(0, second), "the record of \"one\" has no file"},
        {all.substr(0, second) + all.substr(0, second) + all.substr(third), "0001_two.eml has no record"},
    };
    for (const auto& c : cases) {
        input.records = ReadRecords(c.records);
        EXPECT_EQ(Problems(u"Inbox", "") == 0, !*c.problem) << c.records;
        EXPECT_TRUE(!*c.problem || Says(c.problem)) << c.problem;
    }
    root.folders.resize(1);
    store.Write("Local Folders/Elsewhere/0000_one.eml", kFirst);
    input.records = ReadRecords(all + R"({"efolder": "Local Folders\\Gone", "esubject": ""})");
    result = CheckAll(root, input);
    EXPECT_EQ(result.problems.size(), 2u);
    EXPECT_TRUE(Says("Elsewhere/0000_one.eml: in no folder's directory"));
    EXPECT_TRUE(Says("local folders\\gone: 1 records, but there is no such folder"));
    EXPECT_EQ(CountRecords(*input.records), 4u);
    EXPECT_THROW(ReadRecords("quillbox-inspect: cannot be read"), MailboxError);
    EXPECT_THROW(ReadRecords("{\"efolder\": \"x"), MailboxError);
}

TEST_F(MailboxCheckTest, SkippedMessageMustBeAccountedFor)
{
    store.Write("Local Folders/Inbox/0000_one.eml", kFirst);
    const std::string skipped = LogOf("Inbox", 3, "2 passed, 0 failed, 1 skipped");
    const std::string again = LogOf("Inbox", 3, "0 passed, 0 failed, 3 skipped");
    const struct {
        const char* why;
        bool secondStored;
        std::string log;
        std::size_t problems;
    } cases[] = {
        {"no log", true, "", 2},
        {"the second of two with the same details", true, skipped, 0},
        {"a second run skips all, but only one of them for good", true, skipped + again, 0},
        {"a message that was saved once and is gone", false, skipped + again, 3},
        {"failed is not skipped", true, LogOf("Inbox", 3, "2 passed, 1 failed, 0 skipped"), 2},
        {"another folder's skip", true, LogOf("Outbox", 3, "2 passed, 0 failed, 1 skipped"), 2},
        {"stopped before its outcome line", true, skipped.substr(0, skipped.find("2 passed")), 2},
    };
    for (const auto& c : cases) {
        if (c.secondStored)
            store.Write("Local Folders/Inbox/0001_two.eml", kSecond);
        else
            std::filesystem::remove(store.Path() / "Local Folders/Inbox/0001_two.eml");
        EXPECT_EQ(Problems(u"Inbox", c.log), c.problems) << c.why;
    }
    store.Write("Local Folders/Inbox/0001_two.eml", kSecond);
    Problems(u"Inbox", skipped);
    EXPECT_EQ(result.notes, std::vector<std::string>{
                                "Inbox: row 2 (3) was skipped: a stored one looks the same in the list"});
}

// One message read again and again is skipped again and again: the others are lost all the same.
TEST_F(MailboxCheckTest, SkippedMessageNeedsAStoredTwin)
{
    const char kHeaders[] =
        "From: a\r\nDate: Tue, 3 Apr 2007 10:15:%s +0100\r\nReceived: by %s; 3 Apr 2007 10:%s:00\r\n\r\n%s";
    const auto message = [&](const char* second, const char* hop, const char* minute, const char* body) {
        char bytes[200];
        std::snprintf(bytes, sizeof bytes, kHeaders, second, hop, minute, body);
        return MailMessage{u"x", bytes};
    };
    const struct {
        const char* why;
        MailMessage second;
        std::size_t problems;
    } cases[] = {
        {"the list shows no seconds and no hops", message("59", "c", "16", "2"), 0},
        {"another minute", message("00", "b", "17", "2"), 1},
        {"other details", {u"x", kSecond}, 1},
    };
    for (const auto& c : cases) {
        root.folders = {{u"Inbox", {message("00", "b", "16", "1"), c.second}, {}}};
        store.Write("Local Folders/Inbox/0000.eml", root.folders[0].messages[0].bytes);
        EXPECT_EQ(Problems(u"Inbox", LogOf("Inbox", 2, "1 passed, 0 failed, 1 skipped")), c.problems)
            << c.why;
    }
}

TEST_F(MailboxCheckTest, FoldersThatMeetInOneNameAreToldApart)
{
    store.Write("Local Folders/Pro_/0000_one.eml", kFirst);
    store.Write("Local Folders/Pro__2/0000_two.eml", kSecond);
    store.Write("Local Folders/Pro__2/Sub/0000_one.eml", kFirst);
    EXPECT_EQ(Problems(u"Pro?/Sub", ""), 0u);
    EXPECT_EQ(Problems(u"Pro_", ""), 0u);
    input.store = store.Path();
    const CheckResult all = CheckAll(root, input);
    EXPECT_EQ(all.exported, 3u);
    EXPECT_EQ(all.messages, 6u);
    EXPECT_EQ(all.problems.size(), 4u) << "the Inbox is missing, and its sum";
}

// "Pro" is not exported: it must not be looked for in the directory of "Pro file".
TEST_F(MailboxCheckTest, DirectoryOfAnotherFolderIsNotTaken)
{
    root.folders = {{u"Pro", {{u"1", kSecond}}, {}}, {u"Pro file", {{u"1", kFirst}}, {}}};
    store.Write("Local Folders/Pro file/0000_one.eml", kFirst);
    input.store = store.Path();
    const CheckResult all = CheckAll(root, input);
    EXPECT_EQ(all.exported, 1u);
    EXPECT_EQ(all.problems[0], "Local Folders/Pro: row 0 (1) is not stored");
}

TEST_F(MailboxCheckTest, UnknownFolderIsAnError)
{
    EXPECT_THROW(CheckFolder(root, u"inbox", input), MailboxError);
}

} // namespace
