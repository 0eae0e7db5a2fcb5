// ControlTable.h: the controls of the main window, one row each: what it is and says, where it stands, when
// it is shown and can be pressed, and what it starts. All else about it follows from the row.
#pragma once
#include "app/ControlIds.h"
#include "app/Program.h"

#include <span>

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
    const char16_t* caption = u""; // tabs, choices and columns are parted by commas
    const char16_t* tip = nullptr; // null: none; empty: the whole text, where an ellipsis may end it
    Shown shown = Shown::always;
    Needs needs = Needs::nothing;         // or it is disabled
    void (Program::*command)() = nullptr; // on a click; null: the window answers what it reports
};

// In the order in which Tab visits them. The pages come before the tab strip, because the earlier of two
// overlapping windows lies on top.
std::span<const ControlRow> ControlRows();
const ControlRow& RowOf(ControlId id);
const ControlRow* FindRow(int id); // null: no control's id

// How small the form's client area or a frame may become.
struct Extent {
    int width, height;
};
Extent SmallestExtent(ControlId parent);
