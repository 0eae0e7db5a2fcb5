// WindowShowsTest.cpp: what the window shows and lets be pressed: figures, tool tips, pictures, colours,
// fonts.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

#include <set>

namespace {

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

// Whether a message box warns, by the colour of its picture: yellow, and blue where it informs.
bool Warns(HWND box)
{
    int yellow = 0, blue = 0;
    const auto look = [&] {
        for (const HWND child : Below(box)) {
            if ((GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK) != SS_ICON || ClassOf(child) != L"Static")
                continue;
            RECT area = {};
            GetClientRect(child, &area);
            MapWindowPoints(child, box, reinterpret_cast<POINT*>(&area), 2);
            const HDC dc = GetDC(box);
            for (int y = area.top; y < area.bottom; ++y) {
                for (int x = area.left; x < area.right; ++x) {
                    const COLORREF colour = GetPixel(dc, x, y);
                    const int red = GetRValue(colour), blueness = GetBValue(colour);
                    yellow += red > blueness + 60;
                    blue += blueness > red + 60;
                }
            }
            ReleaseDC(box, dc);
        }
        return yellow + blue > 100;
    };
    EXPECT_TRUE(Eventually(look, 5000)) << "no picture";
    return yellow > blue;
}

// The tool tip of a control of another process; empty when it has none.
std::wstring ToolTipOf(HWND tips, HWND form, HWND control)
{
    struct Block {
        TTTOOLINFOW tool;
        wchar_t text[512];
    };
    DWORD id = 0;
    GetWindowThreadProcessId(tips, &id);
    const HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
    void* const there = VirtualAllocEx(process, nullptr, sizeof(Block), MEM_COMMIT, PAGE_READWRITE);
    Block block = {};
    block.tool.cbSize = TTTOOLINFOW_V2_SIZE;
    block.tool.hwnd = form;
    block.tool.uId = reinterpret_cast<UINT_PTR>(control);
    block.tool.lpszText = reinterpret_cast<wchar_t*>(static_cast<char*>(there) + offsetof(Block, text));
    WriteProcessMemory(process, there, &block, sizeof block, nullptr);
    SendMessageW(tips, TTM_GETTEXTW, 0, reinterpret_cast<LPARAM>(there));
    ReadProcessMemory(process, there, &block, sizeof block, nullptr);
    VirtualFreeEx(process, there, 0, MEM_RELEASE);
    CloseHandle(process);
    block.text[511] = L'\0';
    return block.text;
}

// The command line of the process that a window belongs to, from where the system keeps it for that process.
std::wstring CommandLineOf(HWND window)
{
    struct Basic { // PROCESS_BASIC_INFORMATION
        LONG exit;
        const char* environment; // process environment block
        ULONG_PTR more[4];
    } basic = {};
    struct Counted { // UNICODE_STRING
        USHORT bytes, room;
        const wchar_t* text;
    } line = {};
    using Query = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll"), "NtQueryInformationProcess")));
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id);
    const char* parameters = nullptr;
    std::wstring text;
    if (query && query(process, 0, &basic, sizeof basic, nullptr) >= 0 &&
        ReadProcessMemory(process, basic.environment + 0x10, &parameters, sizeof parameters, nullptr) &&
        ReadProcessMemory(process, parameters + 0x40, &line, sizeof line, nullptr)) {
        text.resize(line.bytes / sizeof(wchar_t));
        ReadProcessMemory(process, line.text, text.data(), line.bytes, nullptr);
    }
    CloseHandle(process);
    return text;
}

// How often a key is pressed while this lives, by whatever program.
class KeyCounter {
public:
    explicit KeyCounter(DWORD key)
    {
        key_ = key;
        pressed_ = 0;
        hook_ = SetWindowsHookExW(WH_KEYBOARD_LL, Hear, GetModuleHandleW(nullptr), 0);
    }
    ~KeyCounter() { UnhookWindowsHookEx(hook_); }
    KeyCounter(const KeyCounter&) = delete;
    KeyCounter& operator=(const KeyCounter&) = delete;
    void Listen() const // to be called again and again: each key waits for it
    {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    int Pressed() const { return pressed_; }

private:
    static LRESULT CALLBACK Hear(int code, WPARAM message, LPARAM event)
    {
        const DWORD key = reinterpret_cast<const KBDLLHOOKSTRUCT*>(event)->vkCode;
        const bool down = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
        const bool isKey = key == key_ || (key_ == VK_MENU && key == VK_LMENU);
        if (code == HC_ACTION && down && isKey) ++pressed_;
        return CallNextHookEx(nullptr, code, message, event);
    }
    static inline DWORD key_ = 0;
    static inline int pressed_ = 0;
    HHOOK hook_ = nullptr;
};

class WindowShowsTest : public MailRun {
protected:
    // Captions and values of the statistics, in their order; the bars are values.
    std::vector<std::wstring> Statistics() const
    {
        std::vector<std::wstring> texts;
        for (const HWND label : Below(Control(idStats))) texts.push_back(TextOf(label));
        return texts;
    }
    bool IsHintShown() const
    {
        for (const HWND control : Below(program.Window()))
            if (TextOf(control).starts_with(L"<---")) return IsWindowVisible(control) != FALSE;
        ADD_FAILURE() << "there is no hint";
        return false;
    }
};

TEST_F(WindowShowsTest, ARunShowsItsFiguresAndTakesItsOptions)
{
    AddFolder(L"Inbox", 6);
    AddFolder(L"Sent", 2);
    ASSERT_TRUE(
        Start("ID only=1\r\nSendkeys=1\r\nTime Offset=1\r\nOE Folder Settle Time=1\r\n", L"--slow=250"));
    EXPECT_FALSE(IsHintShown()) << "synchronised";
    Press(Control(idGetID));
    EXPECT_TRUE(Eventually(
        [&] { return TextOf(Control(idSummary)).find(L"\r\nSent: 03/05/2007 10:1") != std::wstring::npos; },
        kPatience))
        << "a month later";
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    const DWORD start = GetTickCount();
    Press(Control(idCheckAllFolders));
    const HWND checked = program.WaitForBox(L"Quillbox");
    EXPECT_GE(GetTickCount() - start, 1000u) << "a change of folder takes its time to settle";
    EXPECT_FALSE(Warns(checked));
    program.PressOk(checked);
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));

    const KeyCounter keys(VK_MENU);
    Press(Control(idSaveAll));
    ASSERT_TRUE(WaitForLog("Exporting Outlook Express folders"));
    std::vector<std::set<std::wstring>> seen; // of each of the texts
    HWND box = nullptr;
    Eventually(
        [&] {
            keys.Listen();
            const std::vector<std::wstring> texts = Statistics();
            seen.resize(texts.size());
            for (std::size_t i = 0; i < texts.size(); ++i) seen[i].insert(texts[i]);
            box = FindProgramWindow(program.Process().Id(), L"#32770", L"Quillbox");
            return box != nullptr;
        },
        kPatience);
    ASSERT_TRUE(box);
    EXPECT_EQ(BoxWords(box), L"All folders have been exported.");
    program.PressOk(box);
    EXPECT_GE(keys.Pressed(), 8) << "Alt, for each e-mail";

    const wchar_t* const captions[] = {L"Current folder",
                                       nullptr,
                                       L"Count",
                                       nullptr,
                                       L"Rate",
                                       nullptr,
                                       L"Time left",
                                       nullptr,
                                       L"Emails left",
                                       nullptr,
                                       L"All folders",
                                       nullptr,
                                       L"Total emails to be saved",
                                       nullptr,
                                       L"Total Emails left",
                                       nullptr,
                                       L"Time left",
                                       nullptr};
    ASSERT_EQ(seen.size(), std::size(captions));
    for (std::size_t i = 0; i < seen.size(); ++i) {
        if (captions[i]) {
            EXPECT_EQ(seen[i], std::set<std::wstring>{captions[i]});
        }
    }
    const auto has = [&](std::size_t i, const std::wstring& text) { return seen[i].count(text) != 0; };
    EXPECT_TRUE(has(1, L"20%") && has(1, L"60%")) << "of the folder";
    EXPECT_TRUE(has(3, L"2 out of 6") && has(3, L"2 out of 2"));
    EXPECT_TRUE(seen[5].rbegin()->ends_with(L" / second"));
    EXPECT_TRUE(has(7, L"00:00:01") || has(7, L"00:00:00"));
    EXPECT_TRUE(has(9, L"4") && has(9, L"1"));
    EXPECT_TRUE(has(11, L"25%") && has(11, L"75%")) << "of all";
    EXPECT_TRUE(has(13, L"8"));
    EXPECT_TRUE(has(15, L"6") && has(15, L"1"));
    EXPECT_TRUE(has(17, L"00:00:01") || has(17, L"00:00:02"));
    EXPECT_EQ(TextOf(Control(idMainProg)), L"100%");
    EXPECT_EQ(program.Read(Stored(L"Inbox\\0003.eml")), Message("Inbox 3", 3)) << "named by its number alone";
}

TEST_F(WindowShowsTest, ACheckOfAllBeginsAnewAndMarksTheTree)
{
    AddFolder(L"Half", 2);
    AddFolder(L"Inbox", 2);
    AddFolder(L"None", 1);
    AddFolder(L"Void", 0);
    CreateFolder(L"store");
    for (const wchar_t* folder : {L"", L"Half", L"Inbox"}) CreateFolder(Stored(folder));
    program.Write(Stored(L"Half\\0000_Half0.eml"), Message("Half 0", 0));
    program.Write(Stored(L"Inbox\\0000_Inbox0.eml"), Message("Inbox 0", 0));
    program.Write(Stored(L"Inbox\\0001_Inbox1.eml"), Message("Inbox 1", 1));
    storedBefore = true;
    ASSERT_TRUE(Start(""));
    SendMessageW(Control(idComparison), CB_SETCURSEL, 0, 0); // by number
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 2 email(s) to be saved.");
        const std::wstring summary = TextOf(Control(idSummary));
        const std::size_t total = summary.find(L" email(s) to be saved.");
        EXPECT_EQ(summary.find(L" email(s) to be saved.", total + 1), std::wstring::npos) << time;
        std::vector<std::pair<std::wstring, int>> nodes;
        for (const TreeLine& line : TreeLines(Control(idTree))) nodes.emplace_back(line.text, line.image);
        EXPECT_EQ(nodes, (std::vector<std::pair<std::wstring, int>>{{L"Outlook Express", 0},
                                                                    {L"Local Folders", 1},
                                                                    {L"Half - 1/2", 4},
                                                                    {L"Inbox - 2/2", 3},
                                                                    {L"None - 0/1", 5},
                                                                    {L"Void", 2}}));
    }
    SendMessageW(Control(idComparison), CB_SETCURSEL, 1, 0); // by the database, which is empty
    for (int time = 0; time < 2; ++time) {
        (void)Run(idCheckAllFolders);
        EXPECT_EQ(SendMessageW(Control(idResults), LVM_GETITEMCOUNT, 0, 0), 4) << time;
    }
}

TEST_F(WindowShowsTest, TheSessionEndsInMidRunWithEverythingWritten)
{
    AddFolder(L"Inbox", 4);
    ASSERT_TRUE(Start("", L"--slow=1000"));
    Tick(idSkipFiles);
    Press(Control(idExport));
    ASSERT_TRUE(WaitForLog("- Exporting Inbox 0"));
    DeleteFileW((program.Folder() + L"settings.ini").c_str());
    SendMessageW(program.Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(Contains(Log(), "Closing Quillbox")) << "the process may be gone from here on";
    EXPECT_TRUE(Contains(program.Read(L"settings.ini"), "Skip Identical Files=1"));
    EXPECT_TRUE(program.Process().WaitForEnd(kPatience));
}

TEST_F(WindowShowsTest, NothingIsExportedWithoutADatabase)
{
    AddFolder(L"Inbox", 1);
    CreateFolder(L"store");
    program.Write(L"saved.mdb", "this is no database");
    client.Start(L"\"" + FolderOfTests() + L"demo-client.exe\" --mail \"" + program.Folder() + L"mail\" ",
                 program.Folder());
    ASSERT_TRUE(WaitForWindow(client.Id(), L"Outlook Express Browser Class", L"", kPatience));
    program.Process().Start(L"\"" + program.Folder() + L"quillbox.exe\"", program.Folder());
    const HWND first = WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", kPatience);
    ASSERT_TRUE(first);
    EXPECT_TRUE(Warns(first));
    program.PressOk(first);
    ASSERT_TRUE(program.Attach());
    program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    for (const int id : {idExport, idSaveAll}) {
        EXPECT_TRUE(IsWindowVisible(Control(id))) << id;
        EXPECT_FALSE(IsWindowEnabled(Control(id))) << id;
    }
    for (const int id : {idCheckFolder, idCheckAllFolders, idGetID})
        EXPECT_TRUE(IsWindowEnabled(Control(id))) << id;
}

TEST_F(WindowShowsTest, ToolTipsAndTheWarningSayWhatTheyShould)
{
    ASSERT_TRUE(program.Start());
    const HWND box = program.WaitForBox(L"IMPORTANT! Please Read");
    std::wstring words = BoxWords(box);
    std::erase(words, L'\r');
    EXPECT_EQ(words,
              L"Please be aware that the exporting of emails from Outlook Express relies on\n"
              L"automating Outlook Express, which cannot be a background task. Therefore,\n"
              L"during the email export process you must not move the mouse or press any keys.\n"
              L"\n"
              L"If you plan on exporting many emails, you may wish to leave this software running and\n"
              L"do something else; like have a cup of coffee or read a newspaper...");
    EXPECT_FALSE(Warns(box));
    program.PressOk(box);
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_TRUE(IsHintShown()) << "there is no client";
    HWND tips = nullptr;
    DWORD owner = 0;
    while ((tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
        GetWindowThreadProcessId(tips, &owner);
        if (owner == program.Process().Id() && ToolTipOf(tips, program.Window(), Control(idSync)) != L"")
            break;
    }
    ASSERT_TRUE(tips);
    const struct {
        int id;
        const wchar_t* words;
    } expected[] = {
        {idSync, L"Synchronise with Outlook Express"},
        {idGetID, L"Get the message ID of the email selected in Outlook Express"},
        {idCheckFolder, L"Check current Outlook Express folder"},
        {idCheckAllFolders, L"Check all Outlook Express folders"},
        {idExport, L"Export current Outlook Express folder"},
        {idSaveAll, L"Export all Outlook Express folders"},
        {idStopAfterEmail, L"Stop exporting after current email"},
        {idStopAfterFolder, L"Stop exporting after current folder"},
        {idJumpRemain, L"Jump to the first email to be exported"},
        {idSkipFiles, L"Skip identical filenames when exporting"},
        {idSendKeys, L"Use sendkeys for exporting emails"},
        {idUseSelection, L"Use the selected folder from the tree above"},
        {idOpenFolder, L"Open the folder that the emails of this Outlook Express folder are exported to"},
    };
    for (const auto& tip : expected)
        EXPECT_EQ(ToolTipOf(tips, program.Window(), Control(tip.id)), tip.words) << tip.id;
    const std::vector<HWND> statistics = Below(Control(idStats));
    EXPECT_EQ(ToolTipOf(tips, program.Window(), statistics.at(9)), L"Emails left to save in current folder");
    EXPECT_EQ(ToolTipOf(tips, program.Window(), statistics.at(15)), L"Emails left to save");
    for (const HWND control : Below(program.Window())) {
        if (TextOf(control).starts_with(L"<---")) {
            EXPECT_EQ(ToolTipOf(tips, program.Window(), control),
                      L"You must synchronise with Outlook Express before exporting any emails");
        }
    }
}

TEST_F(WindowShowsTest, TheExportFolderOpensByMouseAndByKey)
{
    AddFolder(L"Inbox", 1);
    ASSERT_TRUE(Start(""));
    const auto opened = [&] { // the file manager's command line; its window is closed again
        HWND found = nullptr;
        Eventually(
            [&] {
                for (HWND top = GetTopWindow(nullptr); top && !found; top = GetWindow(top, GW_HWNDNEXT))
                    if (IsWindowVisible(top) && ClassOf(top) == L"ExplorerWClass") found = top;
                return found != nullptr;
            },
            kPatience);
        const std::wstring command = found ? CommandLineOf(found) : L"none";
        PostMessageW(found, WM_CLOSE, 0, 0);
        Eventually([&] { return !IsWindow(found); }, kPatience);
        return command;
    };
    const std::wstring expected = L"Explorer /n," + program.Folder() + L"store\\Local Folders\\Inbox\\";
    Press(Control(idOpenFolder));
    EXPECT_TRUE(Eventually(
        [&] { return TextOf(Control(idOrbVac)) == L"There is no export folder to open yet"; }, kPatience));
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    SetForegroundWindow(program.Window());
    program.Type('p');
    EXPECT_EQ(opened(), expected);
    SendMessageW(Control(idOEFolder), WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
    EXPECT_EQ(opened(), expected);
}

// Wine keeps other programs' colours and fonts as they were when they started: seen is that the window takes
// its own anew.
TEST_F(WindowShowsTest, NewColoursAndFontsAreTakenAtOnce)
{
    ASSERT_TRUE(program.PassStartUp());
    SetForegroundWindow(program.Window());
    const HWND sync = Control(idSync);
    RECT before = {}, after = {};
    GetWindowRect(sync, &before);
    SetWindowPos(sync, nullptr, 0, 0, 5, 5, SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(program.Window(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    GetWindowRect(sync, &after);
    EXPECT_TRUE(EqualRect(&before, &after)) << "laid out by the font";

    const HDC dc = GetDC(program.Window());
    const COLORREF ground = GetPixel(dc, 2, 2), other = RGB(255, 0, 255);
    SetPixel(dc, 2, 2, other);
    EXPECT_EQ(GetPixel(dc, 2, 2), other);
    SendMessageW(program.Window(), WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_TRUE(Eventually([&] { return GetPixel(dc, 2, 2) == ground; }, 5000)) << "drawn anew";
    ReleaseDC(program.Window(), dc);
}

} // namespace
