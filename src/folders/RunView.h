// RunView.h: the window as the folder operations see it: what they read from it and what they show on it.
// The main window implements it with real controls; no folder operation ever names a control.
#pragma once
#include "oe/Reporter.h"
#include "store/ResultsTable.h"

enum class Statistic { count, perSecond, time, left, totalCount, totalLeft, totalTime };
enum class Bar { currentFolder, allFolders };
enum class Tab { actions, store, progress, summary };
enum class StopButtons { hidden, shown };
// cboComparison's items: "Simple (fast)", "Database (medium speed)", "File (slow)".
enum class ComparisonType { simple, database, file };

// The choices that a run reads, each at the moment it needs it: the user may change them in between. At first
// they are what the window shows before any file was read.
struct RunOptions {
    bool idOnly = false;             // chkIDonly
    bool sendKeys = false;           // chkSendKeys
    bool skipFiles = false;          // chkSkipFiles
    bool jumpRemain = false;         // chkJumpRemain
    bool freshRunList = false;       // cmdSaveAll begins with an empty export list
    bool thoroughComparison = false; // "File (slow)" by ThoroughSearch
    bool lookAlikes = false;         // each e-mail of those that look the same is saved
    bool selectRows = false;         // an export goes to the rows that the Down key does not lead to
    bool verifySaved = false;        // a file counts when it is whole and does not contradict the e-mail
    bool fileDate = false;           // a file gets the e-mail's sent date
    Text firstFolderToIgnore = u"Deleted Items"; // txtIgnore
    Text systemFolders =
        u"|local folders|";              // full names that an all-folders run passes over, each between "|"
    Text firstFolder = u"Local Folders"; // what the client calls the root of its folders
    Text storeFolder; // Dir1's folder, without a trailing separator unless it is a drive's root
    ComparisonType comparison = ComparisonType::database; // cboComparison
};

// One folder for the window's tree, in depth-first order.
struct FolderNode {
    Text name;
    int level = 1; // 1 for the root
};

struct RunView : Reporter {
    virtual RunOptions Options() = 0;
    virtual void ShowStatistic(Statistic which, const Text& text) = 0;
    virtual void ShowPercentage(Bar bar, int percent) = 0; // clamped to 0..100
    virtual void ShowTab(Tab tab) = 0;
    virtual void ShowStopButtons(StopButtons state) = 0;
    virtual void ShowCurrentFolder(const Text& fullName) = 0; // lblOEFolder
    virtual void AddProgress(const Text& line) = 0;           // at the end of lstProgress
    virtual void ClearProgress() = 0;                         // all of it
    virtual void SetSummary(const Text& text) = 0;            // txtSummary, lines parted by CR LF
    virtual void AppendSummary(const Text& line) = 0;         // behind a line break when there is text
    virtual void AddResultsRow(const ResultsRow& row) = 0;    // lvResults, not ticked
    // Replaces the tree. Images: "root" at level 1, "other" at level 2, "envelope" deeper; level 2 and
    // deeper are made visible.
    virtual void ShowFolderTree(const std::vector<FolderNode>& nodes) = 0;
    virtual void SelectFolderNode(int index) = 0; // of the tree: an index of ShowFolderTree's nodes
    // Status text and image of the tree's selected node; an empty one leaves its part alone (MarkedNodeText).
    virtual void MarkFolderNode(const Text& status, const Text& image) = 0;
    // The hidden lists: lstTree with its selection (-1: none) and lstLines.
    virtual void ShowFolderLists(const std::vector<Text>& lines, const std::vector<Text>& paths) = 0;
    virtual void SelectFolderLine(int index) = 0;
    // After the first synchronisation: hint hidden, commands shown, comparison choice available.
    virtual void UnlockCommands() = 0;
};
