#include "oe/ClientBoxes.h"

#include "oe/Conversation.h"
#include "oe/WindowDiscovery.h"

namespace {

constexpr int kClassBuffer = 100, kMostBoxes = 3;
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

} // namespace

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

void LogWordsOfBox(Reporter& reporter, const Text& words)
{
    reporter.LogLine(u"Outlook Express says: " + words, Record::yes);
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
    Desktop& desktop = client_.desktop;
    const ClientWords& words = client_.words;
    bool saidNo = false;
    for (int answered = 0; answered < kMostBoxes; ++answered) {
        const WindowHandle box = Newest();
        if (box == 0) break;
        // It is there before its texts and buttons are.
        WindowHandle button = 0;
        WaitUntil(client_, kFillTries, kInterval, [&] {
            button = FindButton(client_, box, words.noButton, DialogButton::no);
            saidNo = saidNo || button != 0;
            if (button == 0) button = FindButton(client_, box, words.cancelButton, DialogButton::cancel);
            if (button == 0) button = FindButton(client_, box, words.okButton, DialogButton::ok);
            return button != 0 || !desktop.IsThere(box);
        });
        LogWordsOfBox(client_.reporter, WordsOfBox(desktop, box));
        if (button == 0) break;
        const auto gone = [&] { return !desktop.IsThere(box); };
        SendClick(client_, button, MouseButton::left, gone);
        if (!WaitUntil(client_, kCloseTries, kInterval, gone)) break;
    }
    return saidNo;
}
