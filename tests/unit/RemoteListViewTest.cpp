// RemoteListViewTest.cpp: foreign memory, and reading the client's message list through it.
#include "oe/RemoteListView.h"
#include "oe/Conversation.h"
#include "tests/support/OeBench.h"

#include <array>
#include <gtest/gtest.h>

namespace {
struct RemoteListView : testing::Test, TreeBench {};

// Does the work again and again, each time with another of its calls for foreign memory refused, until it
// makes no call that was not; nothing stays behind.
void RefuseEachCall(OeBench& bench, const std::function<void()>& work, const std::function<void()>& expect)
{
    for (std::size_t n = 1;; ++n) {
        SCOPED_TRACE(testing::Message() << "call " << n);
        bench.fake.calls.clear();
        bench.fake.failAt = n;
        work();
        if (bench.fake.calls.size() < n) return;
        expect();
        bench.fake.failAt = 0;
        SweepRemoteMemory(bench.client.memory);
        EXPECT_EQ(bench.fake.LiveBlocks() + bench.fake.OpenHandles(), 0u);
    }
}
} // namespace

TEST_F(RemoteListView, ColumnsComeInDisplayOrderAndAreFoundByTitle)
{
    fake.columnTitles = {u"", u"Subject", u"From" + Text(300, u'x'), u"subject"};
    fake.columnOrder = {2, 3, 0, 1};
    EXPECT_EQ(ColumnIndexByTitle(client, u"Nonsense"), 0) << "kept: no columns known yet";
    fake.calls.clear();
    ReadListColumns(client);
    EXPECT_EQ(fake.calls,
              (std::vector<std::string>{"open", "alloc 16", "write 16", "read 16", "free", "close", "open",
                                        "alloc 2192", "write 2192", "read 2192", "free", "close"}));
    ASSERT_EQ(client.columns.size(), 4u);
    EXPECT_EQ(client.columns[0].title, u"From" + Text(251, u'x'));
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

TEST_F(RemoteListView, RowsAreReadWithOneTextMoreThanColumnsAndCut)
{
    fake.folders[2].rows[1][2] = Text(300, u'x') + u"\u20AC";
    fake.calls.clear();
    std::size_t messages = 0;
    fake.onMessage = [&](WindowHandle, std::uint32_t) { ++messages; };
    const std::vector<Text> texts = ReadItemTexts(client, 1);
    fake.onMessage = nullptr;
    ASSERT_EQ(texts.size(), 7u);
    EXPECT_EQ(messages, 2u + 7) << "the header, each cell";
    EXPECT_EQ(fake.calls,
              (std::vector<std::string>{"open", "alloc 3864", "write 3864", "read 3864", "free", "close"}));
    EXPECT_EQ(texts[1], u"Ann Archer");
    EXPECT_EQ(texts[2], Text(128, u'x'));
    EXPECT_EQ(texts[3], u"03/04/2007 10:16");
    EXPECT_EQ(texts[6], u"");
    EXPECT_EQ(ReadItemTexts(client, -1), std::vector<Text>(7));
    EXPECT_TRUE(ReadItemTexts(client, 99).empty()) << "a row that is gone";
    fake.mute = 6;
    EXPECT_EQ(ReadItemTexts(client, 1), texts) << "the list need not answer what lies beyond its columns";
    fake.mute = 5;
    EXPECT_TRUE(ReadItemTexts(client, 1).empty());
}

TEST_F(RemoteListView, ManyColumnsAreReadThroughOneSmallBlock)
{
    std::vector<Text>& row = fake.folders[2].rows[1];
    row.clear();
    for (int i = 0; i < 32; ++i) row.push_back(DecimalText(i) + Text(300, u'x'));
    fake.columnTitles.assign(40, u"");
    fake.calls.clear();
    const std::vector<Text> texts = ReadItemTexts(client, 1);
    ASSERT_EQ(texts.size(), 41u);
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(texts[i], i < row.size() ? row[i].substr(0, 128) : Text())
            << i << ": and none is another's";
    EXPECT_EQ(fake.calls[1], "alloc 7728");
    fake.calls.clear();
    fake.failAt = 3;
    EXPECT_TRUE(ReadItemTexts(client, 1).empty()) << "only the first cells could not be asked for";
    fake.failAt = 0;
    fake.mute = 39;
    EXPECT_TRUE(ReadItemTexts(client, 1).empty());
    fake.mute = 2000;
    fake.columnTitles.resize(1000);
    EXPECT_EQ(ReadItemTexts(client, 1).size(), 1001u);
    fake.columnTitles.resize(1001);
    EXPECT_TRUE(ReadItemTexts(client, 1).empty()) << "as many as no list has";
    EXPECT_FALSE(ReadListColumns(client));
}

TEST_F(RemoteListView, ARowIsReadWholeOrNotAtAll)
{
    std::vector<Text> own = MailRow(u"Three"), texts;
    own.emplace_back();
    RefuseEachCall(
        *this, [&] { texts = ReadItemTexts(client, 2); },
        [&] { EXPECT_TRUE(texts.empty() || texts == own); });
    EXPECT_EQ(texts, own);
}

TEST_F(RemoteListView, ARefusedCallNeverMovesATitleOrAFolderNameToAnother)
{
    const auto work = [&] {
        client.lstTree.clear();
        ReadListColumns(client);
        SetListItemState(client, 1, 3);
        WalkFolderTree(client);
    };
    RefuseEachCall(*this, work, [&] {
        for (const ListColumn& column : client.columns) {
            const Text& own = fake.columnTitles[static_cast<std::size_t>(column.index)];
            EXPECT_TRUE(!client.columnsKnown || column.title.empty() || column.title == own);
        }
        for (const OeFolder& folder : client.lstTree)
            EXPECT_TRUE(std::any_of(fake.folders.begin(), fake.folders.end(), [&](const FakeFolder& each) {
                return each.item == folder.item && each.name == folder.Name();
            }));
    });
    EXPECT_EQ(client.lstTree.size(), fake.folders.size()) << "the last round met no refusal";
}

TEST_F(RemoteListView, SelectingComparesACountWithAnIndex)
{
    SelectListItem(client, 1, OtherItems::clear);
    EXPECT_EQ(fake.selected, std::set<std::int32_t>{0}) << "kept: one row is selected, so row 1 is not";
    SelectListItem(client, 2, OtherItems::clear);
    EXPECT_EQ(fake.selected, std::set<std::int32_t>{2});
    SelectListItem(client, 0, OtherItems::keep);
    EXPECT_EQ(fake.selected, (std::set<std::int32_t>{0, 2}));
    EXPECT_EQ(std::count(view.shown.begin(), view.shown.end(), u"Listview select failed"), 0);
}

// The client's process gives whole pages, and would take the byte too many.
TEST(RemoteMemory, ACopyLargerThanItsBlockIsRefused)
{
    constexpr std::uint32_t kSize = 16;
    for (const std::uint32_t family : {2u, 1u}) { // VER_PLATFORM_WIN32_NT, and shared mappings before it
        OeBench bench({{u"Outlook Express", 0, {}}});
        bench.fake.platform = family;
        RemoteMemory& memory = bench.client.memory;
        const WindowHandle window = bench.fake.Find(u"Outlook Express Browser Class");
        const RemoteBlock block = RemoteAlloc(memory, window, kSize);
        std::array<char, kSize + 1> bytes;
        bytes.fill('x');
        EXPECT_TRUE(RemoteWrite(memory, block, bytes.data(), kSize)) << family;

        const auto before = bench.fake.calls;
        bytes.fill('y');
        EXPECT_FALSE(RemoteWrite(memory, block, bytes.data(), kSize + 1)) << family;
        EXPECT_FALSE(RemoteRead(memory, block, bytes.data(), kSize + 1)) << family;
        EXPECT_EQ(bytes, decltype(bytes){}) << "zeros, and not what the buffer held";
        EXPECT_EQ(bench.fake.calls, before) << "nothing was copied";

        EXPECT_TRUE(RemoteRead(memory, block, bytes.data(), kSize)) << family;
        EXPECT_EQ(std::string(bytes.data(), kSize), std::string(kSize, 'x')) << family;
        EXPECT_FALSE(RemoteWrite(memory, RemoteBlock{}, bytes.data(), 1)) << "a block that never was";
        RemoteFree(memory, block);
    }
}
