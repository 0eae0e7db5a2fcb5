#include "oe/Conversation.h"

#include "oe/RemoteControls.h"

#include <algorithm>

namespace {

constexpr int kEventInterval = 50;             // milliseconds between two looks at what the user does
constexpr int kFirstPause = 1;                 // milliseconds, doubled up to the chosen poll interval
constexpr std::uint32_t kPatience = 60'000;    // milliseconds, for an act or an empty message
constexpr std::uint32_t kLastPatience = 2'000; // for an empty message when the program is to close
constexpr std::uint32_t kEmpty = 0;            // WM_NULL

enum class ActEnd { over, enough, timedOut };

ActEnd AwaitAct(OeClient& client, const std::function<bool()>& isEnough)
{
    const std::uint32_t began = client.desktop.Milliseconds();
    bool told = false;
    while (!client.desktop.IsActOver()) {
        if (client.desktop.Milliseconds() - began >= kPatience) return ActEnd::timedOut;
        client.desktop.AwaitMessage(kEventInterval);
        if (client.desktop.IsActOver()) break;
        client.reporter.ProcessEvents();
        if (client.flags.stopRequested && !told) {
            told = true;
            client.reporter.LogLine(u"Stopping as soon as Outlook Express has answered", Record::no);
        }
        if (isEnough && isEnough()) return ActEnd::enough; // most acts are over before this is asked
    }
    return ActEnd::over;
}

// When the program is to close, nobody waits for a client that is not free at once.
std::function<bool()> UntilClosing(OeClient& client)
{
    const std::uint32_t began = client.desktop.Milliseconds();
    return [&client, began] {
        return client.flags.closing && client.desktop.Milliseconds() - began >= kLastPatience;
    };
}

ActEnd SendEmpty(OeClient& client)
{
    client.desktop.BeginAct(client.handles.mainWindow, kEmpty, 0, 0);
    const ActEnd end = AwaitAct(client, UntilClosing(client));
    client.reporter.ProcessEvents(); // many quick answers are a long time, too
    return end;
}

// A handler that is still running may yet write to the memory that it was lent.
void NoteSilence(OeClient& client)
{
    client.silent = true;
    ForgetRemoteMemory(client.memory);
}

std::optional<std::int32_t> ValueOf(OeClient& client, const Answer& answer)
{
    switch (answer.reply) {
    case Reply::given:
        return answer.value;
    case Reply::timedOut:
        NoteSilence(client);
        break;
    case Reply::refused:
        client.memory.denied = true;
        break;
    case Reply::gone:
        break;
    }
    return std::nullopt;
}

// The user's choice, if it is one, never makes a wait look less often.
int LookInterval(OeClient& client, int intervalMilliseconds)
{
    const int chosen = client.settings.pollInterval;
    return chosen < kUsualPollInterval ? std::min(intervalMilliseconds, chosen) : intervalMilliseconds;
}

// What events take is part of the pause.
void Pause(OeClient& client, int milliseconds)
{
    const std::uint32_t began = client.desktop.Milliseconds();
    for (int left = milliseconds, now = 0; left > 0;) {
        now = std::min(left, kEventInterval);
        client.desktop.Sleep(now);
        client.reporter.ProcessEvents();
        const auto passed = static_cast<int>(client.desktop.Milliseconds() - began);
        left = std::min(left - now, milliseconds - passed);
    }
}

} // namespace

bool WaitUntil(OeClient& client, int tries, int intervalMilliseconds, const std::function<bool()>& condition)
{
    const int longest = LookInterval(client, intervalMilliseconds);
    int pause = longest < intervalMilliseconds ? kFirstPause : longest;
    bool met = condition();
    for (; !met && tries >= 1; --tries) {
        const std::uint32_t began = client.desktop.Milliseconds();
        for (int left = intervalMilliseconds; !met && left > 0; pause = std::min(2 * pause, longest)) {
            const int now = std::min(left, pause);
            Pause(client, now);
            met = condition();
            // The system's sleeps are longer than was asked for, and many short ones would add up.
            const auto passed = static_cast<int>(client.desktop.Milliseconds() - began);
            left = std::min(left - now, intervalMilliseconds - passed);
        }
    }
    return met;
}

std::optional<std::int32_t> Ask(OeClient& client, WindowHandle window, std::uint32_t message,
                                std::int32_t wParam, std::int32_t lParam)
{
    if (client.silent) return std::nullopt;
    return ValueOf(client, client.desktop.Send(window, message, wParam, lParam));
}

bool AskToTakeText(OeClient& client, WindowHandle window, const Text& text)
{
    if (client.silent) return false;
    const Answer answer = client.desktop.SendSetText(window, client.codePage.ToAnsi(text));
    return ValueOf(client, answer).value_or(0) != 0;
}

std::optional<Text> AskForText(OeClient& client, WindowHandle window)
{
    constexpr int kMostText = 256;
    if (client.silent) return std::nullopt;
    Text text;
    const Answer answer = client.desktop.SendGetText(window, kMostText, text);
    return ValueOf(client, answer) ? std::optional(text) : std::nullopt;
}

bool Act(OeClient& client, WindowHandle window, std::uint32_t message, std::int32_t wParam,
         std::int32_t lParam, const std::function<bool()>& isEnough)
{
    if (client.silent) return false;
    client.desktop.BeginAct(window, message, wParam, lParam);
    const ActEnd end = AwaitAct(client, isEnough ? isEnough : UntilClosing(client));
    if (end == ActEnd::timedOut) NoteSilence(client);
    return end == ActEnd::over;
}

bool AwaitClient(OeClient& client)
{
    if (client.flags.clientLost) return false;
    if (!client.silent) {
        const ActEnd end = SendEmpty(client);
        if (end != ActEnd::timedOut) return end == ActEnd::over;
        NoteSilence(client);
    }
    client.reporter.LogLine(u"Waiting for Outlook Express to answer again", Record::yes);
    const ActEnd end = SendEmpty(client);
    client.silent = end != ActEnd::over;
    client.flags.clientLost = end == ActEnd::timedOut;
    return end == ActEnd::over;
}

void ReportSilentClient(OeClient& client)
{
    if (client.flags.closing) return; // it was not waited for
    const Text words = u"Outlook Express has stopped responding - please restart Outlook Express.";
    client.flags.runCompleted = false;
    client.reporter.LogLine(words, Record::yes);
    client.reporter.ShowBox(BoxIcon::warning, words);
}

void SendKey(OeClient& client, WindowHandle window, std::int32_t virtualKey, WithCharacter character)
{
    if (!Act(client, window, message::kKeyDown, virtualKey)) return;
    if (character == WithCharacter::yes && !Act(client, window, message::kChar, virtualKey)) return;
    Act(client, window, message::kKeyUp, virtualKey);
}

bool SendClick(OeClient& client, WindowHandle window, MouseButton button,
               const std::function<bool()>& isEnough)
{
    const bool left = button == MouseButton::left;
    if (!Act(client, window, left ? message::kLeftDown : message::kRightDown, 0, 0, isEnough)) return false;
    Act(client, window, left ? message::kLeftUp : message::kRightUp, 0, 0, isEnough);
    return true;
}
