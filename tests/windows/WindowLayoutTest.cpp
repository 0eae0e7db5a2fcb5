// WindowLayoutTest.cpp: the main window's looks and keyboard: everything fits at any size and resolution, and
// everything can be reached. Run at other resolutions too.
#include "app/ControlTable.h"
#include "app/DialogUnitsWin.h"
#include "tests/windows/ProgramUnderTest.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

constexpr DWORD kPatience = 20000;
const std::wstring kTabs[] = {L"Actions", L"Store", L"Progress", L"Summary"};

BOOL CALLBACK Collect(HWND child, LPARAM list)
{
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
    return TRUE;
}

std::vector<HWND> Below(HWND window)
{
    std::vector<HWND> found;
    EnumChildWindows(window, Collect, reinterpret_cast<LPARAM>(&found));
    return found;
}

RECT PlaceOf(HWND window)
{
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

bool Contains(const RECT& outer, const RECT& inner)
{
    RECT both = {};
    UnionRect(&both, &outer, &inner);
    return EqualRect(&both, &outer);
}

std::wstring NameOf(HWND control)
{
    return std::to_wstring(GetDlgCtrlID(control)) + L" \"" + TextOf(control) + L"\"";
}

bool IsClass(HWND window, const wchar_t* name)
{
    return lstrcmpiW(ClassOf(window).c_str(), name) == 0;
}

SIZE Measure(std::wstring text, int weight)
{
    std::erase(text, L'&');
    LOGFONTW description = MessageFont();
    description.lfWeight = weight;
    const HFONT font = CreateFontIndirectW(&description);
    const HDC dc = GetDC(nullptr);
    const HGDIOBJ oldFont = SelectObject(dc, font);
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, oldFont);
    ReleaseDC(nullptr, dc);
    DeleteObject(font);
    return size;
}

class WindowLayoutTest : public testing::Test {
protected:
    // The commands as a synchronisation leaves them, without a client, which would take its time.
    void ShowAllCommands() const
    {
        for (const int id : {cmdGetID, cmdCheckFolder, cmdCheckAllFolders, cmdExport, cmdSaveAll})
            ShowWindow(program.Control(id), SW_SHOW);
        for (const HWND control : Below(program.Window()))
            if (TextOf(control).starts_with(L"<---")) ShowWindow(control, SW_HIDE);
    }
    void TurnTo(std::size_t tab) const
    {
        SendMessageW(program.Control(nTab), TCM_SETCURFOCUS, tab, 0);
        ASSERT_EQ(static_cast<std::size_t>(SendMessageW(program.Control(nTab), TCM_GETCURSEL, 0, 0)), tab);
    }
    void Resize(int width, int height) const
    {
        SetWindowPos(program.Window(), nullptr, 0, 0, width, height, SWP_NOZORDER);
    }
    bool WaitForFocus(int id) const
    {
        return Eventually([&] { return program.Focus() == program.Control(id); }, 5000);
    }
    std::vector<HWND> Shown() const
    {
        std::vector<HWND> controls = Below(program.Window());
        std::erase_if(controls, [](HWND control) { return !IsWindowVisible(control); });
        return controls;
    }
    // All that is shown stands within its parent and beside its neighbours.
    void ExpectOrder(const std::wstring& when) const
    {
        const std::vector<HWND> controls = Shown();
        const HWND strip = program.Control(nTab);
        for (const HWND control : controls) {
            const HWND parent = GetAncestor(control, GA_PARENT);
            if (parent != program.Window() && GetAncestor(parent, GA_PARENT) != program.Window()) continue;
            if (IsClass(parent, WC_LISTVIEWW) || IsClass(parent, WC_TREEVIEWW)) continue; // parts of these
            RECT area = {};
            GetClientRect(parent, &area);
            MapWindowPoints(parent, nullptr, reinterpret_cast<POINT*>(&area), 2);
            const RECT place = PlaceOf(control);
            EXPECT_TRUE(Contains(area, place)) << "outside: " << NameOf(control) << " " << when;
            EXPECT_GT(place.bottom - place.top, 8) << NameOf(control) << " " << when;
            for (const HWND other : controls) {
                if (other <= control || GetAncestor(other, GA_PARENT) != parent) continue;
                if (control == strip || other == strip) continue; // the pages lie on it
                RECT both = {};
                const RECT second = PlaceOf(other);
                EXPECT_FALSE(IntersectRect(&both, &place, &second))
                    << NameOf(control) << " over " << NameOf(other) << " " << when;
            }
        }
    }

    ProgramUnderTest program;
};

TEST_F(WindowLayoutTest, TextsFitTheirControls)
{
    ASSERT_TRUE(program.PassStartUp());
    Resize(100, 100); // as small as it gets
    const int box = GetSystemMetrics(SM_CXMENUCHECK), arrow = GetSystemMetrics(SM_CXVSCROLL);
    int measured = 0;
    for (const HWND control : Below(program.Window())) {
        const int id = GetDlgCtrlID(control);
        const auto style = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
        const bool button = IsClass(control, L"Button"), combo = id == cboComparison;
        if (!button && !combo && !IsClass(control, L"Static")) continue;
        if (id == OrbVac || id == lblOEFolder || id == lblStoreFolder || id == lblStorePath)
            continue;                                   // paths
        if (!button && !(style & WS_VISIBLE)) continue; // names for screen readers
        std::wstring text = TextOf(control);
        if (text.empty()) text = L"100000 out of 100000"; // the longest of the values
        RECT area = {};
        GetClientRect(control, &area);
        const SIZE size =
            Measure(text, RowOf(static_cast<ControlId>(id)).kind == Kind::heading ? FW_BOLD : FW_NORMAL);
        const bool hasBox = button && (style & BS_TYPEMASK) != BS_OWNERDRAW;
        const int beside = combo ? arrow + 6 : hasBox ? box + 4 : button ? size.cy : 0;
        EXPECT_LE(size.cx + beside, area.right) << NameOf(control);
        EXPECT_LE(size.cy, area.bottom) << NameOf(control);
        ++measured;
    }
    EXPECT_GT(measured, 40);
    EXPECT_EQ(SendMessageW(program.Control(nTab), TCM_GETROWCOUNT, 0, 0), 1);
}

TEST_F(WindowLayoutTest, EverySizeKeepsControlsInsideAndApart)
{
    ASSERT_TRUE(program.PassStartUp());
    ExpectOrder(L"before the first synchronisation");
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_TRUE(Contains(work, PlaceOf(program.Window())));
    ShowAllCommands();
    int treeHeight = 0;
    for (const int width : {100, 1600}) {
        Resize(width, width * 5 / 8);
        EXPECT_TRUE(Contains({0, 0, work.right + 20, work.bottom + 20}, PlaceOf(program.Window())));
        for (std::size_t tab = 0; tab < 4; ++tab) {
            TurnTo(tab);
            ExpectOrder(kTabs[tab] + L" at " + std::to_wstring(width));
        }
        const RECT tree = PlaceOf(program.Control(tvOETree));
        EXPECT_GE(tree.bottom - tree.top, treeHeight);
        treeHeight = tree.bottom - tree.top;
    }
    TurnTo(2);
    const HWND list = program.Control(lstProgress), table = program.Control(lvResults);
    for (const bool results : {true, false}) {
        SendMessageW(program.Control(results ? optResults : optLog), BM_CLICK, 0, 0);
        EXPECT_EQ(IsWindowVisible(table) != FALSE, results);
        EXPECT_EQ(IsWindowVisible(list) != FALSE, !results);
    }
}

TEST_F(WindowLayoutTest, KeyboardVisitsEverythingInOrder)
{
    ASSERT_TRUE(program.PassStartUp());
    ShowAllCommands();
    ASSERT_TRUE(WaitForFocus(cmdSync)) << "the keyboard is back on the button that a run had disabled";
    program.Type('r'); // the tree
    ASSERT_TRUE(WaitForFocus(tvOETree));
    program.Type(VK_TAB);
    ASSERT_TRUE(WaitForFocus(cmdOpenFolder));
    const std::vector<int> pages[] = {
        {cmdSync, cmdGetID, cmdChooseStore, cmdCheckFolder, cmdCheckAllFolders, cmdExport, cmdSaveAll,
         chkJumpRemain, chkSkipFiles, txtIgnore, cmdUseSelection},
        {Drive1, cmdNewFolder, Dir1, fileCheck, chkIDonly, chkSendKeys},
        {optLog, lstProgress},
        {txtSummary},
    };
    for (std::size_t tab = 0; tab < 4; ++tab) {
        TurnTo(tab);
        std::vector<int> expected = pages[tab];
        expected.insert(expected.end(), {nTab, tvOETree, cmdOpenFolder});
        for (const int next : expected) {
            program.Type(VK_TAB);
            ASSERT_TRUE(WaitForFocus(next))
                << kTabs[tab] << ": " << next << ", but the keyboard is on " << GetDlgCtrlID(program.Focus());
        }
    }
}

TEST_F(WindowLayoutTest, NamesAndMnemonicsAreThere)
{
    ASSERT_TRUE(program.PassStartUp());
    ShowAllCommands();
    for (const HWND control : Below(program.Window())) {
        if (IsClass(control, L"Button")) {
            EXPECT_NE(TextOf(control), L"") << GetDlgCtrlID(control);
        }
        const int id = GetDlgCtrlID(control);
        bool box = false;
        for (const int named : {tvOETree, cboComparison, txtIgnore, Drive1, Dir1, fileCheck, lstProgress,
                                lvResults, txtSummary})
            box = box || id == named;
        if (!box) continue;
        const HWND label = GetWindow(control, GW_HWNDPREV); // where screen readers look
        EXPECT_TRUE(label && IsClass(label, L"Static") && !TextOf(label).empty()) << id;
    }
    for (const int id : {cmdStopAfterEmail, cmdStopAfterFolder}) ShowWindow(program.Control(id), SW_SHOW);
    for (std::size_t tab = 0; tab < 4; ++tab) {
        TurnTo(tab);
        std::map<wchar_t, std::wstring> taken;
        for (const HWND control : Shown()) {
            const std::wstring text = TextOf(control);
            const std::size_t mark = text.find(L'&');
            if (mark == std::wstring::npos) continue;
            std::wstring& owner = taken[static_cast<wchar_t>(towupper(text[mark + 1]))];
            EXPECT_EQ(owner, L"") << text << " on " << kTabs[tab];
            owner = text;
        }
        EXPECT_GE(taken.size(), 3u) << kTabs[tab];
    }
}

TEST_F(WindowLayoutTest, EnterPressesTheMainButtonAndEscClosesNothing)
{
    ASSERT_TRUE(program.PassStartUp());
    const auto syncs = [&] {
        const std::vector<std::wstring> lines = LinesOf(program.Control(lstProgress));
        return std::count(lines.begin(), lines.end(), L"-- Syncing with OE --");
    };
    ASSERT_TRUE(WaitForFocus(cmdSync));
    program.Type(VK_RETURN); // the button that has the keyboard
    ASSERT_TRUE(Eventually([&] { return syncs() == 2; }, kPatience));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    program.Type('r'); // the tree has no use for Enter, so it presses what comes first on the way
    ASSERT_TRUE(WaitForFocus(tvOETree));
    program.Type(VK_RETURN);
    ASSERT_TRUE(Eventually([&] { return syncs() == 3; }, kPatience));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    program.Type(VK_ESCAPE);
    program.Type('o'); // to the list of folders, on the page "Store"
    EXPECT_TRUE(WaitForFocus(Dir1));
    EXPECT_EQ(SendMessageW(program.Control(nTab), TCM_GETCURSEL, 0, 0), 1);
    EXPECT_TRUE(program.Close());
}

// With the stand-in mail client.
class WindowKeyboardTest : public WindowLayoutTest {
protected:
    bool StartWithClient(const std::wstring& clientSwitches)
    {
        for (const wchar_t* folder : {L"mail", L"mail\\Inbox", L"store"})
            CreateDirectoryW((program.Folder() + folder).c_str(), nullptr);
        for (const wchar_t* name : {L"1", L"2", L"3"})
            program.Write(L"mail\\Inbox\\" + std::wstring(name) + L".eml",
                          "From: Ann <ann@example.com>\r\nSubject: Note " +
                              std::string(1, static_cast<char>(*name)) + "\r\n\r\nBody\r\n");
        const std::string folder(program.Folder().begin(), program.Folder().end());
        program.Write(L"settings.ini", "[Paths]\r\nStore=" + folder + "store\r\n");
        client.Start(L"\"" + FolderOfTests() + L"demo-client.exe\" --mail \"" + program.Folder() +
                         L"mail\" " + clientSwitches,
                     program.Folder());
        return WaitForWindow(client.Id(), L"Outlook Express Browser Class", L"", kPatience) &&
               program.Start();
    }
    bool Logged(const std::string& words) const
    {
        return program.Read(L"log.txt").find(words) != std::string::npos;
    }

    StartedProcess client;
};

TEST_F(WindowKeyboardTest, KeysAloneExportAFolder)
{
    ASSERT_TRUE(StartWithClient(L""));
    program.Type(VK_RETURN); // the start-up box
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    ASSERT_TRUE(WaitForFocus(cmdSync));
    program.Type('e');
    const HWND box = program.WaitForBox(L"Quillbox");
    ASSERT_TRUE(box);
    EXPECT_EQ(BoxWords(box), L"All emails for the selected folder have been exported.");
    program.Type(VK_RETURN);
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_TRUE(Logged("3 passed, 0 failed, 0 skipped"));
    ASSERT_TRUE(WaitForFocus(nTab)) << "the command's own page is hidden";
    PostMessageW(program.Focus(), WM_SYSKEYDOWN, VK_F4, 1 << 29);
    EXPECT_TRUE(program.Process().WaitForEnd(kPatience));
}

TEST_F(WindowKeyboardTest, StopButtonAnswersWhileASlowClientIsWaitedFor)
{
    ASSERT_TRUE(StartWithClient(L"--slow=1000"));
    program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    Press(program.Control(cmdExport));
    ASSERT_TRUE(Eventually([&] { return Logged("- Exporting"); }, kPatience));
    ExpectOrder(L"during a run");
    const HWND stop = program.Control(cmdStopAfterEmail);
    ASSERT_TRUE(IsWindowVisible(stop));
    SetForegroundWindow(program.Window());
    EXPECT_TRUE(WaitForFocus(cmdStopAfterEmail));
    PostMessageW(stop, WM_KEYDOWN, VK_ESCAPE, 0); // stops nothing
    Sleep(200);                                   // the client's dialog is due in 800 ms
    ASSERT_TRUE(IsWindowVisible(stop)) << "stopped by Esc";
    const DWORD start = GetTickCount();
    SendMessageW(stop, BM_CLICK, 0, 0);
    EXPECT_LT(GetTickCount() - start, 200u);
    EXPECT_FALSE(IsWindowVisible(stop));
    ExpectOrder(L"with one stop button");
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_TRUE(Logged("User aborted on email export."));
    EXPECT_TRUE(Logged("1 passed, 0 failed, 0 skipped"));
}

} // namespace
