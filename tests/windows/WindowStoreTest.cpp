// WindowStoreTest.cpp: the page on which the store folder is chosen.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

#include <algorithm>

namespace {

class WindowStoreTest : public MailRun {
protected:
    bool HasFolder(const std::wstring& name) const
    {
        const std::vector<std::wstring> lines = LinesOf(Control(Dir1));
        return std::any_of(lines.begin(), lines.end(),
                           [&](const auto& line) { return line.ends_with(name); });
    }
    void ChooseDrive(const wchar_t* letter) const
    {
        SendMessageW(Control(Drive1), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                     reinterpret_cast<LPARAM>(letter));
        SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(Drive1, CBN_SELCHANGE), 0);
    }
};

TEST_F(WindowStoreTest, FoldersAreThoseOfTheMoment)
{
    CreateFolder(L"store");
    program.Write(L"settings.ini", "[Paths]\r\nStore=X:\\gone\r\n");
    ASSERT_TRUE(program.PassStartUp());
    // Ways to look at the page.
    CreateFolder(L"by tab");
    SendMessageW(Control(nTab), TCM_SETCURFOCUS, 1, 0);
    EXPECT_TRUE(HasFolder(L"by tab"));
    const WPARAM chosen = static_cast<WPARAM>(SendMessageW(Control(Dir1), LB_GETCOUNT, 0, 0)) - 1;
    SendMessageW(Control(Dir1), LB_SETCURSEL, chosen, 0);
    CreateFolder(L"a new one");
    SendMessageW(program.Window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_TRUE(HasFolder(L"a new one"));
    EXPECT_EQ(SendMessageW(Control(Dir1), LB_GETCURSEL, 0, 0), static_cast<LRESULT>(chosen) + 1)
        << "what was marked stays marked";
    SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(Dir1, LBN_DBLCLK), 0);
    EXPECT_EQ(TextOf(Control(lblStorePath)), program.Folder() + L"store");
    EXPECT_EQ(TextOf(Control(lblStoreFolder)), L"Store folder: " + program.Folder() + L"store");

    ChooseDrive(L"Z:");
    EXPECT_EQ(TextOf(Control(lblStorePath)), L"Z:\\");
    EXPECT_EQ(TextOf(Control(Drive1)), L"Z:");
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Contains(program.Read(L"settings.ini"), "Store=Z:\\\r\n"));
}

} // namespace
