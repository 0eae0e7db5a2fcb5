// MailRun.h: the program and the stand-in client with a mailbox of its own, worked by the program's buttons.
#pragma once
#include "app/Form1Results.h"
#include "tests/windows/DemoClient.h"

#include <gtest/gtest.h>

class MailRun : public testing::Test {
protected:
    static std::string Message(const std::string& subject, int minute)
    {
        return "From: Ann Writer <ann@example.com>\r\nTo: Bob Reader <bob@example.com>\r\nSubject: " +
               subject + "\r\nReceived: from a by b; Tue, 3 Apr 2007 10:" + std::to_string(10 + minute % 50) +
               ":30 +0000\r\nDate: Tue, 3 Apr 2007 10:" + std::to_string(10 + minute % 50) +
               ":00 +0000\r\n\r\nBody\r\n";
    }
    static bool Contains(const std::string& text, const std::string& sought)
    {
        return text.find(sought) != std::string::npos;
    }
    void CreateFolder(const std::wstring& name) const // in the program's
    {
        CreateDirectoryW((program.Folder() + name).c_str(), nullptr);
    }
    // Before Start; the e-mails are "Name 0", "Name 1" and so on.
    void AddFolder(const std::wstring& name, int messages)
    {
        CreateFolder(L"mail");
        CreateFolder(L"mail\\" + name);
        for (int i = 0; i < messages; ++i)
            program.Write(L"mail\\" + name + L"\\" + std::to_wstring(i) + L".eml",
                          Message(std::string(name.begin(), name.end()) + " " + std::to_string(i), i));
    }
    // options: further lines of settings.ini's section. What they do not name is as at the first start, but
    // the settle time is short.
    bool Start(const std::string& options, const std::wstring& clientSwitches = {})
    {
        CreateFolder(L"store");
        const std::string store = std::string(program.Folder().begin(), program.Folder().end()) + "store";
        const std::string settle = Contains(options, "Settle Time") ? "" : "OE Folder Settle Time=0.1\r\n";
        program.Write(L"settings.ini", "[Paths]\r\nStore=" + store + "\r\n[Options]\r\n" + settle + options);
        if (!StartDemoClient(client, program.Folder(), clientSwitches)) return false;
        if (!storedBefore) return program.PassStartUp();
        if (!program.Start()) return false;
        program.PressOk(program.WaitForBox(L"IMPORTANT! Please Read"));
        return EndOfRun().starts_with(L"saved.mdb has been made anew");
    }
    HWND Control(int id) const { return program.Control(id); }
    // The box at the end of a run: answers it, and waits for the end. Its words.
    std::wstring EndOfRun()
    {
        const HWND box = WaitForWindow(program.Process().Id(), L"#32770", L"Quillbox", kPatience);
        if (!box) return L"no box";
        const std::wstring words = BoxWords(box);
        program.PressOk(box);
        return program.WaitUntilIdle(kPatience) ? words : L"still busy";
    }
    std::wstring Run(int button) { return Press(Control(button)) ? EndOfRun() : L"the button is off"; }
    void Tick(int checkBox) { SendMessageW(Control(checkBox), BM_CLICK, 0, 0); }
    std::string Log() const { return program.Read(L"log.txt"); }
    bool WaitForLog(const std::string& words) const
    {
        return Eventually([&] { return Contains(Log(), words); }, kPatience);
    }
    // "Inbox\\0000_Inbox0.eml", below the store's "Local Folders".
    std::wstring Stored(const std::wstring& name) const { return L"store\\Local Folders\\" + name; }

    bool storedBefore = false; // e-mails lie in the store that the new database does not know
    ProgramUnderTest program;  // outlives the client, whose files lie in its folder
    StartedProcess client;
};
