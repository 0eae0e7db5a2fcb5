// OeReadingTest.cpp: finding the client's windows and reading its list and tree through foreign memory.
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteControls.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"
#include "tests/support/OeBench.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const std::vector<FakeFolder> kFolders = {
    {u"Outlook Express", 0, {}},
    {u"Local Folders", 1, {}},
    {u"Inbox", 2, {MailRow(u"One"), MailRow(u"Two"), MailRow(u"Three")}},
    {u"Work", 3, {MailRow(u"Report")}},
    {u"-Dashes-", 2, {}},
};

struct OeReading : testing::Test, OeBench {
    OeReading() : OeBench(kFolders)
    {
        fake.ShowFolder(2);
        FindOeHandles(client);
    }
};

} // namespace

TEST_F(OeReading, SearchesMatchFragmentsInAnyCaseAndOnlyDirectChildren)
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
    EXPECT_EQ(WaitForTopWindow(client, u"Save Message As", u"#32770", 3), 0);
    EXPECT_EQ(fake.sleeps, 3);
}

TEST_F(OeReading, DiscoveryTellsTheLastThingMissing)
{
    struct Case {
        const char* why;
        Text gone; // window class whose window is missing
        std::vector<Text> want;
        bool oe, list;
    };
    const Case cases[] = {
        {"all there", u"", {u"Outlook Express found"}, true, true},
        {"an empty view",
         u"Outlook Express Message List",
         {u"List View could not be found.", u"Outlook Express found, but could not access message list."},
         true,
         false},
        {"nothing at all", u"*", {u"Could not find Outlook Express window"}, false, false},
    };
    for (const Case& c : cases) {
        OeBench bench(c.gone == u"Outlook Express Message List" ? std::vector<FakeFolder>{} : kFolders);
        if (c.gone == u"*") static_cast<FakeClient&>(bench.fake).Close();
        FindOeHandles(bench.client);
        const std::vector<Text> said(bench.view.shown.begin() + 1, bench.view.shown.end());
        EXPECT_EQ(said, c.want) << c.why;
        EXPECT_EQ(bench.client.handles.oeFound, c.oe) << c.why;
        EXPECT_EQ(bench.client.handles.listViewFound, c.list) << c.why;
        EXPECT_TRUE(bench.view.log.empty()) << c.why << ": display only";
    }
}

TEST_F(OeReading, ColumnsComeInDisplayOrderAndAreFoundByTitle)
{
    fake.columnTitles = {u"", u"Subject", u"From", u"subject"};
    fake.columnOrder = {2, 3, 0, 1};
    EXPECT_EQ(ColumnIndexByTitle(client, u"Nonsense"), 0) << "kept: no columns known yet";
    ReadListColumns(client);
    ASSERT_EQ(client.columns.size(), 4u);
    EXPECT_EQ(client.columns[0].title, u"From");
    EXPECT_EQ(ColumnIndexByTitle(client, u"SUBJECT"), 3) << "the leftmost of two on the screen";
    EXPECT_EQ(ColumnIndexByTitle(client, u""), -1) << "a column without a title is never found";
    EXPECT_EQ(ColumnIndexByTitle(client, u"Sent"), -1);

    fake.columnTitles = {u"Subject"};
    fake.columnOrder = {0};
    ReadListColumns(client);
    EXPECT_FALSE(client.columnsKnown) << "kept: a single column yields no titles";
    fake.columnTitles = {u"", u""};
    fake.columnOrder = {0, 1};
    EXPECT_TRUE(ReadListColumns(client)) << "it has answered";
    EXPECT_EQ(ColumnIndexByTitle(client, u"Subject"), 0) << "kept: nor do titles that are all empty";
}

TEST_F(OeReading, RowsAreReadWithOneTextMoreThanColumnsAndCut)
{
    fake.folders[2].rows[1][2] = Text(300, u'x') + u"\u20AC";
    const std::vector<Text> texts = ReadItemTexts(client, 1);
    ASSERT_EQ(texts.size(), 7u);
    EXPECT_EQ(texts[1], u"Ann Archer");
    EXPECT_EQ(texts[2], Text(128, u'x'));
    EXPECT_EQ(texts[3], u"03/04/2007 10:16");
    EXPECT_EQ(texts[6], u"");
    EXPECT_EQ(ReadItemTexts(client, -1), std::vector<Text>(7));
    EXPECT_TRUE(ReadItemTexts(client, 99).empty()) << "a row that is gone";
}

TEST_F(OeReading, ARowTakesItsBlocksAndSweepingTakesWhatStaysBehind)
{
    fake.columnTitles = {u"From", u"Subject"};
    fake.calls.clear();
    ReadItemTexts(client, 0);
    const std::vector<std::string> want = {"open",     "alloc 40", "open",     "alloc 256", "write 40",
                                           "read 256", "write 40", "read 256", "write 40",  "read 256",
                                           "free",     "close",    "free",     "close"};
    EXPECT_EQ(fake.calls, want);
    EXPECT_EQ(fake.LiveBlocks(), 1u) << "kept: the first block stays behind";
    EXPECT_EQ(fake.OpenHandles(), 1u);
    for (int row = 0; row < 3; ++row) ReadItemTexts(client, row);
    SweepRemoteMemory(client.memory);
    EXPECT_EQ(fake.LiveBlocks(), 0u);
    EXPECT_EQ(fake.OpenHandles(), 0u);
}

TEST_F(OeReading, ARowIsReadWholeOrNotAtAll)
{
    std::vector<Text> own = MailRow(u"Three");
    own.emplace_back();
    for (std::size_t n = 1;; ++n) {
        fake.calls.clear();
        fake.failAt = n;
        const std::vector<Text> texts = ReadItemTexts(client, 2);
        if (fake.calls.size() < n) break;
        EXPECT_TRUE(texts.empty() || texts == own) << "call " << n;
        fake.failAt = 0;
        SweepRemoteMemory(client.memory);
        EXPECT_EQ(fake.LiveBlocks(), 0u) << "call " << n;
        EXPECT_EQ(fake.OpenHandles(), 0u) << "call " << n;
    }
}

TEST_F(OeReading, ARefusedCallNeverMovesATitleOrAFolderNameToAnother)
{
    for (std::size_t n = 1;; ++n) {
        fake.calls.clear();
        fake.failAt = n;
        client.lstTree.clear();
        ReadListColumns(client);
        SetListItemState(client, 1, 3);
        WalkFolderTree(client);
        if (fake.calls.size() < n) break;
        for (const ListColumn& column : client.columns) {
            if (!client.columnsKnown) break;
            const Text& own = fake.columnTitles[static_cast<std::size_t>(column.index)];
            EXPECT_TRUE(column.title.empty() || column.title == own) << "call " << n;
        }
        for (const OeFolder& folder : client.lstTree) {
            const auto own = std::find_if(fake.folders.begin(), fake.folders.end(),
                                          [&](const FakeFolder& each) { return each.item == folder.item; });
            ASSERT_NE(own, fake.folders.end()) << "call " << n;
            EXPECT_EQ(folder.Name(), own->name) << "call " << n;
        }
        fake.failAt = 0;
        SweepRemoteMemory(client.memory);
        EXPECT_EQ(fake.LiveBlocks(), 0u) << "call " << n;
        EXPECT_EQ(fake.OpenHandles(), 0u) << "call " << n;
    }
    EXPECT_EQ(client.lstTree.size(), kFolders.size()) << "the last round met no refusal";
}

TEST_F(OeReading, KeysAndClicksAreTheMessagesOfAUser)
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

TEST_F(OeReading, TheOldFamilyGoesThroughSharedMappings)
{
    fake.platform = 1;
    EXPECT_EQ(ReadItemTexts(client, 2)[2], u"Three");
    EXPECT_EQ(fake.calls.front(), "map 40");
    OeBench bench(kFolders);
    bench.fake.platformFailures = 1;
    EXPECT_FALSE(IsNtPlatform(bench.client.memory));
    EXPECT_TRUE(IsNtPlatform(bench.client.memory)) << "asked again until one ask succeeds";
}

TEST_F(OeReading, SelectingComparesACountWithAnIndex)
{
    SelectListItem(client, 1, OtherItems::clear);
    EXPECT_EQ(fake.selected, std::set<std::int32_t>{0}) << "kept: one row is selected, so row 1 is not";
    SelectListItem(client, 2, OtherItems::clear);
    EXPECT_EQ(fake.selected, std::set<std::int32_t>{2});
    SelectListItem(client, 0, OtherItems::keep);
    EXPECT_EQ(fake.selected, (std::set<std::int32_t>{0, 2}));
    EXPECT_EQ(std::count(view.shown.begin(), view.shown.end(), u"Listview select failed"), 0);
}

TEST_F(OeReading, TheTreeIsWalkedDepthFirst)
{
    WalkFolderTree(client);
    std::vector<Text> lines;
    for (const OeFolder& folder : client.lstTree) lines.push_back(folder.text);
    EXPECT_EQ(lines, (std::vector<Text>{u"Outlook Express", u"-Local Folders", u"--Inbox", u"---Work",
                                        u"---Dashes-"}));
    EXPECT_EQ(client.lstTree[4].Name(), u"-Dashes-");
    EXPECT_EQ(CurrentFolderIndex(client), 2);
    client.lstTree[2].item += 1; // as after a restart of the client
    EXPECT_EQ(CurrentFolderIndex(client), 0);
    EXPECT_EQ(ShownFolder(client), std::nullopt);
}

TEST_F(OeReading, AFolderChangeWaitsForCountAndCaption)
{
    struct Case {
        const char* why;
        int from, to, refreshAfter;
        bool want;
        int sleeps;
        bool keepsList = false;
    };
    const Case cases[] = {
        {"at once", 2, 3, 0, true, 0},
        {"a list that is rebuilt: the old one counts nothing", 3, 5, 0, true, 0},
        {"after a while", 2, 3, 5, true, 5},
        {"just in time", 2, 3, 30, true, 30},
        {"too late", 2, 3, 31, false, 31},
        {"an empty folder after an empty one: the first wait", 1, 4, 0, true, 1},
        {"kept: the same count in the same list never passes", 3, 5, 0, false, 31, true},
        {"already there", 2, 2, 0, true, 0},
    };
    for (const Case& c : cases) {
        std::vector<FakeFolder> folders = kFolders;
        folders.push_back({u"Other", 2, {MailRow(u"Single")}});
        OeBench bench(folders);
        bench.fake.ShowFolder(c.from);
        FindOeHandles(bench.client);
        WalkFolderTree(bench.client);
        bench.fake.keepsList = c.keepsList;
        bench.fake.refreshAfter = c.refreshAfter;
        bench.fake.keys.clear();
        EXPECT_EQ(ChangeFolder(bench.client, c.to, folders[static_cast<std::size_t>(c.to)].name), c.want)
            << c.why;
        EXPECT_EQ(bench.fake.sleeps, c.sleeps) << c.why;
        EXPECT_EQ(bench.flags.stopAfterEmail && bench.flags.stopAfterFolder, !c.want) << c.why;
        EXPECT_FALSE(bench.flags.stopRequested) << c.why << ": the program's own abort";
        const bool home = !bench.fake.keys.empty() && bench.fake.keys.back().second == 0x24;
        EXPECT_EQ(home, c.want && c.from != c.to) << c.why;
        const Text failed = u"Outlook Express failed to change folders.";
        EXPECT_EQ(bench.view.log, c.want ? std::vector<Text>{} : std::vector<Text>{failed}) << c.why;
    }
}

TEST_F(OeReading, AListSeenChangingRightAfterTheSelectionCounts)
{
    // Both folders hold one message, and the list is empty while the client fills it.
    fake.ShowFolder(3);
    fake.folders[4].rows.clear();
    fake.keepsList = true;
    FindOeHandles(client);
    WalkFolderTree(client);
    int counts = 0;
    fake.onMessage = [&](WindowHandle, std::uint32_t message) {
        if (message == message::kListItemCount && ++counts == 3) fake.folders[4].rows = {MailRow(u"Single")};
    };
    EXPECT_TRUE(ChangeFolder(client, 4, u"-Dashes-"));
    EXPECT_EQ(fake.sleeps, 0);
}

TEST_F(OeReading, TheSettleTimeIsSleptInFull)
{
    WalkFolderTree(client);
    settings.settleTime = 1.25f;
    ChangeFolder(client, 3, u"Work");
    EXPECT_EQ(fake.sleptMilliseconds, 1250);

    // A stop is told what it waits for, and does not shorten it.
    int events = 0;
    view.shown.clear();
    view.onEvents = [&] { flags.stopRequested = ++events > 5; };
    ChangeFolder(client, 2, u"Inbox");
    EXPECT_EQ(fake.sleptMilliseconds, 2500);
    EXPECT_GE(events, 25) << "the window lives";
    std::vector<Text> told;
    std::copy_if(view.shown.begin(), view.shown.end(), std::back_inserter(told),
                 [](const Text& line) { return line.starts_with(u"Stopping"); });
    EXPECT_EQ(told, (std::vector<Text>{u"Stopping when Outlook Express has settled, in 2 s",
                                       u"Stopping when Outlook Express has settled, in 1 s"}));
    view.onEvents = [this] { flags.closing = fake.sleptMilliseconds >= 2800; };
    ChangeFolder(client, 3, u"Work");
    EXPECT_LE(fake.sleptMilliseconds, 2900) << "only closing ends it";
}

TEST_F(OeReading, AFolderThatTheClientCannotShowEndsTheRun)
{
    const Text silent = u"Outlook Express has stopped responding - please restart Outlook Express.";
    struct Case {
        const char* why;
        std::function<void(FakeClient&)> spoil; // when the folder is selected
        bool want;
        int atMost; // milliseconds
        std::vector<Text> log;
    };
    const Text again = u"Waiting for Outlook Express to answer again";
    const Case cases[] = {
        {"silent for good",
         [](FakeClient& f) { f.FallSilent(2'000'000'000); },
         false,
         122'000,
         {again, silent}},
        {"back in time", [](FakeClient& f) { f.FallSilent(80'000); }, true, 84'000, {again}},
        {"a list without columns", [](FakeClient& f) { f.columnTitles.clear(); }, false, 0, {silent}},
    };
    for (const Case& c : cases) {
        OeBench bench(kFolders);
        bench.fake.ShowFolder(2);
        FindOeHandles(bench.client);
        WalkFolderTree(bench.client);
        bench.fake.onMessage = [&, selects = 0](WindowHandle, std::uint32_t message) mutable {
            if (message == message::kTreeSelectItem && ++selects == 2) c.spoil(bench.fake);
        };
        EXPECT_EQ(ChangeFolder(bench.client, 3, u"Work"), c.want) << c.why;
        EXPECT_EQ(bench.flags.stopAfterEmail && bench.flags.stopAfterFolder, !c.want) << c.why;
        EXPECT_LE(bench.fake.sleptMilliseconds, c.atMost) << c.why;
        EXPECT_EQ(bench.view.log, c.log) << c.why;
    }
}

TEST_F(OeReading, OnlyClosingShortensTheSettleTime)
{
    WalkFolderTree(client);
    settings.settleTime = 1500; // somebody meant milliseconds
    view.onEvents = [this] {
        if (fake.sleptMilliseconds >= 5000) flags.stopAfterFolder = flags.stopRequested = true;
        if (fake.sleptMilliseconds >= 20000) flags.closing = true;
    };
    EXPECT_FALSE(ChangeFolder(client, 3, u"Work"));
    EXPECT_EQ(fake.sleptMilliseconds, 20000);
    EXPECT_EQ(std::count(view.shown.begin(), view.shown.end(),
                         u"Stopping when Outlook Express has settled, in 1490 s"),
              1)
        << "what a stop waits for, once a second";
}

TEST_F(OeReading, DetailsSayWhatIsMissing)
{
    struct Case {
        const char* why;
        std::function<void(FakeClient&)> spoil;
        Text want;
    };
    const Case cases[] = {
        {"empty folder", [](FakeClient& f) { f.ShowFolder(1); }, u"ERROR: No items in message list."},
        {"no columns", [](FakeClient& f) { f.columnTitles.clear(); },
         u"ERROR: No columns in message list header."},
        {"nothing selected", [](FakeClient& f) { f.selected.clear(); },
         u"ERROR: No email selected from message list."},
        {"row 0", [](FakeClient&) {}, u"Message details found"},
        {"a row without a text is an e-mail all the same", [](FakeClient& f) { f.folders[2].rows[0] = {}; },
         u"Message details found"},
        {"an unread row", [](FakeClient& f) { f.failAt = kBeforeRow + 8; }, u"No message details found"},
    };
    for (const Case& c : cases) {
        OeBench bench(kFolders);
        bench.fake.ShowFolder(2);
        c.spoil(bench.fake);
        FindOeHandles(bench.client);
        const MessageDetails details = GetMessageDetails(bench.client);
        EXPECT_EQ(bench.view.shown.back(), c.want) << c.why;
        EXPECT_EQ(bench.client.detailsFound, c.want == u"Message details found") << c.why;
        EXPECT_EQ(details.id, c.want.starts_with(u"ERROR") ? -1 : 0) << c.why;
    }
}

TEST_F(OeReading, CellsBecomeAnEntry)
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

TEST_F(OeReading, FolderEntriesAreSortedButKeepTheirRows)
{
    fake.folders[2].rows = {MailRow(u"c", u"05/05/2008 10:00"),
                            MailRow(u"a", u"01/05/2008 10:00"),
                            MailRow(u"b", u"03/05/2008 10:00"),
                            {u"", u"x", u"none", u"", u"", u""}};
    std::vector<int> percent;
    ReadFolderEntries(client, [&](int value) { percent.push_back(value); });
    std::vector<std::int32_t> rows;
    for (const EmailEntry& entry : client.folderEntries) rows.push_back(entry.row);
    EXPECT_EQ(rows, (std::vector<std::int32_t>{3, 1, 2, 0}));
    EXPECT_EQ(percent, (std::vector<int>{0, 33, 67, 100}));
    EXPECT_EQ(fake.LiveBlocks(), 0u);

    fake.folders[2].rows.resize(1);
    percent.clear();
    ReadFolderEntries(client, [&](int value) { percent.push_back(value); });
    EXPECT_EQ(percent, std::vector<int>{100}) << "one row only";
    fake.folders[2].rows.clear();
    ReadFolderEntries(client, [&](int value) { percent.push_back(value); });
    EXPECT_TRUE(client.folderEntries.empty()) << "those of the folder before are not this one's";
}
