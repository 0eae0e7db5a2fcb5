// Form1.h: the main window. It owns everything that lives as long as the program, starts every operation, and
// shows what the operations report.
// Fails by: Create answers false when Windows refuses the window; nothing else fails.
#pragma once
#include "app/ActivityLog.h"
#include "app/Form1Controls.h"
#include "app/Form1Results.h"
#include "app/Form1StorePicker.h"
#include "app/Settings.h"
#include "app/SplashWin.h"
#include "folders/FolderRun.h"
#include "platform/ProfileFile.h"
#include "store/clsCRC.h"
#include "store/SavedEmails.h"

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <optional>
#include <set>

// The outside world, as the program meets it.
struct Surroundings {
    Files& files;
    Clock& clock;
    Locale& locale;
    CodePage& codePage;
    ProfileFile& profile;
    Desktop& desktop;
    ProcessApi& processApi;
    std::vector<DatabaseMaker> databaseMakers;
};

// What the window owns for the program's lifetime. All files stand in the program's folder.
struct ProgramState {
    Text programFolder; // with its trailing separator
    Text settingsPath, logPath, databasePath;
    Settings settings;
    OeSettings oeSettings; // those of them that reading the client needs
    RunFlags flags;
    SavedEmails saved;
    // From start-up to close; each needs the one before.
    std::optional<clsCRC> crc;
    std::optional<OeClient> client;
    std::optional<FolderRun> run;
};

class Form1 final : public RunView, public LogView {
public:
    explicit Form1(Surroundings& outside);
    bool Create(HINSTANCE instance);
    // Settings, log, database, the warning, the first synchronisation; the window is visible meanwhile.
    void StartUp();
    void HandleMessages(); // until the window is closed

    // RunView
    void LogLine(const Text& message, Record record) override { log_.LogLine(message, record); }
    void ShowText(const Text& text) override;
    void ShowBox(BoxIcon icon, const Text& words) override;
    void ShowBriefBox(BoxIcon icon, const Text& words) override;
    void ProcessEvents() override;
    RunOptions Options() override;
    void ShowStatistic(Statistic which, const Text& text) override;
    void ShowPercentage(Bar bar, int percent) override;
    void ShowTab(Tab tab) override;
    void ShowStopButtons(StopButtons state) override;
    void ShowCurrentFolder(const Text& fullName) override;
    void ClearProgress() override;
    void SetSummary(const Text& text) override;
    void AppendSummary(const Text& line) override;
    void AddResultsRow(const ResultsRow& row) override { results_.Add(row); }
    void ShowFolderTree(const std::vector<FolderNode>& nodes) override;
    void SelectFolderNode(int index) override;
    void MarkFolderNode(const Text& status, const Text& image) override;
    void ShowFolderLists(const std::vector<Text>& lines, const std::vector<Text>& paths) override;
    void SelectFolderLine(int index) override;
    void UnlockCommands() override;
    // LogView
    void AddProgress(const Text& text) override;

private:
    static constexpr UINT_PTR kBoxTimer = 1; // of a box that does not stay

    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(int id, int code);
    void OnNotify(NMHDR& notice);
    void ShowAdded();            // brings lstProgress and lvResults up to date
    void AppendProgress();       // the new lines
    void Dispatch(MSG& message); // keys for moving about first

    // Size and keyboard
    SIZE WindowSize(const SIZE& client) const; // with its edges, and no larger than the screen
    RECT WorkArea() const;
    void TakeWishedSize();
    bool PressByEnter(MSG& message);
    // At once, or when the window is active again. To the tabs, when the control is on a page that is hidden.
    void MoveFocus(HWND control);

    // Start-up and close
    void SetUpPaths();
    void OpenDatabase();
    void CreateEngines(); // what the operations work with
    void WarnIfFolderIsReadOnly();
    void ReadCheckBoxesAndLists(); // from the controls into the settings
    void RefreshStore();           // the lists of the page "Store", if it is shown
    void ShowSettings();           // the other way
    void CloseOwnBox();            // the message box that stands over the window, if one does
    void AskToClose();             // at once, or as soon as the run has ended
    void WriteLastRecords();       // closing line and settings, once
    void Close();

    // Commands. Run frames each: no two at once, no button works meanwhile, a failure becomes a message.
    void Run(const std::function<void()>& command);
    void UpdateCommands();
    void ShowError(const Text& words);
    void WaitForKeysUp(); // Enter and Space, for a short time: held, they would press what is shown next
    void BoxWithTitle(const wchar_t* title, BoxIcon icon, const Text& words);
    void cmdSync();
    void cmdGetID();
    // While the database is new: e-mails in the store that it does not know. Said once for each store folder;
    // true when it has been said now.
    bool SayFilesWithoutRecords();
    // Whether a run may use the store folder. Said once: that another stands in for the one of the settings.
    bool MayUseStore();
    void EnterRun(); // stop buttons and busy layout
    void LeaveRun(); // Run does it, whether the command has entered or not
    void cmdCheckFolder();
    void cmdCheckAllFolders();
    void cmdExport();
    void cmdSaveAll();
    void cmdStopAfterEmail();
    void cmdStopAfterFolder();
    void HideStopButton(OrbSimpleButton& pressed, OrbSimpleButton& other);
    void cmdUseSelection();
    HTREEITEM SelectedNode() const; // of tvOETree; null when none is
    bool OpenExportFolder();        // double click on lblOEFolder; false: there is none
    void cmdNewFolder();
    void mnMarkSavedChosen();
    void mnCondenseDBChosen();

    Surroundings& outside_;
    HWND window_ = nullptr;
    HIMAGELIST ImgLstTree_ = nullptr;
    std::vector<HTREEITEM> folderNodes_; // of tvOETree, by line of lstTree
    // During a run, which marks nodes by selecting them: the one that the user had selected, or null.
    std::optional<HTREEITEM> chosenNode_;
    Splash splash_; // until soon after the first box
    Form1Controls controls_;
    Form1StorePicker store_;
    Form1Results results_;
    ProgramState state_;
    ActivityLog log_;
    HWND lastFocus_ = nullptr;      // where the keyboard was when the window lost it
    std::vector<Text> newProgress_; // lines that lstProgress does not show yet
    int widestProgress_ = 0;        // pixels, of the lines of lstProgress
    DWORD lastShown_ = 0;           // GetTickCount of the last ShowAdded
    bool missingStoreSaid_ = false;
    std::set<Text> storesLookedAt_; // by SayFilesWithoutRecords
    bool running_ = false;          // a command or the start-up is under way
    bool closeAsked_ = false;
    bool lastRecordsWritten_ = false;
};

// The program's title and version, from the project's description.
const wchar_t* ProgramTitle();
Text ProgramVersion(); // "1.0.0"
