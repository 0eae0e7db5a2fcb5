// DatabaseWindowTest.cpp: what a user sees of a database of saved e-mails that cannot be written, was mended,
// or is condensed.
#include "app/Form1Results.h"
#include "tests/support/JetSamples.h"
#include "tests/windows/ProgramUnderTest.h"

#include <gtest/gtest.h>

namespace {

constexpr DWORD kPatience = 60000;

struct Search {
    int id;
    HWND found;
};

BOOL CALLBACK MatchControl(HWND control, LPARAM sought)
{
    auto& search = *reinterpret_cast<Search*>(sought);
    if (GetDlgCtrlID(control) == search.id) search.found = control;
    return search.found == nullptr;
}

class DatabaseWindowTest : public testing::Test {
protected:
    static std::string Database(int rows, int different)
    {
        MemoryFiles files;
        CreateSaved(files);
        auto database = OpenJetDatabase(files, kSavedPath);
        const auto added = database->OpenRecordset(u"SELECT * FROM saved");
        for (int i = 0; i < rows; ++i) {
            added->AddNew();
            added->SetField(u"efolder", u"Inbox");
            added->SetField(u"ecrc", DecimalText(i % different));
            added->Update();
        }
        database.reset();
        return files[kSavedPath].Bytes();
    }
    // "Database error" and the like; answers it.
    std::wstring Box()
    {
        const HWND box = WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", kPatience);
        const std::wstring words = box ? BoxWords(box) : L"no box";
        if (box) program.PressOk(box);
        return words;
    }
    // The window once the box, if one comes before it is there, has been answered.
    bool PassStartUp()
    {
        program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
        window = WaitForWindow(program.Process().Id(), L"Form1", L"", kPatience);
        return WaitUntilIdle();
    }
    HWND Control(int id) const
    {
        Search search = {id, nullptr};
        EnumChildWindows(window, MatchControl, reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    bool IsOn(int button) const { return IsWindowEnabled(Control(button)) != FALSE; }
    bool WaitUntilIdle() const
    {
        return Eventually([this] { return IsOn(idSync); }, kPatience);
    }
    bool Close()
    {
        PostMessageW(window, WM_CLOSE, 0, 0);
        return program.Process().WaitForEnd(kPatience);
    }
    void Start() { program.Process().Start(L"\"" + program.Folder() + L"quillbox.exe\"", program.Folder()); }
    void Condense() { PostMessageW(window, WM_COMMAND, mnCondenseDB, 0); }
    // The figure of "Removed 5 record(s)" on the display, when the run has ended.
    int Removed()
    {
        int count = -1;
        EXPECT_TRUE(Eventually(
            [&] { return swscanf(TextOf(Control(idOrbVac)).c_str(), L"Removed %d record", &count) == 1; },
            kPatience));
        EXPECT_TRUE(WaitUntilIdle());
        return count;
    }

    ProgramUnderTest program;
    HWND window = nullptr;
};

} // namespace

TEST_F(DatabaseWindowTest, WhatCannotBeWrittenIsSaidAtOnceAndKeepsExportingOff)
{
    std::string bytes = Database(3, 3);
    bytes[16 * 4096 + 16] = 4; // rows, so one is lost
    program.Write(L"saved.mdb", bytes);
    Start();
    const std::wstring reason = L"The table has lost rows: it should have 4 and has 3", words = Box();
    EXPECT_NE(words.find(L"can be read but not written, so exporting stays off"), std::wstring::npos);
    EXPECT_NE(words.find(reason), std::wstring::npos);
    ASSERT_TRUE(PassStartUp());
    EXPECT_FALSE(IsOn(idExport));
    EXPECT_FALSE(IsOn(idSaveAll));
    EXPECT_TRUE(IsOn(idCheckFolder));
    Condense();
    EXPECT_EQ(Box(), L"Database error: the database of saved emails cannot be written: " + reason);
    ASSERT_TRUE(WaitUntilIdle());
    EXPECT_FALSE(IsOn(idExport));
    EXPECT_TRUE(Close());
    EXPECT_NE(program.Read(L"log.txt")
                  .find("The database of saved emails can be read but not written: The "
                        "table has lost rows"),
              std::string::npos);
    EXPECT_EQ(program.Read(L"saved.mdb"), bytes);
}

TEST_F(DatabaseWindowTest, AWriteProtectedFileIsReadOnly)
{
    const std::string bytes = Database(3, 2);
    program.Write(L"saved.mdb", bytes);
    const std::wstring path = program.Folder() + L"saved.mdb";
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    const HANDLE opened = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (opened != INVALID_HANDLE_VALUE) {
        CloseHandle(opened);
        GTEST_SKIP() << "this user may write everything, as the superuser below Wine may";
    }
    Start();
    EXPECT_NE(Box().find(L"The file is write-protected, or this user may not write it"), std::wstring::npos);
    ASSERT_TRUE(PassStartUp());
    EXPECT_FALSE(IsOn(idExport));
    EXPECT_TRUE(IsOn(idCheckFolder));
    EXPECT_TRUE(Close());
    EXPECT_EQ(program.Read(L"saved.mdb"), bytes);
}

TEST_F(DatabaseWindowTest, WhatWasMendedIsLogged)
{
    std::string bytes = Database(3, 3);
    bytes[16 * 4096 + 16] = 2;
    program.Write(L"saved.mdb", bytes);
    Start();
    ASSERT_TRUE(PassStartUp());
    EXPECT_TRUE(IsOn(idExport));
    EXPECT_TRUE(Close());
    const std::string log = program.Read(L"log.txt");
    const std::size_t started = log.find("Started Quillbox"),
                      mended = log.find(
                          "Database of saved emails: the count of its rows was corrected from 2 to 3");
    EXPECT_NE(mended, std::string::npos);
    EXPECT_GT(mended, started);
}

TEST_F(DatabaseWindowTest, CondensingShowsHowFarItIsAndCanBeStopped)
{
    constexpr int kRows = 100000, kDifferent = 66667;
    program.Write(L"saved.mdb", Database(kRows, kDifferent));
    Start();
    ASSERT_TRUE(PassStartUp());
    int removed = 0;
    for (const int button : {idStopAfterEmail, idStopAfterFolder}) {
        Condense();
        ASSERT_TRUE(Eventually(
            [&] {
                const std::wstring shown = TextOf(Control(idProg));
                return shown != L"0%" && shown != L"100%" && IsWindowVisible(Control(button));
            },
            kPatience));
        EXPECT_FALSE(IsOn(idExport)) << "as in any run";
        SendMessageW(Control(button), BM_CLICK, 0, 0);
        removed += Removed();
        EXPECT_LT(removed, kRows - kDifferent);
    }
    EXPECT_FALSE(IsWindowVisible(Control(idStopAfterEmail)));
    Condense();
    Eventually([&] { return !IsOn(idSync); }, kPatience);
    removed += Removed();
    EXPECT_EQ(removed, kRows - kDifferent);
    EXPECT_TRUE(Close());
    const std::string log = program.Read(L"log.txt"), line = "Condensing was stopped: ";
    const std::size_t first = log.find(line), second = log.find(line, first + 1);
    EXPECT_NE(second, std::string::npos);
    EXPECT_EQ(log.find(line, second + 1), std::string::npos) << "not of the one that came to its end";
}
