// Form1Controls.h: the controls of the main window as windows, made and arranged as ControlTable.h says.
#pragma once
#include "app/ControlTable.h"
#include "app/DialogUnitsWin.h"
#include "controls/SimpleProgress.h"

#include <windows.h>

#include <array>

class Form1Controls {
public:
    // Everything of the window, as it is before the first synchronisation. Places come with Arrange.
    void Create(HWND form);
    HWND At(ControlId id) const { return windows_[static_cast<std::size_t>(id - kFirstControl)]; }
    SimpleProgress& Bar(ControlId id) { return bars_[id == spMain ? 1 : 0]; } // sProg or spMain

    // The user's font for messages, anew when the user has chosen another.
    void TakeFonts();
    void DeleteFonts();
    // Sizes of the form's client area.
    SIZE SmallestClient() const;
    SIZE WishedClient() const;
    void Arrange() const; // in the form's present client area

    void SetCaption(ControlId label, const Text& caption);
    void Show(Shown when, bool shown); // the controls whose rows say so
    void Enable(const Program& program);
    void ShowFrame(int index);
    // In place of each other on the same spot: the progress list or the results table.
    void ShowResults(bool shown);
    // Statistics and bars reset; fraStats stands in the place of the folder tree, the tab strip below it.
    void EnterBusyLayout();
    void LeaveBusyLayout();
    // Of each message before it is dispatched: tool tips follow the mouse.
    void TellToolTips(HWND form, MSG& message);
    // The tool tip of a label that may end in an ellipsis is its whole text. False: not such a question.
    static bool AnswerToolTip(NMHDR& notice);

private:
    void MakeFonts();
    void SetFonts();
    HWND Make(const ControlRow& row, HWND parent);
    void MakeToolTips(HWND form);
    void ArrangeIn(ControlId parent) const;

    std::array<HWND, kControls> windows_{}; // by row
    SimpleProgress bars_[2];
    HWND toolTips_ = nullptr; // not before the mouse has come
    bool isBusy_ = false;
    DialogUnits units_;
    HFONT font_ = nullptr;
    HFONT boldFont_ = nullptr;    // of headings
    HFONT displayFont_ = nullptr; // bolder and larger, of the vacuum-tube display
};
