// OeRegistryEditorTest.cpp: the tree and the list of a program that nobody here wrote, read from outside: the
// system's registry editor.
#include "oe/Conversation.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"
#include "platform/win32/WideText.h"
#include "tests/windows/ProgramUnderTest.h"
#include "tests/windows/WinOeBench.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <map>

namespace {

constexpr wchar_t kKey[] = L"Software\\Quillbox tests";
// The last one is longer than a cell that is read, and not of the ANSI code page.
const std::map<Text, Text> kValues = {{u"first", u"one"},
                                      {u"second", u"\u00A3 2"},
                                      {u"third", u""},
                                      {u"umlaut \u00C4", u"\u0416\u0443\u043A"},
                                      {u"very long", Text(100, u'x') + Text(100, u'\u03A9')}};

class OeRegistryEditor : public testing::Test, protected WinOeBench {
protected:
    void SetUp() override
    {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        for (const auto& [name, value] : kValues)
            RegSetValueExW(key, Wide(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(Wide(value)),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
        RegCloseKey(key);

        editor.Start(L"regedit.exe", FolderOfTests());
        ASSERT_TRUE(WaitForWindow(editor.Id(), L"RegEdit_RegEdit", L"", kPatience));
        const WindowHandle main = FindTopWindowEx(desktop, u"registry editor", u"RegEdit_RegEdit");
        const WindowHandle panes = FindChildWindow(desktop, main, u"REGEDIT");
        tree = FindChildWindowEx(desktop, panes, u"Tree View", u"SysTreeView32");
        client.handles.listView = FindChildWindow(desktop, panes, u"SysListView32");
        client.handles.listViewFound = client.handles.listView > 0;
        ASSERT_GT(tree, 0);
        ASSERT_TRUE(client.handles.listViewFound);
    }
    void TearDown() override { RegDeleteKeyW(HKEY_CURRENT_USER, kKey); }

    std::int32_t Next(int relation, std::int32_t item)
    {
        return desktop.Send(tree, TVM_GETNEXTITEM, relation, item).value;
    }
    std::map<Text, std::int32_t> ChildrenOf(std::int32_t item)
    {
        desktop.Send(tree, TVM_EXPAND, TVE_EXPAND, item);
        std::map<Text, std::int32_t> children;
        for (std::int32_t child = Next(TVGN_CHILD, item); child != 0; child = Next(TVGN_NEXT, child))
            children[ReadTreeItem(client, tree, child).text] = child;
        return children;
    }
    // The editor fills its list a moment after the selection.
    bool ShowTestKey()
    {
        std::int32_t item = Next(TVGN_ROOT, 0);
        for (const Text name : {u"HKEY_CURRENT_USER", u"Software", u"Quillbox tests"})
            item = ChildrenOf(item)[name];
        if (item == 0) return false;
        desktop.Send(tree, TVM_SELECTITEM, TVGN_CARET, item);
        const auto rows = static_cast<std::int32_t>(kValues.size()) + 1;
        return Eventually([&] { return ListItemCount(client) == rows; }, kPatience);
    }

    StartedProcess editor;
    WindowHandle tree = 0;
};

TEST_F(OeRegistryEditor, ItsTreeIsReadItemByItem)
{
    const std::int32_t root = Next(TVGN_ROOT, 0);
    const TreeItemReading top = ReadTreeItem(client, tree, root);
    EXPECT_EQ(top.text, u"My Computer");
    EXPECT_GE(top.children, 1);
    const std::map<Text, std::int32_t> hives = ChildrenOf(root);
    for (const Text name : {u"HKEY_CLASSES_ROOT", u"HKEY_CURRENT_USER", u"HKEY_LOCAL_MACHINE", u"HKEY_USERS"})
        EXPECT_TRUE(hives.count(name)) << ToUtf8(name);
    ASSERT_TRUE(ShowTestKey());
    EXPECT_EQ(ReadTreeItem(client, tree, Next(TVGN_CARET, 0)).text, u"Quillbox tests");
    EXPECT_EQ(ReadTreeItem(client, tree, Next(TVGN_CARET, 0)).children, 0);
    EXPECT_EQ(ReadTreeItem(client, tree, 0).text, u"") << "no item";
}

TEST_F(OeRegistryEditor, ItsListIsReadByColumnAndRowAndItsRowsAreSelected)
{
    ASSERT_TRUE(ShowTestKey());
    EXPECT_EQ(ListColumnCount(client), 3);
    ReadListColumns(client);
    ASSERT_TRUE(client.columnsKnown);
    std::vector<Text> titles;
    for (const ListColumn& column : client.columns) titles.push_back(column.title);
    EXPECT_EQ(titles, (std::vector<Text>{u"Name", u"Type", u"Data"}));
    EXPECT_EQ(ColumnIndexByTitle(client, u"DATA"), 2);

    std::map<Text, Text> seen;
    const std::int32_t rows = ListItemCount(client).value_or(-1);
    for (std::int32_t row = 0; row < rows; ++row) {
        const std::vector<Text> texts = ReadItemTexts(client, row);
        ASSERT_EQ(texts.size(), 4u);
        EXPECT_EQ(texts[1], u"REG_SZ") << row;
        EXPECT_EQ(texts[3], u"") << row;
        seen[texts[0]] = texts[2];
    }
    EXPECT_EQ(seen[u"(Default)"], u"(value not set)");
    seen.erase(u"(Default)");
    std::map<Text, Text> want = kValues;
    for (auto& [name, value] : want) value = value.substr(0, 128);
    EXPECT_EQ(seen, want);
    EXPECT_TRUE(ReadItemTexts(client, rows).empty()) << "behind the last row";

    SetListItemState(client, -1, 0);
    EXPECT_EQ(SelectedCount(client), 0);
    EXPECT_EQ(SelectedIndex(client), -1);
    SelectListItem(client, 3, OtherItems::clear);
    EXPECT_EQ(SelectedIndex(client), 3);
    SelectListItem(client, 2, OtherItems::keep);
    EXPECT_EQ(SelectedCount(client), 2);
    SelectListItem(client, 4, OtherItems::clear);
    EXPECT_EQ(SelectedCount(client), 1);
    EXPECT_EQ(SelectedIndex(client), 4);
    SendKey(client, client.handles.listView, VK_HOME, WithCharacter::no);
    EXPECT_EQ(SelectedIndex(client), 0);
    EXPECT_EQ(view.shown, std::vector<Text>{}) << "no line about a failure";
}

TEST_F(OeRegistryEditor, WhatStaysBehindInItsMemoryIsSwept)
{
    ASSERT_TRUE(ShowTestKey());
    const auto read = [this] {
        for (int reading = 0; reading < 3; ++reading) (void)ReadTreeItem(client, tree, Next(TVGN_CARET, 0));
    };
    read();
    SweepRemoteMemory(client.memory);
    read(); // the handle by which blocks are kept is open by now
    const std::vector<RemoteMemory::Block> left = client.memory.blocks;
    EXPECT_EQ(left.size(), 3u) << "one a reading";
    SweepRemoteMemory(client.memory);
    EXPECT_TRUE(client.memory.blocks.empty());
    for (const RemoteMemory::Block& block : left) {
        DWORD inherited = 0;
        EXPECT_FALSE(GetHandleInformation(reinterpret_cast<HANDLE>(block.process), &inherited))
            << "still open";
    }
    EXPECT_EQ(ReadItemTexts(client, 0).size(), 4u) << "and reading goes on";
}

} // namespace
