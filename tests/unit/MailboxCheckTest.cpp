// MailboxCheckTest.cpp: when an export counts as whole.
#include "demo/mailbox/Check.h"
#include "tests/support/MailDirectory.h"

#include <gtest/gtest.h>

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
        result = CheckFolder(root, folder, store.Path(), ReadExportLog(log));
        return result.problems.size();
    }

    MailFolder root{u"Local Folders",
                    {},
                    {{u"Inbox", {{u"1", kFirst}, {u"2", kSecond}, {u"3", kTwin}}, {}},
                     {u"Pro?", {{u"1", kSecond}}, {{u"Sub", {{u"1", kFirst}}, {}}}},
                     {u"Pro_", {{u"1", kFirst}}, {}}}};
    MailDirectory store;
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

TEST_F(MailboxCheckTest, FileOfTheRowWithTheSameBytesIsAnExport)
{
    store.Write("Local Folders/Inbox/0000_one.eml", kFirst);
    store.Write("Local Folders/Inbox/0001.eml", "stale");
    store.Write("Local Folders/Inbox/0001a.EML", kSecond);
    store.Write("Local Folders/Inbox/0002_one.eml", kTwin);
    EXPECT_EQ(Problems(u"Inbox", ""), 0u);
    EXPECT_EQ(result.exported, 3u);
    EXPECT_EQ(result.messages, 3u);
}

TEST_F(MailboxCheckTest, WrongNumberOrBytesIsNone)
{
    for (const char* name :
         {"00001_two.eml", "001_two.eml", "10001_two.eml", "0001_two.txt", "x0001_two.eml"})
        store.Write(std::string("Local Folders/Inbox/") + name, kSecond);
    store.Write("Local Folders/Inbox/0000_one.eml", std::string(kFirst) + " ");
    store.Write("Local Folders/Inbox/0002_one.eml", kFirst); // of the same length
    EXPECT_EQ(Problems(u"Inbox", ""), 4u);
    EXPECT_EQ(result.exported, 0u);
    EXPECT_EQ(result.problems[0], "Inbox: row 0 (1) differs from its file");
    EXPECT_EQ(result.problems[1], "Inbox: row 1 (2) is missing");
    EXPECT_EQ(result.problems[3], "Inbox: 3 not stored, 0 reported as skipped for good");
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
    const CheckResult all = CheckAll(root, store.Path(), {});
    EXPECT_EQ(all.exported, 3u);
    EXPECT_EQ(all.messages, 6u);
    EXPECT_EQ(all.problems.size(), 4u) << "the Inbox is missing, and its sum";
}

// "Pro" is not exported: it must not be looked for in the directory of "Pro file".
TEST_F(MailboxCheckTest, DirectoryOfAnotherFolderIsNotTaken)
{
    root.folders = {{u"Pro", {{u"1", kSecond}}, {}}, {u"Pro file", {{u"1", kFirst}}, {}}};
    store.Write("Local Folders/Pro file/0000_one.eml", kFirst);
    const CheckResult all = CheckAll(root, store.Path(), {});
    EXPECT_EQ(all.exported, 1u);
    EXPECT_EQ(all.problems[0], "Local Folders/Pro: row 0 (1) is missing");
}

TEST_F(MailboxCheckTest, UnknownFolderIsAnError)
{
    EXPECT_THROW(CheckFolder(root, u"inbox", store.Path(), {}), MailboxError);
}

} // namespace
