// MessageList.h: the message list of one folder: a virtual list view and what its cells say.
#pragma once
#include "demo/client/Options.h"
#include "demo/client/Summary.h"
#include "demo/mailbox/Mailbox.h"

#include <functional>
#include <map>
#include <vector>

#include <windows.h>

#include <commctrl.h>

// Which messages of a folder are in its list, from the top down, and how many are yet to arrive: the first of
// the folder, the last of them first. Outlives the list, which is made anew whenever its folder is shown.
struct FolderRows {
    std::vector<std::size_t> shown;
    std::size_t heldBack = 0;
};
FolderRows RowsOf(const MailFolder* folder, int holdBack); // folder null: none

class MessageList {
public:
    // folder null: an empty list.
    MessageList(const MailFolder* folder, FolderRows& rows) : folder_(folder), rows_(rows) {}

    // Makes "Outlook Express Message List" and the list view in it; the list's notifications reach the window
    // above messageView. No row is selected.
    HWND Create(HWND messageView, const Options& options);

    // In place of it in its window. No row is selected.
    void TakeOver(const MessageList& before);

    void OnGetDispInfo(NMLVDISPINFOW& info); // LVN_GETDISPINFOW
    void SelectFirst() const;
    void SetFocusToList() const { ::SetFocus(list_); }
    const MailMessage* SelectedMessage() const; // the first that is selected; null: none
    int Count() const { return static_cast<int>(rows_.shown.size()); }
    HWND ListView() const { return list_; }

    // Shows the first rows of the list only.
    void ShowRows(int count) const;

    // The selection stays on its message; where that goes, the one that takes its row is selected.
    void Arrive(int messages);
    void Delete(int fromSelected);
    void Reverse();
    void Group(); // of the messages of one subject, "Re:" aside, only the first stays a row

private:
    int SelectedRow() const; // -1: none
    void Change(const std::function<void(std::vector<std::size_t>&)>& change);
    const Summary& SummaryOf(std::size_t message); // read when it is first shown

    const MailFolder* folder_;
    FolderRows& rows_;
    std::map<std::size_t, Summary> summaries_;
    std::vector<int> fields_; // of each column, by index
    HWND list_ = nullptr;
};
