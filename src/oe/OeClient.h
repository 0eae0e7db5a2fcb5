// OeClient.h: the running mail client as the program knows it: the way to reach it, and what was last read
// out of it. Every operation of this folder takes it first.
#pragma once
#include "oe/ClientWords.h"
#include "oe/RemoteMemory.h"
#include "oe/Reporter.h"
#include "oe/RunFlags.h"
#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/Desktop.h"
#include "platform/Files.h"
#include "platform/Locale.h"
#include "store/clsCRC.h"
#include "store/EmailEntry.h"

#include <optional>
#include <set>

struct OeHandles {
    WindowHandle mainWindow = 0;  // "Outlook Express Browser Class"
    WindowHandle messageView = 0; // its child "Outlook Express Message View"
    WindowHandle messageList = 0; // its child "Outlook Express Message List"
    WindowHandle listView = 0;    // its child "ATL:SysListView32"
    bool oeFound = false;
    bool listViewFound = false;
};

struct ListColumn {
    Text title;
    std::int16_t index = 0; // sub-item number
};

// One line of lstTree: a folder of the client's tree.
struct OeFolder {
    Text text;             // one "-" for each level below the root, then the name
    std::int32_t item = 0; // HTREEITEM, of the client's process, until the client is restarted
    int level = 0;         // 0 for the root; a name may begin with "-" itself
    TextView Name() const { return TextView(text).substr(static_cast<std::size_t>(level)); }
};

// How often most waits look, and the longest that can be chosen.
inline constexpr std::int16_t kUsualPollInterval = 100; // milliseconds

// From the settings file.
struct OeSettings {
    float settleTime = 0; // seconds to wait after a folder change
    std::int16_t applyDst = 0;
    float timeOffset = 0;     // months
    bool anyLanguage = false; // windows and buttons are known by what they are, not by their captions
    std::int16_t pollInterval = kUsualPollInterval; // milliseconds between two looks of a wait, at the most
    bool equalCounts = false; // a list of as many rows that was rebuilt is the new folder's
};

// What is known of the "Save Message As" dialogs that the client was asked for.
struct SaveDialogState {
    std::uint32_t processId = 0;            // of the client that this is about
    std::optional<std::uint32_t> overdue{}; // Desktop's milliseconds of an ask that nothing has come of yet
    int writtenOff = 0; // asks of which nothing came within a minute: as many dialogs may be another e-mail's
    Text savedPath{};   // of the e-mail that was saved last
    int blocked = 0;    // e-mails in a row for which the client's main window was disabled
    // Windows that can be no dialog of the client, by process or class, as seen since the e-mail was begun.
    std::set<WindowHandle> others{};
};

struct OeClient {
    Desktop& desktop;
    RemoteMemory memory;
    Files& files;
    CodePage& codePage;
    Locale& locale;
    Clock& clock;
    clsCRC& crc;
    Reporter& reporter;
    OeSettings& settings;
    RunFlags& flags;
    const ClientWords& words = kEnglishWords; // of the language that the client speaks

    OeHandles handles{};
    std::vector<ListColumn> columns{}; // in the order the user sees them
    bool columnsKnown = false;
    std::vector<OeFolder> lstTree{};  // depth first
    std::uint32_t treeProcessId = 0;  // of the client that lstTree was read from
    std::int32_t currentEmailId = -1; // row that GetMessageDetails read last; -1: none
    bool detailsFound = false;
    std::vector<EmailEntry> folderEntries{};
    bool silent = false; // it let a message run out of time and has not answered since
    SaveDialogState saveDialog{};
    std::set<Text> missedExtras{}; // keys of those that would have helped since the command began
};

// That the extra would have helped, if it is not chosen anyway.
inline void NoteMissedExtra(OeClient& client, const Text& key, bool isChosen)
{
    if (!isChosen) client.missedExtras.insert(key);
}
