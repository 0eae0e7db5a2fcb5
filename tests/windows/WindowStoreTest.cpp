// WindowStoreTest.cpp: the page on which the store folder is chosen.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

#include <algorithm>

namespace {

class WindowStoreTest : public MailRun {
protected:
    LRESULT InDrives(UINT message, const wchar_t* name) const
    {
        return SendMessageW(Control(Drive1), message, static_cast<WPARAM>(-1),
                            reinterpret_cast<LPARAM>(name));
    }
    bool HasDrive(const wchar_t* name) const { return InDrives(CB_FINDSTRINGEXACT, name) >= 0; }
    bool HasFolder(const std::wstring& name) const
    {
        const std::vector<std::wstring> lines = LinesOf(Control(Dir1));
        return std::any_of(lines.begin(), lines.end(),
                           [&](const auto& line) { return line.ends_with(name); });
    }
    void ChooseDrive(const wchar_t* letter) const
    {
        InDrives(CB_SELECTSTRING, letter);
        SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(Drive1, CBN_SELCHANGE), 0);
    }
};

TEST_F(WindowStoreTest, DrivesAndFoldersAreThoseOfTheMoment)
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

    // A drive that comes and goes, with nothing in it: what lies on such a one Wine does not show.
    EXPECT_FALSE(HasDrive(L"Q:"));
    ASSERT_TRUE(DefineDosDeviceW(0, L"Q:", L"C:\\"));
    SendMessageW(Control(Drive1), CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(HasDrive(L"Q:"));
    SendMessageW(Control(Drive1), CB_SHOWDROPDOWN, FALSE, 0);
    ChooseDrive(L"Q:");
    EXPECT_EQ(TextOf(Control(lblStorePath)), program.Folder() + L"store") << "nothing is in it";
    EXPECT_EQ(TextOf(Control(Drive1)), program.Folder().substr(0, 2)) << "still the store's";
    DefineDosDeviceW(DDD_REMOVE_DEFINITION, L"Q:", nullptr);
    ChooseDrive(L"Z:");
    EXPECT_EQ(TextOf(Control(lblStorePath)), L"Z:\\");
    SendMessageW(program.Window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_FALSE(HasDrive(L"Q:"));
    EXPECT_EQ(TextOf(Control(Drive1)), L"Z:");
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Contains(program.Read(L"settings.ini"), "Store=Z:\\\r\n"));
}

TEST_F(WindowStoreTest, AFolderIsMadeByKeys)
{
    ASSERT_TRUE(program.PassStartUp());
    program.Type('o'); // "Choose store folder..."
    ASSERT_TRUE(Eventually([&] { return program.Focus() == Control(Dir1); }, kPatience));
    const auto box = [&] {
        return WaitForWindow(program.Process().Id(), L"#32770", L"New folder", kPatience);
    };
    const std::wstring made = program.Folder() + L"Mail of 2007";
    for (const wchar_t* name : {L"a:b", L" Mail of 2007 "}) {
        if (*name == L'a') program.Type('w');
        const HWND field = FindControl(box(), L"Edit");
        EXPECT_TRUE(Eventually([&] { return program.Focus() == field; }, kPatience));
        SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name));
        PostMessageW(field, WM_KEYDOWN, VK_RETURN, 0);
        if (*name == L'a') program.PressOk(program.WaitForBox(L"Quillbox")); // and is asked again
    }
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(lblStorePath)) == made; }, kPatience));
    EXPECT_NE(GetFileAttributesW(made.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(Eventually([&] { return program.Focus() == Control(Dir1); }, kPatience));
    program.Type('w');
    EXPECT_EQ(TextOf(FindControl(box(), L"Edit")), L"");
    ASSERT_TRUE(program.Close()) << "the box is no hindrance";
}

} // namespace
