// WindowStoreTest.cpp: the store folder: one that is missing, files that no record knows of, and the page on
// which it is chosen.
#include "tests/windows/MailRun.h"

#include <commctrl.h>

namespace {

class WindowStoreTest : public MailRun {
protected:
    std::wstring ProgramFolder() const { return program.Folder().substr(0, program.Folder().size() - 1); }
    std::string Narrow(const std::wstring& text) const { return {text.begin(), text.end()}; }
    bool Keeps(const std::wstring& path) const // settings.ini, once the program has closed
    {
        return Contains(program.Read(L"settings.ini"), "Store=" + Narrow(path) + "\r\n");
    }
};

TEST_F(WindowStoreTest, AMissingStoreIsSaidOnceAndKept)
{
    AddFolder(L"Inbox", 2);
    const std::wstring gone = program.Folder() + L"gone";
    store = Narrow(gone);
    ASSERT_TRUE(Start("")) << "start-up says nothing";
    EXPECT_EQ(TextOf(Control(idStorePath)), ProgramFolder());
    const std::wstring words = Run(idCheckFolder);
    EXPECT_TRUE(words.starts_with(L"The store folder of the settings cannot be found: " + gone))
        << Narrow(words);
    EXPECT_TRUE(words.ends_with(L"works with the program's folder:" + ProgramFolder()) ||
                words.ends_with(L"works with the program's folder:\r\n" + ProgramFolder()))
        << Narrow(words);
    EXPECT_FALSE(Contains(Log(), "Folder has not been stored")) << "nothing was started";
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(gone)) << program.Read(L"settings.ini");

    // The folder comes back between the box and the next press, and is gone to.
    ASSERT_TRUE(program.PassStartUp());
    EXPECT_TRUE(Run(idSaveAll).starts_with(L"The store folder of the settings cannot be found: " + gone));
    CreateFolder(L"gone");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_EQ(TextOf(Control(idStorePath)), gone);
    EXPECT_EQ(program.Read(L"gone\\Local Folders\\Inbox\\0001_Inbox1.eml"), Message("Inbox 1", 1));
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(gone));
}

TEST_F(WindowStoreTest, ARelativeStoreIsNoneAndTheNextPressGoesAhead)
{
    AddFolder(L"Inbox", 2);
    CreateFolder(L"mails"); // in the program's current folder
    store = "mails";
    ASSERT_TRUE(Start(""));
    const std::wstring warning = L"The store folder of the settings is not a full path: mails";
    EXPECT_TRUE(Run(idExport).starts_with(warning));
    EXPECT_EQ(program.Read(L"Local Folders\\Inbox\\0000_Inbox0.eml"), "");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_EQ(program.Read(L"Local Folders\\Inbox\\0000_Inbox0.eml"), Message("Inbox 0", 0));
    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 0 email(s) to be saved.");
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(L"mails"));
    ASSERT_TRUE(program.PassStartUp());
    EXPECT_TRUE(Run(idCheckAllFolders).starts_with(warning)) << "anew in each session";
}

TEST_F(WindowStoreTest, FilesThatANewDatabaseDoesNotKnowAreSaid)
{
    AddFolder(L"Inbox", 3);
    ASSERT_TRUE(Start(""));
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    ASSERT_TRUE(program.Close());
    EXPECT_FALSE(Contains(Log(), "made anew")) << "the store was empty";
    DeleteFileW((program.Folder() + L"saved.mdb").c_str());

    ASSERT_TRUE(program.Start());
    program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
    const std::wstring words = EndOfRun();
    EXPECT_TRUE(
        words.starts_with(L"saved.mdb has been made anew, but the store folder holds 3 saved e-mail(s) "
                          L"of 1 folder(s):"))
        << Narrow(words);
    EXPECT_NE(words.find(L"\"File (slow)\""), std::wstring::npos);
    const std::string log = Log();
    EXPECT_LT(log.rfind("Started Quillbox"), log.find("saved.mdb has been made anew"));
    // Done as the box says, nothing is exported twice.
    SendMessageW(Control(idComparison), CB_SETCURSEL, 2, 0);
    EXPECT_EQ(Run(idCheckAllFolders), L"All folders have been checked - 0 email(s) to be saved.");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    EXPECT_TRUE(Contains(Log(), "0 passed, 0 failed, 1 skipped")) << Log();
    Press(Control(idSync));
    EXPECT_TRUE(program.WaitUntilIdle(kPatience)) << "said once";
    ASSERT_TRUE(program.Close());
    ASSERT_TRUE(program.PassStartUp()) << "the database is not new any more";
}

TEST_F(WindowStoreTest, AnotherStoreIsLookedAtBeforeTheFirstExportToIt)
{
    AddFolder(L"Inbox", 2);
    CreateFolder(L"store");
    for (const wchar_t* folder : {L"", L"Inbox"}) CreateFolder(Stored(folder));
    program.Write(Stored(L"Inbox\\0000_Inbox0.eml"), Message("Inbox 0", 0));
    CreateFolder(L"empty");
    store = Narrow(program.Folder()) + "empty";
    ASSERT_TRUE(Start(""));
    const auto open = [&](const std::wstring& name) {
        const std::vector<std::wstring> lines = LinesOf(Control(idDir));
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines[i].ends_with(L" " + name)) SendMessageW(Control(idDir), LB_SETCURSEL, i, 0);
        SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(idDir, LBN_DBLCLK), 0);
    };
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.");
    const std::wstring folder = ProgramFolder();
    open(folder.substr(folder.rfind(L'\\') + 1));
    open(L"store");
    EXPECT_EQ(TextOf(Control(idStorePath)), program.Folder() + L"store");
    EXPECT_TRUE(
        Run(idExport).starts_with(L"saved.mdb has been made anew, but the store folder holds 1 saved"));
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.") << "the next press";
    open(folder.substr(folder.rfind(L'\\') + 1));
    open(L"empty");
    EXPECT_EQ(Run(idExport), L"All emails for the selected folder have been exported.")
        << "what lies there is this session's own";
}

// A drive that comes and goes, with nothing in it: what lies on one that was defined so Wine does not show.
class EmptyDrive {
public:
    EmptyDrive() : isThere_(DefineDosDeviceW(0, L"Q:", L"C:\\") != FALSE) {}
    ~EmptyDrive() { TakeAway(); }
    EmptyDrive(const EmptyDrive&) = delete;
    EmptyDrive& operator=(const EmptyDrive&) = delete;
    bool IsThere() const { return isThere_; }
    void TakeAway()
    {
        if (isThere_) DefineDosDeviceW(DDD_REMOVE_DEFINITION, L"Q:", nullptr);
        isThere_ = false;
    }

private:
    bool isThere_;
};

TEST_F(WindowStoreTest, DrivesAndFoldersAreThoseOfTheMoment)
{
    store = "X:\\gone";
    AddFolder(L"Inbox", 1);
    ASSERT_TRUE(Start(""));
    const auto drives = [&] {
        std::vector<std::wstring> names;
        for (LRESULT i = 0; i < SendMessageW(Control(idDrive), CB_GETCOUNT, 0, 0); ++i) {
            wchar_t name[20] = {};
            SendMessageW(Control(idDrive), CB_GETLBTEXT, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(name));
            names.push_back(name);
        }
        return names;
    };
    const auto has = [](const std::vector<std::wstring>& names, const std::wstring& name) {
        for (const std::wstring& each : names)
            if (each.substr(each.find_first_not_of(L' ')) == name) return true;
        return false;
    };
    const auto folders = [&] { return LinesOf(Control(idDir)); };
    EXPECT_FALSE(has(drives(), L"Q:"));

    // Three ways to look at the page.
    CreateFolder(L"by tab");
    SendMessageW(Control(idTab), TCM_SETCURFOCUS, 1, 0);
    EXPECT_TRUE(has(folders(), L"by tab"));
    const WPARAM chosen = static_cast<WPARAM>(SendMessageW(Control(idDir), LB_GETCOUNT, 0, 0)) - 1;
    SendMessageW(Control(idDir), LB_SETCURSEL, chosen, 0);
    const std::wstring name = folders()[chosen];
    CreateFolder(L"a new one");
    SendMessageW(program.Window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_TRUE(has(folders(), L"a new one"));
    EXPECT_EQ(folders()[static_cast<std::size_t>(SendMessageW(Control(idDir), LB_GETCURSEL, 0, 0))], name)
        << "what was marked stays marked";
    SendMessageW(Control(idTab), TCM_SETCURFOCUS, 0, 0);
    CreateFolder(L"by button");
    Press(Control(idChooseStore));
    EXPECT_TRUE(Eventually([&] { return has(folders(), L"by button"); }, kPatience));
    EXPECT_EQ(TextOf(Control(idStorePath)), ProgramFolder()) << "looking changes nothing";

    EmptyDrive drive;
    ASSERT_TRUE(drive.IsThere());
    SendMessageW(Control(idDrive), CB_SHOWDROPDOWN, TRUE, 0);
    EXPECT_TRUE(has(drives(), L"Q:"));
    EXPECT_EQ(TextOf(Control(idDrive)), program.Folder().substr(0, 2)) << "still the store's";
    SendMessageW(Control(idDrive), CB_SHOWDROPDOWN, FALSE, 0);
    const auto choose = [&](const wchar_t* letter) {
        SendMessageW(Control(idDrive), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                     reinterpret_cast<LPARAM>(letter));
        SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(idDrive, CBN_SELCHANGE), 0);
    };
    const std::wstring before = TextOf(Control(idStorePath));
    choose(L"Q:");
    EXPECT_EQ(TextOf(Control(idStorePath)), before) << "nothing is in it";
    EXPECT_EQ(TextOf(Control(idDrive)), before.substr(0, 2));
    choose(L"Z:");
    EXPECT_EQ(TextOf(Control(idStorePath)), L"Z:\\");
    EXPECT_EQ(folders().front(), L"Z:\\");
    EXPECT_GT(folders().size(), 1u);
    drive.TakeAway();
    SendMessageW(program.Window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_FALSE(has(drives(), L"Q:"));
    EXPECT_EQ(TextOf(Control(idDrive)), L"Z:");
    EXPECT_TRUE(Run(idCheckFolder).starts_with(L"Folder has not been stored."))
        << "the user has chosen: no word about the folder of the settings";
    ASSERT_TRUE(program.Close());
    EXPECT_TRUE(Keeps(L"Z:\\"));
}

TEST_F(WindowStoreTest, AFolderIsMadeByKeys)
{
    ASSERT_TRUE(program.PassStartUp());
    program.Type('o'); // "Choose store folder..."
    ASSERT_TRUE(Eventually([&] { return program.Focus() == Control(idDir); }, kPatience));
    const auto ask = [&](const std::wstring& name) { // in the box, which is there or comes
        const HWND box = WaitForWindow(program.Process().Id(), L"#32770", L"New folder", kPatience);
        const HWND field = FindControl(box, L"Edit");
        EXPECT_TRUE(Eventually([&] { return program.Focus() == field; }, kPatience));
        SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
        PostMessageW(field, WM_KEYDOWN, VK_RETURN, 0);
        EXPECT_TRUE(Eventually([&] { return !IsWindow(box); }, kPatience));
    };
    const auto refused = [&](const std::wstring& words) {
        const HWND box = program.WaitForBox(L"Quillbox");
        EXPECT_TRUE(BoxWords(box).starts_with(words)) << Narrow(BoxWords(box));
        program.PressOk(box);
    };
    program.Write(L"taken", "a file");
    program.Type('w');
    ask(L"a:b");
    refused(L"A folder cannot have this name");
    ask(L"  ");
    refused(L"A folder cannot have this name");
    ask(L"\u0416"); // not in the code page
    refused(L"A folder cannot have this name");
    ask(L"taken");
    refused(L"There is a file of this name already: ");
    ask(std::wstring(255, L'x'));
    refused(L"The folder cannot be made.");
    ask(L" Mail of 2007 ");
    const std::wstring made = program.Folder() + L"Mail of 2007";
    EXPECT_TRUE(Eventually([&] { return TextOf(Control(idStorePath)) == made; }, kPatience));
    EXPECT_NE(GetFileAttributesW(made.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(Eventually([&] { return program.Focus() == Control(idDir); }, kPatience));
    EXPECT_NE(LinesOf(Control(idDir)).back().find(L"Mail of 2007"), std::wstring::npos);

    program.Type('w');
    const HWND box = WaitForWindow(program.Process().Id(), L"#32770", L"New folder", kPatience);
    ASSERT_TRUE(box);
    EXPECT_EQ(TextOf(FindControl(box, L"Edit")), L"");
    ASSERT_TRUE(program.Close()) << "the box is no hindrance";
    EXPECT_TRUE(Keeps(made));
}

TEST_F(WindowStoreTest, TheStoreStaysPutInARun)
{
    AddFolder(L"Inbox", 3);
    ASSERT_TRUE(Start("", L"--slow=300"));
    const int choices[] = {idDrive, idDir, idNewFolder, idChooseStore, idOpenFolder};
    for (const int id : choices) EXPECT_TRUE(IsWindowEnabled(Control(id))) << id;
    Press(Control(idExport));
    ASSERT_TRUE(WaitForLog("- Exporting Inbox 0"));
    for (const int id : choices) EXPECT_FALSE(IsWindowEnabled(Control(id))) << id;
    // Nor does anything else answer that could change what the run works with.
    const std::wstring before = TextOf(Control(idStorePath));
    SendMessageW(Control(idDir), LB_SETCURSEL, 0, 0);
    SendMessageW(Control(idTree), TVM_SELECTITEM, TVGN_CARET,
                 SendMessageW(Control(idTree), TVM_GETNEXTITEM, TVGN_ROOT, 0));
    const std::pair<int, int> notices[] = {{idDir, LBN_DBLCLK},          {idDrive, CBN_SELCHANGE},
                                           {idNewFolder, BN_CLICKED},    {idChooseStore, BN_CLICKED},
                                           {idUseSelection, BN_CLICKED}, {idSync, BN_CLICKED}};
    for (const auto& [id, code] : notices)
        SendMessageW(program.Window(), WM_COMMAND, MAKEWPARAM(id, code), 0);
    EXPECT_EQ(TextOf(Control(idStorePath)), before);
    EXPECT_EQ(TextOf(Control(idIgnore)), L"");
    EXPECT_EQ(SendMessageW(Control(idTab), TCM_GETCURSEL, 0, 0), 2);
    EXPECT_EQ(EndOfRun(), L"All emails for the selected folder have been exported.");
    for (const int id : choices) EXPECT_TRUE(IsWindowEnabled(Control(id))) << id;
}

} // namespace
