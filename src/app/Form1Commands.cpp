// What the controls of the window start.
#include "app/Form1.h"
#include "app/NewFolderWin.h"

#include "folders/AllFolders.h"
#include "folders/CheckFolder.h"
#include "folders/ExportFolder.h"
#include "folders/StoredFiles.h"
#include "folders/StoreFolders.h"
#include "folders/Synchronise.h"
#include "platform/win32/WideText.h"
#include "store/SavedMaintenance.h"
#include "store/StoreNames.h"

void Form1::OnCommand(int id, int code)
{
    if (code == BN_CLICKED) {
        if (id == idStopAfterEmail) return cmdStopAfterEmail();
        if (id == idStopAfterFolder) return cmdStopAfterFolder();
        if (id == idShowLog || id == idShowResults) return controls_.ShowResults(id == idShowResults);
    }
    if (id == idProgressList && code == LBN_DBLCLK) return controls_.ShowResults(true);
    if (running_) return; // only the stop buttons, the tabs, the lists and closing work
    switch (id) {
    case idSync:
        if (code == BN_CLICKED) Run([this] { cmdSync(); });
        break;
    case idGetID:
        if (code == BN_CLICKED) Run([this] { cmdGetID(); });
        break;
    case idCheckFolder:
        if (code == BN_CLICKED) Run([this] { cmdCheckFolder(); });
        break;
    case idCheckAllFolders:
        if (code == BN_CLICKED) Run([this] { cmdCheckAllFolders(); });
        break;
    case idExport:
        if (code == BN_CLICKED) Run([this] { cmdExport(); });
        break;
    case idSaveAll:
        if (code == BN_CLICKED) Run([this] { cmdSaveAll(); });
        break;
    case idUseSelection:
        if (code == BN_CLICKED) cmdUseSelection();
        break;
    case idOEFolder:
        if (code == STN_DBLCLK) (void)OpenExportFolder();
        break;
    case idOpenFolder:
        if (code == BN_CLICKED && !OpenExportFolder()) ShowText(u"There is no export folder to open yet");
        break;
    case idChooseStore:
        if (code == BN_CLICKED) {
            ShowTab(Tab::store); // with the folders of this moment
            SetFocus(controls_.Dir1);
        }
        break;
    case idDrive:
        if (code == CBN_DROPDOWN) store_.Refresh();
        if (code == CBN_SELCHANGE) store_.DriveChosen();
        break;
    case idNewFolder:
        if (code != BN_CLICKED) break;
        Run([this] { cmdNewFolder(); });
        MoveFocus(controls_.Dir1);
        break;
    case idDir:
        if (code == LBN_DBLCLK) store_.FolderOpened();
        break;
    case mnTickSel:
        results_.TickRows(RowChoice::selected, true);
        break;
    case mnUntickSel:
        results_.TickRows(RowChoice::selected, false);
        break;
    case mnMarkSaved:
        Run([this] { mnMarkSavedChosen(); });
        break;
    case mnCondenseDB:
        Run([this] { mnCondenseDBChosen(); });
        break;
    case IDCANCEL: // Esc
        if (GetFocus() == controls_.lvResults) {
            controls_.ShowResults(false);
            SetFocus(controls_.lstProgress);
        }
        break;
    }
}

void Form1::OnNotify(NMHDR& notice)
{
    if (notice.idFrom == idResults) {
        if (notice.code == LVN_GETDISPINFOW)
            results_.FillCell(reinterpret_cast<NMLVDISPINFOW&>(notice));
        else if (notice.code == LVN_COLUMNCLICK && !running_)
            results_.SortBy(reinterpret_cast<const NMLISTVIEW&>(notice).iSubItem);
    }
    if (notice.idFrom == idTab && notice.code == static_cast<UINT>(TCN_SELCHANGE))
        ShowTab(static_cast<Tab>(controls_.nTab.Selected()));
}

// Every failure of a command ends here, as a message.
void Form1::Run(const std::function<void()>& command)
{
    if (running_) return;
    const HWND focus = GetFocus();
    running_ = true;
    state_.flags = {};
    UpdateCommands();
    try {
        command();
    } catch (const DatabaseError& error) {
        state_.flags.runCompleted = false;
        ReportDatabaseError(*this, error);
    } catch (const std::exception& error) {
        ShowError(u"Error: " + FromUtf8(error.what()));
    }
    ShowAdded();
    LeaveRun();
    running_ = false;
    UpdateCommands();
    if (closeAsked_) {
        Close();
        return;
    }
    MoveFocus(focus); // a button that is disabled loses the keyboard; it gets it back
}

void Form1::ShowError(const Text& words)
{
    state_.flags.runCompleted = false;
    LogLine(words, Record::yes);
    ShowBox(BoxIcon::warning, words);
}

void Form1::UpdateCommands()
{
    controls_.cmdGetID.Enable(!running_);
    controls_.cmdUseSelection.Enable(!running_);
    controls_.cmdChooseStore.Enable(!running_);
    controls_.cmdOpenFolder.Enable(!running_);
    controls_.cmdNewFolder.Enable(!running_);
    for (const HWND list : {controls_.Drive1, controls_.Dir1}) EnableWindow(list, !running_);
    controls_.cmdCheckFolder.Enable(!running_);
    controls_.cmdCheckAllFolders.Enable(!running_);
    const bool canExport = !running_ && state_.saved.IsWritable(); // no export without a record of it
    controls_.cmdExport.Enable(canExport);
    controls_.cmdSaveAll.Enable(canExport);
    const bool synchronised = state_.run && !state_.run->nodes.empty();
    EnableWindow(controls_.cboComparison, !running_ && synchronised);
    controls_.cmdSync.Enable(!running_); // last: whoever watches it finds the others settled
    UpdateWindow(window_);
}

void Form1::cmdSync()
{
    Synchronise(*state_.run);
    (void)SayFilesWithoutRecords();
}

bool Form1::SayFilesWithoutRecords()
{
    const bool synchronised = !state_.run->nodes.empty();
    if (!state_.saved.created || !state_.saved.IsOpen() || !synchronised) return false;
    // Later on the files there may be this session's own.
    if (!storesLookedAt_.insert(FoldCase(store_.Folder())).second) return false;
    const StoredFiles stored = CountStoredFiles(*state_.run);
    if (stored.files == 0) return false;
    const Text found = u"saved.mdb has been made anew, but the store folder holds " +
                       DecimalText(static_cast<std::int64_t>(stored.files)) + u" saved e-mail(s) of " +
                       DecimalText(static_cast<std::int64_t>(stored.folders)) + u" folder(s)";
    LogLine(found + u": a check of all folders with \"File (slow)\" records them.", Record::yes);
    ShowBox(BoxIcon::warning,
            found + u":\r\n" + store_.Folder() +
                u"\r\n\r\nAn export may save them again beside the files that are there. Before it, choose "
                u"the comparison type \"File (slow)\" and check all folders: that records the e-mails whose "
                u"files are found. Or close Quillbox and put the old saved.mdb back into its folder.");
    return true;
}

void Form1::cmdGetID()
{
    ShowSelectedEmail(*state_.run);
}

bool Form1::MayUseStore()
{
    if (store_.IsSettled()) return true;
    if (missingStoreSaid_) { // pressed again: so be it
        store_.AcceptStandIn();
        return true;
    }
    missingStoreSaid_ = true;
    const bool full = IsFullPath(NormalDirectoryPath(store_.Missing()));
    const Text reason = u"The store folder of the settings " +
                        Text(full ? u"cannot be found: " : u"is not a full path: ") + store_.Missing();
    LogLine(reason, Record::yes);
    ShowBox(BoxIcon::warning,
            reason +
                u"\r\n\r\nNothing has been started. If its drive is missing, plug it in and press the "
                u"button again, or choose another folder on the page \"Store\". Without either, the "
                u"button pressed again works with the program's folder:\r\n" +
                store_.Folder());
    return false;
}

void Form1::EnterRun()
{
    chosenNode_ = SelectedNode();
    ShowStopButtons(StopButtons::shown);
    controls_.EnterBusyLayout();
    MoveFocus(controls_.cmdStopAfterEmail.Window());
}

void Form1::LeaveRun()
{
    ShowStopButtons(StopButtons::hidden);
    controls_.LeaveBusyLayout();
    if (chosenNode_)
        SendMessageW(controls_.tvOETree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(*chosenNode_));
    chosenNode_.reset();
}

void Form1::cmdCheckFolder()
{
    if (!MayUseStore()) return;
    EnterRun();
    CheckFolder(*state_.run);
}

void Form1::cmdCheckAllFolders()
{
    if (!MayUseStore()) return;
    FolderRun& run = *state_.run;
    EnterRun();
    results_.Clear();
    SetSummary(u"");
    CountFoldersToCheck(run);
    run.exportList.clear();
    RunAllFolders(run, AllFoldersMode::check);
    ShowBox(BoxIcon::information, u"All folders have been checked - " + run.checkSummary);
}

void Form1::cmdSaveAll()
{
    if (!MayUseStore() || SayFilesWithoutRecords()) return;
    FolderRun& run = *state_.run;
    EnterRun();
    RunAllFolders(run, AllFoldersMode::check);
    if (closeAsked_) return;
    // Kept: a stop after a folder ends the check alone, and what it found until then is exported. So each
    // button is there anew.
    ShowStopButtons(StopButtons::shown);
    run.runTotalSaved = 0;
    state_.flags.runCompleted = false;
    RunAllFolders(run, AllFoldersMode::exportEmails);
    if (state_.flags.runCompleted) ShowBox(BoxIcon::information, u"All folders have been exported.");
}

void Form1::cmdExport()
{
    if (!MayUseStore() || SayFilesWithoutRecords()) return;
    if (!SelectShownFolder(*state_.run)) return;
    EnterRun();
    state_.flags.runCompleted = true;
    (void)ExportFolder(*state_.run, false);
    if (state_.flags.runCompleted)
        ShowBox(BoxIcon::information, u"All emails for the selected folder have been exported.");
}

void Form1::cmdStopAfterEmail()
{
    state_.flags.stopAfterEmail = true;
    state_.flags.stopRequested = true;
    HideStopButton(controls_.cmdStopAfterEmail, controls_.cmdStopAfterFolder);
}

void Form1::cmdStopAfterFolder()
{
    state_.flags.stopAfterFolder = true;
    state_.flags.stopRequested = true;
    HideStopButton(controls_.cmdStopAfterFolder, controls_.cmdStopAfterEmail);
}

// The keyboard goes on to the other one.
void Form1::HideStopButton(OrbSimpleButton& pressed, OrbSimpleButton& other)
{
    if (GetFocus() == pressed.Window() && IsWindowVisible(other.Window())) SetFocus(other.Window());
    pressed.Show(false);
}

void Form1::cmdUseSelection()
{
    TVITEMW node = {};
    node.mask = TVIF_PARAM;
    node.hItem = SelectedNode();
    if (!node.hItem || !SendMessageW(controls_.tvOETree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&node)))
        return;
    const auto line = static_cast<std::size_t>(node.lParam);
    if (line < state_.run->folderPaths.size())
        SetWindowTextW(controls_.txtIgnore, Wide(state_.run->folderPaths[line]));
}

bool Form1::OpenExportFolder()
{
    const FolderRun& run = *state_.run;
    const auto line = static_cast<std::size_t>(run.selectedFolder);
    if (run.selectedFolder < 0 || line >= run.storeDirectories.size()) return false;
    const Text folder = ExportFolderOf(store_.Folder(), run.storeDirectories[line]);
    if (!outside_.files.DirectoryExists(folder)) return false;
    std::wstring command = L"Explorer /n," + std::wstring(Wide(folder));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    return true;
}

// Asked for until it is made or the user gives up.
void Form1::cmdNewFolder()
{
    Text name;
    for (;;) {
        WaitForKeysUp();
        if (closeAsked_ || !AskFolderName(window_, store_.Folder(), name)) return;
        const Text path = PathInDirectory(store_.Folder(), name);
        if (name.empty() || DirectoryNameFor(name, outside_.codePage) != name)
            ShowBox(BoxIcon::warning,
                    u"A folder cannot have this name, or Outlook Express could not save to it: " + name);
        else if (outside_.files.FileExists(path))
            ShowBox(BoxIcon::warning, u"There is a file of this name already: " + path);
        else if (!store_.MakeFolder(name))
            ShowBox(BoxIcon::warning,
                    u"The folder cannot be made. The disk may be full or write-protected, or "
                    u"the name too long: " +
                        path);
        else
            return;
    }
}

void Form1::mnMarkSavedChosen()
{
    for (int place = 0; place < results_.Count() && !closeAsked_; ++place) {
        if (!results_.IsTicked(place)) continue;
        const ResultsRow& row = results_.RowAt(place);
        const Text& folder = Cell(row, ResultsColumn::folder);
        EmailEntry entry;
        entry.Subject = Cell(row, ResultsColumn::subject);
        entry.Crc = Cell(row, ResultsColumn::crc);
        if (entry.Crc.empty()) { // nothing would find such a record
            LogLine(u"Not marked, as the e-mail could not be read: " + folder + u" - " +
                        Cell(row, ResultsColumn::id),
                    Record::yes);
            continue;
        }
        if (!IsSaved(state_.saved, entry.Crc, folder)) AddSavedEmail(state_.saved, folder, entry);
        LogLine(u"Mark as saved: " + folder + u" - " + entry.Subject + u" : " + entry.Crc, Record::yes);
        results_.Tick(place, false);
        ProcessEvents();
    }
    ShowBox(BoxIcon::information, u"Finished updating database");
}

void Form1::mnCondenseDBChosen()
{
    (void)WritableDatabase(state_.saved); // or it throws, before the window changes
    EnterRun();
    ShowText(u"Condensing database...");
    const Condensed done = CondenseDatabase(state_.saved, [this](int percent) {
        ShowPercentage(Bar::currentFolder, percent);
        ProcessEvents();
        return !state_.flags.stopAfterEmail && !state_.flags.stopAfterFolder;
    });
    if (done.stopped) LogLine(u"Condensing was stopped: the records behind were not looked at.", Record::yes);
    ShowText(u"Removed " + DecimalText(done.removed) + u" record(s)");
}
