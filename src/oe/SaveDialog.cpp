#include "oe/SaveDialog.h"

#include "oe/ClientBoxes.h"
#include "oe/Conversation.h"
#include "oe/MessageDetails.h"
#include "oe/RemoteControls.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"

#include <algorithm>

namespace {

constexpr std::int32_t kSaveAsCommand = 40101; // the client's menu command
constexpr int kDialogTries = 20, kFileTries = 20, kCloseTries = 10, kCloseRounds = 3;
constexpr int kInterval = 100;                  // milliseconds
constexpr std::uint32_t kLongestDelay = 60'000; // milliseconds from asking for a dialog to writing it off
constexpr int kOverdueTries = kLongestDelay / kInterval;
// More are never counted: a client that opens none would never be used again.
constexpr int kMostWrittenOff = 3;
constexpr int kFocusTries = 20, kFocusWait = 10; // milliseconds until a window really has the focus

// A dialog behind a box of the client takes no click: closed from outside, it would leave the client waiting
// inside for ever.
bool Cancel(OeClient& client, WindowHandle dialog)
{
    if (dialog <= 0 || !client.desktop.IsEnabled(dialog)) return false;
    const WindowHandle button = FindButtonOf(client, dialog, client.words.cancelButton, DialogButton::cancel);
    if (button > 0) SendClick(client, button);
    return button > 0;
}

// A box in front of it may be just closing: until it has gone the dialog takes no click, and a click among
// its last messages is lost.
void CancelAtLast(OeClient& client, WindowHandle dialog)
{
    const auto gone = [&] { return !client.desktop.IsThere(dialog); };
    WaitUntil(client, kCloseTries, kInterval, [&] { return client.desktop.IsEnabled(dialog) || gone(); });
    for (int round = 0; round < kCloseRounds && Cancel(client, dialog) && !client.silent; ++round)
        if (WaitUntil(client, kCloseTries, kInterval, gone)) break;
}

// Whether no dialog is open any more. One may be just closing; otherwise it is cancelled, and so is what
// stood behind it: the client's words about a bad name may be a box with the dialog's own caption and only an
// "OK".
bool CloseDialogs(OeClient& client)
{
    const auto gone = [&client] { return FindSaveDialog(client) == 0; };
    bool closed = WaitUntil(client, kCloseTries, kInterval, gone);
    for (int round = 0; !closed && round < kCloseRounds; ++round) {
        const WindowHandle dialog = FindSaveDialog(client);
        (void)ClientBoxes::InFrontOf(client, dialog).Answer();
        if (!Cancel(client, dialog) && client.desktop.IsEnabled(dialog)) (void)AnswerBox(client, dialog);
        closed = WaitUntil(client, kCloseTries, kInterval, gone);
    }
    return closed;
}

// The path to save to; when there is none, result says what becomes of the e-mail.
Text ChoosePath(OeClient& client, const SaveRequest& request, SaveResult& result)
{
    result = SaveResult::failed;
    const Text name = MakeFileName(request, client.codePage);
    if (name.empty()) return {};
    const Text path = request.exportFolder + name;
    if (!client.files.FileExists(path)) return path;
    const Text words = DecimalText(request.id) + u' ' + name + u" - file already exists";
    if (request.skipFiles) {
        client.reporter.LogLine(u"SKIP: " + words, Record::yes);
        result = SaveResult::skipped;
        return {};
    }
    client.reporter.LogLine(u"RENAME: " + words, Record::yes);
    return NextFreeFileName(client.files, path, FixedLength(request));
}

// The edit box for the name in the dialog; 0, with a line in the log, when the dialog lacks it.
WindowHandle FindNameBox(OeClient& client, WindowHandle dialog)
{
    const WindowHandle outer = FindChildWindow(client.desktop, dialog, u"ComboBoxEx32");
    const WindowHandle combo = outer > 0 ? FindChildWindow(client.desktop, outer, u"ComboBox") : 0;
    if (combo <= 0) {
        client.reporter.LogLine(u"No combo found", Record::yes);
        return 0;
    }
    const WindowHandle edit = FindChildWindow(client.desktop, combo, u"Edit");
    if (edit <= 0) client.reporter.LogLine(u"No edit found", Record::yes);
    return std::max(edit, 0);
}

// False when nothing was typed: without the focus the keys would go to another program. The window comes to
// the foreground before its thread has the focus; keys typed at once would go astray.
bool TypeKeys(OeClient& client)
{
    const WindowHandle mainWindow = client.handles.mainWindow;
    const auto focused = [&] { return client.desktop.IsForeground(mainWindow); };
    if (!WaitUntil(client, kFocusTries, kFocusWait, focused) || !AwaitClient(client) || !focused())
        return false;
    client.desktop.TypeWithAlt(client.words.saveAsLetters);
    (void)AwaitClient(client); // processed
    return true;
}

// Tells the client to open its dialog and waits for it; 0 when none came in time.
WindowHandle AskForDialog(OeClient& client, bool sendKeys)
{
    const WindowHandle mainWindow = client.handles.mainWindow;
    client.desktop.BringToForeground(mainWindow);
    const std::uint32_t asked = client.desktop.Milliseconds();
    bool told = true;
    if (sendKeys)
        told = TypeKeys(client);
    else
        client.desktop.Post(mainWindow, message::kCommand, kSaveAsCommand, 0);
    WindowHandle dialog = 0;
    WaitUntil(client, kDialogTries, kInterval, [&] {
        dialog = FindSaveDialog(client);
        return dialog != 0;
    });
    if (told && dialog <= 0) client.saveDialog.overdue = asked;
    return dialog;
}

bool IsOverdue(const OeClient& client)
{
    return client.saveDialog.overdue &&
           client.desktop.Milliseconds() - *client.saveDialog.overdue < kLongestDelay;
}

// While a dialog that was asked for has not come, no other is asked for: which is which could not be told.
// The one that is late is closed. False when it was a stop that ended the wait.
bool AwaitOverdueDialog(OeClient& client)
{
    SaveDialogState& state = client.saveDialog;
    if (!state.overdue) return true;
    const auto stopped = [&client] { return client.flags.stopAfterEmail || client.flags.closing; };
    client.reporter.LogLine(u"Waiting for an earlier Save Message As", Record::no);
    WaitUntil(client, kOverdueTries, kInterval,
              [&] { return FindSaveDialog(client) != 0 || !IsOverdue(client) || stopped(); });
    const bool came = FindSaveDialog(client) != 0;
    if (!came && stopped()) return false;
    if (!came && state.writtenOff < kMostWrittenOff) ++state.writtenOff;
    state.overdue.reset();
    return true;
}

// What was written off may come yet, and in place of this e-mail's: as many dialogs as were written off are
// closed first, and asked for again.
WindowHandle OpenDialog(OeClient& client, bool sendKeys)
{
    WindowHandle dialog = AskForDialog(client, sendKeys);
    for (int closed = 0; dialog > 0 && closed < client.saveDialog.writtenOff; ++closed) {
        if (!CloseDialogs(client)) return 0;
        dialog = AskForDialog(client, sendKeys);
    }
    return dialog;
}

// Nobody can select anything behind the dialog, so what is selected now is what it will save.
bool HoldsThatEmail(OeClient& client, const SaveRequest& request)
{
    const std::optional<EmailEntry> selected = ReadSelectedEntry(client);
    if (!selected || selected->Crc != request.crc) return false;
    if (request.sameRow && selected->row != request.id) return false;
    if (request.folder < 0) return true;
    return ShownFolder(client) == request.folder && IsInCaption(client, request.folder);
}

// Types the path, presses Save and waits for the file.
SaveResult SaveAs(OeClient& client, WindowHandle dialog, WindowHandle nameBox, const Text& path)
{
    // Without the path in it the dialog would save under a name of its own.
    if (!AskToTakeText(client, nameBox, path)) return SaveResult::failed;
    // Another program may have taken the name since it was chosen, or a disk has come back with its files.
    if (client.files.FileExists(path)) return SaveResult::failed;
    const ClientBoxes boxes(client, dialog);
    const auto hasBox = [&boxes] { return boxes.Newest() != 0; };
    const WindowHandle button = FindButtonOf(client, dialog, client.words.saveButton, DialogButton::ok);
    const bool pressed = button > 0 && SendClick(client, button, MouseButton::left, hasBox);
    const bool fellSilent = client.silent;
    if (fellSilent) (void)AwaitClient(client); // it may have been writing all the time
    if (!pressed && fellSilent) return SaveResult::untried;
    // By name only: a file that is still being written counts as saved.
    bool saved = false;
    WaitUntil(client, kFileTries, kInterval, [&] {
        saved = client.files.FileExists(path);
        return saved || hasBox();
    });
    // A slow client is closing its dialog only now, and writes the file behind that without answering.
    if (pressed && !saved && !hasBox()) {
        WaitUntil(client, kFileTries, kInterval, [&] { return !client.desktop.IsThere(dialog) || hasBox(); });
        if (!AwaitClient(client)) return SaveResult::untried;
        saved = client.files.FileExists(path);
    }
    // What it has to say about the file comes right behind it. One that fell silent or ended over the file
    // may not have finished it.
    if (saved && !AwaitClient(client)) return SaveResult::untried;
    if (saved && !client.desktop.IsThere(client.handles.mainWindow)) return SaveResult::failed;
    if (hasBox()) {
        // The client has not saved it as it was told to. What it asks about may be another's file.
        if (!boxes.Answer() && client.files.FileExists(path) && client.files.Delete(path))
            client.reporter.LogLine(u"What was saved of it was removed", Record::yes);
        return SaveResult::failed;
    }
    if (saved) client.saveDialog.savedPath = path;
    return saved ? SaveResult::saved : SaveResult::failed;
}

// Whether the client could be told to open its dialog: none is open any more, and no box of its own stands
// over its main window.
bool IsFreeForDialog(OeClient& client)
{
    const WindowHandle mainWindow = client.handles.mainWindow;
    const auto enabled = [&] { return client.desktop.IsEnabled(mainWindow); };
    return !client.desktop.IsThere(mainWindow) || WaitUntil(client, kDialogTries, kInterval, enabled);
}

void CountBlocked(OeClient& client, bool blocked)
{
    client.saveDialog.blocked = blocked ? client.saveDialog.blocked + 1 : 0;
}

} // namespace

SaveResult SaveCurrentEmail(OeClient& client, const SaveRequest& request)
{
    const auto log = [&client](const Text& words) { client.reporter.LogLine(words, Record::yes); };
    const std::uint32_t processId = client.memory.api.ProcessIdOf(client.handles.mainWindow);
    if (processId != 0 && client.saveDialog.processId != processId)
        client.saveDialog = {processId}; // it was started anew
    client.saveDialog.others.clear();
    if (!AwaitOverdueDialog(client)) return SaveResult::untried;

    const auto logFailure = [&] { LogFailedEmail(client.reporter, request.id, request.subject); };
    SaveResult result;
    const Text path = ChoosePath(client, request, result);
    if (path.empty() && result == SaveResult::skipped) return result;
    const bool canBeNamed = !path.empty() && SurvivesAnsi(client.codePage, path);
    const bool noneIsOpen = canBeNamed && CloseDialogs(client);
    const bool isFree = noneIsOpen && IsFreeForDialog(client);
    if (canBeNamed) CountBlocked(client, !isFree);
    if (!noneIsOpen) {
        logFailure();
        return SaveResult::failed;
    }
    const WindowHandle dialog = isFree ? OpenDialog(client, request.sendKeys) : 0;
    if (dialog <= 0) {
        if (client.silent) return SaveResult::untried;
        log(u"No dialog found");
        return SaveResult::failed;
    }
    const WindowHandle nameBox = FindNameBox(client, dialog);
    if (nameBox == 0) return SaveResult::failed; // the dialog stays open
    result = HoldsThatEmail(client, request) ? SaveAs(client, dialog, nameBox, path) : SaveResult::failed;
    if (result == SaveResult::saved) return result;
    CancelAtLast(client, dialog);
    client.reporter.ProcessEvents();
    if (client.silent || result == SaveResult::untried) return SaveResult::untried;
    logFailure();
    return result;
}

void LogFailedEmail(Reporter& reporter, std::int32_t id, const Text& subject)
{
    reporter.LogLine(u"FAIL: " + DecimalText(id) + u' ' + subject, Record::yes);
}
