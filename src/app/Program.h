// Program.h: the program without its window: what lives as long as it does, its start and its end, and what
// each button does.
// Fails by: nothing. A command that fails says so in the log and in a box, and has then ended.
#pragma once
#include "app/ActivityLog.h"
#include "app/Captions.h"
#include "app/CommandSwitches.h"
#include "app/Extras.h"
#include "app/ProgramWindow.h"
#include "app/Settings.h"
#include "app/StoreFolder.h"
#include "folders/FolderRun.h"
#include "platform/ProfileFile.h"
#include "store/clsCRC.h"
#include "store/SavedEmails.h"

#include <functional>
#include <set>

inline const Text kTableCleared = u"The results table was cleared, as it was of another database";

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
    Text programFolder; // with its trailing separator; settings, log and database stand there
};

// What must be so for a control to be of use.
enum class Needs {
    nothing,
    idle,    // no command under way
    folders, // idle, and synchronised
    records, // idle, and a database that can be written: no export without a record of it
};

class Program {
public:
    Program(Surroundings& outside, ProgramWindow& window);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Settings, log, database, the warning, the first synchronisation; the window is visible meanwhile. Then
    // what the command line tells to do, if anything: without the warning, which would wait for a user.
    void StartUp(const CommandSwitches& told = {});
    ExitCode Code() const { return code_; } // of what was told
    // The window is destroyed, at once or as soon as the command under way has ended. Never refused.
    void AskToClose();
    void EndSession(); // likewise, but the process may be gone when this returns: what must be written is
    bool IsClosing() const { return closeAsked_; }
    bool IsEnabled(Needs needs) const;

    // For the window, which hands on what runs ask of it.
    void LogLine(const Text& message, Record record) noexcept { log_.LogLine(message, record); }
    RunOptions Options();
    // Whether nobody is there to press OK: then the log has the words of the box.
    bool TakesBox(const Text& words);
    const Text& TreeSeparator() const { return settings_.treeSeparator; }
    StoreFolder& Store() { return store_; }

    // The buttons and menu items, to be called when IsEnabled allows it: but for the stop buttons, none while
    // another is under way.
    void cmdSync();
    void cmdGetID();
    void cmdCheckFolder();
    void cmdCheckAllFolders();
    void cmdExport();
    void cmdSaveAll();
    void cmdStopAfterEmail();
    void cmdStopAfterFolder();
    void cmdUseSelection();
    void cmdExtras();
    void cmdOpenFolder();
    void cmdChooseStore();
    void cmdNewFolder();
    void cmdVerifyStore();
    void cmdIndexPage();
    void mnMarkSaved();
    void mnForget();
    void mnCondenseDB();
    bool OpenExportFolder(); // of lblOEFolder; false: there is none

private:
    class Bracket;
    // Frames each command: no two at once, a failure becomes a message, and then closing has its turn.
    void Run(const std::function<void()>& command);
    Text WhyUnread(const Text& settingsFile);                       // empty: it was read, or there is none
    static Text WhyRefused(const ExtraRow& row, const Text& value); // as an extra
    Text DatabasePath() const;
    void OpenDatabase();
    bool HasTriedDatabase() const;
    void UseDatabase(); // opens another one when the store, or the choice where it stands, has changed
    void WarnIfFolderIsReadOnly();
    void WriteLastRecords(); // closing line and settings, once
    void Close();

    // ProgramSwitches.cpp
    void RefuseSwitches();
    void NameColumns();
    void DoAsTold();
    bool CanBegin();
    void RunAsTold(int line); // of lstTree; -1: of the folder that the client shows
    bool ShowFromFirstRow(int line);
    bool IsAllChecked() const;

    void SyncWithOe();
    // While the database is new: e-mails in the store that it does not know. Said once for each store folder;
    // true when it has been said now.
    bool SayFilesWithoutRecords();
    // Whether the store folder may be used. Said once: that another stands in for the one of the settings.
    bool HasStore();
    bool MayUseStore(); // for a run that needs its records: those are open then, or a box says why not
    bool ShowFilesDone(std::size_t done, std::size_t all); // of the store; false: stop
    void CheckAllFolders();
    void SaveAll();
    bool MayUseRecords(); // likewise, where these stand in the store
    // Likewise, for the ticked rows of the results table. Those of another database have gone, which is said.
    bool MayUseTicked();
    bool HasFolders(); // a synchronisation may have found none
    bool MayExport();
    void BeginRunList(); // of folders to check and to export: empty

    Surroundings& outside_;
    ProgramWindow& window_;
    Settings settings_;
    Text settingsUnread_; // why they could not be read; empty: they could, or there were none
    RunFlags flags_;
    SavedEmails saved_;
    Text databasePath_; // that was opened, or tried
    StoreFolder store_;
    ActivityLog log_;
    clsCRC crc_;
    OeClient client_;
    FolderRun run_;
    CommandSwitches told_;
    ExitCode code_ = ExitCode::allSaved;
    bool missingStoreSaid_ = false;
    std::set<Text> storesLookedAt_; // by SayFilesWithoutRecords
    bool running_ = false;          // a command or the start-up is under way
    bool closeAsked_ = false;
    bool lastRecordsWritten_ = false;
    bool closed_ = false;
};

// The program's title and version, from the project's description.
Text ProgramTitle();
Text ProgramVersion(); // "1.0.0"
