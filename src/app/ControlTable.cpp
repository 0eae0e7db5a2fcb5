#include "app/ControlTable.h"

namespace {

using enum Kind;
using enum Shown;
using enum Needs;

constexpr Growth kStays = {0, 0, 0, 0};
constexpr Growth kWidens = {0, 0, 100, 0};
constexpr Growth kFills = {0, 0, 100, 100};
constexpr Growth kSinks = {0, 100, 0, 100};
constexpr Growth kSinksRight = {100, 100, 100, 100};
constexpr Growth kMovesRight = {100, 0, 100, 0};
// Of two columns that share the width: the left one, the right one, and what stands at the right one's left.
constexpr Growth kLeftHalf = {0, 0, 50, 0};
constexpr Growth kRightHalf = {50, 0, 100, 0};
constexpr Growth kFromMiddle = {50, 0, 50, 0};
// The tree, what lies below it, and the tab strip, which takes the rest of the height.
constexpr Growth kDownToFolder = {0, 0, 100, kWithTree};
constexpr Growth kBelowTree = {0, kWithTree, 0, kWithTree};
constexpr Growth kBelowTreeWidens = {0, kWithTree, 100, kWithTree};
constexpr Growth kBelowTreeRight = {100, kWithTree, 100, kWithTree};
constexpr Growth kBelowTreeFills = {0, kWithTree, 100, 100};
// The two lists of the page "Store", which share the height.
constexpr int kShare = 65;
constexpr Growth kUpperList = {0, 0, 100, kShare};
constexpr Growth kLowerName = {0, kShare, 0, kShare};
constexpr Growth kLowerList = {0, kShare, 100, 100};

constexpr int kMargin = 5;
constexpr int kLine = 9;     // of text, with a little air
constexpr int kButton = 14;  // height of a button
constexpr int kBox = 10;     // of a check box
constexpr int kDropped = 90; // a combo box counts its open list
constexpr int kText = 3;     // from the top of a button to a text in line with its caption

constexpr Place At(int left, int top, int width, int height)
{
    return {left, top, width, height};
}

// The form, from the top down.
constexpr int kContent = 397;
constexpr int kDisplay = 34;                       // two lines of dots
constexpr int kTop = kMargin + kDisplay + kMargin; // of the tree's label, or of the statistics
constexpr int kStatsHeight = 72;
constexpr int kUpperEnd = kTop + kStatsHeight + 3 + kButton; // of tree or stop buttons
constexpr int kStopTop = kUpperEnd - kButton, kStop = 112;
constexpr int kFolderTop = kUpperEnd + 3, kFolder = 82, kOpen = 60;
constexpr int kTabTop = kFolderTop + kButton + 2;
constexpr int kStrip = 18; // the tabs themselves, at the most
constexpr int kPageWidth = 391, kPageHeight = 112;
constexpr Extent kForm = {kContent + 2 * kMargin, kTabTop + kStrip + kPageHeight + kMargin};
constexpr Place kPage = {0, 0, kPageWidth, kPageHeight};
constexpr Place kNowhere = {};

// The statistics: two columns, of the current folder and of all folders; a bar, and below it a name and a
// value in each line.
constexpr int kColumn = 186, kNames = 86, kBar = 14;
constexpr int kLeftColumn = 7, kRightColumn = 203;
constexpr Place NameAt(int column, int line)
{
    return {column, 32 + line * kLine, kNames, kLine};
}
constexpr Place ValueAt(int column, int line)
{
    return {column + kNames + 2, 32 + line * kLine, kColumn - kNames - 2, kLine};
}

// Columns of the pages: captions, then three of controls.
constexpr int kPageLeft = 6, kFirst = 62, kSecond = 183, kThird = 284;
constexpr int kExtras = 50;
constexpr int kFirstWidth = 118, kSecondWidth = 98, kThirdWidth = 102;
constexpr int kPageRight = kThird + kThirdWidth;
constexpr Place StepAt(int top)
{
    return {kPageLeft, top + kText, kFirst - kPageLeft, kLine};
}
constexpr Place First(int top, int height)
{
    return {kFirst, top, kFirstWidth, height};
}
constexpr Place Second(int top, int height)
{
    return {kSecond, top, kSecondWidth, height};
}
constexpr Place Third(int top, int height)
{
    return {kThird, top, kThirdWidth, height};
}
// Lines of the page "Actions".
constexpr int kSync = 6, kStore = 27, kCheck = 48, kExport = 69, kIgnore = 92;
// Of the page "Store".
constexpr int kDrive = 18, kNewFolder = 70, kFolders = 34, kFiles = 69, kOptions = 96, kOnStore = 88;
// Of the page "Progress".
constexpr int kSwitch = 48, kListName = kPageLeft + 2 * kSwitch + 8, kList = 17;

constexpr ControlRow kRows[] = {
    {OrbVac, onForm, display, At(kMargin, kMargin, kContent, kDisplay), kWidens},
    {lblTree, onForm, name, At(kMargin, kTop, kContent, kLine), kWidens, u"Outlook Express folders t&ree:",
     nullptr, whileIdle},
    {tvOETree, onForm, tree, At(kMargin, kTop + 10, kContent, kUpperEnd - kTop - 10), kDownToFolder, u"",
     nullptr, whileIdle},

    {fraStats, onForm, frame, At(kMargin, kTop, kContent, kStatsHeight), kWidens, u"", nullptr, whileBusy},
    {lblCurrentFolder, fraStats, heading, At(kLeftColumn, 4, kColumn, kLine), kLeftHalf, u"Current folder"},
    {sProg, fraStats, progressBar, At(kLeftColumn, 14, kColumn, kBar), kLeftHalf},
    {capCount, fraStats, label, NameAt(kLeftColumn, 0), kStays, u"Count"},
    {lblCount, fraStats, label, ValueAt(kLeftColumn, 0), kLeftHalf, u"-"},
    {capPerSecond, fraStats, label, NameAt(kLeftColumn, 1), kStays, u"Rate"},
    {lblPerSecond, fraStats, label, ValueAt(kLeftColumn, 1), kLeftHalf, u"-"},
    {capTime, fraStats, label, NameAt(kLeftColumn, 2), kStays, u"Time left"},
    {lblTime, fraStats, label, ValueAt(kLeftColumn, 2), kLeftHalf, u"-:-:-"},
    {capLeft, fraStats, label, NameAt(kLeftColumn, 3), kStays, u"Emails left"},
    {lblLeft, fraStats, label, ValueAt(kLeftColumn, 3), kLeftHalf, u"-",
     u"Emails left to save in current folder"},
    {lblAllFolders, fraStats, heading, At(kRightColumn, 4, kColumn, kLine), kRightHalf, u"All folders"},
    {spMain, fraStats, progressBar, At(kRightColumn, 14, kColumn, kBar), kRightHalf},
    {capTotalCount, fraStats, label, NameAt(kRightColumn, 0), kFromMiddle, u"Total emails to be saved"},
    {lblTotalCount, fraStats, label, ValueAt(kRightColumn, 0), kRightHalf, u"-"},
    {capTotalLeft, fraStats, label, NameAt(kRightColumn, 1), kFromMiddle, u"Total Emails left"},
    {lblTotalLeft, fraStats, label, ValueAt(kRightColumn, 1), kRightHalf, u"-", u"Emails left to save"},
    {capTotalTime, fraStats, label, NameAt(kRightColumn, 2), kFromMiddle, u"Time left"},
    {lblTotalTime, fraStats, label, ValueAt(kRightColumn, 2), kRightHalf, u"-:-:-"},

    {cmdStopAfterEmail, onForm, button, At(kMargin, kStopTop, kStop, kButton), kStays,
     u"Stop After This E&mail", u"Stop exporting after current email", onDemand, nothing,
     &Program::cmdStopAfterEmail},
    {cmdStopAfterFolder, onForm, button, At(kMargin + kStop + 4, kStopTop, kStop, kButton), kStays,
     u"Stop After This Fo&lder", u"Stop exporting after current folder", onDemand, nothing,
     &Program::cmdStopAfterFolder},
    {lblSelFolder, onForm, label, At(kMargin, kFolderTop + kText, kFolder, kLine), kBelowTree,
     u"Outlook Express folder"},
    {lblOEFolder, onForm, label,
     At(kMargin + kFolder + 2, kFolderTop + kText, kContent - kFolder - kOpen - 6, kLine), kBelowTreeWidens,
     u"", u""},
    {cmdOpenFolder, onForm, button, At(kMargin + kContent - kOpen, kFolderTop, kOpen, kButton),
     kBelowTreeRight, u"O&pen folder",
     u"Open the folder that the emails of this Outlook Express folder are exported to", always, idle,
     &Program::cmdOpenFolder},

    {fraActions, onForm, page, kPage, kFills, u"", nullptr, onDemand},
    {lblStepSync, fraActions, heading, StepAt(kSync), kStays, u"1  Synchronise"},
    {cmdSync, fraActions, button, First(kSync, kButton), kStays, u"&Sync with OE",
     u"Synchronise with Outlook Express", always, idle, &Program::cmdSync},
    {capSync, fraActions, label, At(kSecond, kSync + kText, kPageRight - kSecond, kLine), kWidens,
     u"<--- To start exporting, please synchronise first",
     u"You must synchronise with Outlook Express before exporting any emails", untilSynchronised},
    {cmdGetID, fraActions, button, Second(kSync, kButton), kStays, u"&Get ID of selected email",
     u"Get the message ID of the email selected in Outlook Express", onceSynchronised, idle,
     &Program::cmdGetID},
    {lblStepStore, fraActions, heading, StepAt(kStore), kStays, u"2  Store"},
    {cmdChooseStore, fraActions, button, First(kStore, kButton), kStays, u"Ch&oose store folder...",
     u"Choose the folder that the emails are exported to", always, idle, &Program::cmdChooseStore},
    {lblStorePath, fraActions, label, At(kSecond, kStore + kText, kPageRight - kSecond, kLine), kWidens, u"",
     u""},
    {lblStepCheck, fraActions, heading, StepAt(kCheck), kStays, u"3  Check"},
    {cmdCheckFolder, fraActions, button, First(kCheck, kButton), kStays, u"&Check folder",
     u"Check current Outlook Express folder", onceSynchronised, idle, &Program::cmdCheckFolder},
    {cmdCheckAllFolders, fraActions, button, Second(kCheck, kButton), kStays, u"Check &all folders",
     u"Check all Outlook Express folders", onceSynchronised, idle, &Program::cmdCheckAllFolders},
    {lblComparison, fraActions, name, Third(kCheck - kLine, kLine), kStays, u"Comparison &type:"},
    {cboComparison, fraActions, comboBox, Third(kCheck + 1, kDropped), kStays,
     u"Simple (fast),Database (medium speed),File (slow)", nullptr, always, folders},
    {lblStepExport, fraActions, heading, StepAt(kExport), kStays, u"4  Export"},
    {cmdExport, fraActions, primaryButton, First(kExport, kButton), kStays,
     u"&Export emails in selected folder", u"Export current Outlook Express folder", onceSynchronised,
     records, &Program::cmdExport},
    {cmdSaveAll, fraActions, button, Second(kExport, kButton), kStays, u"Export emails in all &folders",
     u"Export all Outlook Express folders", onceSynchronised, records, &Program::cmdSaveAll},
    {chkJumpRemain, fraActions, checkBox, Third(kExport - 1, kBox), kStays, u"&Jump to remaining",
     u"Jump to the first email to be exported"},
    {chkSkipFiles, fraActions, checkBox, Third(kExport + 9, kBox), kStays, u"S&kip identical filenames",
     u"Skip identical filenames when exporting"},
    {cmdExtras, fraActions, button, At(kPageLeft, kIgnore, kExtras, kButton), kStays, u"E&xtras...",
     u"Choose what Quillbox does beyond its fixed rules", always, idle, &Program::cmdExtras},
    {lblIgnore, fraActions, name, First(kIgnore + kText, kLine), kStays, u"First folder to &ignore"},
    {txtIgnore, fraActions, textBox, Second(kIgnore, kButton), kStays, u"Deleted Items"},
    {cmdUseSelection, fraActions, button, Third(kIgnore, kButton), kStays, u"&Use tree selection",
     u"Use the selected folder from the tree above", always, idle, &Program::cmdUseSelection},

    {fraStore, onForm, page, kPage, kFills, u"", nullptr, onDemand},
    {lblStoreFolder, fraStore, label, At(kPageLeft, 6, kPageWidth - 2 * kPageLeft, kLine), kWidens, u"", u""},
    {lblDrive, fraStore, name, At(kPageLeft, kDrive + 2, kFirst - kPageLeft, kLine), kStays, u"Dri&ve:"},
    {Drive1, fraStore, comboBox, At(kFirst, kDrive, kPageRight - kNewFolder - 4 - kFirst, kDropped), kWidens,
     u"", nullptr, always, idle},
    {cmdNewFolder, fraStore, button, At(kPageRight - kNewFolder, kDrive - 1, kNewFolder, kButton),
     kMovesRight, u"Ne&w folder...", u"Make a folder in the store folder, and export the emails to it",
     always, idle, &Program::cmdNewFolder},
    {lblDir, fraStore, name, At(kPageLeft, kFolders + 2, kFirst - kPageLeft, kLine), kStays, u"&Folder:"},
    {Dir1, fraStore, listBox, At(kFirst, kFolders, kPageRight - kFirst, 32), kUpperList, u"", nullptr, always,
     idle},
    {lblFiles, fraStore, name, At(kPageLeft, kFiles + 2, kFirst - kPageLeft, kLine), kLowerName,
     u"Saved &emails:"},
    {fileCheck, fraStore, listBox, At(kFirst, kFiles, kPageRight - kFirst, 23), kLowerList},
    {chkIDonly, fraStore, checkBox, At(kPageLeft, kOptions, 106, kBox), kSinks, u"&Name files by ID only"},
    {chkSendKeys, fraStore, checkBox, At(kPageLeft + 110, kOptions, 74, kBox), kSinks, u"Use Sen&dkeys",
     u"Use sendkeys for exporting emails"},
    {cmdVerifyStore, fraStore, button, At(kPageRight - 2 * kOnStore - 4, kOptions - 2, kOnStore, kButton),
     kSinksRight, u"Verif&y store", u"Look for what is wrong with the files of the store folder", always,
     idle, &Program::cmdVerifyStore},
    {cmdIndexPage, fraStore, button, At(kPageRight - kOnStore, kOptions - 2, kOnStore, kButton), kSinksRight,
     u"Make &index page", u"Make a page for a browser that finds any email of the store folder", always, idle,
     &Program::cmdIndexPage},

    {fraProgress, onForm, page, kPage, kFills, u"", nullptr, onDemand},
    {optLog, fraProgress, firstChoice, At(kPageLeft, 4, kSwitch, kBox), kStays, u"L&og"},
    {optResults, fraProgress, nextChoice, At(kPageLeft + kSwitch, 4, kSwitch, kBox), kStays, u"Res&ults"},
    {lblList, fraProgress, label, At(kListName, 5, kPageWidth - kPageLeft - kListName, kLine), kWidens},
    {lstProgress, fraProgress, logBox, At(0, kList, kPageWidth, kPageHeight - kList), kFills},
    {capResults, fraProgress, hiddenName, kNowhere, kStays, u"Results", nullptr, onDemand},
    {lvResults, fraProgress, table, At(0, kList, kPageWidth, kPageHeight - kList), kFills,
     u"Folder,ID,Subject,Date,CRC", nullptr, onDemand},

    {fraSummary, onForm, page, kPage, kFills, u"", nullptr, onDemand},
    {capSummary, fraSummary, hiddenName, kNowhere, kStays, u"Summary", nullptr, onDemand},
    {txtSummary, fraSummary, readBox, kPage, kFills},

    {nTab, onForm, tabStrip, At(kMargin, kTabTop, kContent, kStrip + kPageHeight), kBelowTreeFills,
     u"Actions,Store,Progress,Summary"},
    {lstTree, onForm, storedBox, kNowhere, kStays, u"", nullptr, onDemand},
    {lstLines, onForm, storedBox, kNowhere, kStays, u"", nullptr, onDemand},
};

constexpr bool StandInTheOrderOfTheirIds()
{
    int id = kFirstControl;
    for (const ControlRow& row : kRows)
        if (row.id != id++) return false;
    return id == kFirstControl + kControls;
}
static_assert(StandInTheOrderOfTheirIds());

} // namespace

std::span<const ControlRow> ControlRows()
{
    return kRows;
}

const ControlRow& RowOf(ControlId id)
{
    return kRows[id - kFirstControl];
}

const ControlRow* FindRow(int id)
{
    const bool found = id >= kFirstControl && id < kFirstControl + kControls;
    return found ? &kRows[id - kFirstControl] : nullptr;
}

Extent SmallestExtent(ControlId parent)
{
    if (parent == onForm) return kForm;
    return {RowOf(parent).place.width, RowOf(parent).place.height};
}
