// CheckWindowTest.cpp: checks of one folder, the results table and its menu, by what a user presses.
#include "jet/JetDatabase.h"
#include "oe/RemoteListView.h"
#include "tests/windows/MailRun.h"
#include "tests/windows/WinOeBench.h"

#include <commctrl.h>

namespace {

using Rows = std::vector<std::vector<Text>>;

class CheckWindowTest : public MailRun {
protected:
    // Dates of a list are in the client's time, those of files as they were written. They are the same in
    // Universal Time.
    CheckWindowTest()
    {
        GetEnvironmentVariableW(L"TZ", zone, 64);
        SetEnvironmentVariableW(L"TZ", L"UTC");
    }
    ~CheckWindowTest() override { SetEnvironmentVariableW(L"TZ", zone[0] ? zone : nullptr); }

    std::wstring Check(int comparison)
    {
        SendMessageW(Control(idComparison), CB_SETCURSEL, static_cast<WPARAM>(comparison), 0);
        return Run(idCheckFolder);
    }
    Text DatabasePath() const
    {
        return Text(program.Folder().begin(), program.Folder().end()) + u"saved.mdb";
    }
    // Deletes the records of two e-mails and adds those of a third once more. While the program is closed.
    void ChangeRecords()
    {
        const auto database = OpenJetDatabase(bench.files, DatabasePath());
        const auto all = database->OpenRecordset(u"SELECT * FROM saved");
        Text crc;
        for (; !all->AtEnd(); all->MoveNext()) {
            const Text subject = all->Field(u"esubject");
            if (subject == u"Inbox 5") crc = all->Field(u"ecrc");
            if (subject == u"Inbox 0" || subject == u"Inbox 1") all->Delete();
        }
        for (int i = 0; i < 2; ++i) {
            const auto added = database->OpenRecordset(u"SELECT * FROM saved");
            added->AddNew();
            added->SetField(u"efolder", u"Local Folders\\Inbox");
            added->SetField(u"esubject", u"Inbox 5");
            added->SetField(u"ecrc", crc);
            added->Update();
        }
    }
    // The cells of the table as another program reads them.
    Rows Shown()
    {
        OeClient& reader = bench.client;
        reader.handles.listView = static_cast<WindowHandle>(reinterpret_cast<INT_PTR>(Control(idResults)));
        reader.handles.listViewFound = true;
        ReadListColumns(reader);
        Rows rows;
        for (std::int32_t row = 0; row < ListItemCount(reader); ++row)
            rows.push_back(ReadItemTexts(reader, row));
        return rows;
    }
    std::vector<Text> ShownIds()
    {
        std::vector<Text> ids;
        for (const auto& row : Shown()) ids.push_back(row.at(1));
        return ids;
    }
    LRESULT TickImage(int row) const
    {
        return SendMessageW(Control(idResults), LVM_GETITEMSTATE, static_cast<WPARAM>(row),
                            LVIS_STATEIMAGEMASK) >>
               12;
    }
    void PressKey(HWND window, WPARAM key)
    {
        PostMessageW(window, WM_KEYDOWN, key, 0);
        PostMessageW(window, WM_KEYUP, key, 0xC0000001);
    }

    WinOeBench bench;
    wchar_t zone[64] = {};
};

TEST_F(CheckWindowTest, EachComparisonHasItsOwnTruth)
{
    AddFolder(L"Inbox", 6);
    ASSERT_TRUE(Start(""));
    EXPECT_EQ(Check(1).substr(0, 26), L"Folder has not been stored") << "nothing exported so far";
    EXPECT_GT(static_cast<DWORD>(SendMessageW(Control(idSummary), EM_GETLIMITTEXT, 0, 0)), 10000000u)
        << "many folders fit";
    EXPECT_EQ(TextOf(Control(idSummary)), L"Local Folders\\Inbox - all 6 emails need to be exported.");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    for (const int comparison : {0, 1, 2})
        EXPECT_EQ(Check(comparison), L"Inbox has 6 saved email(s). All emails have been saved.")
            << comparison;
    EXPECT_TRUE(Shown().empty());
    ASSERT_TRUE(program.Close());

    for (const wchar_t* number : {L"1", L"3", L"4"})
        DeleteFileW(
            (program.Folder() + Stored(L"Inbox\\000" + std::wstring(number) + L"_Inbox" + number + L".eml"))
                .c_str());
    ChangeRecords();
    ASSERT_TRUE(program.PassStartUp());
    EXPECT_EQ(Check(0), L"Inbox has 3 saved email(s). 3 email(s) not saved.");
    EXPECT_TRUE(Shown().empty()) << "it looks at no e-mail";
    EXPECT_EQ(Check(1), L"Inbox has 4 saved email(s). 2 email(s) not saved.");
    EXPECT_EQ(ShownIds(), (std::vector<Text>{u"0", u"1"}));
    const std::vector<Text> row = Shown().at(1);
    EXPECT_EQ(std::vector<Text>(row.begin(), row.begin() + 4),
              (std::vector<Text>{u"Local Folders\\Inbox", u"1", u"Inbox 1", u"03/04/2007 10:11:00"}));
    EXPECT_EQ(row.at(4).size(), 8u);
    EXPECT_EQ(Check(2), L"Inbox has 3 saved email(s). 3 email(s) not saved.");
    EXPECT_EQ(ShownIds(), (std::vector<Text>{u"0", u"1", u"1", u"3", u"4"})) << "the rows of both checks";
    EXPECT_EQ(Check(1), L"Inbox has 5 saved email(s). 1 email(s) not saved.")
        << "an e-mail whose file was found is recorded again";

    // The table, from the keyboard: the last row is 1 once more, and is ticked and marked as saved.
    const HWND list = Control(idResults);
    PressKey(list, VK_END);
    PressKey(list, VK_SPACE);
    EXPECT_TRUE(Eventually([&] { return TickImage(5) == 2; }, kPatience));
    PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
    const HWND menu = WaitForWindow(program.Process().Id(), L"#32768", L"", kPatience);
    ASSERT_TRUE(menu) << "the menu key opens the menu";
    PressKey(menu, L'M');
    EXPECT_EQ(EndOfRun(), L"Finished updating database");
    EXPECT_TRUE(Contains(Log(), "Mark as saved: Local Folders\\Inbox - Inbox 1 : " + ToUtf8(row.at(4))));
    EXPECT_EQ(TickImage(5), 1) << "unticked, and still there";
    EXPECT_EQ(Check(1), L"Inbox has 6 saved email(s). All emails have been saved.");

    PostMessageW(list, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(30, 30));
    PostMessageW(list, WM_RBUTTONUP, 0, MAKELPARAM(30, 30));
    const HWND clicked = WaitForWindow(program.Process().Id(), L"#32768", L"", kPatience);
    ASSERT_TRUE(clicked) << "so does the right mouse button";
    PressKey(clicked, VK_ESCAPE);
    EXPECT_TRUE(Eventually([&] { return !IsWindow(clicked); }, kPatience));

    // The same e-mail stands in the table three times: it is recorded once.
    PressKey(list, VK_HOME);
    PressKey(list, VK_DOWN);
    EXPECT_TRUE(Eventually(
        [&] { return SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED) == 1; },
        kPatience));
    SendMessageW(program.Window(), WM_COMMAND, mnTickSel, 0);
    EXPECT_EQ(TickImage(1), 2);
    EXPECT_EQ(Choose(mnMarkSaved), L"Finished updating database");
    PostMessageW(program.Window(), WM_COMMAND, mnCondenseDB, 0);
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(idOrbVac)) == L"Removed 2 record(s)"; }, kPatience));
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    PostMessageW(program.Window(), WM_COMMAND, mnCondenseDB, 0);
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(idOrbVac)) == L"Removed 0 record(s)"; }, kPatience));
    EXPECT_EQ(Choose(mnMarkSaved), L"Finished updating database") << "nothing is ticked";
    EXPECT_TRUE(program.Close());
}

TEST_F(CheckWindowTest, AStopEndsALongCheckSoon)
{
    AddFolder(L"Inbox", 500); // some seconds to read
    CreateFolder(L"store");
    for (const wchar_t* folder : {L"", L"Inbox"}) CreateFolder(Stored(folder));
    program.Write(Stored(L"Inbox\\0000_Inbox0.eml"), Message("Inbox 0", 0));
    storedBefore = true;
    ASSERT_TRUE(Start(""));
    const auto begin = [this] {
        Press(Control(idCheckFolder));
        return Eventually([&] { return TextOf(Control(idProg)) != L"0%"; }, kPatience); // before: 0%
    };
    ASSERT_TRUE(begin());
    Press(Control(idStopAfterEmail));
    const DWORD pressed = GetTickCount();
    EXPECT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_LT(GetTickCount() - pressed, 1000u);
    EXPECT_TRUE(Contains(Log(), "User aborted on email export."));
    EXPECT_FALSE(WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", 200)) << "no verdict";
    ASSERT_TRUE(begin());
    EXPECT_TRUE(program.Close());
    EXPECT_FALSE(Contains(Log(), "Inbox has")) << "nor when the window is closed";
}

} // namespace
