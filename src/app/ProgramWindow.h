// ProgramWindow.h: the main window as the program sees it: to what runs show on it (RunView) come the choices
// that it holds, what it asks the user, and the bracket of a command.
#pragma once
#include "app/Settings.h"
#include "folders/RunView.h"

#include <functional>

enum class Stop { afterEmail, afterFolder };

// Of texts for ExtraRows, the place of one that cannot be taken, when the user has been told; -1: there is
// none.
using FindWrongExtra = std::function<int(const std::vector<Text>& values)>;

// Whether each column is chosen, and none twice, when the user has been told.
using AreColumnsRight = std::function<bool(const std::vector<int>& chosen)>;

struct ProgramWindow : RunView {
    // Into the controls that have a row in SettingRows, and back; the latter with the comparison type.
    virtual void ShowSettings(const Settings& settings) = 0;
    virtual void ReadSettings(Settings& settings) = 0;
    // Within the first command: from here on the user sees it.
    virtual void Appear() = 0;
    // The first box of all, with a title of its own.
    virtual void ShowFirstBox(const Text& title, const Text& words) = 0;
    virtual bool Ask(const Text& words) = 0; // "Yes" or "No", which is chosen at first
    virtual void CloseBox() = 0;             // the box that stands over the window, if one does
    virtual void Destroy() = 0;

    // Around every command: what may be pressed is asked for anew (Program::IsEnabled); the keyboard comes
    // back to where it was.
    virtual void BeginCommand() = 0;
    virtual void EndCommand() = 0; // idle layout, too
    // Statistics in place of the tree, with both stop buttons; EndCommand takes it back.
    virtual void EnterBusyLayout() = 0;
    virtual void HideStopButton(Stop which) = 0;

    // values: for each of ExtraRows what its control begins with, and then what the user has chosen. False:
    // given up; until then, or until none is wrong, the user goes on choosing.
    virtual bool AskExtras(std::vector<Text>& values, const FindWrongExtra& findWrong) = 0;

    // chosen: for the columns From, Subject, To, Received and Sent the place of one of the titles, -1 for
    // none yet. False: given up.
    virtual bool AskColumns(const std::vector<Text>& titles, std::vector<int>& chosen,
                            const AreColumnsRight& areRight) = 0;

    // The page "Store".
    virtual void ShowStoreFolder(const Text& folder) = 0;
    virtual void FocusFolderList() = 0;
    // name: what the field begins with, and then what the user has typed, without blanks around it. False:
    // given up.
    virtual bool AskFolderName(const Text& where, Text& name) = 0;
    virtual void OpenFolder(const Text& path) = 0; // in the file manager

    virtual int SelectedFolderNode() = 0; // of ShowFolderTree's; -1: none

    // lvResults, by place from 0.
    virtual void ClearResults() = 0;
    virtual int NextTicked(int after) = 0; // -1: none; from -1 on
    virtual const ResultsRow& ResultsRowAt(int place) = 0;
    virtual void Untick(int place) = 0;
};
