// What each button and menu item does.
#include "app/DirectoryList.h"
#include "app/Program.h"

#include "folders/AllFolders.h"
#include "folders/CheckFolder.h"
#include "folders/ExportFolder.h"
#include "folders/StoredFiles.h"
#include "folders/StoreFolders.h"
#include "folders/Synchronise.h"
#include "store/SavedMaintenance.h"
#include "store/StoreNames.h"

#include <limits>

void Program::cmdSync()
{
    Run([this] { SyncWithOe(); });
}

void Program::SyncWithOe()
{
    Synchronise(run_);
    (void)SayFilesWithoutRecords();
}

bool Program::SayFilesWithoutRecords()
{
    if (!saved_.created || !saved_.IsOpen() || run_.nodes.empty()) return false;
    // Later on the files there may be this session's own.
    if (!storesLookedAt_.insert(FoldCase(store_.Path())).second) return false;
    const StoredFiles stored = CountStoredFiles(run_);
    if (stored.files == 0) return false;
    const Text found = u"saved.mdb has been made anew, but the store folder holds " +
                       DecimalText(static_cast<std::int64_t>(stored.files)) + u" saved e-mail(s) of " +
                       DecimalText(static_cast<std::int64_t>(stored.folders)) + u" folder(s)";
    LogLine(found + u": a check of all folders with \"File (slow)\" records them.", Record::yes);
    window_.ShowBox(
        BoxIcon::warning,
        found + u":\r\n" + store_.Path() +
            u"\r\n\r\nAn export may save them again beside the files that are there. Before it, choose "
            u"the comparison type \"File (slow)\" and check all folders: that records the e-mails whose "
            u"files are found. Or close Quillbox and put the old saved.mdb back into its folder.");
    return true;
}

bool Program::MayUseStore()
{
    if (!HasStore()) return false;
    UseDatabase();
    return true;
}

bool Program::HasStore()
{
    if (!store_.IsSettled() && missingStoreSaid_) store_.AcceptStandIn(); // pressed again: so be it
    if (store_.IsSettled()) return true;
    missingStoreSaid_ = true;
    const bool full = IsFullPath(NormalDirectoryPath(store_.Missing()));
    const Text reason = u"The store folder of the settings " +
                        Text(full ? u"cannot be found: " : u"is not a full path: ") + store_.Missing();
    LogLine(reason, Record::yes);
    window_.ShowBox(
        BoxIcon::warning,
        reason +
            u"\r\n\r\nNothing has been started. If its drive is missing, plug it in and press the "
            u"button again, or choose another folder on the page \"Store\". Without either, the "
            u"button pressed again works with the program's folder:\r\n" +
            store_.Path());
    return false;
}

bool Program::MayUseRecords()
{
    if (settings_.databaseInStore) return MayUseStore();
    UseDatabase(); // the store's may still be open
    return true;
}

bool Program::MayUseTicked()
{
    const bool areTicked = window_.NextTicked(-1) >= 0;
    if (!MayUseRecords()) return false;
    const bool haveGone = areTicked && window_.NextTicked(-1) < 0;
    if (haveGone) window_.ShowBox(BoxIcon::warning, kTableCleared);
    return !haveGone;
}

bool Program::MayExport()
{
    if (!MayUseStore() || SayFilesWithoutRecords()) return false;
    return saved_.IsWritable() || !settings_.databaseInStore; // otherwise a box has just said why not
}

void Program::cmdGetID()
{
    Run([this] { ShowSelectedEmail(run_); });
}

void Program::cmdCheckFolder()
{
    Run([this] {
        if (!MayUseStore()) return;
        window_.EnterBusyLayout();
        (void)CheckFolder(run_);
    });
}

bool Program::HasFolders()
{
    return !run_.nodes.empty() || SelectShownFolder(run_); // which says that there are none
}

void Program::BeginRunList()
{
    CountFoldersToCheck(run_);
    run_.exportList.clear();
}

void Program::cmdCheckAllFolders()
{
    Run([this] { CheckAllFolders(); });
}

void Program::CheckAllFolders()
{
    if (!MayUseStore() || !HasFolders()) return;
    window_.EnterBusyLayout();
    window_.ClearResults();
    window_.SetSummary(u"");
    BeginRunList();
    RunAllFolders(run_, AllFoldersMode::check);
    const Text checked = u"All folders have been checked - " + run_.checkSummary,
               unchecked = NotCheckedText(run_);
    if (unchecked.empty())
        window_.ShowBox(BoxIcon::information, checked);
    else
        window_.ShowBox(BoxIcon::warning, checked + u"\r\n\r\nBut " + unchecked);
}

void Program::cmdExport()
{
    Run([this] {
        if (!MayExport()) return;
        if (!SelectShownFolder(run_)) return;
        window_.EnterBusyLayout();
        flags_.runCompleted = true;
        (void)ExportFolder(run_, false);
        if (flags_.runCompleted)
            window_.ShowBox(BoxIcon::information, u"All emails for the selected folder have been exported.");
    });
}

void Program::cmdSaveAll()
{
    Run([this] { SaveAll(); });
}

void Program::SaveAll()
{
    if (!MayExport() || !HasFolders()) return;
    window_.EnterBusyLayout();
    // Kept: otherwise it goes on with the list of the last check.
    if (settings_.options.freshRunList) BeginRunList();
    RunAllFolders(run_, AllFoldersMode::check);
    if (closeAsked_) return;
    // Kept: a stop after a folder ends the check alone, and what it found until then is exported. So each
    // button is there anew.
    window_.ShowStopButtons(StopButtons::shown);
    run_.runTotalSaved = 0;
    flags_.runCompleted = false;
    RunAllFolders(run_, AllFoldersMode::exportEmails);
    if (flags_.runCompleted) window_.ShowBox(BoxIcon::information, u"All folders have been exported.");
}

void Program::cmdStopAfterEmail()
{
    flags_.stopAfterEmail = true;
    flags_.stopRequested = true;
    window_.HideStopButton(Stop::afterEmail);
}

void Program::cmdStopAfterFolder()
{
    flags_.stopAfterFolder = true;
    flags_.stopRequested = true;
    window_.HideStopButton(Stop::afterFolder);
}

void Program::cmdUseSelection()
{
    const auto line = static_cast<std::size_t>(window_.SelectedFolderNode()); // none: beyond the end
    if (line >= run_.folderPaths.size()) return;
    window_.ReadSettings(settings_);
    settings_.options.firstFolderToIgnore = run_.folderPaths[line];
    window_.ShowSettings(settings_);
}

void Program::cmdExtras()
{
    const auto findWrong = [this](const std::vector<Text>& values) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            const ExtraRow& row = ExtraRows()[i];
            if (ExtraValueOf(row, values[i])) continue;
            window_.ShowBox(BoxIcon::warning, WhyRefused(row, values[i]));
            return static_cast<int>(i);
        }
        return -1;
    };
    Run([&] {
        std::vector<Text> values;
        for (const ExtraRow& row : ExtraRows()) values.push_back(DecimalText(row.get(settings_)));
        if (!window_.AskExtras(values, findWrong)) return;
        for (std::size_t i = 0; i < values.size(); ++i)
            ExtraRows()[i].set(settings_, *ExtraValueOf(ExtraRows()[i], values[i]));
        if (SaveExtras(settings_, outside_.profile, outside_.programFolder + u"settings.ini")) return;
        const Text words =
            u"The extras could not be written to settings.ini: they hold until Quillbox is closed";
        LogLine(words, Record::yes);
        window_.ShowBox(BoxIcon::warning, words);
    });
}

void Program::cmdOpenFolder()
{
    if (!OpenExportFolder()) window_.ShowText(u"There is no export folder to open yet");
}

bool Program::OpenExportFolder()
{
    const auto line = static_cast<std::size_t>(run_.selectedFolder); // none: beyond the end
    if (line >= run_.storeDirectories.size()) return false;
    const Text folder = ExportFolderOf(store_.Path(), run_.storeDirectories[line]);
    if (!outside_.files.DirectoryExists(folder)) return false;
    window_.OpenFolder(folder);
    return true;
}

void Program::cmdChooseStore()
{
    window_.ShowTab(Tab::store); // with the folders of this moment
    window_.FocusFolderList();
}

// Asked for until it is made or the user gives up.
void Program::cmdNewFolder()
{
    Run([this] {
        Text name;
        while (window_.AskFolderName(store_.Path(), name)) {
            const Text path = PathInDirectory(store_.Path(), name);
            if (name.empty() || DirectoryNameFor(name, outside_.codePage) != name)
                window_.ShowBox(BoxIcon::warning,
                                u"A folder cannot have this name, or Outlook Express could not save to it: " +
                                    name);
            else if (outside_.files.FileExists(path))
                window_.ShowBox(BoxIcon::warning, u"There is a file of this name already: " + path);
            else if (!store_.Make(name))
                window_.ShowBox(BoxIcon::warning,
                                u"The folder cannot be made. The disk may be full or write-protected, or "
                                u"the name too long: " +
                                    path);
            else
                return;
        }
    });
    window_.FocusFolderList();
}

void Program::mnMarkSaved()
{
    Run([this] {
        if (!MayUseTicked()) return;
        for (int place = window_.NextTicked(-1); place >= 0 && !closeAsked_;
             place = window_.NextTicked(place)) {
            const ResultsRow& row = window_.ResultsRowAt(place);
            const Text& folder = Cell(row, ResultsColumn::folder);
            EmailEntry entry;
            entry.Subject = Cell(row, ResultsColumn::subject);
            entry.Crc = Cell(row, ResultsColumn::crc);
            // Nothing would find a record without a CRC, and the finding that one has no file, which has no
            // place in the list, shows a sentence for its subject.
            if (entry.Crc.empty() || Cell(row, ResultsColumn::id).empty()) {
                LogLine(u"Not marked, as the row has no e-mail's details: " + folder + u" - " +
                            Cell(row, ResultsColumn::id),
                        Record::yes);
                continue;
            }
            const bool isRecorded = IsSaved(saved_, entry.Crc, folder);
            if (isRecorded && Options().lookAlikes) { // which of them has the record only the list tells
                LogLine(u"Not marked, as this e-mail or one that looks the same is recorded: " + folder +
                            u" - " + Cell(row, ResultsColumn::id),
                        Record::yes);
                continue;
            }
            if (!isRecorded) AddSavedEmail(saved_, folder, entry);
            LogLine(u"Mark as saved: " + folder + u" - " + entry.Subject + u" : " + entry.Crc, Record::yes);
            window_.Untick(place);
            window_.ProcessEvents();
        }
        window_.ShowBox(BoxIcon::information, u"Finished updating database");
    });
}

void Program::mnForget()
{
    Run([this] {
        if (window_.NextTicked(-1) < 0 || !MayUseTicked()) return;
        (void)WritableDatabase(saved_); // or it throws, before anything is asked
        if (!window_.Ask(u"Forget that the ticked e-mails have been saved?\r\n\r\nTheir records are deleted, "
                         u"so that the next export saves these e-mails again. Files stay where they are."))
            return;
        // Of those that look the same each has a record of its own then.
        const std::int32_t most = Options().lookAlikes ? 1 : std::numeric_limits<std::int32_t>::max();
        std::int32_t forgotten = 0;
        for (int place = window_.NextTicked(-1); place >= 0 && !closeAsked_;
             place = window_.NextTicked(place)) {
            const ResultsRow& row = window_.ResultsRowAt(place);
            const Text& crc = Cell(row, ResultsColumn::crc);
            const Text& folder = Cell(row, ResultsColumn::folder);
            const std::int32_t rows = crc.empty() ? 0 : ForgetSavedEmail(saved_, crc, folder, most);
            if (rows > 0)
                LogLine(u"Forgotten: " + folder + u" - " + Cell(row, ResultsColumn::subject) + u" : " + crc,
                        Record::yes);
            forgotten += rows;
            window_.Untick(place);
            window_.ProcessEvents();
        }
        const Text words = DecimalText(forgotten) + u" record(s) of the ticked e-mails were deleted";
        LogLine(words, Record::yes);
        window_.ShowBox(BoxIcon::information, words);
    });
}

void Program::mnCondenseDB()
{
    Run([this] {
        if (!MayUseRecords()) return;
        if (Options().lookAlikes) {
            const Text words =
                u"Condensing stays off while the extra \"Look-alikes\" is chosen: records that stand "
                u"twice are of e-mails that look alike.";
            LogLine(words, Record::yes);
            return window_.ShowBox(BoxIcon::information, words);
        }
        (void)WritableDatabase(saved_); // or it throws, before the window changes
        window_.EnterBusyLayout();
        window_.ShowText(u"Condensing database...");
        const Condensed done = CondenseDatabase(saved_, [this](int percent) {
            window_.ShowPercentage(Bar::currentFolder, percent);
            window_.ProcessEvents();
            return !flags_.stopAfterEmail && !flags_.stopAfterFolder;
        });
        if (done.stopped)
            LogLine(u"Condensing was stopped: the records behind were not looked at.", Record::yes);
        window_.ShowText(u"Removed " + DecimalText(done.removed) + u" record(s)");
    });
}
