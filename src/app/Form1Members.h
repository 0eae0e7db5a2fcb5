// Form1Members.h: the controls as members, by their names, and by their former numbers.
#pragma once
#include "app/ControlTable.h"
#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"

#include <array>

enum FormerControlId : int {
    idOrbVac = OrbVac,
    idTab = nTab,
    idTree = tvOETree,
    idOEFolder = lblOEFolder,
    idOpenFolder = cmdOpenFolder,
    idSync = cmdSync,
    idGetID = cmdGetID,
    idComparison = cboComparison,
    idCheckFolder = cmdCheckFolder,
    idCheckAllFolders = cmdCheckAllFolders,
    idExport = cmdExport,
    idSaveAll = cmdSaveAll,
    idStopAfterEmail = cmdStopAfterEmail,
    idStopAfterFolder = cmdStopAfterFolder,
    idJumpRemain = chkJumpRemain,
    idSkipFiles = chkSkipFiles,
    idIDonly = chkIDonly,
    idSendKeys = chkSendKeys,
    idIgnore = txtIgnore,
    idUseSelection = cmdUseSelection,
    idStoreFolder = lblStoreFolder,
    idDrive = Drive1,
    idNewFolder = cmdNewFolder,
    idDir = Dir1,
    idFileCheck = fileCheck,
    idProgressList = lstProgress,
    idResults = lvResults,
    idSummary = txtSummary,
    idProg = sProg,
    idMainProg = spMain,
    idTreeList = lstTree,
    idLines = lstLines,
    idStorePath = lblStorePath,
    idChooseStore = cmdChooseStore,
    idShowLog = optLog,
    idShowResults = optResults,
    idStats = fraStats,
};

struct Form1Members {
    OrbVacuum OrbVac;
    OrbTab nTab;
    SimpleProgress sProg, spMain;
    std::array<HWND, 4> fraTabs{};
    OrbLabel lblOEFolder, capSync, lblStoreFolder, lblStorePath, lblCount, lblPerSecond, lblTime, lblLeft,
        lblTotalCount, lblTotalLeft, lblTotalTime;
    OrbSimpleButton cmdOpenFolder, cmdSync, cmdGetID, cmdChooseStore, cmdCheckFolder, cmdCheckAllFolders,
        cmdExport, cmdSaveAll, cmdUseSelection, cmdStopAfterEmail, cmdStopAfterFolder, cmdNewFolder;
    HWND tvOETree = nullptr;
    HWND cboComparison = nullptr;
    HWND txtIgnore = nullptr;
    HWND chkJumpRemain = nullptr;
    HWND chkSkipFiles = nullptr;
    HWND chkIDonly = nullptr;
    HWND chkSendKeys = nullptr;
    HWND Drive1 = nullptr;
    HWND Dir1 = nullptr;
    HWND fileCheck = nullptr;
    HWND lstProgress = nullptr;
    HWND lvResults = nullptr;
    HWND txtSummary = nullptr;
    HWND lstTree = nullptr;
    HWND lstLines = nullptr;
};
