// What the command line tells the program to do, and the code by which it says what came of it.
#include "app/Program.h"

#include "folders/AllFolders.h"
#include "folders/CheckFolder.h"
#include "folders/ExportFolder.h"
#include "folders/StoredFiles.h"
#include "oe/Conversation.h"
#include "oe/RemoteListView.h"
#include "oe/RemoteTreeView.h"
#include "oe/WindowDiscovery.h"

#include <algorithm>
#include <set>

bool Program::TakesBox(const Text& words)
{
    if (told_.close) log_.LogBox(words);
    return told_.close;
}

// Nothing else: no setting is written either.
void Program::RefuseSwitches()
{
    code_ = ExitCode::wrongSwitches;
    lastRecordsWritten_ = true; // none is known, and the session may end over the box
    log_.SetPath(outside_.programFolder + u"log.txt");
    window_.ShowBox(BoxIcon::warning,
                    told_.wrong +
                        u"\r\n\r\nquillbox.exe /sync /check|/export [/folder:NAME|/all] [/store:DIR] "
                        u"[/comparison:simple|database|file] [/jump] [/close]\r\n"
                        u"quillbox.exe /captions");
    AskToClose();
}

void Program::NameColumns()
{
    code_ = ExitCode::unusable;
    lastRecordsWritten_ = true; // no other setting is known, or written
    log_.SetPath(outside_.programFolder + u"log.txt");
    const Text settingsFile = outside_.programFolder + u"settings.ini";
    (void)LoadCaptions(settings_.words, outside_.profile, outside_.files, settingsFile);
    FindOeHandles(client_);
    (void)Patiently(client_, [this] { return ReadListColumns(client_); });
    std::vector<Text> titles;
    for (const ListColumn& column : client_.columns)
        if (!column.title.empty()) titles.push_back(column.title);
    std::vector<int> chosen;
    for (std::size_t i = 0; i < kColumnCaptions; ++i) { // as far as they are known
        const auto title = std::find(titles.begin(), titles.end(), settings_.words.*CaptionRows()[i].word);
        chosen.push_back(title == titles.end() ? -1 : static_cast<int>(title - titles.begin()));
    }
    const auto areRight = [this](const std::vector<int>& places) {
        const std::set<int> different(places.begin(), places.end());
        const bool right = different.size() == places.size() && *different.begin() >= 0;
        if (!right) window_.ShowBox(BoxIcon::warning, u"Choose another column for each of the five");
        return right;
    };
    if (titles.size() < kColumnCaptions) {
        window_.ShowBox(BoxIcon::warning,
                        u"Show a mail folder in Outlook Express, with all five columns in its list, first");
    } else if (window_.AskColumns(titles, chosen, areRight)) {
        std::vector<Text> captions;
        for (const int place : chosen) captions.push_back(titles[static_cast<std::size_t>(place)]);
        const bool written = SaveColumnCaptions(captions, outside_.profile, settingsFile);
        if (written) code_ = ExitCode::allSaved;
        window_.ShowBox(written ? BoxIcon::information : BoxIcon::warning,
                        written
                            ? u"The titles of the columns stand in settings.ini now. Tick \"Any Language\" "
                              u"in the box \"Extras\", too, if Outlook Express does not speak English."
                            : u"The titles of the columns could not be written to settings.ini");
    }
    AskToClose();
}

void Program::DoAsTold()
{
    code_ = ExitCode::unsaved; // until it is known better
    if (closeAsked_) return;
    if (told_.comparison) settings_.options.comparison = *told_.comparison;
    if (told_.jump) settings_.options.jumpRemain = true;
    window_.ShowSettings(settings_);
    const auto paths = run_.folderPaths.begin(), end = paths + static_cast<std::ptrdiff_t>(run_.nodes.size());
    const auto path =
        std::find_if(paths, end, [this](const Text& each) { return EqualNoCase(each, told_.folder); });
    const bool isThere = !told_.store.empty() ? store_.GoTo(told_.store) : true;
    if (!told_.store.empty() && isThere) store_.Choose(told_.store);
    if (!isThere) // and no other one's database is opened, or made
        LogLine(u"The folder of the switch /store cannot be found: " + told_.store, Record::yes);
    else if (!CanBegin())
        code_ = ExitCode::unusable;
    else if (!told_.folder.empty() && path == end)
        LogLine(u"Outlook Express has no such folder: " + told_.folder, Record::yes);
    else
        Run([&] { RunAsTold(told_.folder.empty() ? -1 : static_cast<int>(path - paths)); });
    if (told_.close && !closeAsked_) AskToClose();
}

bool Program::CanBegin()
{
    if (run_.nodes.empty()) {
        LogLine(u"Outlook Express cannot be used: nothing was begun", Record::yes);
        return false;
    }
    if (!store_.IsSettled()) return true; // the run says so, and that is all it does
    UseDatabase();
    if (told_.run == UnattendedRun::check)
        return saved_.IsOpen() || settings_.options.comparison == ComparisonType::simple;
    if (!saved_.IsWritable()) return false;
    // All that is there would be saved again: also in the night after the one in which it was made anew.
    const bool knowsNothing = saved_.beganEmpty && CountStoredFiles(run_).files > 0;
    if (knowsNothing)
        LogLine(u"Nothing is exported, as saved.mdb has no record of any e-mail, but the store folder holds "
                u"saved e-mails",
                Record::yes);
    return !knowsNothing;
}

// As the buttons do, but a single folder is shown by the program, and exported from its first row.
void Program::RunAsTold(int line)
{
    const bool isCheck = told_.run == UnattendedRun::check;
    bool isSaved = false;
    run_.checkedCounts.clear();
    if (told_.allFolders) {
        isCheck ? CheckAllFolders() : SaveAll();
        if (run_.checkedCounts.empty()) LogLine(u"No folder was looked at", Record::yes);
        const ExportTotals& totals = run_.exported;
        isSaved = isCheck ? IsAllChecked()
                          : totals.saved == totals.handled && run_.uncheckedFolders == 0 &&
                                run_.unmadeFolders.empty() && !run_.checkedCounts.empty();
        // What a jump has passed over only a check can tell.
        if (isSaved && !isCheck && totals.notLookedAt > 0) {
            if (told_.jump && !flags_.stopRequested && !flags_.clientLost) CheckAllFolders();
            isSaved = told_.jump && !flags_.stopRequested && !flags_.clientLost && IsAllChecked();
        }
    } else if (MayUseStore() && ShowFromFirstRow(line)) {
        window_.EnterBusyLayout();
        if (isCheck) {
            isSaved = CheckFolder(run_) == 0;
        } else if (ExportFolder(run_, false)) {
            // All that the list has by now.
            const std::optional<std::int32_t> count = CountEmails(run_);
            const ExportTotals& totals = run_.exported;
            isSaved =
                count && totals.saved >= *count && totals.saved == totals.handled && totals.notLookedAt == 0;
        }
        if (line >= 0 && run_.selectedFolder != line) {
            LogLine(u"Outlook Express showed another folder than it was told to", Record::yes);
            isSaved = false;
        }
    }
    if (isSaved) code_ = ExitCode::allSaved;
}

bool Program::ShowFromFirstRow(int line)
{
    if (line < 0 && !SelectShownFolder(run_, Refusal::inLog)) return false;
    if (line < 0) line = run_.selectedFolder;
    if (!ChangeFolder(client_, line, run_.nodes[static_cast<std::size_t>(line)].name)) return false;
    FindOeHandles(client_);
    SelectListItem(client_, 0, OtherItems::clear);
    return true;
}

bool Program::IsAllChecked() const
{
    return !run_.checkedCounts.empty() && run_.uncheckedFolders == 0 && run_.runTotalToSave == 0;
}
