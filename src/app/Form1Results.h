// Form1Results.h: lvResults, the table of the e-mails that checks found not saved, and its popup menu
// mnResults, the "Results Table Menu".
#pragma once
#include "store/ResultsTable.h"

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <optional>

// What the window hears of the menu's items by; no control has these numbers.
enum ResultsMenuId : int { mnTickSel = 300, mnUntickSel, mnMarkSaved, mnCondenseDB, mnForget };

enum class RowChoice { selected, all };

class Form1Results {
public:
    explicit Form1Results(Locale& locale) : table_(locale) {}
    // A report list with check boxes that holds nothing but the number of its rows (LVS_OWNERDATA): with
    // items of its own it would take more memory than all else.
    void Attach(HWND list);

    void Add(const ResultsRow& row) { table_.Add(row); } // not ticked; not in the list before ShowAdded
    void ShowAdded();                                    // to be called now and then, as it redraws the list
    void Clear();
    void SortBy(int column);                       // on a click on its header
    LRESULT Answer(NMHDR& notice);                 // what the list asks for, and keys and clicks that tick
    void TickRows(RowChoice which, bool ticked);   // the others keep theirs
    void ShowMenu(HWND owner, LPARAM place) const; // of WM_CONTEXTMENU; owner gets the item as WM_COMMAND

    // By place, from 0. Texts are whole, though the list draws only their beginnings.
    int Count() const { return static_cast<int>(table_.Places().size()); }
    const ResultsRow& RowAt(int place) const { return table_.Row(NumberAt(place)); }
    bool IsTicked(int place) const { return table_.IsTicked(NumberAt(place)); }
    int NextTicked(int after) const; // -1: none
    void Tick(int place, bool ticked);

private:
    std::size_t NumberAt(int place) const { return table_.Places()[static_cast<std::size_t>(place)]; }
    void Rearrange(const std::function<void()>& change); // of the table; what is selected stays so
    void Reselect(const std::vector<bool>& was, const std::vector<bool>& is) const; // by place
    void FillItem(LVITEMW& item) const;
    void OnKey(WORD key);                                                 // virtual-key code
    void Toggle(int place);                                               // no row's: nothing happens
    void ShowArrow(int column);                                           // below 0: on none
    LRESULT Tell(UINT message, LRESULT which = 0, LPARAM what = 0) const; // the list
    LRESULT Next(LRESULT after, int kind) const;                          // below 0: none
    void SetState(LRESULT place, UINT state, bool on) const;

    HWND list_ = nullptr;
    ResultsTable table_;
    int arrowColumn_ = -1;
    std::optional<DWORD> lastLetter_; // GetTickCount, unless another key came since
};
