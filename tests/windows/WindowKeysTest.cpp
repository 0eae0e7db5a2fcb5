// WindowKeysTest.cpp: keys that are held, and keys in texts.
#include "tests/windows/MailRun.h"

namespace {

class WindowKeysTest : public MailRun {
protected:
    // The first e-mail of so many is in the store, and none is recorded: a check has a line for each.
    bool StartWithUnsaved(int messages)
    {
        AddFolder(L"Inbox", messages);
        CreateFolder(L"store");
        for (const wchar_t* folder : {L"", L"Inbox"}) CreateFolder(Stored(folder));
        program.Write(Stored(L"Inbox\\0000_Inbox0.eml"), Message("Inbox 0", 0));
        storedBefore = true;
        return Start("");
    }
    // When the keyboard or the pointer comes into a window, the display lets go of the keys that only a
    // program holds: the pointer is put away, and a key must have stayed down for a while.
    void MoveTo(int id) const
    {
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        SetForegroundWindow(program.Window());
        EXPECT_TRUE(Eventually(
            [] {
                Hold(VK_F15);
                Sleep(300);
                return GetAsyncKeyState(VK_F15) < 0;
            },
            kPatience));
        LetGo(VK_F15);
        SendMessageW(program.Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
    }
    static void Hold(BYTE key) { keybd_event(key, static_cast<BYTE>(MapVirtualKeyW(key, 0)), 0, 0); }
    static void LetGo(BYTE key)
    {
        keybd_event(key, static_cast<BYTE>(MapVirtualKeyW(key, 0)), KEYEVENTF_KEYUP, 0);
    }
    HWND Box(DWORD milliseconds)
    {
        return WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", milliseconds);
    }
};

TEST_F(WindowKeysTest, AKeyThatIsHeldPressesOneButtonAndNoBox)
{
    ASSERT_TRUE(StartWithUnsaved(60));
    MoveTo(cmdCheckFolder);
    const DWORD start = GetTickCount();
    do {
        Hold(VK_RETURN); // as the keyboard repeats it
        Sleep(20);
    } while (!Contains(Log(), "Inbox has ") && GetTickCount() - start < kPatience);
    EXPECT_FALSE(Contains(Log(), "User aborted"));
    EXPECT_FALSE(Box(700)) << "while the key is down";
    LetGo(VK_RETURN);
    const HWND box = Box(kPatience);
    ASSERT_TRUE(box);
    Sleep(200);
    EXPECT_NE(BoxWords(box).find(L"60 email(s) not saved"), std::wstring::npos) << "nobody has pressed it";
    program.PressOk(box);
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));

    MoveTo(cmdCheckFolder);
    Hold(VK_SPACE);
    LetGo(VK_SPACE); // it presses when it is let go; then it is held on the stop button
    ASSERT_TRUE(Eventually([&] { return program.Focus() == Control(cmdStopAfterEmail); }, kPatience));
    PostMessageW(program.Focus(), WM_KEYDOWN, VK_SPACE, 1 << 30 | 1);
    PostMessageW(program.Focus(), WM_KEYUP, VK_SPACE, static_cast<LPARAM>(0xC0000001));
    EXPECT_TRUE(IsWindowVisible(Control(cmdStopAfterEmail)));
    Hold(VK_RETURN);
    LetGo(VK_RETURN);
    ASSERT_TRUE(program.WaitUntilIdle(kPatience));
    EXPECT_TRUE(Contains(Log(), "User aborted")) << "a key that is pressed anew stops the run";
}

TEST_F(WindowKeysTest, AKeyHeldForGoodHoldsABoxUpForTwoSeconds)
{
    ASSERT_TRUE(StartWithUnsaved(2));
    MoveTo(lstProgress); // nothing there is pressed
    const DWORD start = GetTickCount();
    Hold(VK_SPACE);
    Press(Control(cmdCheckFolder));
    HWND box = nullptr;
    while ((box = Box(20)) == nullptr && GetTickCount() - start < kPatience) Hold(VK_SPACE);
    ASSERT_TRUE(box);
    EXPECT_GE(GetTickCount() - start, 1900u);
    EXPECT_LT(GetTickCount() - start, 15000u) << "not for ever";
    EXPECT_NE(BoxWords(box), L"");
    LetGo(VK_SPACE); // it was held on the box, too, and may press it now
    if (IsWindow(box)) program.PressOk(box);
    EXPECT_TRUE(program.WaitUntilIdle(kPatience));
}

TEST_F(WindowKeysTest, EnterInATextOrListStartsNoExport)
{
    ASSERT_TRUE(StartWithUnsaved(2));
    MoveTo(txtIgnore);
    ASSERT_TRUE(Eventually([&] { return program.Focus() == Control(txtIgnore); }, kPatience));
    program.Type(VK_RETURN);
    EXPECT_FALSE(Box(500));
    EXPECT_FALSE(Contains(Log(), "Folder Inbox"));
    MoveTo(tvOETree);
    program.Type(VK_RETURN); // elsewhere it does
    EXPECT_EQ(EndOfRun(), L"All emails for the selected folder have been exported.");
    Press(Control(cmdChooseStore));
    ASSERT_TRUE(Eventually([&] { return program.Focus() == Control(Dir1); }, kPatience));
    SendMessageW(Control(Dir1), LB_SETCURSEL, 0, 0);
    program.Type(VK_RETURN); // goes there: the root of the drive
    const std::wstring root = L"Store folder: " + program.Folder().substr(0, 3);
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(lblStoreFolder)) == root; }, kPatience));
}

} // namespace
