// WindowLayoutTest.cpp: the main window's looks and keyboard: every row of the table is there as it says,
// everything fits at any size and resolution, and everything can be reached. Run at other resolutions too.
#include "app/ControlTable.h"
#include "app/DialogUnitsWin.h"
#include "platform/win32/WideText.h"
#include "tests/windows/MailRun.h"

#include <commctrl.h>

#include <algorithm>
#include <map>

namespace {

bool IsShown(HWND control)
{
    return (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0;
}

bool IsOneOf(Kind kind, std::initializer_list<Kind> kinds)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool IsPassedOver(Kind kind) // by the Tab key
{
    return IsOneOf(kind, {Kind::display, Kind::frame, Kind::page, Kind::label, Kind::heading, Kind::name,
                          Kind::hiddenName, Kind::nextChoice, Kind::storedBox, Kind::progressBar});
}

std::string NameOf(ControlId id)
{
    return std::to_string(id) + " \"" + ToUtf8(RowOf(id).caption) + "\"";
}

SIZE Measure(Text text, int weight)
{
    std::erase(text, u'&');
    LOGFONTW description = MessageFont();
    description.lfWeight = weight;
    const HFONT font = CreateFontIndirectW(&description);
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ oldFont = SelectObject(dc, font);
    SIZE size = {};
    GetTextExtentPoint32W(dc, Wide(text), static_cast<int>(text.size()), &size);
    SelectObject(dc, oldFont);
    ReleaseDC(nullptr, dc);
    DeleteObject(font);
    return size;
}

class WindowLayoutTest : public MailRun {
protected:
    HWND Parent(const ControlRow& row) const
    {
        return row.parent == onForm ? program.Window() : Control(row.parent);
    }
    // The commands as a synchronisation leaves them, without a client, which would take its time.
    void ShowAllCommands() const
    {
        for (const ControlRow& row : ControlRows()) {
            if (row.shown == Shown::onceSynchronised) ShowWindow(Control(row.id), SW_SHOW);
            if (row.shown == Shown::untilSynchronised) ShowWindow(Control(row.id), SW_HIDE);
        }
    }
    void TurnTo(std::size_t tab) const
    {
        SendMessageW(Control(nTab), TCM_SETCURFOCUS, tab, 0);
        ASSERT_EQ(static_cast<std::size_t>(SendMessageW(Control(nTab), TCM_GETCURSEL, 0, 0)), tab);
    }
    bool WaitForFocus(int id) const
    {
        return Eventually([&] { return program.Focus() == Control(id); }, kPatience);
    }
    // All that is shown stands within its parent and beside its neighbours.
    void ExpectOrder(const std::string& when) const
    {
        for (const ControlRow& row : ControlRows()) {
            const HWND control = Control(row.id);
            if (!IsWindowVisible(control)) continue;
            RECT area = {};
            GetClientRect(Parent(row), &area);
            MapWindowPoints(Parent(row), nullptr, reinterpret_cast<POINT*>(&area), 2);
            const RECT place = PlaceOf(control);
            EXPECT_TRUE(Encloses(area, place)) << "outside: " << NameOf(row.id) << " " << when;
            EXPECT_GT(place.bottom - place.top, 8) << NameOf(row.id) << " " << when;
            for (const ControlRow& other : ControlRows()) {
                if (other.id <= row.id || other.parent != row.parent || other.id == nTab)
                    continue; // pages lie on it
                RECT both = {};
                const RECT second = PlaceOf(Control(other.id));
                EXPECT_FALSE(IsWindowVisible(Control(other.id)) && IntersectRect(&both, &place, &second))
                    << NameOf(row.id) << " over " << NameOf(other.id) << " " << when;
            }
        }
    }
};

TEST_F(WindowLayoutTest, EveryRowIsThereAsItSays)
{
    ASSERT_TRUE(program.PassStartUp());
    std::map<HWND, HWND> before; // by parent: screen readers take a label's text for the name of what is next
    for (const ControlRow& row : ControlRows()) {
        const HWND control = Control(row.id);
        ASSERT_TRUE(control) << NameOf(row.id);
        ASSERT_EQ(GetParent(control), Parent(row)) << NameOf(row.id);
        EXPECT_EQ(GetWindow(control, GW_HWNDPREV), before[GetParent(control)]) << NameOf(row.id);
        before[GetParent(control)] = control;
        const Text text = row.caption;
        if (!text.empty() && !IsOneOf(row.kind, {Kind::tabStrip, Kind::comboBox, Kind::table})) {
            EXPECT_EQ(TextOf(control), Wide(text));
        }
        EXPECT_EQ(IsShown(control), row.id == fraActions || row.shown == Shown::always ||
                                        row.shown == Shown::whileIdle ||
                                        row.shown == Shown::untilSynchronised)
            << NameOf(row.id);
        EXPECT_EQ(IsWindowEnabled(control) == FALSE, row.needs == Needs::folders) << NameOf(row.id);
    }
}

TEST_F(WindowLayoutTest, TextsFitTheirControls)
{
    ASSERT_TRUE(program.PassStartUp());
    SetWindowPos(program.Window(), nullptr, 0, 0, 100, 100, SWP_NOZORDER); // as small as it gets
    const int box = GetSystemMetrics(SM_CXMENUCHECK), arrow = GetSystemMetrics(SM_CXVSCROLL);
    int measured = 0;
    for (const ControlRow& row : ControlRows()) {
        const bool hasBox = IsOneOf(row.kind, {Kind::checkBox, Kind::firstChoice, Kind::nextChoice});
        const bool isButton = IsOneOf(row.kind, {Kind::button, Kind::primaryButton});
        const bool isValue = row.parent == fraStats && row.caption[0] == u'-';
        if (!hasBox && !isButton &&
            !IsOneOf(row.kind, {Kind::label, Kind::heading, Kind::name, Kind::comboBox}))
            continue;
        const Text texts = isValue ? u"100000 out of 100000" : row.caption;
        for (std::size_t i = 1; !texts.empty() && i <= CountOf(texts, u",") + 1; ++i) {
            const Text text(row.kind == Kind::comboBox ? FieldOf(texts, u",", i) : TextView(texts));
            RECT area = {};
            GetClientRect(Control(row.id), &area);
            const SIZE size = Measure(text, row.kind == Kind::heading ? FW_BOLD : FW_NORMAL);
            const int beside = row.kind == Kind::comboBox ? arrow + 6
                               : hasBox                   ? box + 4
                               : isButton                 ? size.cy
                                                          : 0;
            EXPECT_LE(size.cx + beside, area.right) << NameOf(row.id) << ToUtf8(text);
            EXPECT_LE(size.cy, area.bottom) << NameOf(row.id);
            ++measured;
        }
    }
    EXPECT_GT(measured, 40);
    EXPECT_EQ(SendMessageW(Control(nTab), TCM_GETROWCOUNT, 0, 0), 1);
    EXPECT_EQ(SendMessageW(Control(lstProgress), LB_GETITEMHEIGHT, 0, 0), Measure(u"X", FW_NORMAL).cy)
        << "the user's font";
}

TEST_F(WindowLayoutTest, EverySizeKeepsControlsInsideAndApart)
{
    ASSERT_TRUE(program.PassStartUp());
    ExpectOrder("before the first synchronisation");
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_TRUE(Encloses(work, PlaceOf(program.Window())));
    ShowAllCommands();
    int treeHeight = 0;
    for (const int width : {100, 1600}) {
        SetWindowPos(program.Window(), nullptr, 0, 0, width, width * 5 / 8, SWP_NOZORDER);
        EXPECT_TRUE(Encloses({0, 0, work.right + 20, work.bottom + 20}, PlaceOf(program.Window())));
        for (std::size_t tab = 0; tab < std::size(fraTabs); ++tab) {
            TurnTo(tab);
            EXPECT_TRUE(IsWindowVisible(Control(fraTabs[tab])));
            ExpectOrder("on page " + std::to_string(tab) + " at " + std::to_string(width));
        }
        RECT form = {};
        GetClientRect(program.Window(), &form);
        MapWindowPoints(program.Window(), nullptr, reinterpret_cast<POINT*>(&form), 2);
        const RECT strip = PlaceOf(Control(nTab));
        EXPECT_EQ(form.right - strip.right, strip.left - form.left) << "as wide as the window";
        EXPECT_LT(form.bottom - strip.bottom, 20) << "down to its end";
        const RECT tree = PlaceOf(Control(tvOETree));
        EXPECT_GE(tree.bottom - tree.top, treeHeight);
        treeHeight = tree.bottom - tree.top;
    }
    const RECT list = PlaceOf(Control(lstProgress)), table = PlaceOf(Control(lvResults));
    EXPECT_TRUE(EqualRect(&list, &table));
    const auto expectResults = [&](bool shown) {
        EXPECT_EQ(IsShown(Control(lvResults)), shown);
        EXPECT_EQ(IsShown(Control(lstProgress)), !shown);
    };
    SendMessageW(Control(optResults), BM_CLICK, 0, 0);
    expectResults(true);
    SendMessageW(Control(optLog), BM_CLICK, 0, 0);
    expectResults(false);
    SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(lstProgress, LBN_DBLCLK), 0);
    expectResults(true);
}

TEST_F(WindowLayoutTest, ATipShowsWhereTheMouseRests)
{
    ASSERT_TRUE(program.PassStartUp());
    const auto isTipShown = [&] {
        return FindProgramWindow(program.Process().Id(), TOOLTIPS_CLASSW) != nullptr;
    };
    EXPECT_FALSE(isTipShown());
    const RECT place = PlaceOf(Control(cmdSync));
    SetCursorPos(place.left + 9, place.top + 9);
    EXPECT_TRUE(Eventually(isTipShown, kPatience));
}

TEST_F(WindowLayoutTest, KeyboardVisitsEverythingInOrder)
{
    ASSERT_TRUE(program.PassStartUp());
    ASSERT_TRUE(WaitForFocus(cmdSync)) << "the keyboard is back on the button that a run had disabled";
    program.Type('r'); // the tree; it has no use for Enter, so it presses what comes first on the way
    ASSERT_TRUE(WaitForFocus(tvOETree));
    const auto lines = [&] { return LinesOf(Control(lstProgress)); };
    const std::size_t first = lines().size();
    program.Type(VK_RETURN);
    ASSERT_TRUE(Eventually([&] { return lines().size() > first; }, kPatience));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_EQ(lines().back(), L"-- Syncing with OE --");
    program.Type('r'); // a button that is pressed takes the keyboard
    ASSERT_TRUE(WaitForFocus(tvOETree));
    program.Type(VK_ESCAPE); // closes nothing
    ShowAllCommands();
    for (std::size_t tab = 0; tab < std::size(fraTabs); ++tab) {
        TurnTo(tab);
        for (const ControlRow& row : ControlRows()) {
            if (row.id <= tvOETree || IsPassedOver(row.kind) || !IsWindowVisible(Control(row.id)) ||
                row.needs == Needs::folders) // there are none
                continue;
            program.Type(VK_TAB);
            ASSERT_TRUE(WaitForFocus(row.id))
                << NameOf(row.id) << ", but the keyboard is on " << GetDlgCtrlID(program.Focus());
        }
        program.Type(VK_TAB); // and around
        ASSERT_TRUE(WaitForFocus(tvOETree));
    }
}

TEST_F(WindowLayoutTest, KeysAloneExportAFolderAndStopIt)
{
    AddFolder(L"Inbox", 3);
    ASSERT_TRUE(Start("", L"--slow=1200")); // the export waits two seconds for the client's dialog
    ASSERT_TRUE(WaitForFocus(cmdSync));
    program.Type('e');
    ASSERT_TRUE(WaitForLog("- Exporting"));
    ExpectOrder("during a run");
    for (const ControlRow& row : ControlRows())
        EXPECT_EQ(IsWindowEnabled(Control(row.id)) != FALSE, row.needs == Needs::nothing) << NameOf(row.id);
    const LONG stopsEnd = PlaceOf(Control(cmdStopAfterEmail)).bottom;
    EXPECT_LT(PlaceOf(Control(lblOEFolder)).top - stopsEnd, 30) << "the pages take all the rest";
    // Each dialog of the client comes in front, and then nothing here has the keyboard.
    const auto press = [&](WORD key) { PostMessageW(Control(cmdStopAfterEmail), WM_KEYDOWN, key, 0); };
    SetForegroundWindow(program.Window());
    ASSERT_TRUE(WaitForFocus(cmdStopAfterEmail));
    press(VK_ESCAPE); // stops nothing
    Sleep(200);
    ASSERT_TRUE(IsShown(Control(cmdStopAfterEmail)));
    press(VK_RETURN);
    EXPECT_TRUE(Eventually([&] { return !IsShown(Control(cmdStopAfterEmail)); }, kPatience));
    SetForegroundWindow(program.Window());
    EXPECT_TRUE(WaitForFocus(cmdStopAfterFolder)) << "the other one has the keyboard now";
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_TRUE(Contains(Log(), "User aborted on email export."));
    EXPECT_TRUE(Contains(Log(), " passed, 0 failed, 0 skipped")) << Log();
    EXPECT_TRUE(Contains(Log(), "1 passed") || Contains(Log(), "2 passed")) << Log(); // not the third
    ExpectOrder("after a run");
    SetForegroundWindow(program.Window()); // the client's dialog has been in front
    ASSERT_TRUE(WaitForFocus(nTab)) << "the command's own page is hidden";
    PostMessageW(program.Focus(), WM_SYSKEYDOWN, VK_F4, 1 << 29);
    EXPECT_TRUE(program.Process().WaitForEnd(kPatience));
}

} // namespace
