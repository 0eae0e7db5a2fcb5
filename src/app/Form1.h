// Form1.h: the main window: it hands the user's choices to the program and shows what the program reports.
// Fails by: Create answers false when Windows refuses the window; nothing else fails.
#pragma once
#include "app/Form1Controls.h"
#include "app/Form1Progress.h"
#include "app/Form1Results.h"
#include "app/Form1StorePicker.h"
#include "app/Form1Tree.h"
#include "app/Program.h"
#include "app/SplashWin.h"

#include <windows.h>

#include <commctrl.h>
#include <map>

class Form1 final : public ProgramWindow {
public:
    explicit Form1(Surroundings& outside);
    bool Create(HINSTANCE instance);
    void StartUp(const CommandSwitches& told) { program_.StartUp(told); }
    int Code() const { return static_cast<int>(program_.Code()); }
    void HandleMessages(); // until the window is closed

private:
    // Reporter and RunView
    void LogLine(const Text& message, Record record) override { program_.LogLine(message, record); }
    void ShowText(const Text& text) override;
    void ShowBox(BoxIcon icon, const Text& words) override { ShowBox(ProgramTitle(), icon, words); }
    void ShowBriefBox(BoxIcon icon, const Text& words) override;
    void ProcessEvents() override;
    RunOptions Options() override { return program_.Options(); }
    void ShowStatistic(Statistic which, const Text& text) override;
    void ShowPercentage(Bar bar, int percent) override;
    void ShowTab(Tab tab) override;
    void ShowStopButtons(StopButtons state) override;
    void ShowCurrentFolder(const Text& fullName) override;
    void AddProgress(const Text& line) override;
    void ClearProgress() override;
    void SetSummary(const Text& text) override;
    void AppendSummary(const Text& line) override;
    void AddResultsRow(const ResultsRow& row) override { results_.Add(row); }
    void ShowFolderTree(const std::vector<FolderNode>& nodes) override { tree_.Show(nodes); }
    void SelectFolderNode(int index) override { tree_.Select(index); }
    void MarkFolderNode(const Text& status, const Text& image) override;
    void ShowFolderLists(const std::vector<Text>& lines, const std::vector<Text>& paths) override;
    void SelectFolderLine(int index) override;
    void UnlockCommands() override;
    // ProgramWindow
    void ShowSettings(const Settings& settings) override;
    void ReadSettings(Settings& settings) override;
    void Appear() override;
    void ShowFirstBox(const Text& title, const Text& words) override;
    bool Ask(const Text& words) override;
    void CloseBox() override;
    void Destroy() override { DestroyWindow(window_); }
    void BeginCommand() override;
    void EndCommand() override;
    void EnterBusyLayout() override;
    void HideStopButton(Stop which) override;
    void ShowStoreFolder(const Text& folder) override;
    void FocusFolderList() override { MoveFocus(controls_.At(Dir1)); }
    bool AskExtras(std::vector<Text>& values, const FindWrongExtra& findWrong) override;
    bool AskColumns(const std::vector<Text>& titles, std::vector<int>& chosen,
                    const AreColumnsRight& areRight) override;
    bool AskFolderName(const Text& where, Text& name) override;
    void OpenFolder(const Text& path) override;
    int SelectedFolderNode() override { return tree_.Selected(); }
    void ClearResults() override { results_.Clear(); }
    int NextTicked(int after) override { return results_.NextTicked(after); }
    const ResultsRow& ResultsRowAt(int place) override { return results_.RowAt(place); }
    void Untick(int place) override { results_.Tick(place, false); }

    static constexpr UINT_PTR kBoxTimer = 1; // of a box that does not stay

    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(int id, int code);
    LRESULT OnNotify(NMHDR& notice);
    void Dispatch(MSG& message);      // keys for moving about first
    bool DispatchWaiting(UINT which); // PM_QS_ flags, 0: all; whether the program goes on
    bool PressByEnter(MSG& message);
    SIZE WindowSize(const SIZE& client) const; // with its edges, and no larger than the screen
    RECT WorkArea() const;
    void TakeWishedSize();
    // At once, or when the window is active again. To the tabs, when the control is on a page that is hidden.
    void MoveFocus(HWND control);

    bool IsIdle() const { return program_.IsEnabled(Needs::idle); }
    void UpdateCommands();
    int SelectedTab() const;
    void RefreshStore();  // the lists of the page "Store", if it is shown
    void ShowAdded();     // brings lists, figures and display up to date
    void WaitForKeysUp(); // Enter and Space, for a short time: held, they would press what is shown next
    void ShowBox(const Text& title, BoxIcon icon, const Text& words);
    int ShowMessage(const Text& title, UINT kind, const Text& words); // 0: nobody is there to answer it

    HWND window_ = nullptr;
    Splash splash_; // until soon after the first box
    Form1Controls controls_;
    Form1Tree tree_;
    Form1StorePicker store_;
    Form1Progress progress_;
    Form1Results results_;
    Program program_;
    LPARAM arrangedSize_ = 0;     // of the client area that the controls stand in
    HWND lastFocus_ = nullptr;    // where the keyboard was when the window lost it
    HWND commandFocus_ = nullptr; // where it was when the command under way began
    // What ShowAdded will show.
    std::optional<Text> display_{};
    std::map<ControlId, Text> captions_{};   // of the statistics
    std::map<ControlId, int> percentages_{}; // of the bars
    DWORD lastShown_ = 0;                    // GetTickCount of the last ShowAdded
    DWORD showEvery_ = 0;                    // milliseconds until the next in a run
    DWORD lastPainted_ = 0;                  // ... and of the last look at what is to be painted
};
