#include "platform/win32/WinDesktop.h"

#include <windows.h>

namespace {

constexpr UINT kAnswerLimit = 60 * 1000; // milliseconds: a dead client cannot hold the program for ever

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

// Every synchronous message takes this road.
Answer SendAndWait(WindowHandle window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // A client may answer anything for its header; by that number a message would go to every program.
    if (window == 0 || WindowOf(window) == HWND_BROADCAST) return {Reply::gone};
    DWORD_PTR answer = 0;
    SetLastError(0);
    if (SendMessageTimeoutA(WindowOf(window), message, wParam, lParam, SMTO_NORMAL, kAnswerLimit, &answer))
        return {Reply::given, static_cast<std::int32_t>(answer)};
    const DWORD error = GetLastError();
    if (error == ERROR_ACCESS_DENIED) return {Reply::refused};
    // Older systems tell a time-out by error 0, newer ones by ERROR_TIMEOUT; a window may also have gone,
    // which its handler need not have noticed.
    const bool timedOut = error == ERROR_TIMEOUT || IsWindow(WindowOf(window));
    return {timedOut ? Reply::timedOut : Reply::gone};
}

using AnswerPlace = std::shared_ptr<bool>;

void CALLBACK OnActAnswered(HWND, UINT, ULONG_PTR place, LRESULT)
{
    const std::unique_ptr<AnswerPlace> own(reinterpret_cast<AnswerPlace*>(place));
    **own = true;
}

} // namespace

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

WindowHandle WinDesktop::OwnerOf(WindowHandle window)
{
    return HandleOf(GetWindow(WindowOf(window), GW_OWNER));
}

std::int32_t WinDesktop::ControlIdOf(WindowHandle window)
{
    return GetDlgCtrlID(WindowOf(window));
}

bool WinDesktop::IsEnabled(WindowHandle window)
{
    return IsWindowEnabled(WindowOf(window)) != FALSE;
}

bool WinDesktop::IsThere(WindowHandle window)
{
    return IsWindow(WindowOf(window)) != FALSE;
}

Answer WinDesktop::Send(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    return SendAndWait(window, message, static_cast<std::uint32_t>(wParam), lParam);
}

Answer WinDesktop::SendSetText(WindowHandle window, const std::string& ansi)
{
    return SendAndWait(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(ansi.c_str()));
}

Answer WinDesktop::SendGetText(WindowHandle window, int bufferSize, Text& text)
{
    std::string buffer(static_cast<std::size_t>(bufferSize), '\0');
    const Answer answer =
        SendAndWait(window, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data()));
    text = codePage_.FromAnsi(buffer.substr(0, buffer.find('\0')));
    return answer;
}

void WinDesktop::BeginAct(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                          std::int32_t lParam)
{
    actWindow_ = window;
    actAnswered_ = std::make_shared<bool>(false);
    auto place = std::make_unique<AnswerPlace>(actAnswered_);
    if (window != 0 && SendMessageCallbackA(WindowOf(window), message, static_cast<std::uint32_t>(wParam),
                                            lParam, OnActAnswered, reinterpret_cast<ULONG_PTR>(place.get())))
        (void)place.release(); // the answer deletes it
    else
        *actAnswered_ = true; // nobody was there to be told, or it is not allowed
}

bool WinDesktop::IsActOver()
{
    // The answer is handed over when this thread looks for messages.
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    return !actAnswered_ || *actAnswered_ || !IsThere(actWindow_);
}

void WinDesktop::AwaitMessage(int milliseconds)
{
    // What is to be painted has time.
    MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(milliseconds), QS_ALLINPUT & ~QS_PAINT);
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

bool WinDesktop::IsForeground(WindowHandle window)
{
    return window != 0 && GetForegroundWindow() == WindowOf(window);
}

void WinDesktop::TypeWithAlt(TextView letters)
{
    TypeKey(VK_MENU, 0);
    for (const char16_t letter : letters) Press(letter); // its virtual key, too
    TypeKey(VK_MENU, KEYEVENTF_KEYUP);
}

void WinDesktop::Sleep(int milliseconds)
{
    ::Sleep(static_cast<DWORD>(milliseconds));
}

std::uint32_t WinDesktop::Milliseconds()
{
    return GetTickCount();
}
