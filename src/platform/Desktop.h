// Desktop.h: the windows of other programs: finding them, reading their names, sending them messages.
// A window that has gone has no class, no caption and no parent, and answers no message.
#pragma once
#include "text/Text.h"

#include <functional>

// 32-bit signed, as the program has always held them: found means greater than 0.
using WindowHandle = std::int32_t;

enum class Reply {
    given,
    timedOut, // the window's thread did not answer within the limit; its handler may still be running
    gone,     // there is no such window (any more)
    refused,  // the system does not let this program send to that one: it has higher rights
};

struct Answer {
    Reply reply = Reply::gone;
    std::int32_t value = 0; // 0 unless given
};

struct Desktop {
    using Visit = std::function<bool(WindowHandle)>; // false ends the enumeration

    virtual ~Desktop() = default;
    virtual void EnumTopWindows(const Visit& visit) = 0; // from the top of the z-order down
    // All descendants. With parent 0 the top-level windows.
    virtual void EnumDescendants(WindowHandle parent, const Visit& visit) = 0;
    // Both cut to what fits a buffer of bufferSize ANSI characters, the closing NUL included.
    virtual Text ClassOf(WindowHandle window, int bufferSize) = 0;
    virtual Text CaptionOf(WindowHandle window, int bufferSize) = 0;
    virtual WindowHandle ParentOf(WindowHandle window) = 0;

    virtual WindowHandle OwnerOf(WindowHandle window) = 0;     // of a dialog or box; 0: none
    virtual std::int32_t ControlIdOf(WindowHandle window) = 0; // of a dialog's button, say
    virtual bool IsEnabled(WindowHandle window) = 0;           // a window behind a modal dialog is not
    virtual bool IsThere(WindowHandle window) = 0;

    // Asks: waits for the answer, 60 seconds at the most, and handles no event meanwhile.
    virtual Answer Send(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                        std::int32_t lParam) = 0;
    // Acts: sent like the others, but the caller goes on; the parameters must not be addresses. There is one
    // act at a time: beginning the next forgets the one before, whose answer is then nobody's.
    virtual void BeginAct(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                          std::int32_t lParam) = 0;
    virtual bool IsActOver() = 0; // answered, or could not be sent, or its window has gone
    // Sleeps until a message for this thread has come (the answer to an act is one) or the time is over.
    virtual void AwaitMessage(int milliseconds) = 0;
    virtual Answer SendSetText(WindowHandle window, const std::string& ansi) = 0; // WM_SETTEXT, as Send
    // WM_GETTEXT, as Send: what a control shows, cut like a caption.
    virtual Answer SendGetText(WindowHandle window, int bufferSize, Text& text) = 0;
    virtual void Post(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                      std::int32_t lParam) = 0;
    virtual void BringToForeground(WindowHandle window) = 0;
    virtual bool IsForeground(WindowHandle window) = 0;
    // Alt held while the letters (capitals A to Z) are typed, as a user does, for whatever window is in the
    // foreground.
    virtual void TypeWithAlt(TextView letters) = 0;
    virtual void Sleep(int milliseconds) = 0;
    virtual std::uint32_t Milliseconds() = 0; // since some moment; begins anew every 49.7 days
};
