// The tool tips of the main window's controls.
#include "app/Form1Controls.h"
#include "platform/win32/WideText.h"

#include <commctrl.h>

namespace {

constexpr int kWidestTip = 300; // dialog units; longer ones are broken into lines

} // namespace

void Form1Controls::MakeToolTips(HWND form)
{
    toolTips_ = CreateWindowExW(
        WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, GetModuleHandleW(nullptr), nullptr);
    for (const ControlRow& row : ControlRows()) {
        if (!row.tip) continue;
        Text words = row.tip;
        TTTOOLINFOW tool = {};
        tool.cbSize = TTTOOLINFOW_V2_SIZE; // the size that every version of the control takes
        tool.uFlags = TTF_IDISHWND;
        tool.hwnd = form;
        tool.uId = reinterpret_cast<UINT_PTR>(At(row.id));
        tool.lpszText = words.empty() ? LPSTR_TEXTCALLBACKW : WideBuffer(words);
        SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    }
    SendMessageW(toolTips_, TTM_SETMAXTIPWIDTH, 0, units_.Across(kWidestTip));
}

// A tool tip that subclasses its controls to see the mouse would have a hand in each of their messages.
void Form1Controls::TellToolTips(HWND form, MSG& message)
{
    if (message.message < WM_MOUSEFIRST || message.message > WM_MOUSELAST) return;
    if (!toolTips_) MakeToolTips(form);
    SendMessageW(toolTips_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
}

bool Form1Controls::AnswerToolTip(NMHDR& notice)
{
    if (notice.code != static_cast<UINT>(TTN_GETDISPINFOW)) return false;
    static wchar_t words[1024]; // the tool tip reads it after the answer
    GetWindowTextW(reinterpret_cast<HWND>(notice.idFrom), words, 1024);
    reinterpret_cast<NMTTDISPINFOW&>(notice).lpszText = words;
    return true;
}
