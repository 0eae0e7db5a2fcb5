// MessageList.h: the message list of one folder: a virtual list view and what its cells say.
#pragma once
#include "demo/client/Options.h"
#include "demo/client/Summary.h"
#include "demo/mailbox/Mailbox.h"

#include <optional>
#include <vector>

#include <windows.h>

#include <commctrl.h>

class MessageList {
public:
    // folder null: an empty list.
    explicit MessageList(const MailFolder* folder)
        : folder_(folder), rows_(folder ? folder->messages.size() : 0)
    {
    }

    // Makes "Outlook Express Message List" and the list view in it; the list's notifications reach the window
    // above messageView. No row is selected.
    HWND Create(HWND messageView, const Options& options);

    void OnGetDispInfo(NMLVDISPINFOW& info); // LVN_GETDISPINFOW
    void SelectFirst() const;
    void SetFocusToList() const { ::SetFocus(list_); }
    const MailMessage* SelectedMessage() const; // the first that is selected; null: none
    int Count() const { return static_cast<int>(rows_.size()); }
    HWND ListView() const { return list_; }

private:
    const Summary& Row(std::size_t row); // read when it is first shown

    const MailFolder* folder_;
    std::vector<std::optional<Summary>> rows_;
    std::vector<int> fields_; // of each column, by index
    HWND list_ = nullptr;
};
