// SaveDialog.cpp: a dialog with the controls of the system's own, as far as a driver looks at them, and the
// system's own.
#include "demo/client/SaveDialog.h"

#include <commctrl.h>
#include <commdlg.h>

#include <array>

namespace {

constexpr int kFileNameId = 1148, kFileTypeId = 1136; // as in the system's file dialogs
constexpr UINT kIsOpen = WM_APP + 1;

struct Dialog {
    const Options& options;
    const DialogRequest& request;
    SaveAnswer answer;
};

struct Template { // an empty dialog: its controls are made by AddControls
    DLGTEMPLATE head;
    WORD menu, windowClass, caption;
};

// x, y, width, height in dialog units.
HWND AddControl(HWND dialog, const wchar_t* windowClass, const wchar_t* caption, DWORD style, RECT place,
                int id)
{
    MapDialogRect(dialog, &place);
    const HWND control =
        CreateWindowExW(0, windowClass, caption, style | WS_CHILD | WS_VISIBLE, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, dialog,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
    return control;
}

void AddControls(HWND dialog, const Dialog& state)
{
    const Language& words = *state.options.language;
    AddControl(dialog, L"Static", words.fileName, SS_LEFT, {7, 10, 62, 20}, -1);
    if (!state.options.noCombo) {
        const DWORD kind = state.options.noEdit ? CBS_DROPDOWNLIST : CBS_DROPDOWN;
        const HWND name =
            AddControl(dialog, WC_COMBOBOXEXW, L"", kind | WS_TABSTOP, {64, 8, 204, 88}, kFileNameId);
        SetWindowTextW(name, state.request.suggestedName.c_str());
        SetFocus(name);
    }
    AddControl(dialog, L"Static", words.saveAsType, SS_LEFT, {7, 28, 62, 38}, -1);
    const HWND type =
        AddControl(dialog, L"ComboBox", L"", CBS_DROPDOWNLIST | WS_TABSTOP, {64, 26, 204, 66}, kFileTypeId);
    SendMessageW(type, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(words.mailFiles));
    SendMessageW(type, CB_SETCURSEL, 0, 0);
    AddControl(dialog, L"Button", words.save, BS_DEFPUSHBUTTON | WS_TABSTOP, {212, 8, 262, 22}, IDOK);
    AddControl(dialog, L"Button", words.cancel, BS_PUSHBUTTON | WS_TABSTOP, {212, 26, 262, 40}, IDCANCEL);
}

std::wstring TypedPath(HWND dialog)
{
    const HWND edit =
        reinterpret_cast<HWND>(SendDlgItemMessageW(dialog, kFileNameId, CBEM_GETEDITCONTROL, 0, 0));
    std::wstring path(static_cast<std::size_t>(edit ? GetWindowTextLengthW(edit) : 0), L'\0');
    if (!path.empty()) GetWindowTextW(edit, path.data(), static_cast<int>(path.size()) + 1);
    return path;
}

bool Store(std::string_view message, const std::wstring& path, bool replaceFile, const Handling& handling,
           SaveAnswer& answer)
{
    const bool there = GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    if (path.empty() || (there && !replaceFile)) return false;
    if (handling.noFile) return true;
    if (handling.empty && !WriteMessageFile(path, {}, replaceFile)) return false;
    if (handling.empty && handling.milliseconds == 0) return true;
    if (!handling.empty && !handling.late) return WriteMessageFile(path, message, replaceFile);
    answer.writeLater = path;
    answer.milliseconds = handling.milliseconds;
    answer.replaceFile = handling.empty || replaceFile;
    return true;
}

void OnSave(HWND dialog, Dialog& state)
{
    const Handling handling = state.request.occur(Event::save, dialog);
    if (handling.lost) return;
    // Without its caption the dialog cannot be mistaken for the next message's while it closes.
    if (!state.options.carelessDialog) SetWindowTextW(dialog, L"");
    if (Store(state.request.message, TypedPath(dialog), handling.replaceFile, handling, state.answer)) {
        state.answer.accepted = true;
        EndDialog(dialog, IDOK);
        return;
    }
    MessageBeep(MB_ICONEXCLAMATION);
    SetWindowTextW(dialog, state.options.language->saveMessageAs);
}

void OnCancel(HWND dialog, const Dialog& state)
{
    if (state.request.occur(Event::cancel, dialog).lost) return;
    if (!state.options.carelessDialog) SetWindowTextW(dialog, L"");
    EndDialog(dialog, IDCANCEL);
}

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* state = reinterpret_cast<Dialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (message == WM_INITDIALOG) {
        state = reinterpret_cast<Dialog*>(lParam);
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        if (state->options.carelessDialog) SetWindowTextW(dialog, state->options.language->saveMessageAs);
        AddControls(dialog, *state);
        // Last: who finds the dialog by its caption finds its controls as well.
        SetWindowTextW(dialog, state->options.language->saveMessageAs);
        PostMessageW(dialog, kIsOpen, 0, 0);
        return FALSE; // the focus is set
    }
    if (message == kIsOpen) state->request.occur(Event::dialog, dialog);
    if (message != WM_COMMAND || !state) return FALSE;
    if (LOWORD(wParam) == IDOK) OnSave(dialog, *state);
    if (LOWORD(wParam) == IDCANCEL) OnCancel(dialog, *state);
    return TRUE;
}

SaveAnswer RunDrawnDialog(HWND owner, const Options& options, const DialogRequest& request)
{
    Dialog state{options, request, {}};
    Template empty{};
    empty.head.style = DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU;
    empty.head.cx = 269;
    empty.head.cy = 48;
    DialogBoxIndirectParamW(nullptr, &empty.head, owner, DialogProc, reinterpret_cast<LPARAM>(&state));
    return state.answer;
}

struct SystemDialog {
    const DialogRequest& request;
    Handling lastSave;
};

// Before the system's dialog looks at what was typed.
LRESULT CALLBACK SystemDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR data)
{
    auto* state = reinterpret_cast<SystemDialog*>(data);
    if (message == kIsOpen) {
        state->request.occur(Event::dialog, dialog);
        return 0;
    }
    if (message == WM_COMMAND && LOWORD(wParam) == IDOK) {
        state->lastSave = state->request.occur(Event::save, dialog);
        if (state->lastSave.lost) return 0;
    }
    if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL &&
        state->request.occur(Event::cancel, dialog).lost)
        return 0;
    return DefSubclassProc(dialog, message, wParam, lParam);
}

UINT_PTR CALLBACK SystemDialogHook(HWND child, UINT message, WPARAM, LPARAM lParam)
{
    if (message != WM_NOTIFY || reinterpret_cast<const NMHDR*>(lParam)->code != CDN_INITDONE) return 0;
    const HWND dialog = GetParent(child);
    SetWindowSubclass(dialog, SystemDialogProc, 1,
                      static_cast<DWORD_PTR>(reinterpret_cast<const OFNOTIFYW*>(lParam)->lpOFN->lCustData));
    PostMessageW(dialog, kIsOpen, 0, 0);
    return 0;
}

SaveAnswer RunSystemDialog(HWND owner, const Language& language, const DialogRequest& request)
{
    SystemDialog state{request, {}};
    std::array<wchar_t, 1024> path{};
    request.suggestedName.copy(path.data(), path.size() - 1);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = L"Mail (*.eml)\0*.eml\0";
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrTitle = language.saveMessageAs;
    dialog.lpstrDefExt = L"eml";
    dialog.lCustData = reinterpret_cast<LPARAM>(&state);
    dialog.lpfnHook = SystemDialogHook;
    dialog.Flags = OFN_EXPLORER | OFN_ENABLEHOOK | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST |
                   OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    SaveAnswer answer;
    if (!GetSaveFileNameW(&dialog)) return answer;
    answer.accepted = Store(request.message, path.data(), true, state.lastSave, answer); // it has asked
    return answer;
}

} // namespace

bool WriteMessageFile(const std::wstring& path, std::string_view bytes, bool replaceFile)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                                    replaceFile ? CREATE_ALWAYS : CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    const bool whole = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
                       written == bytes.size();
    const bool closed = CloseHandle(file);
    if (whole && closed) return true;
    DeleteFileW(path.c_str());
    return false;
}

SaveAnswer RunSaveDialog(HWND owner, const Options& options, const DialogRequest& request)
{
    return options.systemDialog ? RunSystemDialog(owner, *options.language, request)
                                : RunDrawnDialog(owner, options, request);
}
