// Desktop.h: the windows of other programs: finding them, reading their names, sending them messages.
// Nothing here is checked by its callers: a window that has gone has no class, no caption, no parent, and
// answers 0 to every message.
#pragma once
#include "text/Text.h"

#include <functional>

// 32-bit signed, as the program has always held them: found means greater than 0.
using WindowHandle = std::int32_t;

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

    // Waits for the answer, 60 seconds at the most; then, and when the window has gone, the answer is 0.
    virtual std::int32_t Send(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                              std::int32_t lParam) = 0;
    virtual std::int32_t SendSetText(WindowHandle window, const std::string& ansi) = 0; // WM_SETTEXT
    virtual void Post(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                      std::int32_t lParam) = 0;
    virtual void BringToForeground(WindowHandle window) = 0;
    // Alt held while F and A are typed, as a user does; returns when they are processed. Types nothing when
    // the window does not come to the foreground: the keys would go to another program.
    virtual void TypeSaveAsKeys(WindowHandle window) = 0;
    virtual void Sleep(int milliseconds) = 0;
};
