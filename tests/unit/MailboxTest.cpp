// MailboxTest.cpp: when an export of a mailbox counts as whole. What of a directory is mail is said by the
// demo, which counts it.
#include "demo/mailbox/Check.h"
#include "tests/support/MailDirectory.h"

#include <gtest/gtest.h>

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

using Lines = std::vector<std::string>;
using StoreFiles = std::vector<std::pair<std::string, std::string>>; // paths below "Local Folders", and bytes

class MailboxCheckTest : public testing::Test {
protected:
    // What is found in a store that holds just these files, of a folder or, without a path, of all.
    Lines Problems(std::u16string_view folder, const StoreFiles& files, const std::string& log = {})
    {
        const MailDirectory store;
        for (const auto& [path, bytes] : files) store.Write("Local Folders/" + path, bytes);
        input.store = store.Path();
        input.log = ReadExportLog(log);
        result = folder.empty() ? CheckAll(root, input) : CheckFolder(root, folder, input);
        return result.problems;
    }

    MailFolder root{u"Local Folders", {}, {{u"Inbox", {{u"1", kFirst}, {u"2", kSecond}, {u"3", kTwin}}, {}}}};
    CheckInput input;
    CheckResult result;
};

TEST_F(MailboxCheckTest, ClosingLineAgreesWithTheDisk)
{
    const std::string stamp = "03/04/2007 10:15:00 ",
                      inbox = LogOf("-Inbox", 3, "2 passed, 0 failed, 1 skipped"),
                      all = stamp + "Exporting Outlook Express folders\r\n" + inbox +
                            LogOf("Sub", 1, "1 passed, 0 failed, 0 skipped"),
                      told = stamp + "2 of 3 e-mail(s) handled in this run are saved; ",
                      good = told + "1 are not.\r\n", next = stamp + "Started Quillbox\r\n";
    const std::u16string name = u"Inbox", other = u"Outbox";
    const struct {
        const char* why;
        std::string log;
        const std::u16string* folder; // null: all
        std::size_t messages, stored, problems;
    } cases[] = {
        {"the truth", inbox + good, &name, 3, 2, 0},
        {"too many", inbox + good, &name, 3, 1, 2},
        {"one that nobody speaks of", inbox + good, &name, 4, 2, 1},
        {"not looked at", inbox + told + "1 are not. 1 more were not looked at.\r\n", &name, 4, 2, 0},
        {"does not add up", inbox + told + "0 are not.\r\n", &name, 2, 2, 1},
        {"none", inbox, &name, 3, 2, 1},
        {"none, and the next run's", inbox + next + inbox + good, &name, 3, 2, 1},
        {"another folder's", inbox + good, &other, 9, 0, 0},
        {"of all folders, too many", all + good, nullptr, 3, 1, 2},
        {"only the last can tell", inbox + good + inbox + told + "1 are not.\r\n", &name, 3, 3, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HoldClosingLinesAgainst(ReadClosingLines(c.log), c.folder, c.messages, c.stored).size(),
                  c.problems)
            << c.why;
}

// All may be stored, and yet there is a file whose name lies.
TEST_F(MailboxCheckTest, OnlyAFileOfTheRowWithTheSameBytesIsAnExport)
{
    const std::pair<std::string, std::string> whole[] = {
        {"Inbox/0000_one.eml", kFirst}, {"Inbox/0001a.EML", kSecond}, {"Inbox/0002_one.eml", kTwin}};
    const Lines lost = {"Inbox: row 1 (2) is not stored",
                        "Inbox: 1 not stored, 0 reported as skipped for good"};
    EXPECT_EQ(Problems(u"Inbox", {whole[0], whole[1], whole[2]}), Lines());
    EXPECT_EQ(result.exported, 3u);
    EXPECT_EQ(result.messages, 3u);
    EXPECT_EQ(Problems(u"Inbox", {whole[0], whole[2]}), lost);
    for (const std::string name : {"0001_twoa.eml", "00001_two.eml", "0003_one.eml", "0001_two.txt"}) {
        const Lines found = Problems(u"Inbox", {whole[0], whole[1], whole[2], {"Inbox/" + name, kFirst}});
        EXPECT_EQ(found,
                  Lines{"Inbox: " + name +
                        (name == "0001_twoa.eml" ? " holds another e-mail than its name says: that of row 0"
                                                 : " is no e-mail of the folder by its name")});
        EXPECT_EQ(result.exported, 3u) << name;
    }
    Lines longer = lost;
    longer.insert(longer.begin(), "Inbox: 0001_two.eml holds no e-mail of the folder");
    EXPECT_EQ(Problems(u"Inbox", {whole[0], whole[2], {"Inbox/0001_two.eml", std::string(kSecond) + " "}}),
              longer);
}

TEST_F(MailboxCheckTest, FilesAndRecordsTellOfTheSameEmails)
{
    const std::string one = R"({"efolder": "local folders\\inbox", "esubject": "one", "ecrc": "A"})"
                            "\n",
                      two = R"({"efolder": "Local Folders\\Inbox", "esubject": "tw\u006f", "ecrc": "B"})"
                            "\n",
                      three =
                          R"({"efolder": "Local Folders\\Inbox", "esubject": "Gr\u00fc\"\\e", "ecrc": null})"
                          "\n";
    root.folders[0].messages[2].bytes = "Subject: =?iso-8859-1?Q?Gr=FC=22=5Ce?=\r\n\r\n";
    StoreFiles files = {{"Inbox/0000_one.eml", kFirst},
                        {"Inbox/0001_two.eml", kSecond},
                        {"Inbox/0002_Gre.eml", root.folders[0].messages[2].bytes}};
    const std::pair<std::string, Lines> cases[] = {
        {one + two + three, {}},
        {one + two, {"Inbox: 1 more files have no record"}},
        {one + one + three,
         {"Inbox: 0001_two.eml has no record", "Inbox: the record of \"one\" has no file"}},
    };
    for (const auto& [records, problems] : cases) {
        input.records = ReadRecords(records);
        EXPECT_EQ(Problems(u"Inbox", files), problems) << records;
    }
    files.push_back({"Elsewhere/0000_one.eml", kFirst});
    input.records = ReadRecords(one + two + three + R"({"efolder": "Local Folders\\Gone", "esubject": ""})");
    const Lines strays = {"Elsewhere/0000_one.eml: in no folder's directory",
                          "local folders\\gone: 1 records, but there is no such folder"};
    EXPECT_EQ(Problems(u"", files), strays);
    EXPECT_EQ(CountRecords(*input.records), 4u);
    EXPECT_THROW(ReadRecords("quillbox-inspect: cannot be read"), MailboxError);
    EXPECT_THROW(ReadRecords("{\"efolder\": \"x"), MailboxError);
}

TEST_F(MailboxCheckTest, ASkippedMessageMustBeAccountedFor)
{
    const std::string skipped = LogOf("Inbox", 3, "2 passed, 0 failed, 1 skipped"),
                      again = LogOf("Inbox", 3, "0 passed, 0 failed, 3 skipped");
    const std::pair<std::string, std::string> first{"Inbox/0000_one.eml", kFirst},
        second{"Inbox/0001_two.eml", kSecond};
    const struct {
        const char* why;
        StoreFiles files;
        std::string log;
        std::size_t problems;
    } cases[] = {
        {"no log", {first, second}, "", 2},
        {"a message that was saved once and is gone", {first}, skipped + again, 3},
        {"failed is not skipped", {first, second}, LogOf("Inbox", 3, "2 passed, 1 failed, 0 skipped"), 2},
        {"another folder's skip", {first, second}, LogOf("Outbox", 3, "2 passed, 0 failed, 1 skipped"), 2},
        {"a second run skips all, but only one of them for good", {first, second}, skipped + again, 0},
    };
    for (const auto& c : cases) EXPECT_EQ(Problems(u"Inbox", c.files, c.log).size(), c.problems) << c.why;
    EXPECT_EQ(result.notes, Lines{"Inbox: row 2 (3) was skipped: a stored one looks the same in the list"});
}

} // namespace
