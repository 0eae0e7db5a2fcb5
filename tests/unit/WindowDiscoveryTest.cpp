// WindowDiscoveryTest.cpp: finding the client's windows.
#include "oe/Conversation.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

namespace {
struct WindowDiscovery : testing::Test, TreeBench {};
} // namespace

TEST_F(WindowDiscovery, SearchesMatchFragmentsInAnyCaseAndOnlyDirectChildren)
{
    Desktop& desktop = fake;
    const WindowHandle main = fake.Find(u"Outlook Express Browser Class");
    EXPECT_EQ(FindTopWindow(desktop, u"express browser"), main);
    EXPECT_EQ(FindTopWindowEx(desktop, u"INBOX", u""), main);
    EXPECT_EQ(FindTopWindowEx(desktop, u"Outbox", u"Browser"), 0);
    EXPECT_EQ(FindChildWindow(desktop, main, u"SysListView32"), 0) << "a grandchild";
    EXPECT_EQ(FindChildWindow(desktop, client.handles.messageList, u"syslistview32"),
              client.handles.listView);
    EXPECT_EQ(FindChildWindow(desktop, 0, u"Message List"), 0) << "parent 0 means top-level windows";
    EXPECT_EQ(FindChildWindow(desktop, 0, u"Browser"), main);
    EXPECT_EQ(FindSaveDialog(client), 0);
}

TEST_F(WindowDiscovery, DiscoveryTellsTheLastThingMissing)
{
    const auto expect = [](OeBench& bench, const std::vector<Text>& want, bool oe, bool list) {
        bench.view.shown.clear();
        FindOeHandles(bench.client);
        EXPECT_EQ(std::vector<Text>(bench.view.shown.begin() + 1, bench.view.shown.end()), want);
        EXPECT_EQ(bench.client.handles.oeFound, oe);
        EXPECT_EQ(bench.client.handles.listViewFound, list);
        EXPECT_TRUE(bench.view.log.empty()) << "display only";
    };
    expect(*this, {u"Outlook Express found"}, true, true);
    fake.End();
    expect(*this, {u"Could not find Outlook Express window"}, false, false);
    OeBench noView({});
    expect(noView,
           {u"List View could not be found.", u"Outlook Express found, but could not access message list."},
           true, false);
}

TEST_F(WindowDiscovery, KeysAndClicksAreTheMessagesOfAUser)
{
    const WindowHandle list = client.handles.listView;
    SendKey(client, list, 40, WithCharacter::no);
    SendKey(client, list, 40, WithCharacter::yes);
    SendClick(client, list);
    SendClick(client, list, MouseButton::right);
    const std::vector<std::pair<std::uint32_t, std::int32_t>> want = {{0x100, 40}, {0x101, 40}, {0x100, 40},
                                                                      {0x102, 40}, {0x101, 40}, {0x201, 0},
                                                                      {0x202, 0},  {0x204, 0},  {0x205, 0}};
    EXPECT_EQ(fake.input, want);
}
