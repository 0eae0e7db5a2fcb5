// Form1Controls.h: the controls of the main window, and where each stands. All numbers are pixels at 96 dpi
// and are scaled to the screen.
#pragma once
#include "controls/OrbLabel.h"
#include "controls/OrbSimpleButton.h"
#include "controls/OrbTab.h"
#include "controls/OrbVacuum.h"
#include "controls/SimpleProgress.h"

#include <windows.h>

#include <array>

// What the window hears of a control by. Labels that only show something share idLabel.
enum ControlId : int {
    idLabel = 100,
    idOrbVac,
    idTab,
    idTree,
    idOEFolder,
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
    idDir,
    idFileCheck,
    idProgressList,
    idResults,
    idSummary,
    idProg,
    idMainProg,
    idTreeList,
    idLines,
};

class Form1Controls {
public:
    // Everything of the window, as it stands before the first synchronisation.
    void Create(HWND form);
    SIZE ClientSize() const; // what the window must hold
    // What depends on the tab strip's inner width: frames flat and alike, all but the first hidden; the lists
    // as wide as their frame; the results table over the progress list, with its columns.
    void FitToFrames();
    void ShowFrame(int index);
    // fraStats and the stop buttons in the place of the folder tree, just above the tab strip; statistics and
    // bars reset.
    void EnterBusyLayout();
    void LeaveBusyLayout();
    void DeleteFonts();

    OrbVacuum OrbVac;
    OrbTab nTab;
    std::array<HWND, 4> fraTabs{};

    OrbLabel lblTree;
    HWND tvOETree = nullptr;
    OrbLabel lblSelFolder, lblOEFolder;

    OrbSimpleButton cmdSync, cmdGetID, cmdCheckFolder, cmdCheckAllFolders, cmdExport, cmdSaveAll;
    OrbSimpleButton cmdUseSelection, cmdStopAfterEmail, cmdStopAfterFolder;
    OrbLabel capSync, lblComparison, lblIgnore;
    HWND cboComparison = nullptr, txtIgnore = nullptr;
    HWND chkJumpRemain = nullptr, chkSkipFiles = nullptr, chkIDonly = nullptr, chkSendKeys = nullptr;

    OrbLabel lblStoreFolder; // which of the folder list's lines is the store folder
    HWND Drive1 = nullptr, Dir1 = nullptr, fileCheck = nullptr;
    HWND lstProgress = nullptr, lvResults = nullptr, txtSummary = nullptr;
    HWND lstTree = nullptr, lstLines = nullptr;

    HWND fraStats = nullptr;
    SimpleProgress sProg, spMain;
    OrbLabel lblCount, lblPerSecond, lblTime, lblLeft, lblTotalCount, lblTotalLeft, lblTotalTime;

private:
    RECT At(int x, int y, int width, int height) const;
    int Scaled(int pixels) const { return MulDiv(pixels, dpi_, 96); }
    HWND Make(HWND parent, int id, const wchar_t* windowClass, const wchar_t* text, DWORD style,
              const RECT& place, DWORD extendedStyle = 0);
    HWND MakeCheckBox(HWND parent, int id, const wchar_t* caption, const RECT& place);
    void MakeActions(HWND frame);
    void MakeStore(HWND frame);
    void MakeLists(HWND progressFrame, HWND summaryFrame);
    void MakeStatistics(HWND form);
    void MakeToolTips(HWND form);

    int dpi_ = 96;
    HFONT font_ = nullptr;        // Tahoma, 8 points
    HFONT displayFont_ = nullptr; // bolder and larger, of the vacuum-tube display
};
