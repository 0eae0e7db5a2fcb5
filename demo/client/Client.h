// Client.h: the main window of the stand-in mail client.
#pragma once
#include "demo/client/MessageList.h"
#include "demo/client/Options.h"
#include "demo/client/SaveDialog.h"
#include "demo/mailbox/Mailbox.h"

#include <map>
#include <memory>
#include <vector>

constexpr UINT kShowBox = WM_APP + 1; // to the main window; lParam: a Box

class Client {
public:
    Client(Options options, MailFolder root)
        : options_(std::move(options)), root_(std::move(root)), mishaps_(options_.mishaps)
    {
    }

    // False when options.select names no folder. The caption comes last: who sees it finds the list filled,
    // the first message selected and the window able to take keys.
    bool Show(int showCommand);
    int Run(); // until the window is closed; answers the exit code

private:
    struct LateFile {
        DWORD since; // GetTickCount, as below
        SaveAnswer answer;
        std::string_view bytes;
    };
    struct LateDialog {
        DWORD since;
        int delay;                  // milliseconds
        const MailMessage* message; // null: what is selected when the dialog opens
    };

    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnNotify(NMHDR* notification);
    void OnCreate(HWND window);
    void Layout() const;
    void ShowFolder(const MailFolder* folder);
    void ShowList(const MailFolder* folder);
    FolderRows& RowsToShow(const MailFolder* folder); // null: none
    void ShowNextList();                              // in the window of the one before, when it is time
    void AskForSave();
    void Save(const MailMessage* message); // null: the selected one
    const MailMessage* Selected();

    // What waits for its time; the timer runs while there is any.
    void OnTimer();
    void KeepTimer();
    bool FillList(); // whether it is still filling
    void OpenDueDialogs();
    void WriteDueFiles();

    // ClientMishaps.cpp
    static LRESULT CALLBACK WatchProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR client);
    void Watch(HWND window); // counts what other processes send to it
    Handling Occur(Event event, HWND dialog = nullptr);
    void Do(const Mishap& mishap, HWND dialog, Handling& handling);
    void ShowBox(const Box& box, HWND dialog, Handling& handling);
    void PumpFor(DWORD milliseconds);

    Options options_;
    MailFolder root_;
    MishapCounter mishaps_;
    HWND window_ = nullptr, navigation_ = nullptr, messageView_ = nullptr, listHost_ = nullptr,
         status_ = nullptr;
    FolderRows none_;
    std::map<const MailFolder*, FolderRows> rows_; // of the folders shown so far
    std::unique_ptr<MessageList> list_;
    std::vector<LateFile> lateFiles_;
    std::vector<LateDialog> lateDialogs_;
    std::wstring caption_;
    DWORD shownSince_ = 0, fillingSince_ = 0;
    const MailFolder* nextFolder_ = nullptr; // of the list that is to come
    DWORD nextSince_ = 0;
    bool nextComes_ = false;
    bool shown_ = false, dialogOpen_ = false, filling_ = false;
    std::size_t commands_ = 0;
    int insideMessage_ = 0; // what the client sends to its own controls is none from outside
};
