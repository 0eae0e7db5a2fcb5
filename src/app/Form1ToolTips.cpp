// The tool tips of the main window's controls.
#include "app/Form1Controls.h"

#include <commctrl.h>

namespace {

constexpr int kWidestTip = 300; // dialog units; longer ones are broken into lines

void AddTip(HWND tips, HWND form, HWND control, wchar_t* words)
{
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE; // the size that every version of the control takes
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = words;
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace

void Form1Controls::MakeToolTips(HWND form)
{
    const HWND tips = CreateWindowExW(
        WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, GetModuleHandleW(nullptr), nullptr);
    const struct {
        HWND control;
        const wchar_t* words;
    } kTips[] = {
        {cmdSync.Window(), L"Synchronise with Outlook Express"},
        {capSync.Window(), L"You must synchronise with Outlook Express before exporting any emails"},
        {cmdChooseStore.Window(), L"Choose the folder that the emails are exported to"},
        {cmdGetID.Window(), L"Get the message ID of the email selected in Outlook Express"},
        {cmdCheckFolder.Window(), L"Check current Outlook Express folder"},
        {cmdCheckAllFolders.Window(), L"Check all Outlook Express folders"},
        {cmdExport.Window(), L"Export current Outlook Express folder"},
        {cmdSaveAll.Window(), L"Export all Outlook Express folders"},
        {cmdStopAfterEmail.Window(), L"Stop exporting after current email"},
        {cmdStopAfterFolder.Window(), L"Stop exporting after current folder"},
        {chkJumpRemain, L"Jump to the first email to be exported"},
        {chkSkipFiles, L"Skip identical filenames when exporting"},
        {chkSendKeys, L"Use sendkeys for exporting emails"},
        {cmdOpenFolder.Window(),
         L"Open the folder that the emails of this Outlook Express folder are exported to"},
        {cmdNewFolder.Window(), L"Make a folder in the store folder, and export the emails to it"},
        {cmdUseSelection.Window(), L"Use the selected folder from the tree above"},
        {lblLeft.Window(), L"Emails left to save in current folder"},
        {lblTotalLeft.Window(), L"Emails left to save"},
    };
    for (const auto& tip : kTips) AddTip(tips, form, tip.control, const_cast<wchar_t*>(tip.words));
    for (const OrbLabel& label : {lblOEFolder, lblStorePath, lblStoreFolder})
        AddTip(tips, form, label.Window(), LPSTR_TEXTCALLBACKW);
    SendMessageW(tips, TTM_SETMAXTIPWIDTH, 0, units_.Across(kWidestTip));
}

bool Form1Controls::AnswerToolTip(NMHDR& notice)
{
    if (notice.code != static_cast<UINT>(TTN_GETDISPINFOW)) return false;
    static wchar_t words[1024]; // the tool tip reads it after the answer
    GetWindowTextW(reinterpret_cast<HWND>(notice.idFrom), words, 1024);
    reinterpret_cast<NMTTDISPINFOW&>(notice).lpszText = words;
    return true;
}
