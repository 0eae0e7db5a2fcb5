// ClientMishaps.cpp: counts what happens to the client, and does what is to go wrong then.
#include "demo/client/Client.h"

#include <utility>

namespace {

constexpr UINT_PTR kWatchId = 1;

bool IsOfDialog(Event event)
{
    return event == Event::dialog || event == Event::save || event == Event::cancel;
}

} // namespace

void Client::Watch(HWND window)
{
    if (window) SetWindowSubclass(window, WatchProc, kWatchId, reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK Client::WatchProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                   DWORD_PTR data)
{
    auto* client = reinterpret_cast<Client*>(data);
    const bool fromOutside = client->insideMessage_ == 0 && InSendMessageEx(nullptr) != ISMEX_NOSEND;
    const std::optional<Event> event = fromOutside ? EventOf(message, wParam) : std::nullopt;
    ++client->insideMessage_;
    LRESULT answer = 0;
    Handling handling;
    if (event) {
        const Handling any = client->Occur(Event::message);
        handling = client->Occur(*event);
        handling.lost = handling.lost || any.lost;
    }
    if (handling.twice) DefSubclassProc(window, message, wParam, lParam);
    if (!handling.lost) answer = DefSubclassProc(window, message, wParam, lParam);
    --client->insideMessage_;
    return answer;
}

Handling Client::Occur(Event event, HWND dialog)
{
    Handling handling;
    for (const Mishap& mishap : mishaps_.Count(event)) {
        // A box in front of the main window does not keep the sender of a message waiting.
        if (mishap.action == Action::box && !IsOfDialog(event))
            PostMessageW(window_, kShowBox, 0, reinterpret_cast<LPARAM>(mishap.box));
        else
            Do(mishap, dialog, handling);
    }
    return handling;
}

void Client::Do(const Mishap& mishap, HWND dialog, Handling& handling)
{
    ++insideMessage_;
    switch (mishap.action) {
    case Action::arrive:
        list_->Arrive(mishap.value);
        break;
    case Action::remove:
        list_->Delete(mishap.value);
        break;
    case Action::resort:
        list_->Reverse();
        break;
    case Action::group:
        list_->Group();
        break;
    case Action::silent:
        Sleep(mishap.value == 0 ? INFINITE : static_cast<DWORD>(mishap.value));
        break;
    case Action::pump:
        PumpFor(static_cast<DWORD>(mishap.value));
        break;
    case Action::lose:
        handling.lost = true;
        break;
    case Action::twice:
        handling.twice = true;
        break;
    case Action::box:
        ShowBox(*mishap.box, dialog, handling);
        break;
    case Action::noFile:
        handling.noFile = true;
        break;
    case Action::late:
        handling.late = true;
        handling.milliseconds = mishap.value;
        break;
    case Action::empty:
        handling.empty = true;
        handling.milliseconds = mishap.value;
        break;
    case Action::close:
        PostMessageW(window_, WM_CLOSE, 0, 0);
        break;
    }
    --insideMessage_;
}

void Client::ShowBox(const Box& box, HWND dialog, Handling& handling)
{
    const bool orphan = !dialog && std::wstring_view(box.name) == L"other";
    const int inside = std::exchange(insideMessage_, 0); // what comes meanwhile comes from outside
    if (orphan) EnableWindow(window_, FALSE);
    const int answer = MessageBoxW(orphan   ? nullptr
                                   : dialog ? dialog
                                            : window_,
                                   box.words, box.caption, box.kind);
    if (orphan) EnableWindow(window_, TRUE);
    insideMessage_ = inside;
    handling.lost = answer != IDYES;
    handling.replaceFile = answer == IDYES;
}

void Client::PumpFor(DWORD milliseconds)
{
    const int inside = std::exchange(insideMessage_, 0); // as above
    const DWORD start = GetTickCount();
    for (DWORD gone = 0; gone < milliseconds; gone = GetTickCount() - start) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - gone, QS_ALLINPUT);
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                milliseconds = 0;
                break;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    insideMessage_ = inside;
}
