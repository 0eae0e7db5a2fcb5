// MessageDetailsTest.cpp: what the selected row tells of its e-mail.
#include "oe/MessageDetails.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {
struct MessageDetailsTest : testing::Test, TreeBench {};
} // namespace

TEST_F(MessageDetailsTest, DetailsSayWhatIsMissing)
{
    const std::tuple<const char*, std::function<void(FakeClient&)>, Text> cases[] = {
        {"empty folder", [](FakeClient& f) { f.ShowFolder(1); }, u"ERROR: No items in message list."},
        {"no header", [](FakeClient& f) { f.noHeader = true; },
         u"ERROR: Could not find message list header."},
        {"no columns", [](FakeClient& f) { f.columnTitles.clear(); },
         u"ERROR: No columns in message list header."},
        {"nothing selected", [](FakeClient& f) { f.selected.clear(); },
         u"ERROR: No email selected from message list."},
        {"row 0", [](FakeClient&) {}, u"Message details found"},
        {"a row without a text is an e-mail all the same", [](FakeClient& f) { f.folders[2].rows[0] = {}; },
         u"Message details found"},
        {"an unread row", [](FakeClient& f) { f.failAt = kBeforeRow + 3; }, u"No message details found"},
    };
    for (const auto& [why, spoil, want] : cases) {
        TreeBench bench;
        bench.fake.calls.clear();
        spoil(bench.fake);
        FindOeHandles(bench.client);
        const MessageDetails details = GetMessageDetails(bench.client);
        EXPECT_EQ(bench.view.shown.back(), want) << why;
        EXPECT_EQ(bench.client.detailsFound, want == u"Message details found") << why;
        EXPECT_EQ(details.id, want.starts_with(u"ERROR") ? -1 : 0) << why;
    }
}

TEST_F(MessageDetailsTest, CellsBecomeAnEntry)
{
    fake.folders[2].rows[0] = {u"",
                               u"\"Ann\" <ann@example.com>; bob@example.com",
                               u" Caf\u00C3\u00A9\t  news ",
                               u"",
                               u"31/01/2007 10:15",
                               u"carol@example.com"};
    settings.timeOffset = 1;
    settings.applyDst = 1;
    clock.daylightSaving = true;
    const EmailEntry entry = BuildEmailEntry(client, GetMessageDetails(client));
    EXPECT_EQ(entry.From, (std::vector<Text>{u"ann@example.com", u"bob@example.com"}));
    EXPECT_EQ(entry.Subject, u"Caf\u00E9 news") << "UTF-8 that came as single bytes";
    EXPECT_EQ(entry.Received, kNoListDate) << "a missing date stays missing";
    EXPECT_EQ(locale.DateText(entry.Sent), u"28/02/2007 09:15:00") << "an hour less, then a month more";
    EXPECT_EQ(entry.row, 0);
    EXPECT_FALSE(entry.Crc.empty());
    settings.timeOffset = 1e6f;
    EXPECT_EQ(locale.DateText(BuildEmailEntry(client, GetMessageDetails(client)).Sent),
              u"31/01/2007 10:15:00")
        << "not moved out of the calendar";

    fake.columnTitles = {u"!", u"Von", u"Betreff", u"a", u"b", u"c"};
    const EmailEntry blank = BuildEmailEntry(client, GetMessageDetails(client));
    EXPECT_EQ(blank.From, std::vector<Text>{Text()}) << "no such column: one empty element";
    EXPECT_EQ(blank.Sent, kNoListDate);
}
