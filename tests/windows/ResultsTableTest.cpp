// ResultsTableTest.cpp: the results table as a real list shows it.
#include "app/Form1Results.h"
#include "platform/win32/WideText.h"
#include "platform/win32/WinLocale.h"

#include <commctrl.h>
#include <gtest/gtest.h>

namespace {

using Texts = std::vector<Text>;

int textsAsked = 0, changesTold = 0; // by lists

LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data)
{
    if (message == WM_NOTIFY) {
        auto& notice = *reinterpret_cast<NMHDR*>(lParam);
        if (notice.code == LVN_GETDISPINFOW && reinterpret_cast<NMLVDISPINFOW&>(notice).item.mask & LVIF_TEXT)
            ++textsAsked;
        changesTold += notice.code == LVN_ITEMCHANGED;
        return reinterpret_cast<Form1Results*>(data)->Answer(notice);
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

class ResultsTableTest : public testing::Test {
protected:
    ResultsTableTest()
    {
        InitCommonControls();
        parent = CreateWindowW(L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 600, 400, nullptr,
                               nullptr, nullptr, nullptr);
        SetWindowSubclass(parent, ParentProc, 1, reinterpret_cast<DWORD_PTR>(&results));
        list = CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA, 0, 0, 580,
                             300, parent, nullptr, nullptr, nullptr);
        SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
        for (int i = 0; i < 5; ++i) {
            LVCOLUMNW column = {};
            column.mask = LVCF_WIDTH;
            column.cx = 100;
            SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
        }
        results.Attach(list);
    }
    ~ResultsTableTest() override { DestroyWindow(parent); }

    // What the list shows of a cell.
    Text Shown(int row, ResultsColumn column) const
    {
        wchar_t text[2000] = L"from before";
        LVITEMW item = {};
        item.iSubItem = static_cast<int>(column);
        item.pszText = text;
        item.cchTextMax = 2000;
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        return FromWide(text);
    }
    Texts ShownIds() const
    {
        Texts ids;
        for (int i = 0; i < SendMessageW(list, LVM_GETITEMCOUNT, 0, 0); ++i)
            ids.push_back(Shown(i, ResultsColumn::id));
        return ids;
    }
    void Add(int id, const Text& subject = u"s")
    {
        results.Add({u"Inbox", DecimalText(id), subject, locale.DateText(39000 + id % 1000), u"A1"});
    }
    void Select(int row, bool selected = true, UINT state = LVIS_SELECTED)
    {
        LVITEMW item = {};
        item.state = selected ? state : 0;
        item.stateMask = state;
        SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
    Texts IdsOf(int kind) const // of LVM_GETNEXTITEM
    {
        Texts ids;
        LRESULT row = -1;
        while ((row = SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), kind)) >= 0)
            ids.push_back(Shown(static_cast<int>(row), ResultsColumn::id));
        return ids;
    }
    void Click(int row, int part, UINT press = WM_LBUTTONDOWN)
    {
        RECT place = {};
        place.left = part;
        SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
        // Boxes stand before the icon, of which there is none.
        const int x = part == LVIR_ICON ? place.left - 8 : (place.left + place.right) / 2;
        const int y = (place.top + place.bottom) / 2;
        PostMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        SendMessageW(list, press, MK_LBUTTON, MAKELPARAM(x, y));
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    Texts TickedIds() const
    {
        Texts ids;
        for (int i = 0; i < results.Count(); ++i)
            if (results.IsTicked(i)) ids.push_back(Cell(results.RowAt(i), ResultsColumn::id));
        return ids;
    }
    int Arrow(int column) const
    {
        HDITEMW header = {};
        header.mask = HDI_FORMAT;
        SendMessageW(reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0)), HDM_GETITEMW,
                     static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&header));
        return header.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    }

    WinLocale locale;
    Form1Results results{locale};
    HWND parent = nullptr, list = nullptr;
};

TEST_F(ResultsTableTest, TicksAndSelectionGoWithTheirRows)
{
    for (const int id : {10, 2, 30, 4}) Add(id);
    results.ShowAdded();
    for (const int row : {0, 2}) Select(row);
    results.TickRows(RowChoice::selected, true);
    EXPECT_EQ(TickedIds(), (Texts{u"10", u"30"}));
    results.SortBy(1);
    EXPECT_EQ(ShownIds(), (Texts{u"2", u"4", u"10", u"30"}));
    EXPECT_EQ(Shown(0, ResultsColumn{5}), u"") << "there is no such column";
    EXPECT_EQ(TickedIds(), (Texts{u"10", u"30"}));
    Select(3, false);
    results.TickRows(RowChoice::selected, false);
    EXPECT_EQ(TickedIds(), (Texts{u"30"})) << "10 is the only one still selected";
    results.TickRows(RowChoice::all, true);
    EXPECT_EQ(TickedIds().size(), 4u);
    results.Tick(0, false);
    SendMessageW(list, WM_KEYDOWN, VK_HOME, 0);
    SendMessageW(list, WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(TickedIds().size(), 4u) << "the space bar ticks";
}

TEST_F(ResultsTableTest, WhatIsSelectedStaysSoAmongRowsThatMove)
{
    for (const int id : {1, 2, 3}) Add(id, u"Re: " + DecimalText(id));
    results.SortBy(2);
    Select(1);
    Select(2);
    Select(2, true, LVIS_FOCUSED);
    SendMessageW(list, LVM_SETSELECTIONMARK, 0, 1);
    Add(4, u"Re: 0");
    Add(5, u"Re: 2b");
    results.ShowAdded();
    EXPECT_FALSE(GetUpdateRect(list, nullptr, FALSE)) << "a click meets what is seen";
    EXPECT_EQ(ShownIds(), (Texts{u"4", u"1", u"2", u"5", u"3"}));
    EXPECT_EQ(IdsOf(LVNI_SELECTED), (Texts{u"2", u"3"}));
    EXPECT_EQ(IdsOf(LVNI_FOCUSED), Texts{u"3"});
    EXPECT_EQ(SendMessageW(list, LVM_GETSELECTIONMARK, 0, 0), 2) << "where Shift began";
    results.SortBy(2);
    EXPECT_EQ(IdsOf(LVNI_SELECTED), (Texts{u"3", u"2"}));
    EXPECT_EQ(IdsOf(LVNI_FOCUSED), Texts{u"3"});
    EXPECT_EQ(SendMessageW(list, LVM_GETSELECTIONMARK, 0, 0), 2);
}

TEST_F(ResultsTableTest, AClickOnABoxTicksOnceAndTakesTheSelectionAlong)
{
    for (const int id : {1, 2, 3}) Add(id);
    results.ShowAdded();
    Click(1, LVIR_ICON);
    EXPECT_EQ(TickedIds(), Texts{u"2"});
    Click(1, LVIR_ICON, WM_LBUTTONDBLCLK);
    EXPECT_EQ(TickedIds(), Texts{}) << "the second of two quick clicks";
    Click(1, LVIR_LABEL);
    EXPECT_EQ(TickedIds(), Texts{});
    EXPECT_EQ(IdsOf(LVNI_SELECTED), Texts{u"2"});
    Select(0);
    Select(0, true, LVIS_FOCUSED);
    SendMessageW(list, WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(TickedIds(), (Texts{u"1", u"2"}));
    results.SortBy(0);
    SendMessageW(list, WM_CHAR, 'i', 1);
    EXPECT_EQ(IdsOf(LVNI_FOCUSED), Texts{u"2"}) << "letters go to the next row of such a folder";
    SendMessageW(list, WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(TickedIds(), (Texts{u"1", u"2"})) << "a space within the name of a folder";
    for (const WPARAM key : {VK_DOWN, VK_SPACE}) SendMessageW(list, WM_KEYDOWN, key, 0);
    EXPECT_EQ(TickedIds(), (Texts{u"1", u"2", u"3"}));
}

TEST_F(ResultsTableTest, TheArrowShowsTheOrderAsLongAsItHolds)
{
    for (const int id : {2, 1}) Add(id);
    results.SortBy(1);
    EXPECT_EQ(Arrow(1), HDF_SORTUP);
    results.SortBy(2);
    EXPECT_EQ(Arrow(1), 0);
    EXPECT_EQ(Arrow(2), HDF_SORTDOWN);
    Add(3, u"t");
    results.ShowAdded();
    EXPECT_EQ(Shown(0, ResultsColumn::id), u"3") << "in its place";
    EXPECT_EQ(Arrow(2), HDF_SORTDOWN);
    results.SortBy(1);
    Add(0);
    results.ShowAdded();
    EXPECT_EQ(ShownIds().back(), u"0");
    EXPECT_EQ(Arrow(1), 0) << "the row at the end is out of order";
    results.Clear();
    EXPECT_EQ(results.Count() + SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 0);
}

// A list of a hundred thousand rows stays usable only so.
TEST_F(ResultsTableTest, SortingAndTickingAskAndChangeNothingThatIsNotSeen)
{
    for (int id = 0; id < 1000; ++id) Add(id * 7919 % 1000);
    results.ShowAdded();
    Select(-1);
    textsAsked = changesTold = 0;
    for (const int column : {1, 2, 3}) results.SortBy(column);
    EXPECT_EQ(changesTold, 0) << "nor is what stays selected selected again";
    results.TickRows(RowChoice::all, true);
    EXPECT_TRUE(results.IsTicked(999));
    UpdateWindow(list);
    EXPECT_LT(textsAsked, 5 * 5 * 50);
    results.Tick(0, false);
    EXPECT_TRUE(GetUpdateRect(list, nullptr, FALSE)) << "the box is drawn anew";
    Select(0, true, LVIS_FOCUSED);
    SendMessageW(list, LVM_ENSUREVISIBLE, 900, FALSE);
    const LRESULT top = SendMessageW(list, LVM_GETTOPINDEX, 0, 0);
    Add(1000);
    results.ShowAdded();
    EXPECT_EQ(SendMessageW(list, LVM_GETTOPINDEX, 0, 0), top) << "what is read does not move away";
}

} // namespace
