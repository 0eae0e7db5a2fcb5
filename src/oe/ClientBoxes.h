// ClientBoxes.h: the message boxes by which the client answers a click of ours.
#pragma once
#include "oe/OeClient.h"

#include <set>

struct BoxEnd {
    bool hasGone = false;
    bool saidNo = false; // it had a "No": it asked before it did anything
};

// Presses "No", else "Cancel", else "OK", never another button, and logs the box's words. One that has none
// of these, or does not go within some seconds, stays.
BoxEnd AnswerBox(OeClient& client, WindowHandle box);

// Knows what is open when it is made, right before a click in the client's dialog: a box of the client that
// comes later and belongs to the dialog (to the main window, when the dialog has gone) is its answer.
class ClientBoxes {
public:
    ClientBoxes(OeClient& client, WindowHandle dialog);
    // What stands in front of a dialog of ours came after it, whenever that was.
    static ClientBoxes InFrontOf(OeClient& client, WindowHandle dialog);

    WindowHandle Newest() const; // the topmost such box; 0: none
    // Each, up to three, until one stays. Whether one had a "No".
    bool Answer() const;

private:
    enum class Scope { dialog, mainWindowToo };
    ClientBoxes(OeClient& client, WindowHandle dialog, Scope scope)
        : client_(client), dialog_(dialog), scope_(scope)
    {
    }
    bool IsOurs(WindowHandle window) const;

    OeClient& client_;
    WindowHandle dialog_;
    Scope scope_;
    std::set<WindowHandle> before_;
};
