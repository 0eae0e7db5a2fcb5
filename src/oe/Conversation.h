// Conversation.h: what is said to the client's windows, and how long the program waits for them.
// A message either asks (counts, cells: its answer is used, it may carry an address of foreign memory, and no
// event is handled meanwhile) or acts (keys, clicks, selecting a folder: it carries no address, its answer is
// not used, and the window lives while the client works).
// Fails by: nothing is thrown. A client that let something run out of time is `silent`: it is neither asked
// nor acted on until it has answered an empty message (AwaitClient).
#pragma once
#include "oe/OeClient.h"

#include <optional>

// The one way to wait: asks the condition, then up to `tries` times sleeps and asks again. Whether the
// condition came true. The window lives meanwhile, and answers within 50 ms. With a shorter poll interval in
// the settings it asks at least as often as that, at first more often, for as long.
bool WaitUntil(OeClient& client, int tries, int intervalMilliseconds, const std::function<bool()>& condition);

// Nothing when there is no answer: it ran out of time, the window has gone, or the client is silent.
std::optional<std::int32_t> Ask(OeClient& client, WindowHandle window, std::uint32_t message,
                                std::int32_t wParam = 0, std::int32_t lParam = 0);

// The answer to WM_SETTEXT: whether the window took the text, in the ANSI code page.
bool AskToTakeText(OeClient& client, WindowHandle window, const Text& text);

// What the control shows; nothing as for Ask.
std::optional<Text> AskForText(OeClient& client, WindowHandle window);

// Whether the client has done it, or its window has gone. False after 60 seconds, with the client silent
// then, and when `isEnough` came true first: then it may be doing it still.
bool Act(OeClient& client, WindowHandle window, std::uint32_t message, std::int32_t wParam,
         std::int32_t lParam = 0, const std::function<bool()>& isEnough = {});

// Before an operation: waits until the client answers an empty message, so that it is found free. When
// something runs out of time, or has before, it gets a minute more; after that flags.clientLost is set. False
// then, and when the program is being closed. True also for a client that has gone.
bool AwaitClient(OeClient& client);

// An operation that only asks: begun again when the client fell silent in it and has come back since. With a
// silent client the result is empty.
template <class Operation>
auto Patiently(OeClient& client, Operation operation)
{
    constexpr int kAttempts = 3;
    decltype(operation()) result{};
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (!AwaitClient(client)) return decltype(operation()){};
        result = operation();
        if (!client.silent) break;
    }
    return result;
}

// In log and box; clears runCompleted. Nothing is said when the program is to close.
void ReportSilentClient(OeClient& client);

enum class WithCharacter { no, yes };
void SendKey(OeClient& client, WindowHandle window, std::int32_t virtualKey, WithCharacter character);
enum class MouseButton { left, right };
// At the window's (0, 0). `isEnough` as for Act. False when the button was pressed, but not released.
bool SendClick(OeClient& client, WindowHandle window, MouseButton button = MouseButton::left,
               const std::function<bool()>& isEnough = {});
