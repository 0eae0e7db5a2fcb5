// WindowFilesTest.cpp: the program's own files in the hands of others: a backup has them to itself, or a
// second copy of the program is at work in the same folder.
#include "tests/windows/MailRun.h"

namespace {

class Held { // to itself, by another program
public:
    explicit Held(const std::wstring& path)
        : file_(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr))
    {
    }
    ~Held() { CloseHandle(file_); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

private:
    HANDLE file_;
};

class WindowFilesTest : public MailRun {
protected:
    // Starts a copy of the program; the words of its boxes before the one of every start.
    std::wstring StartUp(StartedProcess& copy) const
    {
        copy.Start(Quoted(program.Folder() + L"quillbox.exe"), program.Folder());
        std::wstring words;
        for (bool last = false; !last;) {
            const HWND box = WaitForWindow(copy.Id(), L"#32770", L"", kPatience);
            if (!box) return L"no box";
            last = TextOf(box).starts_with(L"IMPORTANT");
            if (!last) words += BoxWords(box);
            program.PressOk(box);
        }
        const HWND form = FindProgramWindow(copy.Id(), L"Form1");
        const auto isIdle = [form] { return IsWindowEnabled(FindButton(form, L"Check folder")) != FALSE; };
        return Eventually(isIdle, kPatience) ? words : L"busy for ever";
    }
    static bool MayExport(const StartedProcess& copy)
    {
        const HWND form = FindProgramWindow(copy.Id(), L"Form1");
        return IsWindowEnabled(FindButton(form, L"Export emails in all folders")) != FALSE;
    }
    static bool Close(const StartedProcess& copy)
    {
        PostMessageW(FindProgramWindow(copy.Id(), L"Form1"), WM_CLOSE, 0, 0);
        return copy.WaitForEnd(kPatience);
    }
};

} // namespace

TEST_F(WindowFilesTest, WhatAnotherProgramHasToItselfIsSaidAndLeftAlone)
{
    AddFolder(L"Inbox", 1);
    ASSERT_TRUE(Start(""));
    ASSERT_TRUE(program.Close());
    const std::string settings = program.Read(L"settings.ini");
    const struct {
        const wchar_t* file;
        std::wstring words;
        bool mayExport;
    } cases[] = {
        {L"log.txt", L"", true},
        {L"settings.ini", L"settings.ini cannot be read, so your choices are not known", true},
        {L"saved.mdb", L"The database of saved emails cannot be opened, so exporting stays off", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.file, c.file + std::wcslen(c.file)));
        StartedProcess copy;
        auto held = std::make_unique<Held>(program.Folder() + c.file);
        const std::wstring words = StartUp(copy);
        EXPECT_TRUE(words.starts_with(c.words) && words.empty() == c.words.empty());
        EXPECT_EQ(MayExport(copy), c.mayExport);
        held.reset(); // it ends in between
        EXPECT_TRUE(Close(copy));
        EXPECT_EQ(program.Read(L"settings.ini"), settings);
    }
}

TEST_F(WindowFilesTest, ASecondCopyLeavesTheFirstOnesDatabaseAlone)
{
    AddFolder(L"Inbox", 3);
    ASSERT_TRUE(Start(""));
    StartedProcess second;
    EXPECT_TRUE(StartUp(second).ends_with(L"The file is in use by another program"));
    EXPECT_FALSE(MayExport(second));
    EXPECT_EQ(Run(cmdExport), L"All emails for the selected folder have been exported.");
    EXPECT_TRUE(Contains(Log(), "3 of 3 e-mail(s) handled in this run are saved"));
    EXPECT_TRUE(Close(second));
    EXPECT_TRUE(program.Close());
}
