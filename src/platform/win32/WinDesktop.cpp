#include "platform/win32/WinDesktop.h"

#include <windows.h>

namespace {

constexpr UINT kAnswerLimit = 60 * 1000; // milliseconds: a dead client cannot hold the program for ever
constexpr int kFocusTries = 20, kFocusWait = 10; // milliseconds until the window really has the focus

HWND WindowOf(WindowHandle handle)
{
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(handle));
}

WindowHandle HandleOf(HWND window)
{
    return static_cast<WindowHandle>(reinterpret_cast<LONG_PTR>(window));
}

BOOL CALLBACK OnWindow(HWND window, LPARAM visit)
{
    return (*reinterpret_cast<const Desktop::Visit*>(visit))(HandleOf(window)) ? TRUE : FALSE;
}

LPARAM VisitParam(const Desktop::Visit& visit)
{
    return reinterpret_cast<LPARAM>(&visit);
}

void TypeKey(WORD key, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, 0));
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

void Press(WORD key)
{
    TypeKey(key, 0);
    TypeKey(key, KEYEVENTF_KEYUP);
}

} // namespace

// Every synchronous message takes this road. A client that hangs costs the limit once, not once a message:
// until it answers again it is only asked whether it is still hanging.
std::int32_t WinDesktop::SendAndWait(WindowHandle window, std::uint32_t message, std::uint32_t wParam,
                                     std::int32_t lParam)
{
    const DWORD thread = window == 0 ? 0 : GetWindowThreadProcessId(WindowOf(window), nullptr);
    if (thread == 0) return 0; // no window, or one that has gone
    const UINT patience = thread == silentThread_ ? SMTO_ABORTIFHUNG : SMTO_NORMAL;
    DWORD_PTR answer = 0;
    SetLastError(0);
    if (SendMessageTimeoutA(WindowOf(window), message, wParam, lParam, patience, kAnswerLimit, &answer)) {
        if (thread == silentThread_) silentThread_ = 0;
        return static_cast<std::int32_t>(answer);
    }
    // Older systems tell a time-out by error 0, newer ones by ERROR_TIMEOUT.
    if (GetLastError() != ERROR_INVALID_WINDOW_HANDLE) silentThread_ = thread;
    return 0;
}

void WinDesktop::EnumTopWindows(const Visit& visit)
{
    EnumWindows(OnWindow, VisitParam(visit));
}

void WinDesktop::EnumDescendants(WindowHandle parent, const Visit& visit)
{
    EnumChildWindows(WindowOf(parent), OnWindow, VisitParam(visit));
}

Text WinDesktop::ClassOf(WindowHandle window, int bufferSize)
{
    std::string buffer(static_cast<std::size_t>(bufferSize), '\0');
    const int length = GetClassNameA(WindowOf(window), buffer.data(), bufferSize);
    return codePage_.FromAnsi(
        std::string_view(buffer).substr(0, length > 0 ? static_cast<std::size_t>(length) : 0));
}

Text WinDesktop::CaptionOf(WindowHandle window, int bufferSize)
{
    std::string buffer(static_cast<std::size_t>(bufferSize), '\0');
    const int length = GetWindowTextA(WindowOf(window), buffer.data(), bufferSize);
    return codePage_.FromAnsi(
        std::string_view(buffer).substr(0, length > 0 ? static_cast<std::size_t>(length) : 0));
}

WindowHandle WinDesktop::ParentOf(WindowHandle window)
{
    return HandleOf(GetParent(WindowOf(window)));
}

std::int32_t WinDesktop::Send(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                              std::int32_t lParam)
{
    return SendAndWait(window, message, static_cast<std::uint32_t>(wParam), lParam);
}

std::int32_t WinDesktop::SendSetText(WindowHandle window, const std::string& ansi)
{
    return SendAndWait(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(ansi.c_str()));
}

void WinDesktop::Post(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    // Window 0 would be this thread's own queue.
    if (window != 0) PostMessageA(WindowOf(window), message, static_cast<WPARAM>(wParam), lParam);
}

void WinDesktop::BringToForeground(WindowHandle window)
{
    if (window != 0) SetForegroundWindow(WindowOf(window));
}

void WinDesktop::TypeSaveAsKeys(WindowHandle window)
{
    // The call that brings a window to the foreground returns before its thread has the focus; keys typed at
    // once would go astray. One empty message then shows that the thread is back in its loop.
    const HWND target = WindowOf(window);
    for (int tries = 0; tries < kFocusTries && GetForegroundWindow() != target; ++tries) ::Sleep(kFocusWait);
    if (!target || GetForegroundWindow() != target) return;
    SendAndWait(window, WM_NULL, 0, 0);
    TypeKey(VK_MENU, 0);
    Press('F');
    Press('A');
    TypeKey(VK_MENU, KEYEVENTF_KEYUP);
    SendAndWait(window, WM_NULL, 0, 0);
}

void WinDesktop::Sleep(int milliseconds)
{
    ::Sleep(static_cast<DWORD>(milliseconds));
}
