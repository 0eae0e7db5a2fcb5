// ControlTable.h: the controls of the main window, one row each: what it is and says, where it stands, when
// it is shown. Creation, layout, fonts and tool tips follow from the rows.
#pragma once
#include <span>

// What a row is called, and the window hears of its control by. In the order of the rows.
enum ControlId : int {
    onForm = 0, // as a parent: the window itself
    OrbVac = 100,
    lblTree,
    tvOETree,
    fraStats,
    lblCurrentFolder,
    sProg,
    capCount,
    lblCount,
    capPerSecond,
    lblPerSecond,
    capTime,
    lblTime,
    capLeft,
    lblLeft,
    lblAllFolders,
    spMain,
    capTotalCount,
    lblTotalCount,
    capTotalLeft,
    lblTotalLeft,
    capTotalTime,
    lblTotalTime,
    cmdStopAfterEmail,
    cmdStopAfterFolder,
    lblSelFolder,
    lblOEFolder,
    cmdOpenFolder, // the keyboard's double click on lblOEFolder
    fraActions,
    lblStepSync,
    cmdSync,
    capSync,
    cmdGetID,
    lblStepStore,
    cmdChooseStore,
    lblStorePath,
    lblStepCheck,
    cmdCheckFolder,
    cmdCheckAllFolders,
    lblComparison,
    cboComparison,
    lblStepExport,
    cmdExport,
    cmdSaveAll,
    chkJumpRemain,
    chkSkipFiles,
    lblIgnore,
    txtIgnore,
    cmdUseSelection,
    fraStore,
    lblStoreFolder,
    lblDrive,
    Drive1,
    cmdNewFolder,
    lblDir,
    Dir1,
    lblFiles,
    fileCheck,
    chkIDonly,
    chkSendKeys,
    fraProgress,
    optLog, // which of the two below is shown
    optResults,
    lblList,
    lstProgress,
    capResults,
    lvResults,
    fraSummary,
    capSummary,
    txtSummary,
    nTab,
    lstTree,
    lstLines,
};

inline constexpr ControlId kFirstControl = OrbVac;
inline constexpr int kControls = lstLines - kFirstControl + 1;
inline constexpr ControlId fraTabs[] = {fraActions, fraStore, fraProgress, fraSummary}; // by tab

enum class Kind {
    display,
    frame,
    page, // a frame that fills the tab strip
    tabStrip,
    label,      // ends in an ellipsis where it is too long
    heading,    // a label in bold type
    name,       // of the row behind it, with its mnemonic
    hiddenName, // the same, for screen readers alone
    button,
    primaryButton, // the main one of a page
    checkBox,
    firstChoice, // of several, which the arrow keys go through
    nextChoice,
    textBox,
    readBox, // of many lines, not to be typed into
    comboBox,
    listBox,
    logBox,    // a list box that scrolls sideways, too
    storedBox, // a list box that nobody sees
    tree,
    table,
    progressBar,
};

enum class Shown {
    always,
    untilSynchronised,
    onceSynchronised,
    whileIdle,
    whileBusy,
    onDemand, // hidden at first
};

// Dialog units, in the parent at its smallest.
struct Place {
    int left, top, width, height;
};

// How far each edge moves, in percent of what the parent is larger than at its smallest (or smaller: a small
// screen may leave no choice).
struct Growth {
    int left, top, right, bottom;
};
inline constexpr int kWithTree = -1; // in place of a percentage: as far as the tree's lower edge

struct ControlRow {
    ControlId id;
    ControlId parent; // the form, or a frame
    Kind kind;
    Place place;
    Growth growth;
    const char16_t* caption = u""; // items (tabs, choices of a combo box) are parted by commas
    const char16_t* tip = nullptr; // null: none; empty: the whole text, where an ellipsis may end it
    Shown shown = Shown::always;
};

// In the order in which Tab visits them. The pages come before the tab strip, because the earlier of two
// overlapping windows lies on top.
std::span<const ControlRow> ControlRows();
const ControlRow& RowOf(ControlId id);

// How small the form's client area or a frame may become.
struct Extent {
    int width, height;
};
Extent SmallestExtent(ControlId parent);
