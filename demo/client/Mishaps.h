// Mishaps.h: what goes wrong in the stand-in client, and when: the switch --at=EVENT:N:ACTION[:VALUE], which
// may be given any number of times. The action is done at the N-th occurrence of the event; N = 0: at each.
//
// EVENT        a message from another process to the list, its header or the folder tree, or to what they do:
//   message    any of the following ones (to the list, the header or the tree)
//   LVM_GETITEMCOUNT LVM_GETNEXTITEM LVM_GETSELECTEDCOUNT LVM_GETITEMW LVM_GETHEADER LVM_GETCOLUMNORDERARRAY
//   LVM_SETITEMSTATE LVM_ENSUREVISIBLE HDM_GETITEMCOUNT HDM_GETITEMA TVM_GETNEXTITEM TVM_GETITEMW
//   folder     another folder is selected in the tree (TVM_SELECTITEM with TVGN_CARET)
//   down, home the key reaches the list
//   command    "Save As" is chosen or posted; before the message is taken
//   dialog     a Save dialog is open
//   save       its "Save" is pressed, "cancel": its "Cancel"
//   saved      it has closed after "Save"
//   time       N is milliseconds since the window was shown
//
// ACTION       VALUE
//   arrive     1..   so many of the messages kept by --hold-back come in on top of the list (default 1)
//   delete     row   the message so many rows from the selected one goes: -1 (default) is the one above it
//   resort           the order of the list is reversed; "group": a subject's replies go below its first
//                    message and are no longer rows. The selection stays on its message, as in the two above
//   silent     ms    nothing is handled for so long, then goes on; 0 (default): for ever
//   pump       ms    the event is handled so much later; until then everything else is
//   lose             the event is not handled: a message is answered with 0, "command" brings no dialog,
//                    "save" leaves the dialog open
//   double           a message or command is handled twice
//   box        name  bad-name, replace, disk-full, confirm, other (see kBoxes). At "save" in front of the
//                    dialog, with the file saved only after "Yes"; at "dialog" in front of it; else in front
//                    of the main window, "other" without an owner, but with the main window disabled
//   no-file          of "save": the dialog closes, and there is no file
//   late       ms    of "save": the dialog closes, the file is there so much later
//   empty      ms    of "save": an empty file, filled so much later; 0 (default): never
//   close            the client closes
#pragma once
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

enum class Event {
    message,
    itemCount,
    nextItem,
    selectedCount,
    itemText,
    listHeader,
    columnOrder,
    itemState,
    ensureVisible,
    headerCount,
    headerItem,
    treeNext,
    treeItem,
    folder,
    down,
    home,
    command,
    dialog,
    save,
    cancel,
    saved,
    time
};
enum class Action {
    arrive,
    remove,
    resort,
    group,
    silent,
    pump,
    lose,
    twice,
    box,
    noFile,
    late,
    empty,
    close
};

struct Box {
    const wchar_t* name;
    const wchar_t* caption;
    const wchar_t* words;
    UINT kind; // of MessageBox
};

struct Mishap {
    Event event = Event::message;
    int at = 0;
    Action action = Action::lose;
    int value = 0;
    const Box* box = nullptr; // of Action::box
};

// One value of --at. Nothing when it cannot be read.
std::optional<Mishap> ParseMishap(const std::wstring& text);

// The event that a message to list, header or tree is; nothing when nobody asks for it by that.
std::optional<Event> EventOf(UINT message, WPARAM wParam);

// Counts events.
class MishapCounter {
public:
    explicit MishapCounter(std::vector<Mishap> mishaps) : mishaps_(std::move(mishaps)) {}

    std::vector<Mishap> Count(Event event);                  // those that are to happen now
    std::vector<Mishap> TakeDue(DWORD millisecondsOfTheRun); // of Event::time, each once
    bool WaitsForTime() const;

private:
    std::vector<Mishap> mishaps_;
    int counts_[static_cast<int>(Event::time)] = {};
};
