// Form1Results.h: lvResults, the table of the e-mails that checks found not saved, and its popup menu
// mnResults, the "Results Table Menu".
#pragma once
#include "store/ResultsTable.h"

#include <windows.h>

#include <commctrl.h>

// What the window hears of the menu's items by; no control has these numbers.
enum ResultsMenuId : int { mnTickSel = 300, mnUntickSel, mnMarkSaved, mnCondenseDB, mnForget };

enum class RowChoice { selected, all };

class Form1Results {
public:
    explicit Form1Results(Locale& locale) : table_(locale) {}
    void Attach(HWND list) { list_ = list; } // a report list with check boxes

    void Add(const ResultsRow& row) { table_.Add(row); } // not ticked; not in the list before ShowAdded
    void ShowAdded();                                    // to be called now and then, as it redraws the list
    void Clear();
    void SortBy(int column);                       // on a click on its header
    void FillCell(NMLVDISPINFOW& notice) const;    // the list asks for the texts that it draws
    void TickRows(RowChoice which, bool ticked);   // the others keep theirs
    void ShowMenu(HWND owner, LPARAM place) const; // of WM_CONTEXTMENU; owner gets the item as WM_COMMAND

    // By place, from 0. Texts are whole, though the list draws only their beginnings.
    int Count() const { return static_cast<int>(table_.Places().size()); }
    const ResultsRow& RowAt(int place) const;
    bool IsTicked(int place) const;
    int NextTicked(int after) const; // -1: none
    void Tick(int place, bool ticked);

private:
    void InsertRow(std::size_t number, int place);
    void ShowArrow(int column); // below 0: on none

    HWND list_ = nullptr;
    ResultsTable table_;
    int arrowColumn_ = -1;
};
