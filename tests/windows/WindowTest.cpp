// WindowTest.cpp: the program as it starts, shows itself and closes, without and with a mail client.
#include "app/Form1Results.h"
#include "controls/OrbPalette.h"
#include "tests/windows/ProgramUnderTest.h"
#include "tests/windows/SystemColours.h"

#include <commctrl.h>
#include <gtest/gtest.h>

namespace {

bool IsShown(HWND control)
{
    return (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0;
}

int Count(const std::string& text, const std::string& sought)
{
    int count = 0;
    for (std::size_t at = text.find(sought); at != std::string::npos; at = text.find(sought, at + 1)) ++count;
    return count;
}

// log.txt without the time stamps.
std::string Messages(const std::string& log)
{
    std::string messages;
    for (std::size_t at = 0; at < log.size();) {
        const std::size_t end = log.find("\r\n", at);
        if (end == std::string::npos) return messages + "(no line end)";
        if (end - at >= 20)
            messages += log.substr(at + 20, end - at - 20) + "\n";
        else
            messages += "(no time stamp)\n";
        at = end + 2;
    }
    return messages;
}

const std::string kSixtyOneHyphens(61, '-');

TEST(WindowTest, StartsAndClosesWithoutSettingsAndClient)
{
    ProgramUnderTest program;
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(TextOf(program.Window()), L"Quillbox v1.0.0 - The Quillbox project");
    const HWND box = program.WaitForBox(L"IMPORTANT! Please Read");
    EXPECT_NE(BoxWords(box).find(L"you must not move the mouse or press any keys"), std::wstring::npos);
    EXPECT_EQ(program.Read(L"log.txt"), "") << "the warning comes before the first line";
    EXPECT_FALSE(IsWindowEnabled(program.Control(cmdSync)));

    program.PressOk(box);
    ASSERT_TRUE(program.WaitUntilIdle(20000));
    EXPECT_EQ(TextOf(program.Control(OrbVac)), L"Could not find Outlook Express window");
    EXPECT_FALSE(IsShown(program.Control(cmdExport))) << "nothing to export before a synchronisation";
    EXPECT_FALSE(IsShown(program.Control(cmdGetID)));
    EXPECT_EQ(LinesOf(program.Control(lstProgress)),
              (std::vector<std::wstring>{std::wstring(61, L'-'), L"Started Quillbox - 1.0.0",
                                         L"-- Syncing with OE --"}));
    ASSERT_TRUE(program.Close());
    EXPECT_EQ(Messages(program.Read(L"log.txt")), kSixtyOneHyphens +
                                                      "\nStarted Quillbox - 1.0.0\n"
                                                      "-- Syncing with OE --\nClosing Quillbox\n");
    const std::string folder(program.Folder().begin(), program.Folder().end() - 1);
    EXPECT_EQ(program.Read(L"settings.ini"), "[Paths]\r\nStore=" + folder +
                                                 "\r\n"
                                                 "[Options]\r\n"
                                                 "ID only=0\r\n"
                                                 "Sendkeys=0\r\n"
                                                 "First folder to ignore=Deleted Items\r\n"
                                                 "Skip Identical Files=0\r\n"
                                                 "Jump to remaining=0\r\n"
                                                 "System Folders=|local folders|\r\n"
                                                 "First folder=Local Folders\r\n"
                                                 "Tree Separator=[ - ]\r\n"
                                                 "OE Folder Settle Time=0\r\n"
                                                 "Apply DST=0\r\n"
                                                 "Time Offset=0\r\n");
    EXPECT_NE(program.Read(L"saved.mdb"), "");
}

TEST(WindowTest, SettingsComeBackAndUnknownSectionsStay)
{
    ProgramUnderTest program;
    CreateDirectoryW((program.Folder() + L"store").c_str(), nullptr);
    const std::string folder(program.Folder().begin(), program.Folder().end());
    program.Write(L"settings.ini", "[Extras]\r\nKept=yes\r\n[Paths]\r\nStore=" + folder +
                                       "store\\\r\n[Options]\r\nID only=1\r\nSendkeys=1\r\n"
                                       "First folder to ignore=Trash\r\nTree Separator=::\r\n"
                                       "OE Folder Settle Time=1.5\r\nTime Offset=x\r\n");
    ASSERT_TRUE(program.PassStartUp());
    EXPECT_EQ(SendMessageW(program.Control(chkIDonly), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(SendMessageW(program.Control(chkSkipFiles), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_EQ(TextOf(program.Control(txtIgnore)), L"Trash");

    SendMessageW(program.Control(chkSkipFiles), BM_CLICK, 0, 0);
    SendMessageW(program.Control(chkIDonly), BM_CLICK, 0, 0);
    ASSERT_TRUE(program.Close());
    const std::string settings = program.Read(L"settings.ini");
    for (const char* line : {"Kept=yes\r\n", "ID only=0\r\n", "Sendkeys=1\r\n",
                             "First folder to ignore=Trash\r\n", "Skip Identical Files=1\r\n",
                             "Tree Separator=[::]\r\n", "OE Folder Settle Time=1.5\r\n", "Time Offset=0\r\n"})
        EXPECT_EQ(Count(settings, line), 1) << line;
    EXPECT_EQ(Count(settings, "Store=" + folder + "store\r\n"), 1) << settings;
}

TEST(WindowTest, EveryControlStandsInItsPlaceAndTab)
{
    ProgramUnderTest program;
    ASSERT_TRUE(program.PassStartUp());
    const struct {
        int id;
        const wchar_t* caption;
        int tab; // -1: on the window itself
    } controls[] = {
        {cmdSync, L"&Sync with OE", 0},
        {cmdGetID, L"&Get ID of selected email", 0},
        {cmdCheckFolder, L"&Check folder", 0},
        {cmdCheckAllFolders, L"Check &all folders", 0},
        {cmdExport, L"&Export emails in selected folder", 0},
        {cmdSaveAll, L"Export emails in all &folders", 0},
        {chkJumpRemain, L"&Jump to remaining", 0},
        {chkSkipFiles, L"S&kip identical filenames", 0},
        {txtIgnore, L"Deleted Items", 0},
        {cmdUseSelection, L"&Use tree selection", 0},
        {cboComparison, L"Database (medium speed)", 0},
        {chkIDonly, L"&Name files by ID only", 1},
        {chkSendKeys, L"Use Sen&dkeys", 1},
        {Dir1, nullptr, 1},
        {fileCheck, nullptr, 1},
        {lstProgress, nullptr, 2},
        {lvResults, nullptr, 2},
        {txtSummary, L"", 3},
        {cmdStopAfterEmail, L"Stop After This E&mail", -1},
        {cmdStopAfterFolder, L"Stop After This Fo&lder", -1},
        {tvOETree, nullptr, -1},
        {lblOEFolder, L"", -1},
        {lstTree, nullptr, -1},
        {lstLines, nullptr, -1},
    };
    for (int tab = 0; tab < 4; ++tab) {
        // As by mouse: the middle of the tab.
        RECT place = {};
        const HWND strip = program.Control(nTab);
        EXPECT_EQ(SendMessageW(strip, TCM_GETITEMCOUNT, 0, 0), 4);
        GetClientRect(strip, &place);
        const LPARAM point = MAKELPARAM(42 + tab * 65, 10);
        SendMessageW(strip, WM_LBUTTONDOWN, MK_LBUTTON, point);
        SendMessageW(strip, WM_LBUTTONUP, 0, point);
        ASSERT_EQ(SendMessageW(strip, TCM_GETCURSEL, 0, 0), tab);
        for (const auto& control : controls) {
            const HWND window = program.Control(control.id);
            ASSERT_TRUE(window) << control.id;
            if (control.caption) {
                EXPECT_EQ(TextOf(window), control.caption) << control.id;
            }
            if (control.tab >= 0) {
                EXPECT_EQ(IsShown(GetParent(window)), control.tab == tab) << control.id;
            } else {
                EXPECT_EQ(GetParent(window), program.Window()) << control.id;
            }
        }
    }
    for (const int hidden : {cmdStopAfterEmail, cmdStopAfterFolder, lstTree, lstLines, lvResults})
        EXPECT_FALSE(IsShown(program.Control(hidden))) << hidden;

    RECT list = {}, table = {};
    GetWindowRect(program.Control(lstProgress), &list);
    GetWindowRect(program.Control(lvResults), &table);
    EXPECT_TRUE(EqualRect(&list, &table));
    SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(lstProgress, LBN_DBLCLK), 0);
    EXPECT_TRUE(IsShown(program.Control(lvResults)));
}

TEST(WindowTest, FolderListGoesDownAndUpAndIsTheStore)
{
    ProgramUnderTest program;
    CreateDirectoryW((program.Folder() + L"store").c_str(), nullptr);
    program.Write(L"store\\0001_a.eml", "x");
    program.Write(L"store\\note.txt", "x");
    ASSERT_TRUE(program.PassStartUp());
    const HWND list = program.Control(Dir1);
    const auto open = [&](const std::wstring& name) {
        const std::wstring before = TextOf(program.Control(lblStoreFolder));
        const std::vector<std::wstring> lines = LinesOf(list);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].substr(lines[i].find_first_not_of(L' ')) != name) continue;
            SendMessageW(list, LB_SETCURSEL, i, 0);
            PostMessageW(list, WM_KEYDOWN, VK_RETURN, 0);
            return Eventually([&] { return TextOf(program.Control(lblStoreFolder)) != before; }, 5000);
        }
        return false;
    };
    ASSERT_TRUE(open(L"store"));
    EXPECT_EQ(LinesOf(program.Control(fileCheck)), (std::vector<std::wstring>{L"0001_a.eml"}));
    EXPECT_EQ(TextOf(program.Control(lblStoreFolder)), L"Store folder: " + program.Folder() + L"store");
    const std::wstring down = LinesOf(list).back();
    EXPECT_EQ(down.substr(down.find_first_not_of(L' ')), L"store");
    ASSERT_TRUE(open(program.Folder().substr(0, 3)));
    EXPECT_EQ(LinesOf(program.Control(fileCheck)), std::vector<std::wstring>());
    EXPECT_EQ(TextOf(program.Control(Drive1)), program.Folder().substr(0, 2));
    ASSERT_TRUE(program.Close());
    const std::string root(program.Folder().begin(), program.Folder().begin() + 3);
    EXPECT_EQ(Count(program.Read(L"settings.ini"), "Store=" + root + "\r\n"), 1);
}

TEST(WindowTest, ClosingBehindTheStartUpBoxEndsTheProgramProperly)
{
    ProgramUnderTest program;
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.Close());
    EXPECT_EQ(Count(program.Read(L"log.txt"), "Closing Quillbox"), 1);
    EXPECT_EQ(Count(program.Read(L"log.txt"), "Syncing"), 0);
    EXPECT_EQ(Count(program.Read(L"settings.ini"), "Time Offset=0"), 1);
}

TEST(WindowTest, EndOfTheSessionSavesWhatClosingSaves)
{
    ProgramUnderTest program;
    ASSERT_TRUE(program.PassStartUp());
    EXPECT_EQ(SendMessageW(program.Window(), WM_QUERYENDSESSION, 0, 0), TRUE);
    SendMessageW(program.Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(program.Process().WaitForEnd(20000));
    EXPECT_EQ(Count(program.Read(L"log.txt"), "Closing Quillbox"), 1);
    EXPECT_EQ(Count(program.Read(L"settings.ini"), "Time Offset=0"), 1);
}

TEST(WindowTest, DatabaseThatCannotBeOpenedIsSaidOnceAndLeftAlone)
{
    ProgramUnderTest program;
    const std::string bytes = "this is no database";
    program.Write(L"saved.mdb", bytes);
    StartedProcess& process = program.Process();
    process.Start(L"\"" + program.Folder() + L"quillbox.exe\"", program.Folder());
    const HWND box = WaitForWindow(process.Id(), L"#32770", L"Quillbox", 20000);
    ASSERT_TRUE(box);
    EXPECT_NE(BoxWords(box).find(L"exporting stays off"), std::wstring::npos);
    program.PressOk(box);
    program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
    const HWND window = WaitForWindow(process.Id(), L"Form1", L"", 20000);
    ASSERT_TRUE(Eventually([&] { return IsWindowEnabled(FindButton(window, L"Sync with OE")); }, 20000));
    PostMessageW(window, WM_COMMAND, mnCondenseDB, 0);
    EXPECT_EQ(BoxWords(WaitForWindow(process.Id(), L"#32770", L"Quillbox", 20000)),
              L"Database error: the database of saved emails is not open");
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(process.WaitForEnd(20000));
    EXPECT_EQ(program.Read(L"saved.mdb"), bytes);
}

TEST(WindowTest, LockedLogStopsNothing)
{
    ProgramUnderTest program;
    const HANDLE lock = CreateFileW((program.Folder() + L"log.txt").c_str(), GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    const bool passed = program.PassStartUp();
    const std::size_t shown = LinesOf(program.Control(lstProgress)).size();
    const bool closed = program.Close();
    CloseHandle(lock);
    EXPECT_TRUE(passed);
    EXPECT_EQ(shown, 3u);
    EXPECT_TRUE(closed);
    EXPECT_EQ(program.Read(L"log.txt"), "");
}

TEST(WindowTest, DarkColoursStayLegible)
{
    const SystemColours theUsers;
    ProgramUnderTest program;
    ASSERT_TRUE(program.PassStartUp());
    SetForegroundWindow(program.Window());
    SendMessageW(program.Control(nTab), TCM_SETCURFOCUS, 3, 0);
    const HWND summary = program.Control(txtSummary);
    SendMessageW(summary, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"WWWWWWWWWWWW"));
    // Of the pixels on the screen. Of another program's windows Wine knows those of main windows alone.
    const auto counts = [&](HWND window, COLORREF colour) {
        RECT area = {};
        GetClientRect(window, &area);
        MapWindowPoints(window, program.Window(), reinterpret_cast<POINT*>(&area), 2);
        const HDC dc = GetDC(program.Window());
        int count = 0;
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 60; ++x) count += GetPixel(dc, area.left + x, area.top + y) == colour;
        ReleaseDC(program.Window(), dc);
        return count;
    };
    EXPECT_TRUE(Eventually([&] { return counts(summary, GetSysColor(COLOR_WINDOWTEXT)) > 20; }, 5000));
    EXPECT_GT(counts(summary, GetSysColor(COLOR_WINDOW)), 500);
    EXPECT_TRUE(Eventually([&] { return counts(program.Window(), GetSysColor(COLOR_BTNFACE)) > 100; }, 5000))
        << "no light ground beside dark lists";
    EXPECT_EQ(counts(program.Window(), LightPalette().window), 0);
}

} // namespace
