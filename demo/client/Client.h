// Client.h: the main window of the stand-in mail client.
#pragma once
#include "demo/client/MessageList.h"
#include "demo/client/Options.h"
#include "demo/mailbox/Mailbox.h"

#include <memory>
#include <vector>

class Client {
public:
    Client(Options options, MailFolder root) : options_(std::move(options)), root_(std::move(root)) {}

    // False when options.select names no folder. The caption comes last: who sees it finds the list filled,
    // the first message selected and the window able to take keys.
    bool Show(int showCommand);
    int Run(); // until the window is closed; answers the exit code

private:
    struct LateFile {
        std::wstring path;
        std::string_view bytes;
    };

    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnNotify(NMHDR* notification);
    void OnCreate(HWND window);
    void OnTimer(WPARAM timer);
    void Layout() const;
    void ShowFolder(const MailFolder* folder);
    void AskForSave();
    void Save();
    void WriteDueFiles();
    void CountSave();

    Options options_;
    MailFolder root_;
    HWND window_ = nullptr, navigation_ = nullptr, messageView_ = nullptr, listHost_ = nullptr,
         status_ = nullptr;
    std::unique_ptr<MessageList> list_;
    std::vector<LateFile> lateFiles_;
    std::wstring caption_;
    bool shown_ = false, dialogOpen_ = false;
    int saves_ = 0;
};
