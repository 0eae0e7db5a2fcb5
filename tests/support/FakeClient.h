// FakeClient.h: a mail client made of data: windows, a folder tree, a message list and a Save dialog in a
// process of its own.
#pragma once
#include "platform/Desktop.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/FakeMemory.h"

#include <optional>

struct FakeFolder {
    Text name;
    int level = 0;                       // 0 for the root
    std::vector<std::vector<Text>> rows; // by column index
    std::int32_t item = 0;               // set by the client
};

// How it behaves: as it should, at first.
struct Manners {
    std::vector<Text> columnTitles{u"!", u"From", u"Subject", u"Received", u"Sent", u"To"};
    std::vector<std::int32_t> columnOrder{0, 1, 2, 3, 4, 5};
    bool refusesFolder = false;
    int refreshAfter = 0;      // milliseconds between selecting a folder and the new list
    bool keepsList = false;    // the list is filled anew instead of rebuilt
    bool captionFirst = false; // until the new list is there only the caption is the new folder's
    bool withoutNul = false;   // a text that is cut has no end
    std::uint32_t mute = 99;   // from this column on it gives texts, but no answer
    bool noHeader = false;
    bool silentHeader = false; // the header answers neither order nor titles, but its count
    bool ignoreDownKey = false, doubleDownKey = false;
    bool noDialog = false, twoDialogs = false, noCombo = false, noEdit = false, noSaveButton = false;
    std::vector<int> dialogDelays; // milliseconds, for the first commands in turn
    int dialogDelay = 0;           // of the rest
    int nameAfter = 0;             // milliseconds until the dialog has its name
    bool takesAtOpening = false; // the dialog takes the row selected when it opens, not when it was asked for
    bool keepDialog = false;     // it stays open after Save and after Cancel
    bool deafEdit = false;       // the box for the name takes no text
    bool saveNothing = false;
    bool writesSilently = false; // it answers nothing until there is a file
    int fileAfter = 0;           // milliseconds until there is a file, which is whole...
    int wholeAfter = 0;          // ...so much later, and has so many bytes until then:
    std::size_t firstBytes = 0;
    struct Box {
        Text words;
        std::vector<Text> buttons;
        bool ofMainWindow = false; // the dialog closes before it comes
        bool late = false;         // it comes when the click was handled; else the click waits for it
        bool leavesPart = false;   // of the file
        bool over = false;         // the box before stays below it
        int fillsAfter = 0;        // milliseconds until it has its buttons...
        int wordsAfter = 0;        // ...and its words
    };
    int boxesStay = 0;              // milliseconds from the click on a box until it has gone
    int lostClicks = 0;             // the first ones on a box or on "Cancel" do nothing
    std::vector<Box> boxes;         // each Save is answered by these, one after the other, and saves nothing
    std::map<Text, Text> speaks;    // other captions than the English ones, for windows made from now on
    Text savesAs = u"Mail (*.eml)"; // the type of file that the dialog shows
    bool ownerless = false;         // the dialog is not the main window's
    bool background = false;        // another program's window is in front
    bool blocked = false;           // by a box of its own over the main window
    int askTakes = 0;               // milliseconds, for every message that asks
    int actTakes = 0;               // milliseconds, for every act but an empty one
    bool pumps = false;             // meanwhile it answers what else is sent
};

class FakeClient : public Desktop, public FakeMemory, public Manners {
public:
    FakeClient(FakeFiles& saveTo, std::vector<FakeFolder> folderTree);

    // What it shows; to be changed at will between calls, as its manners are.
    std::vector<FakeFolder> folders;
    int shown = 0;                      // index in folders
    std::set<std::int32_t> selected{0}; // rows
    // Before each message that asks or acts, and the command that asks for the dialog: the place for what the
    // user and the mail do meanwhile.
    std::function<void(WindowHandle window, std::uint32_t message)> onMessage;
    std::function<void(int saves)> onSave;
    std::function<void(const Text& path)> onName; // when the dialog has taken it

    // What was seen.
    static constexpr int kSleep = 100; // milliseconds
    int sleptMilliseconds = 0;
    int unanswered = 0; // milliseconds of these that messages waited for a silent client
    int Sleeps() const { return sleptMilliseconds / kSleep; }
    struct Email {
        int row = -1;
        Text subject, folder;
        std::string bytes;
    };
    struct SavedEmail : Email {
        Text path;
    };
    std::vector<SavedEmail> saved;
    std::vector<std::pair<WindowHandle, std::int32_t>> keys;   // key-down messages
    std::vector<std::pair<std::uint32_t, std::int32_t>> input; // key and mouse messages, wParam

    // What the mail does in the folder that is shown. The selection stays with its e-mail.
    void Arrive(std::vector<Text> mail, std::size_t place = 0);
    void Remove(int row);
    void Reverse();

    void ShowFolder(int index);          // at once: new list, new handles
    void MakeListAnew(int milliseconds); // there is none so long
    void Start();                        // anew, as another process with other items
    void End();                          // every window goes
    void Recover(); // good manners, time for what is late, no boxes; started anew if it has gone
    void FallSilent(int milliseconds);                        // from now on
    void Later(int milliseconds, std::function<void()> what); // unless it is silent then
    void NameInCaption(int index);
    WindowHandle AddForeign(const Text& className, const Text& caption); // a window of another program
    WindowHandle AddModeless(const Text& className); // of the client, owned by its main window
    std::vector<Text> pressed;                       // labels of the buttons
    WindowHandle Find(const Text& className) const;  // 0 when there is none
    std::size_t Asks() const { return asks_; }       // for a Save dialog

    static std::string BytesOf(const std::vector<Text>& row); // of its e-mail, as far as the list tells it
    bool IsOnDisk(const SavedEmail& email) const;             // whole, under its path
    bool IsStored(const Text& subject, const Text& folder = {}) const;
    // Each file is the e-mail that its name says, each record (folder, subject, CRC) has such a file. Without
    // named: no subject stands in a name, or the list tells none.
    void ExpectTruth(const std::vector<std::vector<Text>>& records, bool named = true) const;

    // Desktop
    void EnumTopWindows(const Visit& visit) override;
    void EnumDescendants(WindowHandle parent, const Visit& visit) override;
    Text ClassOf(WindowHandle window, int size) override { return Cut(At(window).className, size); }
    Text CaptionOf(WindowHandle window, int size) override { return Cut(At(window).caption, size); }
    WindowHandle ParentOf(WindowHandle window) override { return At(window).parent; }
    WindowHandle OwnerOf(WindowHandle window) override { return At(window).owner; }
    std::int32_t ControlIdOf(WindowHandle window) override { return At(window).id; }
    bool IsEnabled(WindowHandle window) override;
    bool IsThere(WindowHandle window) override { return windows_.count(window) != 0; }
    Answer Send(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                std::int32_t lParam) override;
    void BeginAct(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                  std::int32_t lParam) override;
    bool IsActOver() override;
    void AwaitMessage(int milliseconds) override { Sleep(milliseconds); }
    Answer SendSetText(WindowHandle window, const std::string& ansi) override;
    Answer SendGetText(WindowHandle window, int size, Text& text) override;
    void Post(WindowHandle window, std::uint32_t message, std::int32_t wParam, std::int32_t lParam) override;
    void BringToForeground(WindowHandle) override {}
    bool IsForeground(WindowHandle window) override { return IsThere(window) && !background; }
    void TypeWithAlt(TextView letters) override
    {
        if (letters == u"FA") AskForDialog();
    }
    void Sleep(int milliseconds) override;
    std::uint32_t Milliseconds() override
    {
        return 0xFFFFF000u + static_cast<std::uint32_t>(sleptMilliseconds);
    }

    std::uint32_t ProcessIdOf(WindowHandle window) override { return At(window).process; }

private:
    struct Window {
        Text className, caption;
        WindowHandle parent = 0, owner = 0;
        std::uint32_t process = 0;
        std::int32_t id = 0;
        Text english{}; // its caption, whatever the client speaks
    };
    struct SentMessage {
        WindowHandle window;
        std::uint32_t message;
        std::int32_t wParam, lParam;
    };

    static Text Cut(const Text& text, int size) { return text.substr(0, static_cast<std::size_t>(size) - 1); }
    const Window& At(WindowHandle window) const; // that of none has nothing
    WindowHandle AddWindow(const Text& className, const Text& caption, WindowHandle parent,
                           WindowHandle owner = 0);
    void RemoveList();
    void RemoveWindow(WindowHandle window);
    void AskForDialog();
    void OpenDialog(Email email);
    void PressSave(WindowHandle dialog);
    void SaveTo(const Text& path, const Email& email);
    Email Selected() const;
    void PressButton(WindowHandle button);
    void ShowNextBox(WindowHandle dialog);
    std::int32_t Handle(const SentMessage& sent);
    bool IsSilent() const { return sleptMilliseconds < silentUntil_; }
    WindowHandle TopOf(WindowHandle window) const;
    std::int32_t TreeMessage(std::uint32_t message, std::int32_t wParam, std::int32_t lParam);
    std::int32_t ListMessage(std::uint32_t message, std::int32_t wParam, std::int32_t lParam);
    std::int32_t HeaderMessage(std::uint32_t message, std::int32_t wParam, std::int32_t lParam);
    std::int32_t NextTreeItem(std::int32_t relation, std::int32_t item) const;
    const FakeFolder* FolderOf(std::int32_t item) const;
    void PutText(RemoteAddress address, const Text& text, std::int32_t textMax);
    std::vector<std::vector<Text>>& Rows() { return folders[static_cast<std::size_t>(shown)].rows; }
    const std::vector<std::vector<Text>>& Rows() const
    {
        return folders[static_cast<std::size_t>(shown)].rows;
    }
    int FirstSelected() const { return selected.empty() ? -1 : *selected.begin(); }

    FakeFiles& saveTo_;
    std::map<WindowHandle, Window> windows_;
    std::vector<WindowHandle> order_;
    WindowHandle nextWindow_ = 0x10010, main_ = 0, view_ = 0, list_ = 0, header_ = 0, tree_ = 0;
    struct SaveDialog {
        Email email;
        Text typed;
    };
    std::map<WindowHandle, SaveDialog> dialogs_;
    std::multimap<int, std::function<void()>> timers_; // by sleptMilliseconds
    std::size_t asks_ = 0;
    int silentUntil_ = 0;            // of sleptMilliseconds
    std::vector<SentMessage> late_;  // unanswered, but handled when the client is back
    std::optional<SentMessage> act_; // under way
    int actUntil_ = 0;               // of sleptMilliseconds
    std::vector<Box> boxesLeft_;
    WindowHandle openBox_ = 0; // that the act under way waits for
    std::set<WindowHandle> modeless_;
};
