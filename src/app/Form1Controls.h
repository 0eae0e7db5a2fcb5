// Form1Controls.h: the controls of the main window: what each is, says and is called. Form1Layout.h says
// where each stands.
#pragma once
#include "app/Form1Layout.h"
#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"

#include <windows.h>

#include <array>
#include <vector>

// What the window hears of a control by. Labels that only show something share idLabel.
enum ControlId : int {
    idLabel = 100,
    idOrbVac,
    idTab,
    idTree,
    idOEFolder,
    idOpenFolder,
    idSync,
    idGetID,
    idComparison,
    idCheckFolder,
    idCheckAllFolders,
    idExport,
    idSaveAll,
    idStopAfterEmail,
    idStopAfterFolder,
    idJumpRemain,
    idSkipFiles,
    idIDonly,
    idSendKeys,
    idIgnore,
    idUseSelection,
    idStoreFolder,
    idDrive,
    idNewFolder,
    idDir,
    idFileCheck,
    idProgressList,
    idResults,
    idSummary,
    idProg,
    idMainProg,
    idTreeList,
    idLines,
    idStep, // the numbered captions
    idStorePath,
    idChooseStore,
    idShowLog,
    idShowResults,
    idStats,
};

// A line of fraStats.
struct StatisticLabels {
    OrbLabel name;
    OrbLabel* value;
};

class Form1Controls {
public:
    // Everything of the window, as it is before the first synchronisation. Places come with Arrange.
    void Create(HWND form);
    // The user's font for messages, anew when the user has chosen another.
    void TakeFonts(HWND form);
    const DialogUnits& Units() const { return units_; }
    void Arrange() const; // in the form's present client area
    // All frames but the first hidden; the results table with its columns.
    void FitToFrames();
    void ShowFrame(int index);
    // In place of each other on the same spot: the progress list or the results table.
    void ShowResults(bool shown);
    // Statistics and bars reset; Arrangement::busy.
    void EnterBusyLayout();
    void LeaveBusyLayout();
    void DeleteFonts();
    // The tool tip of a label that may end in an ellipsis is its whole text. False: not such a question.
    static bool AnswerToolTip(NMHDR& notice);

    OrbVacuum OrbVac;
    OrbTab nTab;
    std::array<HWND, 4> fraTabs{};

    OrbLabel lblTree;
    HWND tvOETree = nullptr;
    OrbLabel lblSelFolder, lblOEFolder;
    OrbSimpleButton cmdOpenFolder; // the keyboard's double click on lblOEFolder

    std::array<OrbLabel, 4> lblSteps; // the way to an export, in its order
    OrbSimpleButton cmdSync, cmdGetID, cmdChooseStore, cmdCheckFolder, cmdCheckAllFolders, cmdExport;
    OrbSimpleButton cmdSaveAll, cmdUseSelection, cmdStopAfterEmail, cmdStopAfterFolder;
    OrbLabel capSync, lblStorePath, lblComparison, lblIgnore;
    HWND cboComparison = nullptr, txtIgnore = nullptr;
    HWND chkJumpRemain = nullptr, chkSkipFiles = nullptr, chkIDonly = nullptr, chkSendKeys = nullptr;

    OrbLabel lblStoreFolder; // which of the folder list's lines is the store folder
    OrbLabel lblDrive, lblDir, lblFiles;
    OrbSimpleButton cmdNewFolder;
    HWND Drive1 = nullptr, Dir1 = nullptr, fileCheck = nullptr;
    HWND optLog = nullptr, optResults = nullptr; // which of the two below is shown
    OrbLabel lblList;
    HWND lstProgress = nullptr, lvResults = nullptr, txtSummary = nullptr;
    HWND lstTree = nullptr, lstLines = nullptr;

    HWND fraStats = nullptr;
    SimpleProgress sProg, spMain;
    OrbLabel lblCurrentFolder, lblAllFolders;
    OrbLabel lblCount, lblPerSecond, lblTime, lblLeft, lblTotalCount, lblTotalLeft, lblTotalTime;
    std::vector<StatisticLabels> currentStatistics, totalStatistics; // in the order in which they stand

private:
    void MakeActions(HWND frame);
    void MakeStore(HWND frame);
    void MakeLists(HWND progressFrame, HWND summaryFrame);
    void MakeStatistics(HWND form);
    void MakeToolTips(HWND form);

    Arrangement arrangement_ = Arrangement::idle;
    DialogUnits units_;
    HFONT font_ = nullptr;
    HFONT boldFont_ = nullptr;    // of captions
    HFONT displayFont_ = nullptr; // bolder and larger, of the vacuum-tube display
};
