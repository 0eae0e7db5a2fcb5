#include "oe/ClientBoxes.h"

#include "oe/Conversation.h"
#include "oe/WindowDiscovery.h"

namespace {

constexpr int kClassBuffer = 100, kMostBoxes = 3, kMostClicks = 3;
constexpr int kFillTries = 10, kCloseTries = 10, kInterval = 100; // milliseconds

// Without the mark of its mnemonic.
Text LabelOf(Desktop& desktop, WindowHandle window)
{
    return ReplaceAll(GetWindowCaption(desktop, window), u"&", u"");
}

// Newer systems nest the parts of a box in windows of their own.
WindowHandle FindButton(OeClient& client, WindowHandle box, TextView label, DialogButton id)
{
    Desktop& desktop = client.desktop;
    WindowHandle found = 0;
    desktop.EnumDescendants(box, [&](WindowHandle window) {
        if (!EqualNoCase(desktop.ClassOf(window, kClassBuffer), u"Button")) return true;
        if (client.settings.anyLanguage ? desktop.ControlIdOf(window) != static_cast<std::int32_t>(id)
                                        : !EqualNoCase(LabelOf(desktop, window), label))
            return true;
        found = window;
        return false;
    });
    return found;
}

// Its caption and texts.
Text WordsOfBox(Desktop& desktop, WindowHandle box)
{
    Text words = GetWindowCaption(desktop, box);
    desktop.EnumDescendants(box, [&](WindowHandle window) {
        if (!EqualNoCase(desktop.ClassOf(window, kClassBuffer), u"Static")) return true;
        const Text text = GetWindowCaption(desktop, window);
        if (!text.empty()) words += (words.empty() ? u"" : u" - ") + text;
        return true;
    });
    return words;
}

struct BoxAnswer {
    WindowHandle button = 0;
    bool saysNo = false;
};

BoxAnswer FindAnswer(OeClient& client, WindowHandle box)
{
    const ClientWords& words = client.words;
    if (const WindowHandle no = FindButton(client, box, words.noButton, DialogButton::no); no != 0)
        return {no, true};
    const WindowHandle cancel = FindButton(client, box, words.cancelButton, DialogButton::cancel);
    return {cancel != 0 ? cancel : FindButton(client, box, words.okButton, DialogButton::ok)};
}

// What the box says and how it is answered: it is there before either is.
BoxAnswer AwaitAnswer(OeClient& client, WindowHandle box)
{
    Desktop& desktop = client.desktop;
    BoxAnswer answer;
    WaitUntil(client, kFillTries, kInterval, [&] {
        answer = FindAnswer(client, box);
        const bool hasWords = WordsOfBox(desktop, box) != GetWindowCaption(desktop, box);
        return (answer.button != 0 && hasWords) || !desktop.IsThere(box);
    });
    return answer;
}

} // namespace

BoxEnd AnswerBox(OeClient& client, WindowHandle box)
{
    const auto gone = [&] { return !client.desktop.IsThere(box); };
    BoxEnd end;
    // A click is lost on a box that is just coming to the front, or on a button that it will not keep.
    for (int click = 0; click < kMostClicks && !client.silent; ++click) {
        const BoxAnswer answer = AwaitAnswer(client, box);
        if (click == 0 && !gone())
            client.reporter.LogLine(u"Outlook Express says: " + WordsOfBox(client.desktop, box), Record::yes);
        if (gone() || answer.button == 0) break;
        end.saidNo = answer.saysNo;
        SendClick(client, answer.button, MouseButton::left, gone);
        if (WaitUntil(client, kCloseTries, kInterval, gone)) break;
    }
    end.hasGone = gone();
    return end;
}

ClientBoxes::ClientBoxes(OeClient& client, WindowHandle dialog)
    : ClientBoxes(client, dialog, Scope::mainWindowToo)
{
    client.desktop.EnumTopWindows([this](WindowHandle window) {
        before_.insert(window);
        return true;
    });
}

ClientBoxes ClientBoxes::InFrontOf(OeClient& client, WindowHandle dialog)
{
    return {client, dialog, Scope::dialog};
}

bool ClientBoxes::IsOurs(WindowHandle window) const
{
    Desktop& desktop = client_.desktop;
    if (before_.count(window)) return false;
    if (!EqualNoCase(desktop.ClassOf(window, kClassBuffer), kDialogClass)) return false;
    if (!IsOfClient(client_, window)) return false;
    const bool dialogDecides = scope_ == Scope::dialog || desktop.IsThere(dialog_);
    const WindowHandle owner = dialogDecides ? dialog_ : client_.handles.mainWindow;
    // A box may stand in front of another one.
    for (WindowHandle above = desktop.OwnerOf(window); above != 0; above = desktop.OwnerOf(above))
        if (above == owner) return true;
    return false;
}

WindowHandle ClientBoxes::Newest() const
{
    WindowHandle found = 0;
    client_.desktop.EnumTopWindows([&](WindowHandle window) {
        if (IsOurs(window)) found = window;
        return found == 0;
    });
    return found;
}

bool ClientBoxes::Answer() const
{
    bool saidNo = false;
    for (int answered = 0; answered < kMostBoxes; ++answered) {
        const WindowHandle box = Newest();
        if (box == 0) break;
        const BoxEnd end = AnswerBox(client_, box);
        saidNo = saidNo || end.saidNo;
        if (!end.hasGone) break;
    }
    return saidNo;
}
